/// @file
/// Entries of the trigger bank by name: "lux" for 8, as text tunings have them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "schema/recordmember.h"

namespace tuningfile
{

/// @return the name of an entry that the stages know, the number as text for any other
std::string TriggerName(INT32 trigger);

/// @return the entry of that name
std::optional<INT32> TriggerOf(std::string_view name);

/// All names, in the order of the entries.
const std::vector<std::string>& TriggerNames();

/// @return the member beside rMember that says of which bank it names an entry; null if rMember names none
const tuning::RecordMember* BankBeside(const tuning::RecordDescription& rRecord, const tuning::RecordMember& rMember);

/// @return whether a member of a record names an entry of the trigger bank
bool NamesTrigger(const tuning::RecordDescription& rRecord, const tuning::RecordMember& rMember, const BYTE* pRecord);

}  // namespace tuningfile
