/// @file
/// What a camera needs to be controlled at all.
#pragma once

#include "tools/tuningcheck/finding.h"

namespace tuningcheck
{

/// Tells what the root of a tree of modes lacks: with nothing there at all in one finding.
VOID CheckCompleteness(const tuningfile::Tuning& rTuning, const tuningfile::ModeTable& rTable, Findings& rFindings);

}  // namespace tuningcheck
