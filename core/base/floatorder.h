/// @file
/// Sorting measured values. A host can deliver NaN, and sorting by < alone is undefined with one.
#pragma once

#include <cmath>

#include "platform/tavotypes.h"

namespace floatorder
{

/// Rising order with NaN last.
inline bool IsBelow(FLOAT left, FLOAT right)
{
    return left < right || (std::isnan(right) && !std::isnan(left));
}

/// Falling order with NaN first.
inline bool IsAbove(FLOAT left, FLOAT right)
{
    return IsBelow(right, left);
}

}  // namespace floatorder
