/// @file
/// Events of a scene from text.
#pragma once

#include "tools/kirosim/scene.h"
#include "tools/kirosim/scenetext.h"

namespace kirosim
{

/// The events of a list in ascending time. @throws tuningfile::InputError
std::vector<Event> ReadEvents(const SceneText& rText, const tuningfile::YamlEntry& rEntry);

/// Selectors of a mode path, one per level.
std::vector<TuningMode> ReadModes(const SceneText& rText, const tuningfile::YamlEntry& rEntry);

}  // namespace kirosim
