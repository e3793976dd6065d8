/// @file
/// A small picture of a frame, made of what its statistics tell of each region.
#pragma once

#include <array>

#include "tools/kirosim/flashmodel.h"
#include "tools/kirosim/scenegrid.h"

namespace kirosim
{

/// What the safe exposure saw.
struct RegionView
{
    std::array<FLOAT, GridSize> level;  ///< full scale is 1
    std::array<FLOAT, GridSize> rg;
    std::array<FLOAT, GridSize> bg;
    Colour                      light;  ///< that a grey surface shows
};

/// Red, green and blue of each region, row by row.
using RegionPixels = std::array<BYTE, size_t{3} * GridSize>;

/// Develops plainly: white balance for the scene's light and the sRGB transfer, no tone mapping.
VOID DevelopRegions(const RegionView& rView, RegionPixels& rPixels);

}  // namespace kirosim
