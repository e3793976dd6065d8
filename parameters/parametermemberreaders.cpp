// The ways in which a record's member is read: each takes a form that the code declares, whatever form the file has.

#include <algorithm>
#include <cstring>

#include "parameters/parameterfilesymboltable.h"
#include "parameters/parameterfilesymboltableentry.h"
#include "parameters/parameterutils.h"
#include "parameters/recordloader.h"

using tuning::ValueType;

namespace
{

using Info = ParameterDefinitionElementInfo;

/// Where the items of an array of records stand, as their own readers see it.
ParameterLoadParameters ItemParameters(const ParameterLoadParameters& rParameters, ParameterDefinitionElement* pElement,
                                       ParameterFileSymbolTableEntry& rEntry, bool isInline, bool hasCount)
{
    ParameterLoadParameters items = rParameters;
    items.Entry                   = &rEntry;
    items.UseParent               = true;
    items.UseParentOffset         = isInline;
    items.Element                 = pElement;
    items.Position                = isInline ? rParameters.Position + (hasCount ? ArrayCountSize : 0) : rEntry.Position;
    items.LoadDataLimit           = NoLoadDataLimit;
    return items;
}

}  // namespace

struct ParameterFileSymbolTableEntry::MemberRequest
{
    const CHAR*                    pReader;  ///< for messages
    const ParameterLoadParameters& rParameters;
    UINT32                         count;         ///< that the code expects
    UINT32                         minimumCount;  ///< that survives clipping
    UINT32                         elementSize;   ///< bytes of a stored item, if there is no definition that says it
    bool                           wantPointer    = false;
    bool                           wantFixedArray = false;
    bool                           wantVariable   = false;
    bool                           wantStructure  = false;
    bool                           hashFirst      = false;  ///< this reader's message begins with the name hash
};

struct ParameterFileSymbolTableEntry::MemberSource
{
    ParameterDefinitionElement*    pElement = nullptr;  ///< null if there are no definitions
    ParameterFileSymbolTableEntry* pEntry   = nullptr;  ///< whose block holds the values, at its position
    UINT32                         count    = 0;        ///< of values stored
    UINT32                         limit    = 0;        ///< end of what may be read of pEntry
    bool                           adjusted = false;
    bool                           isInline = true;
    ParameterFileSymbolTableEntry  pointerEntry;

    const Info* GetInfo() const
    {
        return (pElement != nullptr) ? pElement->Info.get() : nullptr;
    }

    /// @return ID of the entry that holds the values, 0 for values inside the record
    UINT32 GetID() const
    {
        return isInline ? 0 : pointerEntry.ID;
    }
};

UINT32 ParameterFileSymbolTableEntry::StoredPairSize() const
{
    return (Table->Version() < BinaryFileFormat::StructSymbolsVersion) ? 4 : 8;
}

UINT64 ParameterFileSymbolTableEntry::Available(UINT32 limit) const
{
    const UINT64 end = std::min(limit, DataSize);
    return (Position < end) ? end - Position : 0;
}

