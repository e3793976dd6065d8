/// @file
/// Modes that a scene asks for and its tuning does not have.
#pragma once

#include <string>
#include <vector>

#include "tools/kirosim/loadedtuning.h"
#include "tools/kirosim/scene.h"

namespace kirosim
{

/// @return a line for each, such as "the tuning has no mode Usecase.Video, for which the scene asks"; each mode once
std::vector<std::string> MissingModes(const Scene& rScene, LoadedTuning& rTuning);

}  // namespace kirosim
