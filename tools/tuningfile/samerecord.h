/// @file
/// Comparing records by their tables.
#pragma once

#include "schema/tuningrecord.h"

namespace tuningfile
{

/// Whether two records of a type hold the same values: bit for bit for numbers, a null text being an empty one, entry
/// IDs not counting.
bool SameRecord(const tuning::RecordDescription& rDescription, const VOID* pFirst, const VOID* pSecond);

/// The same for one member.
bool SameMember(const tuning::RecordMember& rMember, const BYTE* pFirst, const BYTE* pSecond);

}  // namespace tuningfile
