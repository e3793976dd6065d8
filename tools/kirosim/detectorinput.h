/// @file
/// The detectors of a scene from its text.
#pragma once

#include "tools/kirosim/detectorscene.h"
#include "tools/kirosim/scenetext.h"

namespace kirosim
{

/// @throws tuningfile::InputError
DetectorScene ReadDetectors(const SceneText& rText, const YAML::Node& rNode);

}  // namespace kirosim
