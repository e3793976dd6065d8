/// @file
/// Filters of samples: weights that cancel out, or that nothing reads.
#pragma once

#include "tools/tuningcheck/finding.h"

namespace tuningcheck
{

VOID CheckFilters(const ModulePlace& rModule, Findings& rFindings);

}  // namespace tuningcheck
