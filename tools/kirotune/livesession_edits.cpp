// The command that sets numbers.

#include "tools/kirotune/livesession.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "tools/kirotune/livemembers.h"
#include "tools/kirotune/liveoutput.h"
#include "tools/kirotune/livesharing.h"
#include "tools/liveclient/texts.h"

namespace kirotune
{

namespace
{

using liveclient::Error;
using liveclient::Value;
using tuningfile::TextNode;

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
        (VOID) liveclient::Take(rWantedOne.name, before, oldValue);
        if (!liveclient::Take(rWantedOne.name, readBack, newValue))
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

}  // namespace kirotune
