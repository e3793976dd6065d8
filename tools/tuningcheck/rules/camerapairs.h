/// @file
/// Several cameras: roles, weights and factors that mix or match nothing.
#pragma once

#include "tools/tuningcheck/finding.h"
#include "tools/tuningcheck/modeview.h"

namespace tuningcheck
{

VOID CheckCameraPairs(const ModeView& rView, Findings& rFindings);

}  // namespace tuningcheck
