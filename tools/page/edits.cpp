#include "tools/page/edits.h"

#include <algorithm>

#include <fmt/format.h>

#include "tools/kirotune/liveguard.h"
#include "tools/kirotune/livejournal.h"
#include "tools/kirotune/livemembers.h"
#include "tools/kirotune/livenumbers.h"
#include "tools/kirotune/livesharing.h"
#include "tools/liveclient/texts.h"
#include "tools/tuningfile/modepath.h"

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

/// What a person should know beside a patch stands in the answers of the page already.
VOID DropRemark(const std::string& /*rRemark*/)
{
}

VOID Push(std::vector<EditCommand>& rSteps, const EditCommand& rCommand)
{
    rSteps.push_back(rCommand);
    if (rSteps.size() > MaxSteps)
    {
        rSteps.erase(rSteps.begin());
    }
}

EditCommand Pop(std::vector<EditCommand>& rSteps)
{
    EditCommand command = std::move(rSteps.back());
    rSteps.pop_back();
    return command;
}

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

/// The module that frames of a mode find in a tuning. @return null if it has none
const tuningfile::Module* ModuleOf(const tuningfile::ModeTable& rTable, const std::string& rMode,
                                   const std::string& rModule)
{
    const tuning::ModuleDescription* pDescription = tuningfile::FindModule(rModule);
    for (UINT32 index = 0; pDescription != nullptr && index < rTable.modes.size(); ++index)
    {
        if (tuningfile::PathOf(rTable, index) == rMode)
        {
            const tuningfile::Module* pOwn = tuningfile::FindModuleOf(rTable.modes[index], *pDescription);
            return (pOwn != nullptr) ? pOwn : tuningfile::FindModuleAbove(rTable, index, *pDescription);
        }
    }
    return nullptr;
}

}  // namespace

VOID Edits::SetCounts()
{
    m_undoCount = m_undo.size();
    m_redoCount = m_redo.size();
}

VOID Edits::Forget()
{
    m_undo.clear();
    m_redo.clear();
    m_starts.clear();
    SetCounts();
}

VOID Edits::Remember(const EditCommand& rCommand)
{
    auto& rStarts = m_starts[{rCommand.table, rCommand.path, rCommand.module}];
    for (const Edit& rEdit : rCommand.edits)
    {
        (VOID) rStarts.emplace(rEdit.member, rEdit.oldText);
    }
}

/// Sends a new edit, and keeps all that is needed to take it back.
EditResult Edits::Apply(LiveCamera& rCamera, const EditCommand& rCommand)
{
    kirotune::Journal           journal(rCamera.Place(), rCamera.Device());
    kirotune::SharedEdit        shared(rCamera.Client(), rCommand.path, rCommand.module, NamesOf(rCommand));
    const kirotune::EditOutcome outcome = rCamera.SendAndKeep(rCommand, journal);
    if (!outcome.changes.empty())
    {
        Remember(rCommand);
        Push(m_undo, rCommand);
        SetCounts();
    }
    outcome.RequireAll();
    EditResult result{rCommand.path, rCommand.module};
    for (const kirotune::Change& rChange : outcome.changes)
    {
        result.values.push_back({rChange.member, rChange.newText});
    }
    result.shared = shared.Touched();
    return result;
}

