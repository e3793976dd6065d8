/// @file
/// Flicker grids: times that are whole periods of the lamp.
#pragma once

#include "tools/tuningcheck/finding.h"
#include "tools/tuningcheck/modeview.h"

namespace tuningcheck
{

VOID CheckFlickerGrids(const ModeView& rView, Findings& rFindings);

}  // namespace tuningcheck
