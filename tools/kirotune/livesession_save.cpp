// The command that writes the edits of a running camera as a patch of its tuning.

#include "tools/kirotune/livesession.h"

#include <cstdio>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include <fmt/format.h>

#include "tools/kirotune/livejournal.h"
#include "tools/kirotune/livemembers.h"
#include "tools/kirotune/livenumbers.h"
#include "tools/kirotune/liveoutput.h"
#include "tools/liveclient/texts.h"
#include "tools/program/commandfiles.h"
#include "tools/tuningfile/files.h"

namespace kirotune
{

namespace
{

using liveclient::Error;
using liveclient::Value;

/// The number that a camera tells, with all its digits if it is the one that was sent.
/// @param rSent empty if none is known
std::string KeptText(const tuning::RecordMember& rMember, const std::string& rTold, const std::string& rSent)
{
    StoredNumber number(rMember);
    if (number.Set(rSent) && number.Told() == rTold)
    {
        return number.InTuning();
    }
    if (!number.Set(rTold))
    {
        throw Error(fmt::format("{} holds {}, which no edit can set: expected a number", rMember.pName, Clean(rTold)));
    }
    return number.InTuning();
}

/// The module without a record within it, and the path of a member from there.
PatchedNumber NumberOf(const std::string& rPath, const std::string& rModule, const std::string& rMember)
{
    const size_t dot = rModule.find('.');
    return {rPath,
            rModule.substr(0, dot),
            (dot == std::string::npos) ? rMember : rModule.substr(dot + 1) + '.' + rMember,
            {}};
}

}  // namespace

/// What the camera now holds in the place of all that the journal has an edit of. What holds its old number is left
/// out.
std::vector<PatchedNumber> LiveSession::NumbersOfJournal()
{
    const UINT32               table = TableInUse();
    std::vector<PatchedNumber> numbers;
    const Journal              journal(m_place, Camera());
    for (const EditCommand& rCommand : Joined(journal.Commands()))
    {
        if (rCommand.table != table)
        {
            fmt::print(stderr, "left out: edits of mode table {}, since table {} is in use\n", rCommand.table, table);
            continue;
        }
        std::vector<Value> held = ReadHeld(rCommand);
        for (size_t index = 0; index < held.size(); ++index)
        {
            const Edit&                      rEdit = rCommand.edits[index];
            const std::optional<KnownMember> known = FindMember(rCommand.module, rEdit.member);
            if (held[index].text == rEdit.oldText)
            {
                continue;
            }
            if (!known)
            {
                throw Error(fmt::format("{} {}.{}: not a member that this program knows", rCommand.path,
                                        rCommand.module, rEdit.member));
            }
            numbers.push_back(NumberOf(rCommand.path, rCommand.module, rEdit.member));
            numbers.back().text = KeptText(*known->pMember, held[index].text, rEdit.newText);
        }
    }
    return numbers;
}

/// All that differs from a file. The journal may know digits that the camera does not tell.
std::vector<PatchedNumber> LiveSession::NumbersSince(const std::string& rFile)
{
    using Place = std::tuple<std::string, std::string, std::string>;
    const Journal                journal(m_place, Camera());
    std::map<Place, std::string> sent;
    for (const EditCommand& rCommand : journal.Commands())
    {
        for (const Edit& rEdit : rCommand.edits)
        {
            const PatchedNumber number                        = NumberOf(rCommand.path, rCommand.module, rEdit.member);
            sent[{number.path, number.module, number.member}] = rEdit.newText;
        }
    }
    std::vector<PatchedNumber> numbers;
    for (const Change& rChange : ChangesSince(rFile, "Default"))
    {
        const tuning::RecordMember& rMember = *FindMember(rChange.module, rChange.member)->pMember;
        const auto                  known   = sent.find({rChange.path, rChange.module, rChange.member});
        numbers.push_back({rChange.path, rChange.module, rChange.member,
                           KeptText(rMember, rChange.newText, (known != sent.end()) ? known->second : "")});
    }
    return numbers;
}

VOID LiveSession::Save(const std::string& rPatch, const std::string& rTuning)
{
    program::CommandFiles files;
    files.Reads("--file", rTuning);
    files.Writes("the patch", rPatch);
    files.Check();
    const std::vector<PatchedNumber> numbers = rTuning.empty() ? NumbersOfJournal() : NumbersSince(rTuning);
    if (numbers.empty())
    {
        throw Error(fmt::format("camera at {}: no edits to save, {}", m_place,
                                rTuning.empty()
                                    ? "expected some since it was started; --file compares it with its tuning"
                                    : "it holds what " + rTuning + " does"));
    }
    const std::vector<std::string>& rTables = Camera().tables;
    const UINT32                    table   = TableInUse();
    const std::string text = fmt::format("# Edits of the camera at {}: {}\n", Clean(m_place), Clean(Camera().name)) +
                             PatchText((table < rTables.size()) ? Clean(rTables[table]) : "", numbers);
    tuningfile::ReplaceFile(rPatch, {reinterpret_cast<const BYTE*>(text.data()), text.size()});
    fmt::print(stderr, "{}: {} numbers\n", rPatch, numbers.size());
}

}  // namespace kirotune
