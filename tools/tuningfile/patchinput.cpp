#include "tools/tuningfile/patchinput.h"

#include <algorithm>

#include <fmt/format.h>

#include "schema/recordwalk.h"
#include "tools/tuningfile/knownnames.h"
#include "tools/tuningfile/scalarinput.h"

namespace tuningfile
{

namespace
{

class PatchInput
{
public:
    PatchInput(std::string_view text, const std::string& rFileName, Tuning& rTuning)
        : m_input(text, rFileName), m_rTuning(rTuning)
    {
    }

    VOID Apply() const;

private:
    VOID ApplyTable(const YAML::Node& rNode) const;
    VOID ApplyModes(const YAML::Node& rNode, const ModeTable& rTable) const;
    VOID ApplyMode(const YamlEntry& rEntry, const ModeTable& rTable, std::optional<UINT32> parent, UINT32 depth) const;
    VOID ApplyModule(const YamlEntry& rEntry, const ModeTable& rTable, UINT32 mode) const;
    VOID ApplyRecord(const YAML::Node& rNode, const tuning::RecordDescription& rRecord, BYTE* pRecord) const;
    VOID ApplyMember(const YamlEntry& rEntry, const tuning::RecordMember& rMember, BYTE* pRecord) const;
    VOID ApplyValue(const YAML::Node& rNode, const tuning::RecordMember& rMember, BYTE* pValue) const;
    const ModeTable& TableOfName(const YAML::Node& rNode) const;
    UINT32           FindMode(const YamlEntry& rEntry, const ModeTable& rTable, std::optional<UINT32> parent) const;

