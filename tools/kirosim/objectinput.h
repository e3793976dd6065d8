/// @file
/// The object of a scene from text.
#pragma once

#include "tools/kirosim/objectscene.h"
#include "tools/kirosim/scenerows.h"

namespace kirosim
{

const SceneTable<SceneObject>& ObjectTable();

}  // namespace kirosim
