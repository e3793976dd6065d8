/// @file
/// Events of a scene from text.
#pragma once

#include "tools/kirosim/scene.h"
#include "tools/kirosim/scenerows.h"

namespace kirosim
{

/// A list of events; they are brought into ascending time.
SceneValue<Scene> EventsValue();

}  // namespace kirosim
