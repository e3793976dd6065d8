// The edits of a camera as numbers of a patch.

#include "tools/kirotune/livecamera.h"

#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include <fmt/format.h>

#include "tools/kirotune/livemembers.h"
#include "tools/kirotune/livenumbers.h"
#include "tools/kirotune/liveoutput.h"
#include "tools/liveclient/texts.h"

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

/// @throws Error
const tuning::RecordMember& Known(const std::string& rPath, const std::string& rModule, const std::string& rMember)
{
    const std::optional<KnownMember> known = FindMember(rModule, rMember);
    if (!known)
    {
        throw Error(fmt::format("{} {}.{}: not a member that this program knows", rPath, rModule, rMember));
    }
    return *known->pMember;
}

}  // namespace

PatchedNumber NumberAsSent(const std::string& rPath, const std::string& rModule, const std::string& rMember,
                           const std::string& rSent)
{
    PatchedNumber number = NumberOf(rPath, rModule, rMember);
    number.text          = KeptText(Known(rPath, rModule, rMember), rSent, rSent);
    return number;
}

std::string PatchOf(const std::string& rPlace, const liveclient::DeviceInfo& rDevice, UINT32 table,
                    const std::vector<PatchedNumber>& rNumbers)
{
    const std::vector<std::string>& rTables = rDevice.tables;
    return fmt::format("# Edits of the camera at {}: {}\n", Clean(rPlace), Clean(rDevice.name)) +
           PatchText((table < rTables.size()) ? Clean(rTables[table]) : "", rNumbers);
}

std::vector<PatchedNumber> LiveCamera::NumbersOfJournal(const Journal& rJournal, const RemarkTaker& rTake)
{
    const UINT32               table = TableInUse();
    std::vector<PatchedNumber> numbers;
    for (const EditCommand& rCommand : Joined(rJournal.Commands()))
    {
        if (rCommand.table != table)
        {
            rTake(fmt::format("left out: edits of mode table {}, since table {} is in use", rCommand.table, table));
            continue;
        }
        std::vector<Value> held = ReadHeld(rCommand);
        for (size_t index = 0; index < held.size(); ++index)
        {
            const Edit& rEdit = rCommand.edits[index];
            if (held[index].text == rEdit.oldText)
            {
                continue;
            }
            numbers.push_back(NumberOf(rCommand.path, rCommand.module, rEdit.member));
            numbers.back().text =
                KeptText(Known(rCommand.path, rCommand.module, rEdit.member), held[index].text, rEdit.newText);
        }
    }
    return numbers;
}

std::vector<PatchedNumber> LiveCamera::NumbersSince(const tuningfile::Tuning& rTuning, const Journal& rJournal,
                                                    const RemarkTaker& rTake)
{
    using Place = std::tuple<std::string, std::string, std::string>;
    std::map<Place, std::string> sent;
    for (const EditCommand& rCommand : rJournal.Commands())
    {
        for (const Edit& rEdit : rCommand.edits)
        {
            const PatchedNumber number                        = NumberOf(rCommand.path, rCommand.module, rEdit.member);
            sent[{number.path, number.module, number.member}] = rEdit.newText;
        }
    }
    std::vector<PatchedNumber> numbers;
    for (const Change& rChange : ChangesSince(rTuning, "Default", rTake))
    {
        const tuning::RecordMember& rMember = *FindMember(rChange.module, rChange.member)->pMember;
        const auto                  known   = sent.find({rChange.path, rChange.module, rChange.member});
        numbers.push_back({rChange.path, rChange.module, rChange.member,
                           KeptText(rMember, rChange.newText, (known != sent.end()) ? known->second : "")});
    }
    return numbers;
}

std::string LiveCamera::PatchOf(const std::vector<PatchedNumber>& rNumbers)
{
    return kirotune::PatchOf(m_place, Device(), TableInUse(), rNumbers);
}

}  // namespace kirotune
