/// @file
/// How a session begins, from text.
#pragma once

#include "tools/kirosim/scenerows.h"
#include "tools/kirosim/startscene.h"

namespace kirosim
{

const SceneTable<StartPlan>& StartTable();

}  // namespace kirosim
