/// @file
/// The parameters of the short blend of two exposures.
#pragma once

#include "tools/tuningcheck/finding.h"

namespace tuningcheck
{

VOID CheckBlendParameters(const ModulePlace& rModule, Findings& rFindings);

}  // namespace tuningcheck
