#include "tools/tuningfile/binaryinput.h"

#include <algorithm>
#include <set>
#include <unordered_map>

#include <fmt/format.h>

#include "parameters/tablemodule.h"
#include "tools/tuningfile/inputerror.h"
#include "tools/tuningfile/modepath.h"

namespace tuningfile
{

namespace
{

const tuning::ModuleDescription* FindDescription(UINT64 nameHash)
{
    const auto* pFound =
        std::find_if(std::begin(tuning::TuningModules), std::end(tuning::TuningModules),
                     [nameHash](const tuning::ModuleDescription& rModule) { return rModule.nameHash == nameHash; });
    return (pFound != std::end(tuning::TuningModules)) ? pFound : nullptr;
}

/// Turns one tree of the store into a table.
class TreeReader
{
public:
    TreeReader(ModeTable& rTable, std::vector<std::string>& rNotes) : m_rTable(rTable), m_rNotes(rNotes)
    {
    }

    VOID Read(ModeEntry* pRoot)
    {
        for (const ModeEntryInfo& rSlot : pRoot->Table->Modes)
        {
            std::vector<UINT32>& rGroups = m_groups[rSlot.Entry];
            if (std::find(rGroups.begin(), rGroups.end(), rSlot.Group) == rGroups.end())
            {
                rGroups.push_back(rSlot.Group);
            }
        }
        AddMode(pRoot, std::nullopt, 0);
        for (ModeEntry* pMode : m_visited)
        {
            ReadLink(*pMode, m_indices.at(pMode));
        }
    }

private:
    VOID Note(const ModeEntry& rMode, const std::string& rWhat)
    {
        m_rNotes.push_back(fmt::format("mode {}: {}", FormatModeName({rMode.Mode.Mode, rMode.Mode.SubMode}), rWhat));
    }

    VOID AddMode(ModeEntry* pMode, std::optional<UINT32> parent, UINT32 depth)
    {
        const UINT32 index = static_cast<UINT32>(m_rTable.modes.size());
        m_indices.emplace(pMode, index);
        m_visited.push_back(pMode);
        // The store preserves the upper levels by itself.
        const bool preserve = pMode->Preserve && pMode->Mode.Mode > static_cast<UINT16>(ModeType::Sensor);
        // A mode whose ID another row has taken stands in the tree still, but in no slot.
        std::vector<UINT32>& rGroups = m_groups[pMode];
        if (rGroups.empty())
        {
            rGroups.push_back(static_cast<BYTE>(pMode->Mode.Group));
        }
        for (const UINT32 group : rGroups)
        {
            m_rTable.modes.push_back(
                {pMode->Mode.Mode, pMode->Mode.SubMode, group, parent, std::nullopt, preserve, {}});
            parent = static_cast<UINT32>(m_rTable.modes.size() - 1);
        }
        if (pMode->Link != nullptr)
        {
            return;
        }
        AddModules(*pMode, index);
        std::set<std::pair<UINT16, UINT16>> names;
        for (ModeEntry* pChild = pMode->FirstChild; pChild != nullptr; pChild = pChild->Next)
        {
            if (!names.insert({pChild->Mode.Mode, pChild->Mode.SubMode}).second)
            {
                Note(*pChild, "left out, since a mode of the same name stands before it");
            }
            else if (depth + 1 >= MaxModeDepth)
            {
                Note(*pChild, fmt::format("left out, since it stands below {} others", MaxModeDepth));
            }
            else
            {
                AddMode(pChild, index, depth + 1);
            }
        }
    }

    /// Files each module under the entry of its group; one that the mode shares with another under the first.
    VOID AddModules(const ModeEntry& rMode, UINT32 index)
    {
        const std::vector<UINT32>& rGroups = m_groups[&rMode];
        for (const auto& rpReference : rMode.ModuleMap)
        {
            const tuning::ModuleDescription* pDescription = FindDescription(rpReference->NameHash);
            auto*                            pModule      = static_cast<TableModule*>(rpReference->Module);
            if (pDescription == nullptr || pDescription->pRecord == nullptr)
            {
                if (m_unknown.insert(rpReference->NameHash).second)
                {
                    m_rNotes.push_back(fmt::format("module {} left out, since its record is not known",
                                                   rpReference->Module->GetModuleName()));
                }
                continue;
            }
            const auto   found = std::find(rGroups.begin(), rGroups.end(), pModule->Mode.Group);
            const UINT32 entry = (found != rGroups.end()) ? static_cast<UINT32>(found - rGroups.begin()) : 0;
            m_rTable.modes[index + entry].modules.push_back({pDescription, pModule->Record()});
        }
    }

