/// @file
/// The object of a scene from text.
#pragma once

#include "tools/kirosim/objectscene.h"
#include "tools/kirosim/scenetext.h"

namespace kirosim
{

/// Reads the members that are named; the others stay. @throws tuningfile::InputError with file, line and column
VOID ReadObject(const SceneText& rText, const YAML::Node& rNode, SceneObject& rObject);

}  // namespace kirosim
