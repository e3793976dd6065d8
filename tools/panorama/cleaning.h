/// @file
/// Values of a panorama that are no light.
#pragma once

#include <string_view>

#include "tools/panorama/radiancemap.h"

namespace panorama
{

/// What no lens sees goes: values below zero (colours outside the primaries), those that are no numbers, and those more
/// than 30 EV below the brightest one become zero. An infinite one, which a sun leaves behind in half floats, becomes
/// the brightest one that is finite.
/// @throws tuningfile::InputError if nothing is left
VOID Clean(RadianceMap& rMap, std::string_view name);

}  // namespace panorama
