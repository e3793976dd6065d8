#include "tools/tuningfile/textinput.h"

#include <cstring>
#include <map>

#include <fmt/format.h>

#include "parameters/binaryfileformat.h"
#include "tools/tuningfile/knownnames.h"
#include "tools/tuningfile/modepath.h"
#include "tools/tuningfile/names.h"
#include "tools/tuningfile/recordinput.h"
#include "tools/tuningfile/scalarinput.h"

namespace tuningfile
{

namespace
{

constexpr std::string_view PrivatePrefix = "x-";  ///< entries for the writer's own use, such as anchors
constexpr const CHAR*      DefaultTool   = "kirotune";

class TextInput
{
public:
    TextInput(std::string_view text, const std::string& rFileName)
        : m_fileName(rFileName), m_input(text, rFileName), m_pArena(std::make_shared<RecordArena>()),
          m_records(m_input, *m_pArena, m_places)
    {
    }

    Tuning Read();

private:
    /// A link as it stands in the text, followed once the whole table is known.
    struct PendingLink
    {
        UINT32     mode;
        YAML::Node path;
    };

    using Place = std::pair<std::optional<UINT32>, ModeName>;

    std::string ReadLimited(const YAML::Node& rNode, std::string_view what, size_t maximum) const;
    VOID        ReadOrigin(const YAML::Node& rNode, Tuning& rTuning) const;
    VOID        ReadTables(const YAML::Node& rNode, Tuning& rTuning);
    VOID        ReadModes(const YAML::Node& rNode, ModeTable& rTable);
    VOID        ReadMode(const YamlEntry& rEntry, ModeTable& rTable, std::optional<UINT32> parent, UINT32 depth);
    VOID        ReadChildren(const YAML::Node& rNode, ModeTable& rTable, UINT32 parent, UINT32 depth);
    VOID        ReadModules(const YAML::Node& rNode, ModeTable& rTable, UINT32 index) const;
    VOID        CheckOnce(const YamlEntry& rEntry, const ModeTable& rTable, UINT32 index,
                          const tuning::ModuleDescription& rDescription) const;
    static VOID StartRecord(const ModeTable& rTable, UINT32 index, const tuning::ModuleDescription& rDescription,
                            VOID* pRecord);
    std::string AdviceOnStep(std::optional<UINT32> parent, std::string_view item) const;
    VOID        ResolveLink(const PendingLink& rLink, ModeTable& rTable) const;
    VOID        CheckEnds(const PendingLink& rLink, const ModeTable& rTable) const;
    VOID        CheckPlace(const YamlEntry& rEntry, const ModeTable& rTable, const Mode& rMode) const;

