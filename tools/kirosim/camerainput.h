#pragma once

#include "tools/kirosim/camerasetup.h"
#include "tools/kirosim/scenetext.h"

namespace kirosim
{

/// Reads one member of a camera's setup. @return false if it is none
/// @throws tuningfile::InputError
bool ReadCameraEntry(const SceneText& rText, const tuningfile::YamlEntry& rEntry, CameraSetup& rSetup);

StatsAlgoRole ReadRole(const SceneText& rText, const tuningfile::YamlEntry& rEntry);

}  // namespace kirosim
