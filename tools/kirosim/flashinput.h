/// @file
/// The flash of a scene from text.
#pragma once

#include "tools/kirosim/flashscene.h"
#include "tools/kirosim/scenerows.h"

namespace kirosim
{

const SceneTable<FlashScene>& FlashTable();

}  // namespace kirosim
