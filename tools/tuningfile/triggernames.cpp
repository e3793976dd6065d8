#include "tools/tuningfile/triggernames.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "schema/kiroenumtables.h"
#include "schema/recordwalk.h"

namespace tuningfile
{

namespace
{

constexpr std::array<std::string_view, 2> Prefixes = {"TriggerCtrl", "Trigger"};

bool IsCapital(CHAR letter)
{
    return std::isupper(static_cast<unsigned char>(letter)) != 0;
}

/// The enumerator without prefix, with a small first letter unless it begins an abbreviation: "lux", "FPS",
/// "AWBRedGain".
std::string NameOf(std::string_view enumerator)
{
    for (const std::string_view prefix : Prefixes)
    {
        if (enumerator.starts_with(prefix))
        {
            enumerator.remove_prefix(prefix.size());
            break;
        }
    }
    std::string name(enumerator);
    if (name.size() < 2 || !IsCapital(name[1]))
    {
        name[0] = static_cast<CHAR>(std::tolower(static_cast<unsigned char>(name[0])));
    }
    return name;
}

}  // namespace

const std::vector<std::string>& TriggerNames()
{
    static const std::vector<std::string> names = []
    {
        std::vector<std::string> made;
        for (INT32 trigger = 0; trigger < TriggerCtrlMax; ++trigger)
        {
            made.push_back(NameOf(TuningEnumOf(KIROTriggerType{})->NameOf(trigger)));
        }
        return made;
    }();
    return names;
}

std::string TriggerName(INT32 trigger)
{
    return (trigger >= 0 && trigger < TriggerCtrlMax) ? TriggerNames()[static_cast<size_t>(trigger)]
                                                      : std::to_string(trigger);
}

std::optional<INT32> TriggerOf(std::string_view name)
{
    const auto& rNames = TriggerNames();
    const auto  found  = std::find(rNames.begin(), rNames.end(), name);
    return (found != rNames.end()) ? std::optional(static_cast<INT32>(found - rNames.begin())) : std::nullopt;
}

const tuning::RecordMember* BankBeside(const tuning::RecordDescription& rRecord, const tuning::RecordMember& rMember)
{
    if (std::string_view(rMember.pName) != "dataID")
    {
        return nullptr;
    }
    const tuning::RecordMember* pBank = tuning::FindMember(rRecord, "bankID");
    return (pBank != nullptr && pBank->pEnum == TuningEnumOf(KIROBankIDType{})) ? pBank : nullptr;
}

bool NamesTrigger(const tuning::RecordDescription& rRecord, const tuning::RecordMember& rMember, const BYTE* pRecord)
{
    const tuning::RecordMember* pBank = BankBeside(rRecord, rMember);
    return pBank != nullptr && tuning::Load<INT32>(pRecord + pBank->offset) == BankIDTriggers;
}

}  // namespace tuningfile
