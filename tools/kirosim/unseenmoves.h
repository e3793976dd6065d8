/// @file
/// What a scene says of its panorama that no frame of a run comes to see.
#pragma once

#include <string>

#include "tools/kirosim/scene.h"

namespace kirosim
{

/// @return one line on the last point of the path, or the last cut, that is behind the end of the run; empty if there
/// is none
std::string UnseenMove(const Scene& rScene);

}  // namespace kirosim
