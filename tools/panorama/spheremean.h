/// @file
/// How bright a panorama is as a whole.
#pragma once

#include "tools/panorama/radiancemap.h"

namespace panorama
{

/// Mean of log2 of the luminance over the sphere, weighted by area: rows near the poles are as wide as others in the
/// picture, but not on the sphere. Directions without light do not count.
/// @param rMap holds some light, see Clean
DOUBLE MeanLog2Luminance(const RadianceMap& rMap);

}  // namespace panorama
