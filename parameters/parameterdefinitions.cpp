#include "parameters/parameterdefinitions.h"

#include <algorithm>
#include <limits>
#include <unordered_set>

#include "parameters/parameterlogging.h"
#include "parameters/parameterutils.h"
#include "schema/namehash.h"

/// Walks the records of a definition section. Every step answers false once the section ends early.
class DefinitionReader
{
public:
    DefinitionReader(ParameterDefinitions& rDefinitions, const BYTE* pSection, UINT32 size, UINT32 alignment,
                     const IParameterLoggingAPI* pLog)
        : m_rDefinitions(rDefinitions), m_pSection(pSection), m_size(size), m_alignment(alignment), m_pLog(pLog)
    {
    }

    bool ReadAll()
    {
        while (m_position < m_size)
        {
            if (!ReadRecord())
            {
                return false;
            }
        }
        return true;
    }

private:
    bool ReadRecord()
    {
        BYTE kind = 0;
        if (!Read(kind))
        {
            return false;
        }
        switch (kind)
        {
        case ParameterDefinitionType_ScenarioMode:
            return SkipBytes(1) && SkipText() && SkipBytes(1);
        case ParameterDefinitionType_ScenarioSubMode:
            return SkipBytes(3) && SkipText() && SkipBytes(1);
        case ParameterDefinitionType_Pipeline:
            return SkipBytes(2) && SkipText() && SkipText();
        case ParameterDefinitionType_Module:
            return ReadModule();
        case ParameterDefinitionType_Structure:
            return ReadStructure();
        case ParameterDefinitionType_EnumDefinition:
            return SkipEnumeration();
        default:
            ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                    "Error: Unexpected type found in definition table (%u)\n", kind);
            return false;
        }
    }

    bool ReadModule()
    {
        auto             pModule = std::make_unique<ParameterDefinitionModule>();
        std::string_view name;
        if (!Read(pModule->StructureID) || !Read(pModule->NameHash) || !ReadText(name) || !SkipText())
        {
            return false;
        }
        pModule->Name    = TextOf(name);
        const auto entry = m_rDefinitions.m_modules.try_emplace(pModule->NameHash, nullptr);
        if (entry.second)
        {
            entry.first->second = std::move(pModule);
        }
        else
        {
            ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                    "Error: Duplicate structure Hash (%llu) found in definition table: %s / %s\n",
                                    pModule->NameHash, entry.first->second->Name.c_str(), pModule->Name.c_str());
        }
        return true;
    }

    bool ReadStructure()
    {
        auto             pStructure = std::make_unique<ParameterDefinitionStructure>();
        std::string_view name;
        UINT32           childCount = 0;
        if (!Read(pStructure->StructureID) || !ReadText(name) || !Read(pStructure->StructureHash) || !Read(childCount))
        {
            return false;
        }
        pStructure->TypeName = TextOf(name);
        bool complete        = true;
        for (UINT32 child = 0; child < childCount && complete; ++child)
        {
            complete = ReadElement(*pStructure);
        }
        const auto entry = m_rDefinitions.m_structures.try_emplace(pStructure->StructureID, nullptr);
        if (entry.second)
        {
            entry.first->second = std::move(pStructure);
        }
        else
        {
            ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                    "Error: Duplicate structure ID (%u) found in definition table: %s / %s\n",
                                    pStructure->StructureID, entry.first->second->TypeName.c_str(),
                                    pStructure->TypeName.c_str());
        }
        return complete;
    }

    bool ReadElement(ParameterDefinitionStructure& rStructure)
    {
        auto             pElement = std::make_unique<ParameterDefinitionElement>();
        auto             pInfo    = std::make_unique<ParameterDefinitionElementInfo>();
        BYTE             type     = 0;
        std::string_view name;
        UINT32           minimum = 0;
        if (!Read(type) || !Read(pInfo->ID) || !ReadText(name) || !Read(pInfo->Flags) || !Read(minimum) ||
            !Read(pInfo->MaxCount) || !SkipText())
        {
            return false;
        }
        pInfo->Type = static_cast<ParameterDefinitionType>(type);
        pInfo->Flags |= ParameterDefinitionElementInfo::FlagsFromCounts(minimum, pInfo->MaxCount);

        // The stored length counts the terminator, the hash does not.
        const UINT32 nameLength = static_cast<UINT32>(name.size());
        pElement->NameHash      = namehash::Checksum(name.data(), (nameLength > 0) ? nameLength - 1 : 0, true, 0);
        pElement->Info          = std::move(pInfo);

        rStructure.ChildOrder.push_back(pElement.get());
        const auto entry = rStructure.Children.try_emplace(pElement->NameHash, nullptr);
        if (entry.second)
        {
            entry.first->second = std::move(pElement);
        }
        else
        {
            ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                    "Duplicated hash found in Children (%llu) object %s\n", pElement->NameHash,
                                    TextOf(name).c_str());
            rStructure.Repeated.push_back(std::move(pElement));
        }
        return true;
    }

    /// Enumerations are not kept: members of enumerated type hold the stored integers.
    bool SkipEnumeration()
    {
        UINT32 valueCount = 0;
        if (!SkipBytes(4) || !SkipText() || !SkipBytes(8) || !Read(valueCount))
        {
            return false;
        }
        for (UINT32 value = 0; value < valueCount; ++value)
        {
            if (!SkipBytes(5) || !SkipText() || !SkipText())
            {
                return false;
            }
        }
        return true;
    }

    template <typename T> bool Read(T& rValue)
    {
        return ParameterUtils::ReadField(rValue, m_pSection, m_size, m_position, m_alignment, m_pLog);
    }

    /// Raw bytes have no slot.
    bool SkipBytes(UINT32 count)
    {
        if (m_position > m_size || count > m_size - m_position)
        {
            ParameterLogging::Write(
                m_pLog, ParameterLogging::Error, "Failed to read %lld bytes from binary file offset %d, length %d\n",
                static_cast<INT64>(count), static_cast<INT32>(m_position), static_cast<INT32>(m_size));
            return false;
        }
        m_position += count;
        return true;
    }

    /// A skipped text is not padded.
    bool SkipText()
    {
        UINT32 length = 0;
        return Read(length) && SkipBytes(length);
    }

    /// @param rText all stored bytes, the terminator included
    bool ReadText(std::string_view& rText)
    {
        UINT32 length = 0;
        if (!Read(length))
        {
            return false;
        }
        const UINT64 start = m_position;
        if (!SkipBytes(length))
        {
            return false;
        }
        rText      = {reinterpret_cast<const CHAR*>(m_pSection + start), length};
        m_position = start + ParameterUtils::Padded(length, m_alignment);
        return true;
    }

    static std::string TextOf(std::string_view stored)
    {
        return std::string(stored.substr(0, stored.find('\0')));
    }

    ParameterDefinitions&             m_rDefinitions;
    const BYTE* const                 m_pSection;
    const UINT64                      m_size;
    const UINT32                      m_alignment;
    const IParameterLoggingAPI* const m_pLog;
    UINT64                            m_position = 0;
};

