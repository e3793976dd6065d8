// What is no longer where it started.

#include "tools/page/edits.h"

#include <algorithm>
#include <iterator>

#include "tools/kirotune/livejournal.h"
#include "tools/kirotune/livenumbers.h"
#include "tools/tuningfile/modepath.h"

namespace page
{

namespace
{

using kirotune::LiveCamera;
using liveclient::Value;

/// What a person should know beside a patch stands in the answers of the page already.
VOID DropRemark(const std::string& /*rRemark*/)
{
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

std::map<std::string, std::string> Edits::Starts(LiveCamera& rCamera, const std::string& rMode,
                                                 const std::string& rModule)
{
    const UINT32 table = rCamera.TableInUse();
    if (m_pTuning == nullptr)
    {
        std::map<std::string, std::string> starts;
        auto                               kept = m_kept.Present();
        for (const auto& [rMember, rNumber] : kept[{table, rMode, rModule}])
        {
            starts[rMember] = rNumber.start;
        }
        return starts;
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

std::vector<kirotune::Change> Edits::Changes(LiveCamera& rCamera)
{
    if (m_pTuning != nullptr)
    {
        return rCamera.ChangesSince(*m_pTuning, "Default", DropRemark);
    }
    const UINT32                  table = rCamera.TableInUse();
    std::vector<kirotune::Change> changes;
    for (const auto& [rPlace, rNumbers] : m_kept.Present())
    {
        std::vector<std::string> members;
        std::transform(rNumbers.begin(), rNumbers.end(), std::back_inserter(members),
                       [](const auto& rNumber) { return rNumber.first; });
        if (rPlace.table != table)
        {
            continue;
        }
        for (const Value& rHeld : kirotune::ReadNumbers(rCamera.Client(), rPlace.mode, rPlace.module, members))
        {
            const auto number = rNumbers.find(rHeld.name);
            if (number != rNumbers.end() && number->second.start != rHeld.text)
            {
                changes.push_back({rPlace.mode, rPlace.module, rHeld.name, number->second.start, rHeld.text});
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
