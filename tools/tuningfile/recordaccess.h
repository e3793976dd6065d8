/// @file
/// Reading members of records by their tables.
#pragma once

#include <cstring>
#include <string_view>

#include "schema/tuningrecord.h"

namespace tuningfile
{

/// Copies a value out of a record. @param pAddress need not be aligned
template <typename T> T Load(const BYTE* pAddress)
{
    T value;
    std::memcpy(&value, pAddress, sizeof(value));
    return value;
}

/// The values of a member.
struct Values
{
    const BYTE* pFirst;  ///< null if there are none
    UINT32      count;   ///< 0 for an optional member that is absent
};

/// @param rMember a stored one
Values ValuesOf(const tuning::RecordMember& rMember, const BYTE* pRecord);

/// @return the text at a member's value; empty for a null pointer
std::string_view TextAt(const BYTE* pValue);

/// Whether two records of a type hold the same values: bit for bit for numbers, a null text being an empty one, entry
/// IDs not counting.
bool SameRecord(const tuning::RecordDescription& rDescription, const VOID* pFirst, const VOID* pSecond);

/// The same for one member.
bool SameMember(const tuning::RecordMember& rMember, const BYTE* pFirst, const BYTE* pSecond);

}  // namespace tuningfile
