/// @file
/// What a camera is in a group, from text.
#pragma once

#include "tools/kirosim/camerasetup.h"
#include "tools/kirosim/scenevalues.h"

namespace kirosim
{

SceneChoices<StatsAlgoRole> RoleChoices();

SceneValue<CameraSetup> CalibrationValue();
SceneValue<CameraSetup> SensitivityByCCTValue();

}  // namespace kirosim
