/// @file
/// Maps from outside: shares of usable cells at which a map comes, goes and is given up.
#pragma once

#include "tools/tuningcheck/finding.h"

namespace tuningcheck
{

VOID CheckMapProcessors(const ModulePlace& rModule, Findings& rFindings);

}  // namespace tuningcheck
