/// @file
/// The sensor that bins its pixels: thresholds at which it takes both of its modes.
#pragma once

#include "tools/tuningcheck/finding.h"

namespace tuningcheck
{

VOID CheckHybridHDR(const ModulePlace& rModule, Findings& rFindings);

}  // namespace tuningcheck