namespace
{

constexpr UINT32 RecordCountSize = 4;  ///< byte count in front of each record
constexpr UINT32 PointerPairSize = 8;  ///< count, or a text's length, and the ID of an entry
constexpr UINT32 FloatSize       = 4;

/// Bytes that a member takes inside its record.
/// @param countedArrays fixed arrays have a count in front
UINT64 StoredBytes(const ParameterDefinitionElement& rElement, bool countedArrays)
{
    const ParameterDefinitionElementInfo& rInfo      = *rElement.Info;
    const bool                            fixedArray = rInfo.IsFixed() && !rInfo.IsPointer();
    const UINT64                          count      = rInfo.MaxCount;
    UINT64                                bytes      = (fixedArray && countedArrays) ? ArrayCountSize : 0;
    if (rInfo.IsPointer() || rInfo.IsString())
    {
        bytes += fixedArray ? count * PointerPairSize : PointerPairSize;
    }
    else if (rInfo.IsFloat())
    {
        bytes += count * FloatSize;
    }
    else
    {
        bytes += count * rElement.GetSize();
    }
    return bytes;
}

/// Computes the sizes of a structure and of those that it contains. Files nest structures as deep as they like, so the
/// way down is kept on a list of its own. A structure that contains itself sees the size that it has so far.
class LayoutBuilder
{
public:
    using StructureMap = std::unordered_map<UINT32, std::unique_ptr<ParameterDefinitionStructure>>;

