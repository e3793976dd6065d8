/// @file
/// When a movement comes to rest, and how far it went beyond.
#pragma once

#include <cmath>
#include <optional>
#include <span>

#include "platform/tavotypes.h"

namespace kirosim
{

constexpr DOUBLE SettledPercent = 5.0;

/// Distance of an exposure from where it rests up to which it counts as settled, EV.
inline DOUBLE SettledToleranceEV()
{
    return std::log2(1.0 + SettledPercent / 100.0);
}

/// @param restEV where the values should come to rest
/// @return the first value from which on all are settled; none if at most the last one is, which shows no rest
std::optional<size_t> SettledFrom(std::span<const DOUBLE> valuesEV, DOUBLE restEV);

/// How far the values go beyond their rest, seen from where they come from; 0 if they stay short of it.
DOUBLE OvershootOf(std::span<const DOUBLE> valuesEV, DOUBLE fromEV, DOUBLE restEV);

}  // namespace kirosim
