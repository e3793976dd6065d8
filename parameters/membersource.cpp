#include "parameters/membersource.h"

#include <algorithm>

#include "parameters/parameterfilesymboltable.h"

using Info = ParameterDefinitionElementInfo;

UINT32 ParameterFileSymbolTableEntry::StoredPairSize() const
{
    return Table->HasRecordSizes() ? 8 : 4;
}

UINT64 ParameterFileSymbolTableEntry::Available(UINT32 limit) const
{
    const UINT64 end = std::min(limit, DataSize);
    return (Position < end) ? end - Position : 0;
}

bool ParameterFileSymbolTableEntry::GetCountAndPointerEntry(const MemberRequest& rRequest, MemberSource& rSource)
{
    const Info* pInfo = rSource.GetInfo();
    const bool  text  = pInfo != nullptr && pInfo->IsString() && !pInfo->IsFixed() && !rRequest.wantFixedArray &&
                      !rRequest.wantVariable;
    rSource.isInline = (pInfo != nullptr) ? !(pInfo->IsPointer() || text) : !rRequest.wantPointer;
    return rSource.isInline ? ReadInlineCount(rRequest, rSource) : ReadPointerCount(rRequest, rSource);
}

bool ParameterFileSymbolTableEntry::ReadInlineCount(const MemberRequest& rRequest, MemberSource& rSource)
{
    if (!IsFixedCountVersion())
    {
        return true;
    }
    const Info* pInfo    = rSource.GetInfo();
    const bool  hasCount = (pInfo != nullptr) ? pInfo->IsFixed() : rRequest.wantFixedArray && rRequest.count > 1;
    if (hasCount)
    {
        if (!ReadLimited(rSource.count, rSource.limit))
        {
            return false;
        }
        rSource.adjusted = rSource.adjusted || (pInfo != nullptr && rSource.count != pInfo->MaxCount);
    }
    else if (pInfo != nullptr)
    {
        rSource.count = pInfo->MaxCount;
    }
    if (rRequest.wantVariable)
    {
        // The count decides how much is allocated, as with a pointer.
        ClipCount(rRequest, rSource, Available(rSource.limit));
    }
    return true;
}

bool ParameterFileSymbolTableEntry::ReadPointerCount(const MemberRequest& rRequest, MemberSource& rSource)
{
    const bool counted = ReadLimited(rSource.count, rSource.limit);
    if (!Table->ReadPointerEntry(rSource.pointerEntry, this, rSource.limit) || !counted)
    {
        return false;
    }
    rSource.pEntry = &rSource.pointerEntry;
    rSource.limit  = NoLoadDataLimit;
    ClipCount(rRequest, rSource, rSource.pointerEntry.DataSize);
    return true;
}

/// A count that cannot be must not be allocated.
VOID ParameterFileSymbolTableEntry::ClipCount(const MemberRequest& rRequest, MemberSource& rSource,
                                              UINT64 available) const
{
    const UINT32 itemSize = (rSource.GetInfo() != nullptr) ? rSource.pElement->GetSize() : rRequest.elementSize;
    if (itemSize == 0)
    {
        rSource.count = 0;
        return;
    }
    if (static_cast<UINT64>(rSource.count) * itemSize <= available)
    {
        return;
    }
    const UINT32 clipped = std::max(static_cast<UINT32>(available / itemSize), rRequest.minimumCount);
    LogMessage(true,
               "Minimun %ld size (%u) * count (%u) exceeds avaialable data (%u), setting count to %u to prevent "
               "allocation errors\n",
               static_cast<long>(rRequest.minimumCount), itemSize, rSource.count, static_cast<UINT32>(available),
               clipped);
    rSource.count    = clipped;
    rSource.adjusted = true;
}

VOID* ParameterFileSymbolTableEntry::AllocateItems(UINT32 count, UINT32 size) const
{
    const UINT64 bytes = static_cast<UINT64>(count) * size;
    return ChargeWork(bytes) ? AllocateTuningMemory(bytes) : nullptr;
}
