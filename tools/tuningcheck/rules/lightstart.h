/// @file
/// The start by a light sensor: a first exposure outside of what it trusts.
#pragma once

#include "tools/tuningcheck/finding.h"

namespace tuningcheck
{

VOID CheckLightStart(const ModulePlace& rModule, Findings& rFindings);

}  // namespace tuningcheck
