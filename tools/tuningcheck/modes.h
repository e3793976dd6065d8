/// @file
/// Modes that change nothing.
#pragma once

#include "tools/tuningcheck/finding.h"

namespace tuningcheck
{

VOID CheckModes(const tuningfile::Tuning& rTuning, const tuningfile::ModeTable& rTable, Findings& rFindings);

}  // namespace tuningcheck
