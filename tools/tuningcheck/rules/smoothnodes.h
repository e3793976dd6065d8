/// @file
/// Nodes of the smoothed DRC gains: spans that do not join, steps that never end.
#pragma once

#include "tools/tuningcheck/finding.h"

namespace tuningcheck
{

VOID CheckSmoothNodes(const ModulePlace& rModule, Findings& rFindings);

}  // namespace tuningcheck