EditResult Edits::Set(LiveCamera& rCamera, const std::string& rMode, const std::string& rModule,
                      const std::vector<Value>& rValues, bool isForced)
{
    const std::string  mode = liveclient::NamedPath(rMode);
    std::vector<Value> wanted;
    for (const Value& rValue : rValues)
    {
        wanted.push_back({rValue.name, kirotune::NumberFor(rModule, rValue)});
    }
    rCamera.RequireMode(mode);
    const EditCommand command = rCamera.Prepare(mode, rModule, wanted);
    const std::string faults  = isForced ? "" : kirotune::SenselessIn(command);
    if (!faults.empty())
    {
        throw SenselessError(faults);
    }
    EditResult result = Apply(rCamera, command);
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
    const EditCommand command = m_undo.back();
    const EditCommand back    = rCamera.Reverse(command);
    kirotune::Journal journal(rCamera.Place(), rCamera.Device());
    const bool        isLatest = !journal.Commands().empty() && IsSameEdit(journal.Commands().back(), command);
    if (!back.edits.empty())
    {
        (isLatest ? rCamera.Send(back) : rCamera.SendAndKeep(back, journal)).RequireAll();
    }
    if (isLatest)
    {
        journal.DropLast();
    }
    Push(m_redo, Pop(m_undo));
    SetCounts();
    return {command.path, command.module, rCamera.ReadHeld(command)};
}

EditResult Edits::Redo(LiveCamera& rCamera)
{
    if (m_redo.empty())
    {
        throw NothingLeftError("nothing to redo");
    }
    std::vector<Value> wanted;
    for (const Edit& rEdit : m_redo.back().edits)
    {
        wanted.push_back({rEdit.member, rEdit.newText});
    }
    const EditCommand& rCommand = m_redo.back();
    EditResult         result   = Apply(rCamera, rCamera.Prepare(rCommand.path, rCommand.module, wanted));
    m_redo.pop_back();
    SetCounts();
    return result;
}

std::map<std::string, std::string> Edits::Starts(LiveCamera& rCamera, const std::string& rMode,
                                                 const std::string& rModule)
{
    const UINT32 table = rCamera.TableInUse();
    if (m_pTuning == nullptr)
    {
        const auto found = m_starts.find({table, rMode, rModule});
        return (found != m_starts.end()) ? found->second : std::map<std::string, std::string>();
    }
    const tuningfile::Module* pModule =
        (table < m_pTuning->tables.size()) ? ModuleOf(m_pTuning->tables[table], rMode, rModule) : nullptr;
    std::map<std::string, std::string> starts;
    if (pModule != nullptr)
    {
        const tuning::RecordDescription& rRecord = *pModule->pDescription->pRecord;
        for (const std::string& rMember : kirotune::PathsOf(rRecord, pModule->pRecord).held)
        {
            starts[rMember] = kirotune::NumberText(rRecord, pModule->pRecord, rMember);
        }
    }
    return starts;
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
    EditResult result = Apply(rCamera, rCamera.Prepare(mode, rModule, wanted));
    m_redo.clear();
    SetCounts();
    return result;
}

std::vector<kirotune::Change> Edits::Changes(LiveCamera& rCamera)
{
    if (m_pTuning != nullptr)
    {
        return rCamera.ChangesSince(*m_pTuning, "Default", DropRemark);
    }
    const UINT32                  table = rCamera.TableInUse();
    std::vector<kirotune::Change> changes;
    for (const auto& [rPlace, rStarts] : m_starts)
    {
        std::vector<std::string> members;
        std::transform(rStarts.begin(), rStarts.end(), std::back_inserter(members),
                       [](const auto& rStart) { return rStart.first; });
        if (rPlace.table != table)
        {
            continue;
        }
        for (const Value& rHeld : kirotune::ReadNumbers(rCamera.Client(), rPlace.mode, rPlace.module, members))
        {
            const auto start = rStarts.find(rHeld.name);
            if (start != rStarts.end() && start->second != rHeld.text)
            {
                changes.push_back({rPlace.mode, rPlace.module, rHeld.name, start->second, rHeld.text});
            }
        }
    }
    return changes;
}

std::string Edits::Patch(LiveCamera& rCamera)
{
    const kirotune::Journal journal(rCamera.Place(), rCamera.Device());
    const auto              numbers = (m_pTuning != nullptr) ? rCamera.NumbersSince(*m_pTuning, journal, DropRemark)
                                                             : rCamera.NumbersOfJournal(journal, DropRemark);
    return numbers.empty() ? "" : rCamera.PatchOf(numbers);
}

}  // namespace page
