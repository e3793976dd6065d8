/// @file
/// The grid of the sensor's statistics, and parts of the frame in it.
#pragma once

#include <cmath>

#include "platform/tavotypes.h"

namespace kirosim
{

constexpr UINT32 GridWidth  = 64;
constexpr UINT32 GridHeight = 48;
constexpr UINT32 GridSize   = GridWidth * GridHeight;

/// Whether a region lies in a box of a given share of the frame, centred across. @param centreY 0 is the top
inline bool IsInBox(UINT32 column, UINT32 row, DOUBLE area, DOUBLE centreY)
{
    const DOUBLE half = std::sqrt(area) / 2.0;
    const DOUBLE x    = (column + 0.5) / GridWidth;
    const DOUBLE y    = (row + 0.5) / GridHeight;
    return std::abs(x - 0.5) < half && std::abs(y - centreY) < half;
}

}  // namespace kirosim
