// Reading members that hold records.

#include <algorithm>

#include "parameters/membersource.h"
#include "parameters/recordloader.h"

using Info = ParameterDefinitionElementInfo;

namespace
{

/// Where the items of an array of records stand, as their own readers see it.
ParameterLoadParameters ItemParameters(const ParameterLoadParameters& rParameters, ParameterDefinitionElement* pElement,
                                       ParameterFileSymbolTableEntry& rEntry, bool isInline, bool hasCount)
{
    ParameterLoadParameters items = rParameters;
    items.Entry                   = &rEntry;
    items.UseParent               = true;
    items.UseParentOffset         = isInline;
    items.Element                 = pElement;
    items.Position      = isInline ? rParameters.Position + (hasCount ? tuning::StoredCountSize : 0) : rEntry.Position;
    items.LoadDataLimit = NoLoadDataLimit;
    return items;
}

}  // namespace

VOID ParameterFileSymbolTableEntry::ReadStructureFixedArray(const tuning::RecordDescription& rRecord,
                                                            VOID* pDestination, UINT32 count,
                                                            const ParameterLoadParameters& rParameters)
{
    MemberRequest request{"ReadStructureFixedArray", rParameters, count, count, StoredPairSize()};
    request.wantFixedArray = count >= 2;
    request.wantStructure  = true;
    MemberSource source;
    if (!FindMember(request, source,
                    [&](const Info& rInfo) { return rInfo.IsFixedArrayOf(count) && rInfo.IsStructure(); }))
    {
        return;
    }
    const Info* pInfo    = source.GetInfo();
    const bool  hasCount = IsFixedCountVersion() && ((pInfo != nullptr) ? pInfo->IsFixed() : count >= 2);
    RecordLoader::LoadArray(rRecord, pDestination, std::min(source.count, count),
                            ItemParameters(rParameters, source.pElement, *source.pEntry, source.isInline, hasCount));
    if (source.count != count)
    {
        LogMessage(false, "0x%llx expected count (%u) != the binary count (%u), the binary XSD != the source XSD\n",
                   rParameters.NameHash, count, source.count);
    }
}

VOID ParameterFileSymbolTableEntry::ReadStructureArray(const tuning::RecordDescription& rRecord, VOID*& rpArray,
                                                       UINT32& rCount, UINT32& rID, UINT32 minimumCount,
                                                       const ParameterLoadParameters& rParameters,
                                                       const ReadingSite&             rSite)
{
    MemberRequest request{"ReadStructureArray", rParameters, minimumCount, minimumCount, StoredPairSize()};
    request.wantPointer   = true;
    request.wantVariable  = true;
    request.wantStructure = true;
    MemberSource source;
    if (!FindMember(request, source, [](const Info& rInfo) { return rInfo.IsPointer() && rInfo.IsStructure(); }))
    {
        return;
    }
    rID = source.GetID();
    if (source.count == 0)
    {
        return;
    }
    rpArray = source.isInline ? nullptr : source.pointerEntry.GetDupObject(rSite, source.count);
    if (rpArray == nullptr)
    {
        rpArray = AllocateItems(source.count, rRecord.size);
        if (rpArray == nullptr)
        {
            LogMessage(true, "Failed to allocate 0x%llx\n", static_cast<UINT64>(source.count) * rRecord.size);
            return;
        }
        const Info* pInfo    = source.GetInfo();
        const bool  hasCount = IsFixedCountVersion() && pInfo != nullptr && pInfo->IsFixed();
        RecordLoader::LoadArray(
            rRecord, rpArray, source.count,
            ItemParameters(rParameters, source.pElement, *source.pEntry, source.isInline, hasCount));
        if (!source.isInline)
        {
            source.pointerEntry.SetDupObject(rpArray, rSite, source.count);
        }
    }
    rCount = source.count;
}

VOID ParameterFileSymbolTableEntry::ReadOptionalStructure(const tuning::RecordDescription& rRecord, VOID* pDestination,
                                                          UINT32& rCount, UINT32& rID,
                                                          const ParameterLoadParameters& rParameters)
{
    MemberRequest request{"ReadOptionalStructure", rParameters, 1, 0, StoredPairSize()};
    request.wantPointer   = true;
    request.wantVariable  = true;
    request.wantStructure = true;
    MemberSource source;
    if (!FindMember(request, source, [](const Info& rInfo) { return rInfo.IsOptional() && rInfo.IsStructure(); }))
    {
        return;
    }
    rID = source.GetID();
    if (source.count == 0)
    {
        return;
    }
    const Info* pInfo    = source.GetInfo();
    const bool  hasCount = IsFixedCountVersion() && pInfo != nullptr && pInfo->IsFixed();
    RecordLoader::LoadArray(rRecord, pDestination, 1,
                            ItemParameters(rParameters, source.pElement, *source.pEntry, source.isInline, hasCount));
    rCount = 1;
}
