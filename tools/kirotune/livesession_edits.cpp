// The commands that set numbers, and take that back.

#include "tools/kirotune/livesession.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include <fmt/chrono.h>
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

std::vector<std::string> NamesOf(const EditCommand& rCommand)
{
    std::vector<std::string> names;
    for (const Edit& rEdit : rCommand.edits)
    {
        names.push_back(rEdit.member);
    }
    return names;
}

std::string Now()
{
    return fmt::format("{:%Y-%m-%dT%H:%M:%SZ}",
                       fmt::gmtime(std::chrono::system_clock::to_time_t(std::chrono::system_clock::now())));
}

}  // namespace

/// All that is known of edits before they are sent. @param rPath by names @param rWanted numbers
/// @throws Error unless all of them can be read
EditCommand LiveSession::Prepare(const std::string& rPath, const std::string& rModule,
                                 const std::vector<Value>& rWanted)
{
    EditCommand command{Now(), TableInUse(), rPath, rModule, {}};
    for (const Value& rOne : rWanted)
    {
        command.edits.push_back({rOne.name, {}, rOne.text});
    }
    const std::vector<Value> held = ReadHeld(command);
    for (size_t index = 0; index < held.size(); ++index)
    {
        command.edits[index].oldText = held[index].text;
    }
    return command;
}

/// @return what the camera holds in the place of each edit
std::vector<Value> LiveSession::ReadHeld(const EditCommand& rCommand)
{
    std::vector<Value> values = GetAll(rCommand.path, rCommand.module, NamesOf(rCommand));
    std::vector<Value> held;
    for (const Edit& rEdit : rCommand.edits)
    {
        (VOID) liveclient::Take(rEdit.member, values, held.emplace_back());
    }
    return held;
}

/// @return what has been set, with numbers as they read before and read now
LiveSession::Outcome LiveSession::Send(const EditCommand& rCommand)
{
    std::vector<Value> wanted;
    for (const Edit& rEdit : rCommand.edits)
    {
        wanted.push_back({rEdit.member, rEdit.newText});
    }
    std::vector<Value> readBack = m_client.Set(rCommand.path, rCommand.module, wanted);
    Outcome            outcome;
    for (const Edit& rEdit : rCommand.edits)
    {
        Value value;
        if (!liveclient::Take(rEdit.member, readBack, value))
        {
            outcome.refused += ' ' + rEdit.member;
            continue;
        }
        if (!IsNear(rEdit.newText, value.text))
        {
            fmt::print(stderr, "{}: asked for {}, reads back {}\n", rEdit.member, rEdit.newText, Clean(value.text));
        }
        outcome.changes.push_back({rCommand.path, rCommand.module, rEdit.member, rEdit.oldText, value.text});
    }
    return outcome;
}

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
    RequireMode(path);
    Journal           journal(m_place, Camera());
    const EditCommand command = Prepare(path, rModule, wanted);
    if (!isForced)
    {
        RequireSense(command);
    }
    SharedEdit shared(m_client, path, rModule, NamesOf(command));
    if (journal.Commands().empty())
    {
        NameCamera();
    }
    journal.Add(command);
    const Outcome outcome = Send(command);
    if (outcome.changes.empty())
    {
        journal.DropLast();
    }
    PrintSet(outcome.changes);
    for (const std::string& rTouched : shared.Touched())
    {
        fmt::print(stderr, "shared, and set as well: {}\n", Clean(rTouched));
    }
    outcome.RequireAll();
}

/// What gives the numbers of an edit back, as far as the camera does not hold them.
EditCommand LiveSession::Reverse(const EditCommand& rCommand)
{
    if (rCommand.table != TableInUse())
    {
        throw Error(
            fmt::format("an edit of mode table {0} while table {1} is in use, expected 'live table {0}' before it "
                        "is taken back",
                        rCommand.table, TableInUse()));
    }
    std::vector<Value> wanted;
    for (const Edit& rEdit : rCommand.edits)
    {
        wanted.push_back({rEdit.member, rEdit.oldText});
    }
    EditCommand back = Prepare(rCommand.path, rCommand.module, wanted);
    std::erase_if(back.edits, [](const Edit& rEdit) { return rEdit.oldText == rEdit.newText; });
    return back;
}

VOID LiveSession::Undo(UINT32 count)
{
    Journal journal(m_place, Camera());
    if (journal.Commands().size() < count)
    {
        throw Error(fmt::format("camera at {}: {} commands since its start can be taken back, expected {}", m_place,
                                journal.Commands().size(), count));
    }
    std::vector<Change> changes;
    for (; count > 0; --count)
    {
        const EditCommand back = Reverse(journal.Commands().back());
        if (!back.edits.empty())
        {
            Outcome outcome = Send(back);
            outcome.RequireAll();
            changes.insert(changes.end(), outcome.changes.begin(), outcome.changes.end());
        }
        journal.DropLast();
    }
    PrintChanges(changes, m_isJson);
}

VOID LiveSession::Outcome::RequireAll() const
{
    if (!refused.empty())
    {
        throw Error("the camera did not set:" + refused);
    }
}

}  // namespace kirotune