/// Finds a member and how many values it has, and marks its definition if it is what the code expects.
/// @param matches whether stored values of that shape need no definition to be read
/// @return false, with a log, if the file does not have it
template <typename Matches>
bool ParameterFileSymbolTableEntry::FindMember(const MemberRequest& rRequest, MemberSource& rSource, Matches matches)
{
    ParameterLoadParameters parameters = rRequest.rParameters;
    parameters.UseParent               = false;
    parameters.UseParentOffset         = true;
    parameters.Index                   = 0;
    rSource.pElement                   = AdjustPositionAndGetElement(parameters, rSource.adjusted);
    rSource.pEntry                     = this;
    rSource.limit                      = parameters.LoadDataLimit;
    rSource.count                      = rRequest.count;

    // A member without a definition is read only where the record's definitions have been dropped as matching.
    const ParameterDefinitionElement* pParent = parameters.Element;
    const bool                        undefined =
        (rSource.pElement == nullptr && pParent != nullptr &&
         !(pParent->Verified.load(std::memory_order_relaxed) && pParent->Info == nullptr)) ||
        (rRequest.wantStructure && rSource.GetInfo() != nullptr && rSource.GetInfo()->Structure == nullptr);
    bool found = false;
    if (!undefined)
    {
        found             = GetCountAndPointerEntry(rRequest, rSource);
        const Info* pInfo = rSource.GetInfo();
        if (pInfo != nullptr && !rSource.adjusted && matches(*pInfo))
        {
            rSource.pElement->Verified.store(true, std::memory_order_relaxed);
        }
    }
    if (!found && rRequest.hashFirst)
    {
        LogMessage(true, "0x%llx: %s entry not found in the binary file, all values will be 0\n", parameters.NameHash,
                   rRequest.pReader);
    }
    else if (!found)
    {
        LogNotFound(rRequest.pReader, parameters.NameHash);
    }
    return found;
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

bool ParameterFileSymbolTableEntry::ReadArray(VOID* pDestination, ValueType type,
                                              const ParameterDefinitionElement* pElement, UINT32 count, UINT32 limit)
{
    bool complete = false;
    bool resized  = false;
    if (Data != nullptr)
    {
        complete = ParameterUtils::ReadArray(pDestination, type, pElement, Data, std::min(limit, DataSize), Position,
                                             count, GetAlignment(), GetLog());
        const Info* pInfo = (pElement != nullptr) ? pElement->Info.get() : nullptr;
        resized           = pInfo != nullptr && !pInfo->IsFloat() && pInfo->Type != ParameterDefinitionType_Double &&
                  Info::WidthOf(pInfo->Type) != ParameterUtils::ValueSize(type);
    }
    if (!complete || resized)
    {
        // Integers of another width are complete and convert well, but are reported with the same words.
        LogMessage(true, "Insufficient data to read array of symbol table entry\n");
    }
    return complete;
}

VOID ParameterFileSymbolTableEntry::ReadSimpleTypeFixedArray(VOID* pDestination, ValueType type, UINT32 count,
                                                             const ParameterLoadParameters& rParameters)
{
    MemberRequest request{"ReadSimpleTypeFixedArray", rParameters, count, count, ParameterUtils::ValueSize(type)};
    request.wantFixedArray = count >= 2;
    MemberSource source;
    if (!FindMember(request, source,
                    [&](const Info& rInfo)
                    {
                        return (count == 1 || rInfo.IsFixed()) && rInfo.MaxCount == count && !rInfo.IsPointer() &&
                               ParameterUtils::IsExactType(type, source.pElement);
                    }))
    {
        return;
    }
    source.pEntry->ReadArray(pDestination, type, source.pElement, std::min(source.count, count), source.limit);
    if (source.count != count)
    {
        LogMessage(false, "0x%llx expected count (%u) != the binary count (%u), the binary XSD != the source XSD\n",
                   rParameters.NameHash, count, source.count);
    }
}

VOID* ParameterFileSymbolTableEntry::AllocateItems(UINT32 count, UINT32 size) const
{
    const UINT64 bytes = static_cast<UINT64>(count) * size;
    return ChargeWork(bytes) ? AllocateTuningMemory(bytes) : nullptr;
}

VOID* ParameterFileSymbolTableEntry::ReadAllocatedArray(ValueType type, const ParameterDefinitionElement* pElement,
                                                        UINT32 count, UINT32 limit)
{
    VOID* pItems = AllocateItems(count, ParameterUtils::ValueSize(type));
    if (pItems != nullptr && ParameterUtils::ReadArray(pItems, type, pElement, Data, std::min(limit, DataSize),
                                                       Position, count, GetAlignment(), GetLog()))
    {
        return pItems;
    }
    FreeTuningMemory(pItems);
    LogMessage(true, "Insufficient data to read array from symbol table entry\n");
    LogMessage(true, "Failed to allocate %llx\n", static_cast<UINT64>(count) * ParameterUtils::ValueSize(type));
    return nullptr;
}

VOID ParameterFileSymbolTableEntry::ReadSimpleTypeArray(VOID*& rpArray, ValueType type, UINT32& rCount, UINT32& rID,
                                                        UINT32 minimumCount, const ParameterLoadParameters& rParameters,
                                                        const ReadingSite& rSite)
{
    MemberRequest request{"ReadSimpleTypeArray", rParameters, minimumCount, minimumCount,
                          ParameterUtils::ValueSize(type)};
    request.wantPointer  = true;
    request.wantVariable = true;
    MemberSource source;
    if (!FindMember(request, source,
                    [&](const Info& rInfo)
                    { return rInfo.IsPointer() && ParameterUtils::IsExactType(type, source.pElement); }))
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
        rpArray = source.pEntry->ReadAllocatedArray(type, source.pElement, source.count, source.limit);
        if (rpArray != nullptr && !source.isInline)
        {
            source.pointerEntry.SetDupObject(rpArray, rSite, source.count);
        }
    }
    rCount = (rpArray != nullptr) ? source.count : 0;
}

