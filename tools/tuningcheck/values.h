/// @file
/// Numbers out of their range, lists with too few or too many entries, enumerators that do not exist.
#pragma once

#include "tools/tuningcheck/finding.h"

namespace tuningcheck
{

/// Judges what a mode itself says; what it takes over is judged above.
VOID CheckValues(const ModulePlace& rModule, Findings& rFindings);

}  // namespace tuningcheck
