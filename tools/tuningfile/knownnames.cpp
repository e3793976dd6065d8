#include "tools/tuningfile/knownnames.h"

#include <algorithm>

#include <fmt/format.h>

#include "schema/recordwalk.h"

namespace tuningfile
{

namespace
{

std::vector<std::string_view> MemberNames(const tuning::RecordDescription& rRecord)
{
    std::vector<std::string_view> names;
    for (const tuning::RecordMember& rMember : rRecord.Members())
    {
        if (rMember.IsStored())
        {
            names.push_back(rMember.pName);
        }
    }
    return names;
}

}  // namespace

ModeName RequireModeName(const YamlInput& rInput, const YAML::Node& rNode, std::string_view text)
{
    ModeName    name;
    std::string fault;
    if (!ParseModeName(text, name, fault))
    {
        rInput.Fail(rNode, fault);
    }
    return name;
}

const tuning::ModuleDescription& RequireModule(const YamlInput& rInput, const YamlEntry& rEntry)
{
    if (const tuning::ModuleDescription* pDescription = FindModule(rEntry.name))
    {
        return *pDescription;
    }
    std::vector<std::string_view> names;
    for (const tuning::ModuleDescription& rModule : tuning::TuningModules)
    {
        if (rModule.pRecord != nullptr)
        {
            names.push_back(rModule.pName);
        }
    }
    rInput.FailUnknown(rEntry, "module", names);
}

YamlMap RequireMap(const YamlInput& rInput, const YAML::Node& rNode, const tuning::RecordDescription& rRecord)
{
    constexpr size_t most = 6;
    if (rNode.IsMap())
    {
        return rInput.Map(rNode, rRecord.pName);
    }
    std::vector<std::string_view> names = MemberNames(rRecord);
    const bool                    isCut = names.size() > most;
    names.resize(std::min(names.size(), most));
    return rInput.Map(rNode, fmt::format("a map of {}{}", fmt::join(names, ", "), isCut ? ", ..." : ""));
}

const tuning::RecordMember& RequireMember(const YamlInput& rInput, const YamlEntry& rEntry,
                                          const tuning::RecordDescription& rRecord)
{
    if (const tuning::RecordMember* pMember = tuning::FindMember(rRecord, rEntry.name))
    {
        return *pMember;
    }
    rInput.FailUnknown(rEntry, fmt::format("member of {}", rRecord.pName), MemberNames(rRecord));
}

}  // namespace tuningfile
