/// @file
/// Exposure tables: knees that do not rise, tables that end too early.
#pragma once

#include "tools/tuningcheck/judgement.h"
#include "tools/tuningcheck/modeview.h"

namespace tuningcheck
{

VOID CheckKnees(const ModeView& rView, const Surroundings& rSurroundings, Findings& rFindings);

}  // namespace tuningcheck
