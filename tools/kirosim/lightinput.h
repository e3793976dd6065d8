/// @file
/// What lights a scene, and what it shows, from text.
#pragma once

#include "tools/kirosim/scene.h"
#include "tools/kirosim/scenerows.h"

namespace kirosim
{

const SceneTable<Pattern>&    PatternTable();
const SceneTable<LightPoint>& LightPointTable();
const SceneTable<Ripple>&     RippleTable();
const SceneTable<Lamp>&       LampTable();

}  // namespace kirosim