VOID ParameterFileSymbolTableEntry::ReadOptionalSimpleType(VOID* pDestination, ValueType type, UINT32& rCount,
                                                           UINT32& rID, const ParameterLoadParameters& rParameters)
{
    MemberRequest request{"ReadOptionalSimpleType", rParameters, 1, 0, ParameterUtils::ValueSize(type)};
    request.wantPointer  = true;
    request.wantVariable = true;
    MemberSource source;
    if (!FindMember(request, source,
                    [&](const Info& rInfo)
                    {
                        return !rInfo.IsFixed() && rInfo.IsPointer() && rInfo.MaxCount == 1 &&
                               ParameterUtils::IsExactType(type, source.pElement);
                    }))
    {
        return;
    }
    rID = source.GetID();
    if (source.count == 0)
    {
        return;
    }
    ParameterFileSymbolTableEntry& rEntry = *source.pEntry;
    if (ParameterUtils::Read(pDestination, type, source.pElement, rEntry.Data, std::min(source.limit, rEntry.DataSize),
                             rEntry.Position, GetAlignment(), GetLog()))
    {
        rCount = 1;
    }
    else
    {
        LogMessage(true, "Insufficient data to read variable from symbol table entry\n");
    }
}

VOID ParameterFileSymbolTableEntry::ReadStructureFixedArray(const tuning::RecordDescription& rRecord,
                                                            VOID* pDestination, UINT32 count,
                                                            const ParameterLoadParameters& rParameters)
{
    MemberRequest request{"ReadStructureFixedArray", rParameters, count, count, StoredPairSize()};
    request.wantFixedArray = count >= 2;
    request.wantStructure  = true;
    MemberSource source;
    if (!FindMember(request, source,
                    [&](const Info& rInfo) {
                        return (count == 1 || rInfo.IsFixed()) && rInfo.MaxCount == count && !rInfo.IsPointer() &&
                               rInfo.IsStructure();
                    }))
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
    if (!FindMember(request, source,
                    [](const Info& rInfo)
                    { return !rInfo.IsFixed() && rInfo.IsPointer() && rInfo.MaxCount == 1 && rInfo.IsStructure(); }))
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

/// Reads the text that fills this entry's block from its position.
/// @return owned by the record, or shared; null if there is none
CHAR* ParameterFileSymbolTableEntry::ReadSharedText(UINT32 size, const ReadingSite& rSite)
{
    CHAR* pText = static_cast<CHAR*>(GetDupObject(rSite, size));
    if (pText != nullptr)
    {
        Position += ParameterUtils::Padded(size, GetAlignment());
        return pText;
    }
    if (ChargeWork(std::min(size, DataSize)))
    {
        pText = ParameterUtils::ReadString(Data, DataSize, Position, size, GetAlignment()).release();
    }
    if (pText == nullptr)
    {
        LogMessage(true, "Failed to read string entry\n");
        return nullptr;
    }
    SetDupObject(pText, rSite, size);
    return pText;
}

/// Reads an item of an array of texts: a length and the ID of the entry that holds the text.
CHAR* ParameterFileSymbolTableEntry::ReadTextItem(const ReadingSite& rSite, UINT32 limit)
{
    UINT32                        length  = 0;
    const bool                    counted = ReadLimited(length, limit);
    ParameterFileSymbolTableEntry textEntry;
    if (!Table->ReadPointerEntry(textEntry, this, limit) || !counted)
    {
        return nullptr;
    }
    return textEntry.ReadSharedText(length, rSite);
}

VOID ParameterFileSymbolTableEntry::ReadString(CHAR*& rpText, const ParameterLoadParameters& rParameters,
                                               const ReadingSite& rSite)
{
    MemberRequest request{"ReadString", rParameters, 0, 0, 1};
    request.wantPointer = true;
    request.hashFirst   = true;
    MemberSource source;
    if (FindMember(request, source,
                   [](const Info& rInfo) { return !rInfo.IsFixed() && !rInfo.IsPointer() && rInfo.IsString(); }))
    {
        rpText = source.pEntry->ReadSharedText(source.count, rSite);
    }
}

VOID ParameterFileSymbolTableEntry::ReadStringFixedArray(CHAR** ppTexts, UINT32 count,
                                                         const ParameterLoadParameters& rParameters,
                                                         const ReadingSite&             rSite)
{
    MemberRequest request{"ReadStringFixedArray", rParameters, count, count, StoredPairSize()};
    request.wantFixedArray = true;
    MemberSource source;
    if (!FindMember(request, source,
                    [&](const Info& rInfo) {
                        return (count == 1 || rInfo.IsFixed()) && rInfo.MaxCount == count && !rInfo.IsPointer() &&
                               rInfo.IsString();
                    }))
    {
        return;
    }
    for (UINT32 index = 0; index < std::min(source.count, count); ++index)
    {
        ppTexts[index] = source.pEntry->ReadTextItem(rSite.OfItems(), source.limit);
    }
}

VOID ParameterFileSymbolTableEntry::ReadStringArray(CHAR**& rppTexts, UINT32& rCount, UINT32& rID, UINT32 minimumCount,
                                                    const ParameterLoadParameters& rParameters,
                                                    const ReadingSite&             rSite)
{
    MemberRequest request{"ReadStringArray", rParameters, minimumCount, minimumCount, StoredPairSize()};
    request.wantPointer  = true;
    request.wantVariable = true;
    MemberSource source;
    if (!FindMember(request, source, [](const Info& rInfo) { return rInfo.IsPointer() && rInfo.IsString(); }))
    {
        return;
    }
    rID = source.GetID();
    if (source.count == 0)
    {
        return;
    }
    rppTexts = source.isInline ? nullptr : static_cast<CHAR**>(source.pointerEntry.GetDupObject(rSite, source.count));
    if (rppTexts == nullptr)
    {
        rppTexts = static_cast<CHAR**>(AllocateItems(source.count, sizeof(CHAR*)));
        if (rppTexts == nullptr)
        {
            LogMessage(true, "Failed to allocate 0x%llx\n", static_cast<UINT64>(source.count) * sizeof(CHAR*));
            return;
        }
        for (UINT32 index = 0; index < source.count; ++index)
        {
            rppTexts[index] = source.pEntry->ReadTextItem(rSite.OfItems(), source.limit);
        }
        if (!source.isInline)
        {
            source.pointerEntry.SetDupObject(rppTexts, rSite, source.count);
        }
    }
    rCount = source.count;
}

VOID ParameterFileSymbolTableEntry::ReadOptionalString(CHAR*& rpText, UINT32& rCount, UINT32& rID,
                                                       const ParameterLoadParameters& rParameters,
                                                       const ReadingSite&             rSite)
{
    MemberRequest request{"ReadOptionalString", rParameters, 1, 0, StoredPairSize()};
    request.wantPointer  = true;
    request.wantVariable = true;
    MemberSource source;
    if (!FindMember(request, source,
                    [](const Info& rInfo)
                    { return !rInfo.IsFixed() && rInfo.IsPointer() && rInfo.MaxCount == 1 && rInfo.IsString(); }))
    {
        return;
    }
    rID = source.GetID();
    if (source.count > 0)
    {
        rpText = source.pEntry->ReadTextItem(rSite, source.limit);
        rCount = (rpText != nullptr) ? 1 : 0;
    }
}
