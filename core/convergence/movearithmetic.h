/// @file
/// What the moves of all exposures have in common.
#pragma once

#include <cmath>

#include "platform/tavotypes.h"

namespace convergencestages
{

/// @param remaining distance from the target after the move, log steps
/// @return whether the move is to end exactly on the target: the tolerance is 1, and less than that remains
inline bool IsLanding(UINT32 tolerance, DOUBLE remaining)
{
    constexpr FLOAT landingTolerance = 1.0000001f;
    return static_cast<DOUBLE>(tolerance) > std::abs(remaining) && static_cast<FLOAT>(tolerance) < landingTolerance;
}

/// @return step with the sign of value; a value of 0 counts as negative
template <typename T> T SignedStep(T step, T value)
{
    return (value > T(0)) ? step : -step;
}

}  // namespace convergencestages
