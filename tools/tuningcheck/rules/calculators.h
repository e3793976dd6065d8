/// @file
/// Calculators: ranges in the scale of their measure, room for what they store, the numbers that they need.
#pragma once

#include "tools/tuningcheck/finding.h"

namespace tuningcheck
{

VOID CheckStatsCalculators(const ModulePlace& rModule, Findings& rFindings);

}  // namespace tuningcheck
