/// @file
/// Where a record's member stands in the file: each reader asks for a form that the code declares, whatever form the
/// file has.
#pragma once

#include "parameters/parameterdefinitions.h"
#include "parameters/parameterfilesymboltableentry.h"

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

    const ParameterDefinitionElementInfo* GetInfo() const
    {
        return (pElement != nullptr) ? pElement->GetInfo() : nullptr;
    }

    /// @return ID of the entry that holds the values, 0 for values inside the record
    UINT32 GetID() const
    {
        return isInline ? 0 : pointerEntry.ID;
    }
};

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
    rSource.pElement =
        (parameters.Member != nullptr) ? parameters.Member : AdjustPositionAndGetElement(parameters, rSource.adjusted);
    rSource.pEntry = this;
    rSource.limit  = parameters.LoadDataLimit;
    rSource.count  = rRequest.count;

    // A member without a definition is read only where the record's definitions have been dropped as matching.
    const ParameterDefinitionElement* pParent = parameters.Element;
    const bool                        undefined =
        (rSource.pElement == nullptr && pParent != nullptr &&
         !(pParent->Verified.load(std::memory_order_relaxed) && !pParent->Info.has_value())) ||
        (rRequest.wantStructure && rSource.GetInfo() != nullptr && rSource.GetInfo()->Structure == nullptr);
    bool found = false;
    if (!undefined)
    {
        found                                       = GetCountAndPointerEntry(rRequest, rSource);
        const ParameterDefinitionElementInfo* pInfo = rSource.GetInfo();
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
