// Reading members that hold numbers.

#include <algorithm>

#include "parameters/membersource.h"
#include "parameters/parameterutils.h"

using tuning::ValueType;

using Info = ParameterDefinitionElementInfo;

bool ParameterFileSymbolTableEntry::ReadArray(VOID* pDestination, ValueType type,
                                              const ParameterDefinitionElement* pElement, UINT32 count, UINT32 limit)
{
    bool complete = false;
    bool resized  = false;
    if (Data != nullptr)
    {
        complete = ParameterUtils::ReadArray(pDestination, type, pElement, Data, std::min(limit, DataSize), Position,
                                             count, GetAlignment(), GetLog());
        const Info* pInfo = (pElement != nullptr) ? pElement->GetInfo() : nullptr;
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
                    { return rInfo.IsFixedArrayOf(count) && ParameterUtils::IsExactType(type, source.pElement); }))
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
                    { return rInfo.IsOptional() && ParameterUtils::IsExactType(type, source.pElement); }))
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
