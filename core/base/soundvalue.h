/// @file
/// What stands where a tuning leaves an output nothing to be computed from: a ratio of exposures that are 0, a factor
/// that divides and is 0.
#pragma once

#include <cmath>

#include "core/base/kirolog.h"

namespace soundvalue
{

/// @param last    the value before; it may be the host's, and unsound as well
/// @param neutral what stands if it is
/// @return value if it is finite, otherwise the one before, with a log
inline FLOAT OrLast(FLOAT value, FLOAT last, FLOAT neutral, const CHAR* pName)
{
    if (std::isfinite(value))
    {
        return value;
    }
    const FLOAT held = std::isfinite(last) ? last : neutral;
    STATS_LOG_ERROR("%s is %f with this tuning; %f stands", pName, value, held);
    return held;
}

}  // namespace soundvalue
