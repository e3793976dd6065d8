/// @file
/// How much of one frequency is in numbers over time.
#pragma once

#include <optional>
#include <span>

#include "platform/tavotypes.h"

namespace kirosim
{

/// Peak to peak of the sine of one frequency in the values, by correlation over the last whole periods of it.
/// @param times s, ascending, one for each value
/// @return none for less than a period
std::optional<DOUBLE> ToneSwing(std::span<const DOUBLE> times, std::span<const DOUBLE> values, DOUBLE hertz);

}  // namespace kirosim
