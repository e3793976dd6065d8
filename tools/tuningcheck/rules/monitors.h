/// @file
/// Monitors of the extension: scenes that never pass, or always do.
#pragma once

#include "tools/tuningcheck/finding.h"

namespace tuningcheck
{

VOID CheckMonitors(const ModulePlace& rModule, Findings& rFindings);

}  // namespace tuningcheck
