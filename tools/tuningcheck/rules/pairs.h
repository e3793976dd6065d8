/// @file
/// Pairs of a lower and an upper bound that stand the wrong way round.
#pragma once

#include "tools/tuningcheck/finding.h"

namespace tuningcheck
{

/// Ranges of zones are judged by CheckZones().
VOID CheckPairs(const ModulePlace& rModule, Findings& rFindings);

}  // namespace tuningcheck
