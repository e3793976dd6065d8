/// @file
/// All checks of what has to hold between the values of a tuning.
#pragma once

#include "tools/tuningcheck/judgement.h"
#include "tools/tuningcheck/modeview.h"

namespace tuningcheck
{

/// What a module says within itself.
VOID CheckModuleShapes(const ModulePlace& rModule, Findings& rFindings);

/// What modules of a mode say together.
VOID CheckModeShapes(const ModeView& rView, const Surroundings& rSurroundings, Findings& rFindings);

}  // namespace tuningcheck
