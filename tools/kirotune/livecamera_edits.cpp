// Edits on their way to a camera and back.

#include "tools/kirotune/livecamera.h"

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <utility>

#include <fmt/chrono.h>
#include <fmt/format.h>

#include "tools/kirotune/liveoutput.h"
#include "tools/liveclient/texts.h"

namespace kirotune
{

namespace
{

using liveclient::Error;
using liveclient::Value;

/// Whether a value reads back as it was set, but for what single precision and ten decimals leave of it.
bool IsNear(const std::string& rWanted, const std::string& rRead)
{
    const DOUBLE wanted = std::strtod(rWanted.c_str(), nullptr);
    const DOUBLE read   = std::strtod(rRead.c_str(), nullptr);
    return std::fabs(wanted - read) <= 1e-9 + 1e-6 * std::fabs(wanted);
}

std::string Now()
{
    return fmt::format("{:%Y-%m-%dT%H:%M:%SZ}",
                       fmt::gmtime(std::chrono::system_clock::to_time_t(std::chrono::system_clock::now())));
}

}  // namespace

EditCommand LiveCamera::Prepare(const std::string& rPath, const std::string& rModule, const std::vector<Value>& rWanted)
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

std::vector<Value> LiveCamera::ReadHeld(const EditCommand& rCommand)
{
    std::vector<Value> values = GetAll(rCommand.path, rCommand.module, NamesOf(rCommand));
    std::vector<Value> held;
    for (const Edit& rEdit : rCommand.edits)
    {
        (VOID) liveclient::Take(rEdit.member, values, held.emplace_back());
    }
    return held;
}

EditOutcome LiveCamera::Send(const EditCommand& rCommand)
{
    std::vector<Value> wanted;
    for (const Edit& rEdit : rCommand.edits)
    {
        wanted.push_back({rEdit.member, rEdit.newText});
    }
    std::vector<Value> readBack = m_client.Set(rCommand.path, rCommand.module, wanted);
    EditOutcome        outcome;
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
            outcome.remarks.push_back(
                fmt::format("{}: asked for {}, reads back {}", rEdit.member, rEdit.newText, Clean(value.text)));
        }
        outcome.changes.push_back({rCommand.path, rCommand.module, rEdit.member, rEdit.oldText, value.text});
    }
    return outcome;
}

EditCommand LiveCamera::Reverse(const EditCommand& rCommand)
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

VOID EditOutcome::RequireAll() const
{
    if (!refused.empty())
    {
        throw Error("the camera did not set:" + refused);
    }
}

EditOutcome LiveCamera::SendAndKeep(const EditCommand& rCommand, Journal& rJournal)
{
    rJournal.Add(rCommand);
    EditOutcome outcome = Send(rCommand);
    if (outcome.changes.empty())
    {
        rJournal.DropLast();
    }
    return outcome;
}

}  // namespace kirotune
