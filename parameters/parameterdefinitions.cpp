#include "parameters/parameterdefinitions.h"

#include <algorithm>
#include <bit>
#include <unordered_set>
#include <utility>

#include "parameters/definitionlayout.h"
#include "parameters/definitionreader.h"

namespace
{

using StructureSet = std::unordered_set<const ParameterDefinitionStructure*>;

/// A structure, and one that contains it.
struct Use
{
    const ParameterDefinitionStructure* pInner;
    const ParameterDefinitionStructure* pUser;
};

/// Structures of which a member has not matched, in themselves or in a structure that they contain.
StructureSet FindUnmatched(const ParameterDefinitions::StructureMap& rStructures)
{
    std::vector<Use>                                 uses;
    StructureSet                                     unmatched;
    std::vector<const ParameterDefinitionStructure*> pending;
    const auto                                       mark = [&](const ParameterDefinitionStructure* pStructure)
    {
        if (unmatched.insert(pStructure).second)
        {
            pending.push_back(pStructure);
        }
    };

    for (const auto& [id, rStructure] : rStructures)
    {
        bool matched = !rStructure.MissedMember.load();
        for (const ParameterDefinitionElement& rChild : rStructure.Members)
        {
            matched = matched && (rChild.IsRepeated || rChild.Verified.load());
            if (!rChild.IsRepeated && rChild.Info.has_value() && rChild.Info->Structure != nullptr)
            {
                uses.push_back({rChild.Info->Structure, &rStructure});
            }
        }
        if (!matched)
        {
            mark(&rStructure);
        }
    }
    std::ranges::sort(uses, std::ranges::less(), &Use::pInner);
    while (!pending.empty())
    {
        const ParameterDefinitionStructure* pStructure = pending.back();
        pending.pop_back();
        for (auto use = std::ranges::lower_bound(uses, pStructure, std::ranges::less(), &Use::pInner);
             use != uses.end() && use->pInner == pStructure; ++use)
        {
            mark(use->pUser);
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
    if (!Info.has_value())
    {
        return 0;
    }
    if (Info->IsStructure())
    {
        return (Info->Structure != nullptr) ? Info->Structure->Size : 0;
    }
    return ParameterDefinitionElementInfo::WidthOf(Info->IsString() ? Info->Type : Info->StoredType());
}

VOID ParameterDefinitionMembers::Reserve(UINT32 count)
{
    m_elements.reserve(count);
    if (count > LinearMax)
    {
        SetSlotCount(std::bit_ceil(2 * static_cast<size_t>(count)));
    }
}

ParameterDefinitionElement& ParameterDefinitionMembers::Append(UINT64                                nameHash,
                                                               const ParameterDefinitionElementInfo& rInfo)
{
    if (Count() >= LinearMax && m_slots.size() < 2 * (m_elements.size() + 1))
    {
        SetSlotCount(std::bit_ceil(4 * m_elements.size()));
    }
    const bool isRepeated = Find(nameHash) != nullptr;
    if (!m_slots.empty() && !isRepeated)
    {
        SlotOf(nameHash) = Count();
    }
    return m_elements.emplace_back(nameHash, rInfo, isRepeated);
}

ParameterDefinitionElement* ParameterDefinitionMembers::Find(UINT64 nameHash)
{
    if (m_slots.empty())
    {
        const auto found = std::find_if(m_elements.begin(), m_elements.end(),
                                        [nameHash](const auto& rElement) { return rElement.NameHash == nameHash; });
        return (found != m_elements.end()) ? &*found : nullptr;
    }
    const UINT32 position = SlotOf(nameHash);
    return (position != FreeSlot) ? &m_elements[position] : nullptr;
}

/// @return the slot of the first member of that name, or the free one where it belongs
UINT32& ParameterDefinitionMembers::SlotOf(UINT64 nameHash)
{
    const size_t mask = m_slots.size() - 1;
    size_t       slot = nameHash & mask;
    while (m_slots[slot] != FreeSlot && m_elements[m_slots[slot]].NameHash != nameHash)
    {
        slot = (slot + 1) & mask;
    }
    return m_slots[slot];
}

VOID ParameterDefinitionMembers::SetSlotCount(size_t count)
{
    m_slots.assign(count, FreeSlot);
    for (UINT32 position = 0; position < Count(); ++position)
    {
        if (!m_elements[position].IsRepeated)
        {
            SlotOf(m_elements[position].NameHash) = position;
        }
    }
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
    for (auto& [id, rStructure] : m_structures)
    {
        if (rStructure.MissedMember.load())
        {
            keep.insert(&rStructure);
        }
        for (ParameterDefinitionElement& rChild : rStructure.Members)
        {
            if (rChild.IsRepeated)
            {
                continue;
            }
            const ParameterDefinitionStructure* pInner = rChild.Info.has_value() ? rChild.Info->Structure : nullptr;
            if (rChild.Verified.load() && (pInner == nullptr || unmatched.count(pInner) == 0))
            {
                rChild.Info.reset();
                continue;
            }
            keep.insert(&rStructure);
            if (pInner != nullptr)
            {
                keep.insert(pInner);
            }
        }
    }
    std::erase_if(m_structures, [&](const auto& rEntry) { return keep.count(&rEntry.second) == 0; });
    std::erase_if(m_modules, [&](const auto& rEntry) { return m_structures.count(rEntry.second.StructureID) == 0; });
}

ParameterDefinitionStructure* ParameterDefinitions::FindStructure(UINT32 structureId) const
{
    const auto entry = m_structures.find(structureId);
    return (entry != m_structures.end()) ? &entry->second : nullptr;
}

ParameterDefinitionStructure* ParameterDefinitions::FindModuleStructure(UINT64 nameHash) const
{
    const auto entry = m_modules.find(nameHash);
    return (entry != m_modules.end()) ? FindStructure(entry->second.StructureID) : nullptr;
}
