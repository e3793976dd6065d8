/// @file
/// The table of LED mixes: rows of one power that rise, mixes that can be told apart.
#pragma once

#include "tools/tuningcheck/finding.h"

namespace tuningcheck
{

VOID CheckLEDMixes(const ModulePlace& rModule, Findings& rFindings);

}  // namespace tuningcheck
