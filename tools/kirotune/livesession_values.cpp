// The commands that read, set and watch the values of a record.

#include "tools/kirotune/livesession.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "parameters/parameterparserinfo.h"
#include "schema/modules.h"
#include "tools/kirotune/livemembers.h"
#include "tools/kirotune/liveoutput.h"
#include "tools/kirotune/livesharing.h"
#include "tools/kirotune/stopsignals.h"
#include "tools/liveclient/texts.h"
#include "tools/tuningfile/names.h"

namespace kirotune
{

namespace
{

using liveclient::Error;
using liveclient::Value;
using tuningfile::TextNode;

/// What an answer without content may mean. The service does not say more.
/// @param rMembers those that are missing; none if all were asked for
Error Nothing(const std::string& rPath, const std::string& rModule, const std::vector<std::string>& rMembers)
{
    const std::string             name = rModule.substr(0, rModule.find('.'));
    std::vector<std::string_view> names;
    for (const tuning::ModuleDescription& rKnown : tuning::TuningModules)
    {
        if (rKnown.pRecord != nullptr)
        {
            names.push_back(rKnown.pName);
        }
    }
    std::string text = "no such mode path, module or member";
    text += rMembers.empty() ? ", or no values right below it" : "";
    text += fmt::format(": '{}' {}", rPath, rModule);
    text += rMembers.empty() ? "" : fmt::format(" {}", fmt::join(rMembers, ","));
    if (std::find(names.begin(), names.end(), name) == names.end())
    {
        text += "; for the module, " + tuningfile::Advice(name, names);
    }
    return Error(text);
}

/// Takes the value of that name out of a list. @return whether there was one
bool Take(const std::string& rName, std::vector<Value>& rValues, Value& rValue)
{
    const auto found =
        std::find_if(rValues.begin(), rValues.end(), [&](const Value& rOther) { return rOther.name == rName; });
    if (found == rValues.end())
    {
        return false;
    }
    rValue = std::move(*found);
    rValues.erase(found);
    return true;
}

/// Whether a value reads back as it was set, but for what single precision and ten decimals leave of it.
bool IsNear(const std::string& rWanted, const std::string& rRead)
{
    const DOUBLE wanted = std::strtod(rWanted.c_str(), nullptr);
    const DOUBLE read   = std::strtod(rRead.c_str(), nullptr);
    return std::fabs(wanted - read) <= 1e-9 + 1e-6 * std::fabs(wanted);
}

/// @param rAssignments as "name=value". @return the values as numbers, as the service wants them
std::vector<Value> ParseAssignments(const std::string& rModule, const std::vector<std::string>& rAssignments)
{
    std::vector<Value> wanted;
    for (const std::string& rAssignment : rAssignments)
    {
        const size_t equal = rAssignment.find('=');
        if (equal == std::string::npos)
        {
            throw Error(fmt::format("'{}': expected NAME=VALUE", rAssignment));
        }
        Value value{rAssignment.substr(0, equal), rAssignment.substr(equal + 1)};
        value.text = NumberFor(rModule, value);
        wanted.push_back(std::move(value));
    }
    return wanted;
}

std::vector<std::string> NamesOf(const std::vector<Value>& rValues)
{
    std::vector<std::string> names;
    for (const Value& rValue : rValues)
    {
        names.push_back(rValue.name);
    }
    return names;
}

/// What came of values that were to be set, one beside the other.
struct SetResult
{
    std::vector<Value> before;
    std::vector<Value> after;
    std::string        refused;  ///< names, each behind a blank
};

/// @param before   values of all that was to be set
/// @param readBack values of what was set
SetResult Compare(const std::vector<Value>& rWanted, std::vector<Value> before, std::vector<Value> readBack)
{
    SetResult result;
    for (const Value& rWantedOne : rWanted)
    {
        Value oldValue;
        Value newValue;
        (VOID) Take(rWantedOne.name, before, oldValue);
        if (!Take(rWantedOne.name, readBack, newValue))
        {
            result.refused += ' ' + rWantedOne.name;
            continue;
        }
        if (!IsNear(rWantedOne.text, newValue.text))
        {
            fmt::print(stderr, "{}: asked for {}, reads back {}\n", rWantedOne.name, rWantedOne.text,
                       Clean(newValue.text));
        }
        result.before.push_back(std::move(oldValue));
        result.after.push_back(std::move(newValue));
    }
    return result;
}

}  // namespace

/// Describes the members of a record, or one member. For the latter the service has no answer: it is found among the
/// members of its record.
/// @param rRecord the text by which the record is named
std::vector<liveclient::MemberInfo> LiveSession::Describe(const std::string& rPath, const std::string& rModule,
                                                          std::string& rRecord)
{
    rRecord                                   = rModule;
    std::vector<liveclient::MemberInfo> infos = m_client.Info(rPath, rModule);
    const size_t                        dot   = rModule.rfind('.');
    if (infos.empty() && dot != std::string::npos)
    {
        const std::string member = rModule.substr(dot + 1, rModule.find('[', dot) - dot - 1);
        rRecord                  = rModule.substr(0, dot);
        infos                    = m_client.Info(rPath, rRecord);
        std::erase_if(infos, [&](const liveclient::MemberInfo& rInfo) { return rInfo.name != member; });
    }
    if (infos.empty())
    {
        throw Nothing(rPath, rModule, {});
    }
    return infos;
}

VOID LiveSession::Info(const std::string& rPath, const std::string& rModule)
{
    std::string                               record;
    const std::vector<liveclient::MemberInfo> infos = Describe(rPath, rModule, record);
    std::vector<Row>                          rows;
    TextNode                                  list = TextNode::List();
    for (const liveclient::MemberInfo& rInfo : infos)
    {
        const std::string count = rInfo.count ? std::to_string(*rInfo.count) : "";
        const Value       value{rInfo.name, rInfo.value};
        rows.push_back({rInfo.name, rInfo.type, count, WithEnumerator(record, value)});
        TextNode& rItem = list.Add(TextNode::Map());
        rItem.Add("name", JsonText(rInfo.name));
        rItem.Add("type", JsonText(rInfo.type));
        if (rInfo.count)
        {
            rItem.Add("count", TextNode::Scalar(count));
        }
        if (!rInfo.value.empty())
        {
            const bool isText = rInfo.type == ParameterParserInfo::TypeString;
            rItem.Add("value", isText ? JsonText(rInfo.value) : JsonValue(record, value));
        }
    }
    if (m_isJson)
    {
        PrintJson(list);
        return;
    }
    PrintTable({"member", "type", "count", "value"}, rows);
}

/// @param rMembers all of which must be there; none for all that there are
std::vector<Value> LiveSession::GetAll(const std::string& rPath, const std::string& rModule,
                                       const std::vector<std::string>& rMembers)
{
    std::vector<Value> values = m_client.Get(rPath, rModule, rMembers);
    std::vector<Value> left   = values;

    std::vector<std::string> missing;
    for (const std::string& rMember : rMembers)
    {
        Value value;
        if (!Take(rMember, left, value))
        {
            missing.push_back(rMember);
        }
    }
    if (values.empty() || !missing.empty())
    {
        throw Nothing(rPath, rModule, missing);
    }
    return values;
}

VOID LiveSession::Get(const std::string& rPath, const std::string& rModule, const std::string& rMembers)
{
    std::vector<Row> rows;
    TextNode         node = TextNode::Map();
    for (const Value& rValue : GetAll(rPath, rModule, liveclient::Split(rMembers, ',')))
    {
        rows.push_back({rValue.name, WithEnumerator(rModule, rValue)});
        node.Add(Clean(rValue.name), JsonValue(rModule, rValue));
    }
    if (m_isJson)
    {
        PrintJson(node);
        return;
    }
    PrintTable({}, rows);
}

VOID LiveSession::PrintSet(const std::string& rModule, const std::vector<Value>& rOld,
                           const std::vector<Value>& rNew) const
{
    std::vector<Row> rows;
    TextNode         list = TextNode::List();
    for (size_t index = 0; index < rNew.size(); ++index)
    {
        rows.push_back(
            {rNew[index].name, WithEnumerator(rModule, rOld[index]), "->", WithEnumerator(rModule, rNew[index])});
        TextNode& rItem = list.Add(TextNode::Map());
        rItem.Add("name", JsonText(rNew[index].name));
        rItem.Add("old", JsonValue(rModule, rOld[index]));
        rItem.Add("new", JsonValue(rModule, rNew[index]));
    }
    if (m_isJson)
    {
        PrintJson(list);
        return;
    }
    PrintTable({}, rows);
}

VOID LiveSession::Set(const std::string& rPath, const std::string& rModule,
                      const std::vector<std::string>& rAssignments)
{
    // The service would edit the deepest mode that exists.
    RequireMode(liveclient::NamedPath(rPath));
    const std::vector<Value>       wanted = ParseAssignments(rModule, rAssignments);
    const std::vector<std::string> names  = NamesOf(wanted);

    // Nothing is changed unless all of it can be read.
    std::vector<Value> before = GetAll(rPath, rModule, names);
    SharedEdit         shared(m_client, liveclient::NamedPath(rPath), rModule, names);
    NameCamera();
    const SetResult result = Compare(wanted, std::move(before), m_client.Set(rPath, rModule, wanted));
    PrintSet(rModule, result.before, result.after);
    for (const std::string& rTouched : shared.Touched())
    {
        fmt::print(stderr, "shared, and set as well: {}\n", Clean(rTouched));
    }
    if (!result.refused.empty())
    {
        throw Error("the camera did not set:" + result.refused);
    }
}

VOID LiveSession::PrintSample(const std::string& rModule, DOUBLE seconds, const std::vector<Value>& rValues) const
{
    std::string line = fmt::format("{:9.3f}", seconds);
    TextNode    node = TextNode::Map();
    node.Add("seconds", TextNode::Scalar(fmt::format("{:.3f}", seconds)));
    TextNode& rMembers = node.Add("values", TextNode::Map());
    for (const Value& rValue : rValues)
    {
        line += fmt::format("  {}={}", Clean(rValue.name), Clean(WithEnumerator(rModule, rValue)));
        rMembers.Add(Clean(rValue.name), JsonValue(rModule, rValue));
    }
    fmt::print("{}", m_isJson ? tuningfile::ToJsonLine(node) : line + '\n');
    std::fflush(stdout);
}

VOID LiveSession::Watch(const std::string& rPath, const std::string& rModule, const std::string& rMembers,
                        const WatchOptions& rOptions)
{
    using namespace std::chrono;
    const StopSignals              signals;
    const std::vector<std::string> members = liveclient::Split(rMembers, ',');
    const auto                     period  = duration_cast<nanoseconds>(duration<DOUBLE>(1.0 / rOptions.rate));
    const auto                     start   = steady_clock::now();
    auto                           next    = start;
    std::vector<Value>             shown;
    UINT64                         lines = 0;
    while (!signals.CameUntil(next))
    {
        const auto         now     = steady_clock::now();
        std::vector<Value> values  = GetAll(rPath, rModule, members);
        const auto         isEqual = [](const Value& rFirst, const Value& rSecond)
        { return rFirst.name == rSecond.name && rFirst.text == rSecond.text; };
        if (rOptions.everySample || !std::equal(values.begin(), values.end(), shown.begin(), shown.end(), isEqual))
        {
            PrintSample(rModule, duration<DOUBLE>(now - start).count(), values);
            shown = std::move(values);
            if (++lines == rOptions.count)
            {
                return;
            }
        }
        next = std::max(next + period, now);  // a slow camera is not asked in a rush afterwards
    }
}

}  // namespace kirotune
