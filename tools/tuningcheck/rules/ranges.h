/// @file
/// Ranges of gain, time and index that never apply.
#pragma once

#include "tools/tuningcheck/finding.h"
#include "tools/tuningcheck/modeview.h"

namespace tuningcheck
{

VOID CheckRanges(const ModeView& rView, Findings& rFindings);

}  // namespace tuningcheck
