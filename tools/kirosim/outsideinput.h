/// @file
/// Maps and shake of a scene from text.
#pragma once

#include "tools/kirosim/outsidescene.h"
#include "tools/kirosim/scenerows.h"

namespace kirosim
{

const SceneTable<OutsideMap>& OutsideMapTable();
const SceneTable<GyroPoint>&  GyroPointTable();

}  // namespace kirosim
