/// @file
/// Large panoramas in a size that a coarse picture needs.
#pragma once

#include "tools/panorama/radiancemap.h"

namespace panorama
{

/// Means of blocks of pixels, so that a small sun is seen by its light from any direction instead of by chance.
/// @return the map as it is if it is not wider than that
RadianceMap Reduce(RadianceMap map, UINT32 widthMax);

}  // namespace panorama
