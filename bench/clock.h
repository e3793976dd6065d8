/// @file
/// The clock that all is measured by.
#pragma once

#include <chrono>

#include "platform/tavotypes.h"

using Clock = std::chrono::steady_clock;

inline DOUBLE NsSince(Clock::time_point start)
{
    return std::chrono::duration<DOUBLE, std::nano>(Clock::now() - start).count();
}
