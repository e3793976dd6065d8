/// @file
/// What no single exposure can show: light that spans more than the sensor.
#pragma once

#include <span>

#include "platform/tavotypes.h"

namespace kirosim
{

/// The least share of samples that are clipped or black in any one exposure: a sample is clipped from full scale on,
/// and black below 1/256 of it. Exposures up to an eighth of an octave apart are tried.
/// @param samples of a frame, of any scale, none negative; at least one
DOUBLE LeastLoss(std::span<const FLOAT> samples);

}  // namespace kirosim
