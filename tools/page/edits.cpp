#include "tools/page/edits.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <fmt/format.h>

#include "tools/kirotune/liveguard.h"
#include "tools/kirotune/livejournal.h"
#include "tools/kirotune/livemembers.h"
#include "tools/kirotune/livenumbers.h"
#include "tools/kirotune/livesharing.h"
#include "tools/liveclient/texts.h"

namespace page
{

namespace
{

using kirotune::Edit;
using kirotune::EditCommand;
using kirotune::LiveCamera;
using liveclient::Value;

/// Edits that can be taken back.
constexpr size_t MaxSteps = 1000;

bool IsSameEdit(const EditCommand& rOne, const EditCommand& rOther)
{
    return rOne.table == rOther.table && rOne.path == rOther.path && rOne.module == rOther.module &&
           std::equal(rOne.edits.begin(), rOne.edits.end(), rOther.edits.begin(), rOther.edits.end(),
                      [](const Edit& rEdit, const Edit& rOtherEdit)
                      {
                          return rEdit.member == rOtherEdit.member && rEdit.oldText == rOtherEdit.oldText &&
                                 rEdit.newText == rOtherEdit.newText;
                      });
}

/// Whether a member is one of those that are named, or stands in one; all are if none is named.
bool IsMeant(const std::vector<std::string>& rPaths, const std::string& rMember)
{
    return rPaths.empty() || std::any_of(rPaths.begin(), rPaths.end(),
                                         [&rMember](const std::string& rPath) {
                                             return rMember == rPath || rMember.starts_with(rPath + '.') ||
                                                    rMember.starts_with(rPath + '[');
                                         });
}

}  // namespace

VOID Edits::SetCounts()
{
    m_undoCount = m_undo.size();
    m_redoCount = m_redo.size();
}

VOID Edits::Lose()
{
    m_undo.clear();
    m_redo.clear();
    m_kept.Lose();
    SetCounts();
}

namespace
{

/// A command without what the camera has refused.
EditCommand TakenOver(EditCommand command, const kirotune::EditOutcome& rOutcome)
{
    std::erase_if(command.edits,
                  [&rOutcome](const Edit& rEdit)
                  {
                      return std::none_of(rOutcome.changes.begin(), rOutcome.changes.end(),
                                          [&rEdit](const kirotune::Change& rChange)
                                          { return rChange.member == rEdit.member; });
                  });
    return command;
}

/// @throws liveclient::Error if the camera has refused any
EditResult ResultOf(const EditCommand& rCommand, const kirotune::EditOutcome& rOutcome,
                    const std::vector<std::string>& rShared)
{
    rOutcome.RequireAll();
    EditResult result{rCommand.path, rCommand.module, {}, rShared};
    for (const kirotune::Change& rChange : rOutcome.changes)
    {
        result.values.push_back({rChange.member, rChange.newText});
    }
    return result;
}

}  // namespace

/// Sends a new edit, and keeps all that is needed to take it back.
EditResult Edits::Apply(LiveCamera& rCamera, Step step)
{
    const EditCommand           command = step.command;
    kirotune::Journal           journal(rCamera.Place(), rCamera.Device());
    kirotune::SharedEdit        shared(rCamera.Client(), command.path, command.module, NamesOf(command));
    const kirotune::EditOutcome outcome = rCamera.SendAndKeep(command, journal);
    step.shared                         = shared.Touched();
    if (!outcome.changes.empty())
    {
        m_kept.Keep(rCamera, TakenOver(command, outcome));
        m_undo.push_back(step);
        if (m_undo.size() > MaxSteps)
        {
            m_undo.erase(m_undo.begin());
        }
        SetCounts();
    }
    return ResultOf(command, outcome, step.shared);
}

/// Sends an edit that becomes one with the last step. It shows where that one does: which lists are shared is looked up
/// once, not at each point of a drag.
EditResult Edits::ApplyJoined(LiveCamera& rCamera, EditCommand command)
{
    Step& rStep = m_undo.back();
    for (size_t index = 0; index < command.edits.size(); ++index)
    {
        command.edits[index].oldText = rStep.command.edits[index].oldText;
    }
    kirotune::Journal journal(rCamera.Place(), rCamera.Device());
    if (!journal.Commands().empty() && IsSameEdit(journal.Commands().back(), rStep.command))
    {
        journal.DropLast();
    }
    rStep.command                       = command;
    const kirotune::EditOutcome outcome = rCamera.SendAndKeep(command, journal);
    m_kept.Keep(rCamera, TakenOver(command, outcome));
    return ResultOf(command, outcome, rStep.shared);
}

bool Edits::Joins(const Step& rStep, const WantedEdit& rWanted) const
{
    const std::vector<Edit>& rEdits = rStep.command.edits;
    return rStep.command.path == liveclient::NamedPath(rWanted.mode) && rStep.command.module == rWanted.module &&
           std::equal(rEdits.begin(), rEdits.end(), rWanted.values.begin(), rWanted.values.end(),
                      [](const Edit& rEdit, const Value& rValue) { return rEdit.member == rValue.name; });
}

EditResult Edits::Set(LiveCamera& rCamera, const WantedEdit& rWanted, const std::string& rClient)
{
    const std::string  mode = liveclient::NamedPath(rWanted.mode);
    std::vector<Value> wanted;
    for (const Value& rValue : rWanted.values)
    {
        wanted.push_back({rValue.name, kirotune::NumberFor(rWanted.module, rValue)});
    }
    rCamera.RequireMode(mode);
    const EditCommand command = rCamera.Prepare(mode, rWanted.module, wanted);
    const std::string faults  = rWanted.isForced ? "" : kirotune::SenselessIn(command);
    if (!faults.empty())
    {
        throw SenselessError(faults);
    }
    const bool isJoined = rWanted.isJoined && m_redo.empty() && !m_undo.empty() && !rClient.empty() &&
                          m_undo.back().client == rClient && Joins(m_undo.back(), rWanted);
    EditResult result = isJoined ? ApplyJoined(rCamera, command) : Apply(rCamera, {command, rClient, {}});
    m_redo.clear();
    SetCounts();
    return result;
}

EditResult Edits::Undo(LiveCamera& rCamera)
{
    if (m_undo.empty())
    {
        throw NothingLeftError("nothing to undo");
    }
    const Step        step = m_undo.back();
    const EditCommand back = rCamera.Reverse(step.command);
    kirotune::Journal journal(rCamera.Place(), rCamera.Device());
    const bool        isLatest = !journal.Commands().empty() && IsSameEdit(journal.Commands().back(), step.command);
    if (!back.edits.empty())
    {
        (isLatest ? rCamera.Send(back) : rCamera.SendAndKeep(back, journal)).RequireAll();
    }
    if (isLatest)
    {
        journal.DropLast();
    }
    EditCommand taken = step.command;
    for (Edit& rEdit : taken.edits)
    {
        std::swap(rEdit.oldText, rEdit.newText);
    }
    m_kept.Keep(rCamera, taken);
    m_undo.pop_back();
    m_redo.push_back(step);
    SetCounts();
    return {step.command.path, step.command.module, rCamera.ReadHeld(step.command), step.shared};
}

EditResult Edits::Redo(LiveCamera& rCamera)
{
    if (m_redo.empty())
    {
        throw NothingLeftError("nothing to redo");
    }
    const EditCommand  command = m_redo.back().command;
    std::vector<Value> wanted;
    for (const Edit& rEdit : command.edits)
    {
        wanted.push_back({rEdit.member, rEdit.newText});
    }
    EditResult result = Apply(rCamera, {rCamera.Prepare(command.path, command.module, wanted), {}, {}});
    m_redo.pop_back();
    SetCounts();
    return result;
}

EditResult Edits::Reset(LiveCamera& rCamera, const std::string& rMode, const std::string& rModule,
                        const std::vector<std::string>& rPaths)
{
    const std::string mode = liveclient::NamedPath(rMode);
    rCamera.RequireMode(mode);
    const std::map<std::string, std::string> starts = Starts(rCamera, mode, rModule);
    std::vector<std::string>                 members;
    for (const auto& rStart : starts)
    {
        if (IsMeant(rPaths, rStart.first))
        {
            members.push_back(rStart.first);
        }
    }
    std::vector<Value> wanted;
    for (const Value& rHeld : kirotune::ReadNumbers(rCamera.Client(), mode, rModule, members))
    {
        const auto start = starts.find(rHeld.name);
        if (start != starts.end() && start->second != rHeld.text)
        {
            wanted.push_back({rHeld.name, start->second});
        }
    }
    if (wanted.empty())
    {
        return {mode, rModule};
    }
    EditResult result = Apply(rCamera, {rCamera.Prepare(mode, rModule, wanted), {}, {}});
    m_redo.clear();
    SetCounts();
    return result;
}

EditResult Edits::SetLostAgain(LiveCamera& rCamera, const ModulePlace& rPlace, const KeptNumbers& rNumbers)
{
    if (rPlace.table != rCamera.TableInUse())
    {
        throw liveclient::Error(
            fmt::format("edits of mode table {} while table {} is in use", rPlace.table, rCamera.TableInUse()));
    }
    rCamera.RequireMode(rPlace.mode);
    std::vector<Value> wanted;
    std::transform(rNumbers.begin(), rNumbers.end(), std::back_inserter(wanted),
                   [](const auto& rNumber) {
                       return Value{rNumber.first, rNumber.second.sent};
                   });
    EditResult result = Apply(rCamera, {rCamera.Prepare(rPlace.mode, rPlace.module, wanted), {}, {}});
    m_kept.ForgetLost(rPlace);
    m_redo.clear();
    SetCounts();
    return result;
}

}  // namespace page
