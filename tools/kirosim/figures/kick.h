/// @file
/// Jumps of the exposure that the light gave no cause for.
#pragma once

#include <span>

#include "platform/tavotypes.h"

namespace kirosim
{

/// The largest change of the exposure from one frame to the next, less the largest change of the light in the ten
/// frames up to it, which the exposure may still be following.
/// @param exposuresEV, lightsEV of consecutive frames, alike in number
/// @param begin, end the changes to look at: those into these frames
/// @return EV, 0 if the light explains all changes
DOUBLE KickOf(std::span<const DOUBLE> exposuresEV, std::span<const DOUBLE> lightsEV, size_t begin, size_t end);

}  // namespace kirosim
