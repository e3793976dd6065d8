/// @file
/// Light from all directions around a point, as a photographed panorama holds it.
#pragma once

#include <string_view>
#include <vector>

#include "platform/tavotypes.h"

namespace panorama
{

/// Linear light of Rec. 709 primaries; {1, 1, 1} is white.
struct Light
{
    FLOAT red;
    FLOAT green;
    FLOAT blue;
};

/// Luminance by Rec. 709, 1 for {1, 1, 1}.
inline FLOAT Luminance(const Light& rLight)
{
    return 0.2126f * rLight.red + 0.7152f * rLight.green + 0.0722f * rLight.blue;
}

/// The whole sphere, equirectangular: columns are longitudes from the left edge behind the viewer over straight ahead
/// in the middle to behind again, rows are latitudes from straight up to straight down. Twice as wide as high.
struct RadianceMap
{
    UINT32             width  = 0;
    UINT32             height = 0;
    std::vector<Light> pixels;  ///< row by row
};

/// Pixels that a map may have: 5792 by 2896 takes 200 MB while it is read.
constexpr UINT64 PixelsMax = 16ULL << 20;

/// @param fileSize of what the pixels are to be read from, in bytes
/// @param name     of the file, for messages
/// @throws tuningfile::InputError for a size that no map has, and for one that so few bytes cannot hold
VOID CheckMapSize(INT64 width, INT64 height, size_t fileSize, std::string_view name);

/// Makes a map of zeros, if CheckMapSize agrees.
RadianceMap MakeMap(INT64 width, INT64 height, size_t fileSize, std::string_view name);

}  // namespace panorama