    LayoutBuilder(const StructureMap& rStructures, bool countedArrays, const IParameterLoggingAPI* pLog)
        : m_rStructures(rStructures), m_countedArrays(countedArrays), m_pLog(pLog)
    {
    }

    VOID Populate(ParameterDefinitionStructure& rStructure)
    {
        Enter(rStructure);
        while (!m_path.empty())
        {
            Step& rStep = m_path.back();
            if (rStep.nextChild == rStep.pStructure->ChildOrder.size())
            {
                ReleaseOrder(*rStep.pStructure);
                m_path.pop_back();
                continue;
            }
            ParameterDefinitionElement&   rChild = *rStep.pStructure->ChildOrder[rStep.nextChild];
            ParameterDefinitionStructure* pInner = LinkStructure(rChild);
            if (pInner != nullptr && pInner->Size == 0 && Enter(*pInner))
            {
                continue;
            }
            rChild.Info->ParentOffset = rStep.pStructure->Size;
            rStep.pStructure->Size    = Saturated(rStep.pStructure->Size + StoredBytes(rChild, m_countedArrays));
            ++rStep.nextChild;
        }
    }

private:
    struct Step
    {
        ParameterDefinitionStructure* pStructure;
        size_t                        nextChild;
    };

    /// @return false if there is nothing to compute
    bool Enter(ParameterDefinitionStructure& rStructure)
    {
        if (rStructure.Size != 0 || rStructure.ChildOrder.empty())
        {
            ReleaseOrder(rStructure);
            return false;
        }
        rStructure.Size = RecordCountSize;
        m_path.push_back({&rStructure, 0});
        return true;
    }

    ParameterDefinitionStructure* LinkStructure(ParameterDefinitionElement& rChild) const
    {
        ParameterDefinitionElementInfo& rInfo = *rChild.Info;
        if (!rInfo.IsStructure() || rInfo.Structure != nullptr)
        {
            return rInfo.Structure;
        }
        const auto entry = m_rStructures.find(rInfo.ID);
        if (entry == m_rStructures.end())
        {
            ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                    "PopulateOffsetSizeStructure structure not found: ID: %u, NameHash: %lld\n",
                                    rInfo.ID, static_cast<INT64>(rChild.NameHash));
            return nullptr;
        }
        rInfo.Structure = entry->second.get();
        return rInfo.Structure;
    }

    static VOID ReleaseOrder(ParameterDefinitionStructure& rStructure)
    {
        std::vector<ParameterDefinitionElement*>().swap(rStructure.ChildOrder);
        std::vector<std::unique_ptr<ParameterDefinitionElement>>().swap(rStructure.Repeated);
    }

    static UINT32 Saturated(UINT64 size)
    {
        return static_cast<UINT32>(std::min<UINT64>(size, std::numeric_limits<UINT32>::max()));
    }

    const StructureMap&               m_rStructures;
    const bool                        m_countedArrays;
    const IParameterLoggingAPI* const m_pLog;
    std::vector<Step>                 m_path;
};

using StructureSet = std::unordered_set<const ParameterDefinitionStructure*>;

/// Structures of which a member has not matched, in themselves or in a structure that they contain.
template <typename StructureMap> StructureSet FindUnmatched(const StructureMap& rStructures)
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
    const bool    complete = DefinitionReader(*this, pSection, size, alignment, pLog).ReadAll();
    LayoutBuilder layout(m_structures, countedArrays, pLog);
    for (const auto& [id, pStructure] : m_structures)
    {
        layout.Populate(*pStructure);
    }
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
