/// @file
/// How numbers of a stretch of frames move, such as exposures in EV.
#pragma once

#include <span>

#include "platform/tavotypes.h"

namespace kirosim
{

/// Changes of the exposure from frame to frame that a person may see, EV.
constexpr DOUBLE VisibleEV = 0.01;

/// Largest less smallest value. @param values at least one
DOUBLE SwingOf(std::span<const DOUBLE> values);

/// @param values at least one
DOUBLE MeanOf(std::span<const DOUBLE> values);

/// The largest change from a value to the next, whatever its direction; 0 for less than two values.
DOUBLE LargestChange(std::span<const DOUBLE> values);

/// How often a movement that can be seen goes back on the one before it. @param exposuresEV of consecutive frames
UINT32 Reversals(std::span<const DOUBLE> exposuresEV);

}  // namespace kirosim
