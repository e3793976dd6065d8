/// @file
/// Preflash metering and inline calibration: names that stand alone, ranges that hold nothing.
#pragma once

#include "tools/tuningcheck/finding.h"

namespace tuningcheck
{

VOID CheckPreflash(const ModulePlace& rModule, Findings& rFindings);

}  // namespace tuningcheck
