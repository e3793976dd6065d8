/// @file
/// The sensor that bins its pixels: thresholds at which it takes both of its modes.
#pragma once

#include "tools/tuningcheck/finding.h"
#include "tools/tuningcheck/modeview.h"

namespace tuningcheck
{

VOID CheckHybridHDR(const ModeView& rView, Findings& rFindings);

}  // namespace tuningcheck
