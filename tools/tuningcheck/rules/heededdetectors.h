/// @file
/// Detectors that convergence heeds: they have to hold, and in time.
#pragma once

#include "tools/tuningcheck/finding.h"
#include "tools/tuningcheck/modeview.h"

namespace tuningcheck
{

VOID CheckHeededDetectors(const ModeView& rView, Findings& rFindings);

}  // namespace tuningcheck
