/// @file
/// Stretches of the converged exposure that cannot work together, or yield exposures that are no numbers.
#pragma once

#include "tools/tuningcheck/finding.h"

namespace tuningcheck
{

VOID CheckStretches(const ModulePlace& rModule, Findings& rFindings);

}  // namespace tuningcheck
