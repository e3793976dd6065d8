/// @file
/// Orders of controls: an exposure that no list splits, controls that cannot apply where they stand.
#pragma once

#include "tools/tuningcheck/finding.h"
#include "tools/tuningcheck/modeview.h"

namespace tuningcheck
{

VOID CheckOrders(const ModeView& rView, Findings& rFindings);

}  // namespace tuningcheck
