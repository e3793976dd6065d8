/// @file
/// Rules of settling that no exposure can keep.
#pragma once

#include "tools/tuningcheck/finding.h"
#include "tools/tuningcheck/modeview.h"

namespace tuningcheck
{

VOID CheckSettling(const ModeView& rView, Findings& rFindings);

}  // namespace tuningcheck
