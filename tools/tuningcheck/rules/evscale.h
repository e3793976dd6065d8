/// @file
/// The user's EV: a scale that fits its table, and factors that rise and are 1 at EV 0.
#pragma once

#include "tools/tuningcheck/finding.h"

namespace tuningcheck
{

VOID CheckEVScale(const ModulePlace& rModule, Findings& rFindings);

}  // namespace tuningcheck
