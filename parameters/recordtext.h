/// @file
/// Values of a tuning record as text.
///
/// A member path leads into a record: names joined by ".", each with an optional index in brackets, as in
/// "hybridHDR.switchRatio" or "trigger2Data[3].end". What stands behind a member that is no record is ignored, and so
/// is the index of a member that is no array. SymbolTableID, which is the store's own, is no member here.
///
/// Paths and values come from outside and can be anything.
#pragma once

#include "parameters/plist.h"
#include "schema/tuningrecord.h"

class ParameterParserInfo;

namespace RecordText
{

/// Writes the value of a member: a number in decimal with at most ten places, enumerations and booleans included, or a
/// text as it is. An array gives the element of the index or, if that is none of its own, all elements joined by ",".
/// @param pPath null counts as empty
/// @param size  of pValue, at least 1; what does not fit is cut
/// @return false if the path leads to no value: no such member, a record, an optional value that is absent
bool GetValue(const tuning::RecordDescription& rRecord, const VOID* pRecord, const CHAR* pPath, CHAR* pValue,
              UINT32 size);

/// Sets one number; an integer member takes it truncated, and at most at the limits of its type. Arrays as a whole and
/// texts cannot be set. Others may read the record at the same time; see StoreUnlocked.
/// @return false if the path leads to no number or the text is none; the record is then as before
bool SetValue(const tuning::RecordDescription& rRecord, VOID* pRecord, const CHAR* pPath, const CHAR* pValue);

/// @return where SetValue stores, null if the path leads to no number
const VOID* PlaceOf(const tuning::RecordDescription& rRecord, const VOID* pRecord, const CHAR* pPath);

/// @return whether a place lies in an array of the record, or in one of what the record holds
bool ReachesInArray(const tuning::RecordDescription& rRecord, const VOID* pRecord, const VOID* pPlace);

/// Appends a description of each member of a record.
/// @param pPath to a record in the record; null or empty for the record itself
/// @return false if the path leads to no record
bool GetInfo(const tuning::RecordDescription& rRecord, const VOID* pRecord, const CHAR* pPath,
             PList<ParameterParserInfo>& rList);

/// Stores one number into a record while frames may be reading it. On purpose there is no lock, since frames never wait
/// for a tuning tool, and no atomic, since records are plain structs; a frame sees the old value or the new one. This
/// is the only place of the library that stores so, and the only one that tests/threadsanitizer.suppressions names;
/// hence never inline.
[[gnu::noinline]] VOID StoreUnlocked(VOID* pPlace, tuning::ValueType type, DOUBLE value);

}  // namespace RecordText
