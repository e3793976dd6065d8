/// @file
/// Overexposure rather than bands: thresholds at which it begins and ends.
#pragma once

#include "tools/tuningcheck/finding.h"

namespace tuningcheck
{

VOID CheckAntibanding(const ModulePlace& rModule, Findings& rFindings);

}  // namespace tuningcheck
