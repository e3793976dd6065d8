/// @file
/// Generated weight tables: ranges that screen nothing, masks beyond a share.
#pragma once

#include "tools/tuningcheck/finding.h"

namespace tuningcheck
{

VOID CheckTableGenerators(const ModulePlace& rModule, Findings& rFindings);

}  // namespace tuningcheck
