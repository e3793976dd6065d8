/// @file
/// Panoramas of a scene from text.
#pragma once

#include "tools/kirosim/scene.h"
#include "tools/kirosim/scenerows.h"

namespace kirosim
{

/// A panorama; one without a file is refused.
SceneValue<Scene> PanoramaValue();

}  // namespace kirosim
