/// @file
/// A scene's sensor from text.
#pragma once

#include "tools/kirosim/scene.h"
#include "tools/kirosim/scenerows.h"

namespace kirosim
{

/// A sensor whose minimum lies above its maximum is refused.
SceneValue<Scene> SensorValue();

}  // namespace kirosim
