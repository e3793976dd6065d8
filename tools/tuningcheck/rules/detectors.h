/// @file
/// Scene change detectors that never run, or whose thresholds mean nothing.
#pragma once

#include "tools/tuningcheck/finding.h"

namespace tuningcheck
{

VOID CheckDetectors(const ModulePlace& rModule, Findings& rFindings);

}  // namespace tuningcheck