    std::string                  m_fileName;
    YamlInput                    m_input;
    std::shared_ptr<RecordArena> m_pArena;
    TextPlaces                   m_places;  ///< of values
    RecordInput                  m_records;
    std::vector<PendingLink>     m_links;  ///< of the table being read
    std::map<Place, UINT32>      m_modes;  ///< modes of the table being read, by parent and name
};

Tuning TextInput::Read()
{
    Tuning tuning;
    tuning.source    = m_fileName;
    tuning.createdBy = DefaultTool;
    tuning.pMemory   = m_pArena;

    const YamlMap    root    = m_input.Map(m_input.Root(), "a map with 'modes' or 'tables'");
    const YamlEntry* pModes  = root.Find("modes");
    const YamlEntry* pTables = root.Find("tables");
    for (const YamlEntry& rEntry : root)
    {
        if (rEntry.name == "tuning")
        {
            ReadOrigin(rEntry.value, tuning);
        }
        else if (&rEntry != pModes && &rEntry != pTables && !rEntry.name.starts_with(PrivatePrefix))
        {
            m_input.FailUnknown(rEntry, "entry", {"tuning", "modes", "tables", "x-<any name>"});
        }
    }
    if ((pModes == nullptr) == (pTables == nullptr))
    {
        m_input.Fail(m_input.Root(), (pModes == nullptr) ? "neither 'modes' nor 'tables' given, expected one of them"
                                                         : "both 'modes' and 'tables' given, expected one of them");
    }
    if (pTables != nullptr)
    {
        ReadTables(pTables->value, tuning);
    }
    else
    {
        tuning.tables.emplace_back();
        ReadModes(pModes->value, tuning.tables.back());
    }
    tuning.places = std::move(m_places);
    return tuning;
}

std::string TextInput::ReadLimited(const YAML::Node& rNode, std::string_view what, size_t maximum) const
{
    const std::string& rText = m_input.Scalar(rNode, "text");
    if (rText.size() > maximum || rText.find('\0') != std::string::npos)
    {
        m_input.Fail(rNode, fmt::format("a text of {} bytes found for {}, expected at most {} bytes and no NUL",
                                        rText.size(), what, maximum));
    }
    return rText;
}

VOID TextInput::ReadOrigin(const YAML::Node& rNode, Tuning& rTuning) const
{
    for (const YamlEntry& rEntry : m_input.Map(rNode, "a map with 'createdBy' and 'binaryTag'"))
    {
        if (rEntry.name == "createdBy")
        {
            rTuning.createdBy = ReadLimited(rEntry.value, rEntry.name, BinaryFileFormat::CreatedBySize);
        }
        else if (rEntry.name == "binaryTag")
        {
            rTuning.binaryTag = ReadLimited(rEntry.value, rEntry.name, BinaryFileFormat::BinaryTagSize);
        }
        else
        {
            m_input.FailUnknown(rEntry, "entry of tuning", {"createdBy", "binaryTag"});
        }
    }
}

VOID TextInput::ReadTables(const YAML::Node& rNode, Tuning& rTuning)
{
    const size_t nameSize = BinaryFileFormat::GetModeTableNameSize(BinaryFileFormat::MultiModeTableVersion) - 1;
    if (!rNode.IsSequence())
    {
        m_input.Fail(rNode, fmt::format("{} found for tables, expected a list", Describe(rNode)));
    }
    if (rNode.size() > MaxModeTables)
    {
        m_input.Fail(rNode, fmt::format("{} mode tables, expected at most {}", rNode.size(), MaxModeTables));
    }
    for (const YAML::Node& rItem : rNode)
    {
        const YamlMap    table  = m_input.Map(rItem, "a map with 'name' and 'modes'");
        const YamlEntry* pModes = table.Find("modes");
        if (pModes == nullptr)
        {
            m_input.Fail(rItem, "a table without 'modes', expected 'name' and 'modes'");
        }
        rTuning.tables.emplace_back();
        for (const YamlEntry& rEntry : table)
        {
            if (rEntry.name == "name")
            {
                rTuning.tables.back().name = ReadLimited(rEntry.value, rEntry.name, nameSize);
            }
            else if (&rEntry != pModes)
            {
                m_input.FailUnknown(rEntry, "entry of a table", {"name", "modes"});
            }
        }
        ReadModes(pModes->value, rTuning.tables.back());
    }
}

VOID TextInput::ReadModes(const YAML::Node& rNode, ModeTable& rTable)
{
    const YamlMap roots = m_input.Map(rNode, "a map with the mode 'Default'");
    if (roots.Count() > 1)
    {
        m_input.Fail(rNode, fmt::format("{} modes at the root, expected 'Default' alone", roots.Count()));
    }
    m_links.clear();
    m_modes.clear();
    for (const YamlEntry& rEntry : roots)
    {
        ReadMode(rEntry, rTable, std::nullopt, 0);
    }
    for (const PendingLink& rLink : m_links)
    {
        ResolveLink(rLink, rTable);
    }
    for (const PendingLink& rLink : m_links)
    {
        CheckEnds(rLink, rTable);
    }
}

/// A mode that no lookup could find is a mistake of the writer.
VOID TextInput::CheckPlace(const YamlEntry& rEntry, const ModeTable& rTable, const Mode& rMode) const
{
    const ModeName name{rMode.mode, rMode.subMode};
    if (!rMode.parent.has_value())
    {
        if (name != ModeName{})
        {
            m_input.Fail(rEntry.key, fmt::format("mode '{}' at the root, expected 'Default'", rEntry.name));
        }
        return;
    }
    const Mode& rParent = rTable.modes[*rMode.parent];
    if (name == ModeName{} && ModeName{rParent.mode, rParent.subMode} != name)
    {
        m_input.Fail(rEntry.key, "mode 'Default' below another mode, expected it at the root only");
    }
    if (m_modes.contains({rMode.parent, name}))
    {
        m_input.Fail(rEntry.key, fmt::format("mode '{}' given twice, expected once", rEntry.name));
    }
}

VOID TextInput::ReadMode(const YamlEntry& rEntry, ModeTable& rTable, std::optional<UINT32> parent, UINT32 depth)
{
    if (depth >= MaxModeDepth)
    {
        m_input.Fail(rEntry.key, fmt::format("modes nested too deeply, expected at most {} levels", MaxModeDepth));
    }
    const UINT32   index = static_cast<UINT32>(rTable.modes.size());
    const ModeName name  = RequireModeName(m_input, rEntry.key, rEntry.name);
    Mode           mode{name.mode, name.subMode, 0, parent, std::nullopt, false, {}, PlaceOf(rEntry.key)};
    CheckPlace(rEntry, rTable, mode);
    m_modes.emplace(Place{parent, name}, index);
    rTable.modes.push_back(std::move(mode));

    const YamlMap    map       = m_input.Map(rEntry.value, "a map with 'modules' and 'children'");
    const YamlEntry* pLink     = map.Find("link");
    const YamlEntry* pChildren = map.Find("children");
    const YamlEntry* pModules  = map.Find("modules");
    for (const YamlEntry& rItem : map)
    {
        if (rItem.name == "preserve")
        {
            rTable.modes[index].preserve = ReadFlag(m_input, rItem.value, rItem.name);
        }
        else if (rItem.name == "group")
        {
            rTable.modes[index].group =
                static_cast<UINT32>(ReadInteger<UINT64>(m_input, rItem.value, rItem.name, 0, 0xFF));
        }
        else if (&rItem != pLink && &rItem != pChildren && &rItem != pModules)
        {
            m_input.FailUnknown(rItem, "entry of a mode", {"modules", "children", "link", "preserve", "group"});
        }
    }
    if (pLink != nullptr)
    {
        if (pChildren != nullptr || pModules != nullptr)
        {
            m_input.Fail(pLink->key, "a link beside modules or children, expected it alone: it stands for all of them");
        }
        m_links.push_back({index, pLink->value});
        return;
    }
    if (pModules != nullptr)
    {
        ReadModules(pModules->value, rTable, index);
    }
    if (pChildren != nullptr)
    {
        ReadChildren(pChildren->value, rTable, index, depth);
    }
}

VOID TextInput::ReadChildren(const YAML::Node& rNode, ModeTable& rTable, UINT32 parent, UINT32 depth)
{
    for (const YamlEntry& rEntry : m_input.Map(rNode, "a map of modes"))
    {
        ReadMode(rEntry, rTable, parent, depth + 1);
    }
}

VOID TextInput::ReadModules(const YAML::Node& rNode, ModeTable& rTable, UINT32 index) const
{
    for (const YamlEntry& rEntry : m_input.Map(rNode, "a map of modules"))
    {
        const tuning::ModuleDescription& rDescription = RequireModule(m_input, rEntry);
        const tuning::RecordDescription& rRecord      = *rDescription.pRecord;
        VOID*                            pRecord      = m_records.Allocate(rEntry.key, rRecord.size);
        CheckOnce(rEntry, rTable, index, rDescription);
        StartRecord(rTable, index, rDescription, pRecord);
        m_records.ReadRecord(rEntry.value, rRecord, pRecord);
        rTable.modes[index].modules.push_back({&rDescription, pRecord, PlaceOf(rEntry.key)});
    }
}

/// All entries of one mode hold their modules together.
VOID TextInput::CheckOnce(const YamlEntry& rEntry, const ModeTable& rTable, UINT32 index,
                          const tuning::ModuleDescription& rDescription) const
{
    while (rTable.IsGroupEntry(index))
    {
        index = *rTable.modes[index].parent;
        if (FindModuleOf(rTable.modes[index], rDescription) != nullptr)
        {
            m_input.Fail(rEntry.key,
                         fmt::format("module '{}' given in two groups of a mode, expected once", rEntry.name));
        }
    }
}

/// A module starts as the copy of the same module of the nearest mode above; arrays and texts can be shared with it,
/// since they are only ever replaced. The first one starts empty, with the version of its schema.
VOID TextInput::StartRecord(const ModeTable& rTable, UINT32 index, const tuning::ModuleDescription& rDescription,
                            VOID* pRecord)
{
    if (const Module* pAbove = FindModuleAbove(rTable, index, rDescription))
    {
        std::memcpy(pRecord, pAbove->pRecord, rDescription.pRecord->size);
        return;
    }
    InitializeModuleRecord(rDescription, pRecord);
}

/// @param parent mode that the path has led to; none at its begin
std::string TextInput::AdviceOnStep(std::optional<UINT32> parent, std::string_view item) const
{
    std::vector<std::string> names;
    for (const auto& [rPlace, index] : m_modes)
    {
        if (rPlace.first == parent)
        {
            names.push_back(FormatModeName(rPlace.second));
        }
    }
    return names.empty() ? "expected the path to end before it" : Advice(item, {names.begin(), names.end()});
}

VOID TextInput::ResolveLink(const PendingLink& rLink, ModeTable& rTable) const
{
    const std::string&    rPath = m_input.Scalar(rLink.path, "the path of a mode");
    std::string_view      rest  = rPath;
    std::optional<UINT32> reached;
    for (bool more = true; more;)
    {
        const size_t           bar   = rest.find('|');
        const std::string_view item  = rest.substr(0, bar);
        const ModeName         name  = RequireModeName(m_input, rLink.path, item);
        const auto             found = m_modes.find({reached, name});
        if (found == m_modes.end())
        {
            m_input.Fail(rLink.path,
                         fmt::format("no mode '{}' on the path '{}', {}", item, rPath, AdviceOnStep(reached, item)));
        }
        reached = found->second;
        more    = bar != std::string_view::npos;
        rest    = more ? rest.substr(bar + 1) : rest;
    }
    rTable.modes[rLink.mode].link = reached;
}

VOID TextInput::CheckEnds(const PendingLink& rLink, const ModeTable& rTable) const
{
    size_t steps = 0;
    for (std::optional<UINT32> mode = rLink.mode; mode.has_value(); mode = rTable.modes[*mode].link)
    {
        if (steps++ > m_links.size())
        {
            m_input.Fail(rLink.path, "a link that leads back to itself, expected a chain that ends at a mode");
        }
    }
}

}  // namespace

Tuning ParseText(std::string_view text, const std::string& rFileName)
{
    return TextInput(text, rFileName).Read();
}

}  // namespace tuningfile
