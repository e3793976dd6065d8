/// @file
/// Speeds of convergence that overshoot for ever.
#pragma once

#include "tools/tuningcheck/finding.h"

namespace tuningcheck
{

VOID CheckSpeeds(const ModulePlace& rModule, Findings& rFindings);

}  // namespace tuningcheck
