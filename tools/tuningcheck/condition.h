/// @file
/// Whether a value is read at all.
#pragma once

#include "tools/tuningcheck/spot.h"

namespace tuningcheck
{

/// @param pWhen Words::when, null for a value that is always read
/// @return whether the members that it names, of this record or of the nearest around it that has them, are as it says
bool Holds(const CHAR* pWhen, const RecordSpot& rRecord);

}  // namespace tuningcheck
