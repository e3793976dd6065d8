/// @file
/// The flash of a scene from text.
#pragma once

#include "tools/kirosim/flashscene.h"
#include "tools/kirosim/scenetext.h"

namespace kirosim
{

FlashScene ReadFlash(const SceneText& rText, const tuningfile::YamlEntry& rEntry);

}  // namespace kirosim
