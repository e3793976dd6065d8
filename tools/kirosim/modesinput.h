/// @file
/// Modes of the tuning, as a scene names them.
#pragma once

#include "parameters/tuningmode.h"
#include "tools/kirosim/scenerows.h"

namespace kirosim
{

/// Selectors of a mode path, one per level. @throws tuningfile::InputError
std::vector<TuningMode> ReadModes(const SceneText& rText, const tuningfile::YamlEntry& rEntry);

/// What ReadModes reads.
SceneForm ModesForm();

}  // namespace kirosim