    VOID ReadLink(ModeEntry& rMode, UINT32 index)
    {
        if (rMode.Link == nullptr)
        {
            return;
        }
        const auto target = m_indices.find(*rMode.Link);
        if (target == m_indices.end() || rMode.Target() == &rMode)
        {
            Note(rMode, "link left out, since it leads to no mode");
            return;
        }
        if (rMode.ModuleMap.Count() > 0 || rMode.FirstChild != nullptr)
        {
            Note(rMode, "modules and children left out, since the link stands for them");
        }
        m_rTable.modes[index].link = target->second;
    }

    using GroupMap = std::unordered_map<const ModeEntry*, std::vector<UINT32>>;

    ModeTable&                                   m_rTable;
    std::vector<std::string>&                    m_rNotes;
    GroupMap                                     m_groups;   ///< of each mode's entries, the mode's own first
    std::unordered_map<const ModeEntry*, UINT32> m_indices;  ///< in the table
    std::vector<ModeEntry*>                      m_visited;  ///< in the order of the table
    std::set<UINT64>                             m_unknown;  ///< name hashes of modules without a known record
};

/// The text of the header that the store does not keep.
std::string ReadCreatedBy(const std::vector<BYTE>& rBytes, const BinaryFileHeader& rHeader)
{
    constexpr size_t CreatedByOffset = BinaryFileFormat::HeaderTagSize + sizeof(UINT32) + sizeof(VersionUnion);
    if (rHeader.Version < BinaryFileFormat::ModeTreeMinVersion)
    {
        return {};
    }
    const std::string field(reinterpret_cast<const CHAR*>(rBytes.data()) + CreatedByOffset,
                            BinaryFileFormat::CreatedBySize);
    return field.substr(0, field.find('\0'));
}

}  // namespace

std::vector<ModeTable> ReadModeTables(ParameterSetManager& rStore, std::vector<std::string>& rNotes)
{
    PList<const CHAR*> names;
    rStore.GetModeTableNames(names);
    std::vector<ModeTable> tables(names.Count());
    const TuningMode       root{};
    for (UINT32 index = 0; index < names.Count(); ++index)
    {
        tables[index].name = names[index];
        if (ModeEntry* pRoot = rStore.GetModeEntry(static_cast<BYTE>(index), &root, 1))
        {
            TreeReader(tables[index], rNotes).Read(pRoot);
        }
    }
    return tables;
}

BinaryTuning ReadBinary(const std::vector<BYTE>& rBytes, const std::string& rFileName)
{
    ParameterSetManager::Options options;
    options.fileMode            = false;
    options.allowUnknownModules = true;
    const auto pStore           = std::make_shared<ParameterSetManager>(nullptr, tuning::TuningModules, options);
    if (!pStore->LoadBinaryParameters(rBytes.data(), rBytes.size()))
    {
        throw InputError(fmt::format("{}: {}", rFileName, pStore->GetErrorText()));
    }

    BinaryTuning result;
    UINT64       position = 0;
    std::string  errorText;
    BinaryFileFormat::ReadHeader(rBytes.data(), rBytes.size(), position, result.header, errorText, pStore.get());
    position = result.header.SectionTableOffset;
    BinaryFileFormat::ReadSectionInfo(rBytes.data(), rBytes.size(), position, result.header.Alignment,
                                      result.header.SectionCount, result.sections, errorText, pStore.get());
    result.tuning.source    = rFileName;
    result.tuning.createdBy = ReadCreatedBy(rBytes, result.header);
    result.tuning.binaryTag = result.header.BinaryTag;
    result.tuning.tables    = ReadModeTables(*pStore, result.notes);
    result.tuning.pMemory   = pStore;
    return result;
}

}  // namespace tuningfile
