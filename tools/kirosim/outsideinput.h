/// @file
/// Maps and shake of a scene from text.
#pragma once

#include <vector>

#include "tools/kirosim/outsidescene.h"
#include "tools/kirosim/scenetext.h"

namespace kirosim
{

// @throws tuningfile::InputError with file, line and column

/// Reads the members that are named; the others stay.
VOID ReadOutsideMap(const SceneText& rText, const YAML::Node& rNode, OutsideMap& rMap);

std::vector<GyroPoint> ReadGyro(const SceneText& rText, const tuningfile::YamlEntry& rList);

}  // namespace kirosim
