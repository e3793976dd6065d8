/// @file
/// The split of a precision flash: times that leave room for a part with LED and one without.
#pragma once

#include "tools/tuningcheck/finding.h"

namespace tuningcheck
{

VOID CheckPrecisionSplit(const ModulePlace& rModule, Findings& rFindings);

}  // namespace tuningcheck
