#include "parameters/parameterdefinitions.h"

#include <unordered_set>

#include "parameters/definitionlayout.h"
#include "parameters/definitionreader.h"

namespace
{

using StructureSet = std::unordered_set<const ParameterDefinitionStructure*>;

/// Structures of which a member has not matched, in themselves or in a structure that they contain.
StructureSet FindUnmatched(const ParameterDefinitions::StructureMap& rStructures)
{
    std::unordered_map<const ParameterDefinitionStructure*, std::vector<const ParameterDefinitionStructure*>> users;
    StructureSet                                                                                              unmatched;
    std::vector<const ParameterDefinitionStructure*>                                                          pending;
    const auto mark = [&](const ParameterDefinitionStructure* pStructure)
    {
        if (unmatched.insert(pStructure).second)
        {
            pending.push_back(pStructure);
        }
    };

    for (const auto& [id, pStructure] : rStructures)
    {
        bool matched = !pStructure->MissedMember.load();
        for (const auto& [hash, pChild] : pStructure->Children)
        {
            matched = matched && pChild->Verified.load();
            if (pChild->Info != nullptr && pChild->Info->Structure != nullptr)
            {
                users[pChild->Info->Structure].push_back(pStructure.get());
            }
        }
        if (!matched)
        {
            mark(pStructure.get());
        }
    }
    while (!pending.empty())
    {
        const ParameterDefinitionStructure* pStructure = pending.back();
        pending.pop_back();
        for (const ParameterDefinitionStructure* pUser : users[pStructure])
        {
            mark(pUser);
        }
    }
    return unmatched;
}

}  // namespace

UINT16 ParameterDefinitionElementInfo::FlagsFromCounts(UINT32 minimum, UINT32 maximum)
{
    if (minimum >= 2 && maximum == minimum)
    {
        return FixedFlag;
    }
    const bool optional = minimum == 0 && maximum != 0;
    const bool variable = minimum >= 1 && maximum >= 2;
    return (optional || variable) ? PointerFlag : 0;
}

UINT32 ParameterDefinitionElementInfo::WidthOf(ParameterDefinitionType type)
{
    switch (type)
    {
    case ParameterDefinitionType_Signed8Bits:
    case ParameterDefinitionType_Unsigned8Bits:
    case ParameterDefinitionType_Hex8Bits:
    case ParameterDefinitionType_String:
    case ParameterDefinitionType_AlphaNumeric:
    case ParameterDefinitionType_IDString:
    case ParameterDefinitionType_IDStringRef:
    case ParameterDefinitionType_Attribute:
        return 1;
    case ParameterDefinitionType_Signed16Bits:
    case ParameterDefinitionType_Unsigned16Bits:
    case ParameterDefinitionType_Hex16Bits:
        return 2;
    case ParameterDefinitionType_Signed32Bits:
    case ParameterDefinitionType_Unsigned32Bits:
    case ParameterDefinitionType_Hex32Bits:
    case ParameterDefinitionType_Float:
    case ParameterDefinitionType_Boolean:
    case ParameterDefinitionType_Enum:
        return 4;
    case ParameterDefinitionType_Signed64Bits:
    case ParameterDefinitionType_Unsigned64Bits:
    case ParameterDefinitionType_Hex64Bits:
    case ParameterDefinitionType_Double:
        return 8;
    default:
        return 0;
    }
}

UINT32 ParameterDefinitionElement::GetSize() const
{
    if (Info == nullptr)
    {
        return 0;
    }
    if (Info->IsStructure())
    {
        return (Info->Structure != nullptr) ? Info->Structure->Size : 0;
    }
    return ParameterDefinitionElementInfo::WidthOf(Info->IsString() ? Info->Type : Info->StoredType());
}

ParameterDefinitionElement* ParameterDefinitionStructure::FindChild(UINT64 nameHash) const
{
    const auto entry = Children.find(nameHash);
    return (entry != Children.end()) ? entry->second.get() : nullptr;
}

bool ParameterDefinitions::Read(const BYTE* pSection, UINT32 size, UINT32 alignment, bool countedArrays,
                                const IParameterLoggingAPI* pLog)
{
    const bool complete = ReadDefinitionSection(pSection, size, alignment, pLog, m_modules, m_structures);
    LayOutStructures(m_structures, countedArrays, pLog);
    return complete;
}

VOID ParameterDefinitions::Prune()
{
    const StructureSet unmatched = FindUnmatched(m_structures);
    StructureSet       keep;
    for (const auto& [id, pStructure] : m_structures)
    {
        if (pStructure->MissedMember.load())
        {
            keep.insert(pStructure.get());
        }
        for (const auto& [hash, pChild] : pStructure->Children)
        {
            const ParameterDefinitionStructure* pInner = (pChild->Info != nullptr) ? pChild->Info->Structure : nullptr;
            if (pChild->Verified.load() && (pInner == nullptr || unmatched.count(pInner) == 0))
            {
                pChild->Info.reset();
                continue;
            }
            keep.insert(pStructure.get());
            if (pInner != nullptr)
            {
                keep.insert(pInner);
            }
        }
    }
    std::erase_if(m_structures, [&](const auto& rEntry) { return keep.count(rEntry.second.get()) == 0; });
    std::erase_if(m_modules, [&](const auto& rEntry) { return m_structures.count(rEntry.second->StructureID) == 0; });
}

ParameterDefinitionStructure* ParameterDefinitions::FindStructure(UINT32 structureId) const
{
    const auto entry = m_structures.find(structureId);
    return (entry != m_structures.end()) ? entry->second.get() : nullptr;
}

ParameterDefinitionStructure* ParameterDefinitions::FindModuleStructure(UINT64 nameHash) const
{
    const auto entry = m_modules.find(nameHash);
    return (entry != m_modules.end()) ? FindStructure(entry->second->StructureID) : nullptr;
}