    YamlInput m_input;
    Tuning&   m_rTuning;
};

/// The module of a mode, in whichever of the mode's entries it stands.
const Module* FindModuleIn(const ModeTable& rTable, UINT32 mode, const tuning::ModuleDescription& rDescription)
{
    for (UINT32 entry = mode; entry < rTable.modes.size() && (entry == mode || rTable.IsGroupEntry(entry)); ++entry)
    {
        if (const Module* pModule = FindModuleOf(rTable.modes[entry], rDescription))
        {
            return pModule;
        }
    }
    return nullptr;
}

VOID PatchInput::Apply() const
{
    for (const YamlEntry& rEntry : m_input.Map(m_input.Root(), "a map with 'modes' or 'tables'"))
    {
        if (rEntry.name == "modes")
        {
            if (m_rTuning.tables.size() != 1)
            {
                m_input.Fail(rEntry.key, fmt::format("'modes' for a tuning of {} mode tables, expected 'tables'",
                                                     m_rTuning.tables.size()));
            }
            ApplyModes(rEntry.value, m_rTuning.tables.front());
        }
        else if (rEntry.name != "tables")
        {
            m_input.FailUnknown(rEntry, "entry", {"modes", "tables"});
        }
        else if (!rEntry.value.IsSequence())
        {
            m_input.Fail(rEntry.value, fmt::format("{} found for tables, expected a list", Describe(rEntry.value)));
        }
        else
        {
            std::for_each(rEntry.value.begin(), rEntry.value.end(),
                          [this](const YAML::Node& rTable) { ApplyTable(rTable); });
        }
    }
}

VOID PatchInput::ApplyTable(const YAML::Node& rNode) const
{
    const YamlMap    table  = m_input.Map(rNode, "a map with 'name' and 'modes'");
    const YamlEntry* pName  = table.Find("name");
    const YamlEntry* pModes = table.Find("modes");
    if (table.Count() != 2 || pName == nullptr || pModes == nullptr)
    {
        m_input.Fail(rNode, "expected 'name' and 'modes' of a mode table, and nothing else");
    }
    ApplyModes(pModes->value, TableOfName(pName->value));
}

const ModeTable& PatchInput::TableOfName(const YAML::Node& rNode) const
{
    const std::string& rName  = m_input.Scalar(rNode, "the name of a mode table");
    const auto&        rAll   = m_rTuning.tables;
    const auto         isOfIt = [&rName](const ModeTable& rTable) { return rTable.name == rName; };
    const auto         found  = std::find_if(rAll.begin(), rAll.end(), isOfIt);
    if (found == rAll.end())
    {
        m_input.Fail(rNode, fmt::format("the tuning has no mode table '{}'", rName));
    }
    return *found;
}

VOID PatchInput::ApplyModes(const YAML::Node& rNode, const ModeTable& rTable) const
{
    for (const YamlEntry& rEntry : m_input.Map(rNode, "a map with the mode 'Default'"))
    {
        ApplyMode(rEntry, rTable, std::nullopt, 0);
    }
}

/// @param depth a link can lead upwards, and so round in a circle
VOID PatchInput::ApplyMode(const YamlEntry& rEntry, const ModeTable& rTable, std::optional<UINT32> parent,
                           UINT32 depth) const
{
    if (depth >= MaxModeDepth)
    {
        m_input.Fail(rEntry.key, fmt::format("modes nested too deeply, expected at most {} levels", MaxModeDepth));
    }
    const UINT32 mode = FindMode(rEntry, rTable, parent);
    for (const YamlEntry& rItem : m_input.Map(rEntry.value, "a map with 'modules' and 'children'"))
    {
        if (rItem.name == "modules")
        {
            for (const YamlEntry& rModule : m_input.Map(rItem.value, "a map of modules"))
            {
                ApplyModule(rModule, rTable, mode);
            }
        }
        else if (rItem.name == "children")
        {
            for (const YamlEntry& rChild : m_input.Map(rItem.value, "a map of modes"))
            {
                ApplyMode(rChild, rTable, mode, depth + 1);
            }
        }
        else
        {
            m_input.FailUnknown(rItem, "entry of a mode", {"modules", "children"});
        }
    }
}

/// @return the mode, or the one that its link leads to
UINT32 PatchInput::FindMode(const YamlEntry& rEntry, const ModeTable& rTable, std::optional<UINT32> parent) const
{
    const ModeName name = RequireModeName(m_input, rEntry.key, rEntry.name);
    const auto     isIt = [&](const Mode& rMode) {
        return rMode.parent == parent && ModeName{rMode.mode, rMode.subMode} == name;
    };
    const auto found = std::find_if(rTable.modes.begin(), rTable.modes.end(), isIt);
    if (found == rTable.modes.end())
    {
        m_input.Fail(rEntry.key,
                     fmt::format("the tuning has no mode '{}' {}", rEntry.name,
                                 parent.has_value() ? "below '" + PathOf(rTable, *parent) + '\'' : "at its root"));
    }
    auto mode = static_cast<UINT32>(found - rTable.modes.begin());
    for (size_t steps = 0; rTable.modes[mode].link.has_value() && steps < rTable.modes.size(); ++steps)
    {
        mode = *rTable.modes[mode].link;
    }
    return mode;
}

/// A mode without the module has that of a mode above it, which is the one that changes.
VOID PatchInput::ApplyModule(const YamlEntry& rEntry, const ModeTable& rTable, UINT32 mode) const
{
    const tuning::ModuleDescription& rDescription = RequireModule(m_input, rEntry);
    for (std::optional<UINT32> at = mode; at.has_value(); at = rTable.modes[*at].parent)
    {
        if (const Module* pModule = FindModuleIn(rTable, *at, rDescription))
        {
            // The records are the store's, and the store is the tuning's own.
            ApplyRecord(rEntry.value, *rDescription.pRecord, static_cast<BYTE*>(const_cast<VOID*>(pModule->pRecord)));
            return;
        }
    }
    m_input.Fail(rEntry.key, fmt::format("the tuning has no module '{}' for '{}'", rEntry.name, PathOf(rTable, mode)));
}

VOID PatchInput::ApplyRecord(const YAML::Node& rNode, const tuning::RecordDescription& rRecord, BYTE* pRecord) const
{
    for (const YamlEntry& rEntry : RequireMap(m_input, rNode, rRecord))
    {
        ApplyMember(rEntry, RequireMember(m_input, rEntry, rRecord), pRecord);
    }
}

VOID PatchInput::ApplyMember(const YamlEntry& rEntry, const tuning::RecordMember& rMember, BYTE* pRecord) const
{
    const auto values = tuning::ValuesOf(rMember, pRecord);
    if (values.count == 0)
    {
        m_input.Fail(rEntry.key, fmt::format("'{}' holds nothing in the tuning, expected what it has", rEntry.name));
    }
    if (!rMember.IsArray())
    {
        ApplyValue(rEntry.value, rMember, values.pFirst);
        return;
    }
    for (const YamlEntry& rItem : m_input.Map(rEntry.value, fmt::format("a map of positions in {}", rMember.pName)))
    {
        const UINT64 index = ReadInteger<UINT64>(m_input, rItem.key, fmt::format("a position in {}", rMember.pName), 0,
                                                 values.count - 1);
        ApplyValue(rItem.value, rMember, values.At(rMember, static_cast<UINT32>(index)));
    }
}

VOID PatchInput::ApplyValue(const YAML::Node& rNode, const tuning::RecordMember& rMember, BYTE* pValue) const
{
    switch (rMember.type)
    {
    case tuning::ValueType::Record:
        ApplyRecord(rNode, *rMember.pRecord, pValue);
        break;
    case tuning::ValueType::Text:
        m_input.Fail(rNode,
                     fmt::format("{} is a text, expected a number: a patch changes numbers only", rMember.pName));
    default:
        ReadScalar(m_input, rNode, rMember, pValue);
        break;
    }
}

}  // namespace

VOID ApplyPatch(std::string_view text, const std::string& rFileName, Tuning& rTuning)
{
    PatchInput(text, rFileName, rTuning).Apply();
}

}  // namespace tuningfile
