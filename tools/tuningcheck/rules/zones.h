/// @file
/// Trees of zones over triggers: zones that overlap, are out of order, or are never reached.
#pragma once

#include "tools/tuningcheck/finding.h"

namespace tuningcheck
{

VOID CheckZones(const ModulePlace& rModule, Findings& rFindings);

}  // namespace tuningcheck
