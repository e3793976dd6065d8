#include "tools/page/keptedits.h"

#include <numeric>
#include <optional>

#include "tools/kirotune/livemembers.h"
#include "tools/kirotune/livenumbers.h"

namespace page
{

namespace
{

/// Whether a number was set to another than it had: 0.4 is what a camera tells as 0.400000006.
bool IsSet(const std::string& rModule, const std::string& rMember, const KeptNumber& rNumber)
{
    const std::optional<kirotune::KnownMember> known = kirotune::FindMember(rModule, rMember);
    if (!known)
    {
        return rNumber.sent != rNumber.start;
    }
    kirotune::StoredNumber number(*known->pMember);
    return !number.Set(rNumber.sent) || number.Told() != rNumber.start;
}

/// Adds what was set, over what was set before.
VOID AddSet(const std::map<ModulePlace, KeptNumbers>& rKept, std::map<ModulePlace, KeptNumbers>& rAll)
{
    for (const auto& [rPlace, rNumbers] : rKept)
    {
        for (const auto& [rMember, rNumber] : rNumbers)
        {
            if (IsSet(rPlace.module, rMember, rNumber))
            {
                rAll[rPlace].insert_or_assign(rMember, rNumber);
            }
        }
    }
}

}  // namespace

VOID KeptEdits::Keep(kirotune::LiveCamera& rCamera, const kirotune::EditCommand& rCommand)
{
    const liveclient::DeviceInfo& rDevice = rCamera.Device();
    const std::lock_guard         lock(m_mutex);
    KeptNumbers&                  rNumbers = m_present[{rCommand.table, rCommand.path, rCommand.module}];
    for (const kirotune::Edit& rEdit : rCommand.edits)
    {
        rNumbers.emplace(rEdit.member, KeptNumber{rEdit.oldText, {}}).first->second.sent = rEdit.newText;
    }
    m_camera = rCamera.Place();
    m_device = rDevice;
    m_table  = rCommand.table;
}

VOID KeptEdits::Lose()
{
    const std::lock_guard lock(m_mutex);
    AddSet(m_present, m_lost);
    m_present.clear();
}

std::map<ModulePlace, KeptNumbers> KeptEdits::Present() const
{
    const std::lock_guard lock(m_mutex);
    return m_present;
}

std::map<ModulePlace, KeptNumbers> KeptEdits::Lost() const
{
    const std::lock_guard lock(m_mutex);
    return m_lost;
}

size_t KeptEdits::LostCount() const
{
    const std::lock_guard lock(m_mutex);
    return std::accumulate(m_lost.begin(), m_lost.end(), size_t{0},
                           [](size_t sum, const auto& rPlace) { return sum + rPlace.second.size(); });
}

VOID KeptEdits::ForgetLost()
{
    const std::lock_guard lock(m_mutex);
    m_lost.clear();
}

VOID KeptEdits::ForgetLost(const ModulePlace& rPlace)
{
    const std::lock_guard lock(m_mutex);
    m_lost.erase(rPlace);
}

/// Of the mode table that was edited last: a patch is of one.
std::string KeptEdits::PatchOf(const Kept& rKept) const
{
    std::vector<kirotune::PatchedNumber> numbers;
    for (const auto& [rPlace, rNumbers] : rKept)
    {
        if (rPlace.table != m_table)
        {
            continue;
        }
        for (const auto& [rMember, rNumber] : rNumbers)
        {
            numbers.push_back(kirotune::NumberAsSent(rPlace.mode, rPlace.module, rMember, rNumber.sent));
        }
    }
    return numbers.empty() ? "" : kirotune::PatchOf(m_camera, m_device, m_table, numbers);
}

std::string KeptEdits::LostPatch() const
{
    const std::lock_guard lock(m_mutex);
    return PatchOf(m_lost);
}

std::string KeptEdits::Patch() const
{
    const std::lock_guard lock(m_mutex);
    Kept                  all = m_lost;
    AddSet(m_present, all);
    return PatchOf(all);
}

}  // namespace page
