/// @file
/// Regions and weight tables that calculators measure with: outside of the frame, or without any weight.
#pragma once

#include "tools/tuningcheck/finding.h"
#include "tools/tuningcheck/modeview.h"

namespace tuningcheck
{

VOID CheckMeasuredRegions(const ModeView& rView, Findings& rFindings);

}  // namespace tuningcheck
