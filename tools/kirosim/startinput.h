#pragma once

#include "tools/kirosim/scenetext.h"
#include "tools/kirosim/startscene.h"

namespace kirosim
{

/// @throws tuningfile::InputError
StartPlan ReadStart(const SceneText& rText, const YAML::Node& rNode);

}  // namespace kirosim
