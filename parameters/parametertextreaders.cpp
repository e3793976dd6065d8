// Reading members that hold texts.

#include <algorithm>
#include <cstring>

#include "parameters/membersource.h"
#include "parameters/parameterfilesymboltable.h"
#include "parameters/parameterutils.h"

using Info = ParameterDefinitionElementInfo;

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
    if (FindMember(request, source, [](const Info& rInfo) { return rInfo.IsSingleText(); }))
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
                    [&](const Info& rInfo) { return rInfo.IsFixedArrayOf(count) && rInfo.IsString(); }))
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
    if (!FindMember(request, source, [](const Info& rInfo) { return rInfo.IsOptional() && rInfo.IsString(); }))
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
