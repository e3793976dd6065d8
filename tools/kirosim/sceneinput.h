/// @file
/// What a scene's text may say.
#pragma once

#include "tools/kirosim/scene.h"
#include "tools/kirosim/scenerows.h"

namespace kirosim
{

/// The members of a scene; its maps and lists have theirs.
const SceneTable<Scene>& WholeSceneTable();

}  // namespace kirosim
