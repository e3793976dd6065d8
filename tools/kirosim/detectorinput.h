/// @file
/// The detectors of a scene from its text.
#pragma once

#include "tools/kirosim/detectorscene.h"
#include "tools/kirosim/scenerows.h"

namespace kirosim
{

const SceneTable<DetectorScene>& DetectorsTable();

}  // namespace kirosim
