/// @file
/// Snapshots with tuned gains that are tuned nowhere.
#pragma once

#include "tools/tuningcheck/finding.h"

namespace tuningcheck
{

VOID CheckFixedGains(const ModulePlace& rModule, Findings& rFindings);

}  // namespace tuningcheck
