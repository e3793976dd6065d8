/// @file
/// What sources outside the camera say: a map of the frame, and how the camera shakes.
#pragma once

#include <limits>

#include "platform/tavotypes.h"

namespace kirosim
{

enum class MapKind
{
    Depth,        ///< distance of each cell in m
    Segmentation  ///< 1 for a cell of the subject, otherwise 0
};

/// A map of the scene's object. While the source has none, the host's table is empty.
struct OutsideMap
{
    MapKind kind       = MapKind::Depth;
    DOUBLE  near       = 1.5;                                      ///< of the object, m
    DOUBLE  far        = 6.0;                                      ///< of all else, m
    DOUBLE  appears    = 0.0;                                      ///< s
    DOUBLE  goes       = std::numeric_limits<DOUBLE>::infinity();  ///< s
    DOUBLE  targetLuma = 46.0;                                     ///< that the object should have, of 255
};

/// A point of the shake over time; it holds up to the next.
struct GyroPoint
{
    DOUBLE time;  ///< s
    DOUBLE rms;   ///< rad/s
};

}  // namespace kirosim
