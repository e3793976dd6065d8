// The commands that set numbers, and take that back.

#include "tools/kirotune/livesession.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "tools/kirotune/liveguard.h"
#include "tools/kirotune/livejournal.h"
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

}  // namespace

VOID LiveSession::PrintSet(const std::vector<Change>& rChanges) const
{
    std::vector<Row> rows;
    TextNode         list = TextNode::List();
    for (const Change& rChange : rChanges)
    {
        const Value before{rChange.member, rChange.oldText};
        const Value after{rChange.member, rChange.newText};
        rows.push_back(
            {after.name, WithEnumerator(rChange.module, before), "->", WithEnumerator(rChange.module, after)});
        TextNode& rItem = list.Add(TextNode::Map());
        rItem.Add("name", JsonText(after.name));
        rItem.Add("old", JsonValue(rChange.module, before));
        rItem.Add("new", JsonValue(rChange.module, after));
    }
    if (m_isJson)
    {
        PrintJson(list);
        return;
    }
    PrintTable({}, rows);
}

VOID LiveSession::Set(const std::string& rPath, const std::string& rModule,
                      const std::vector<std::string>& rAssignments, bool isForced)
{
    const std::vector<Value> wanted = ParseAssignments(rModule, rAssignments);
    const std::string        path   = liveclient::NamedPath(rPath);
    // The service would edit the deepest mode that exists.
    m_camera.RequireMode(path);
    Journal           journal(m_camera.Place(), m_camera.Device());
    const EditCommand command = m_camera.Prepare(path, rModule, wanted);
    if (!isForced)
    {
        RequireSense(command);
    }
    SharedEdit shared(m_client, path, rModule, NamesOf(command));
    if (journal.Commands().empty())
    {
        NameCamera();
    }
    const EditOutcome outcome = m_camera.SendAndKeep(command, journal);
    std::for_each(outcome.remarks.begin(), outcome.remarks.end(), PrintRemark);
    PrintSet(outcome.changes);
    for (const std::string& rTouched : shared.Touched())
    {
        fmt::print(stderr, "shared, and set as well: {}\n", Clean(rTouched));
    }
    outcome.RequireAll();
}

VOID LiveSession::Undo(UINT32 count)
{
    Journal journal(m_camera.Place(), m_camera.Device());
    if (journal.Commands().size() < count)
    {
        throw Error(fmt::format("camera at {}: {} commands since its start can be taken back, expected {}",
                                m_camera.Place(), journal.Commands().size(), count));
    }
    std::vector<Change> changes;
    for (; count > 0; --count)
    {
        const EditCommand back = m_camera.Reverse(journal.Commands().back());
        if (!back.edits.empty())
        {
            const EditOutcome outcome = m_camera.Send(back);
            std::for_each(outcome.remarks.begin(), outcome.remarks.end(), PrintRemark);
            outcome.RequireAll();
            changes.insert(changes.end(), outcome.changes.begin(), outcome.changes.end());
        }
        journal.DropLast();
    }
    PrintChanges(changes, m_isJson);
}

}  // namespace kirotune
