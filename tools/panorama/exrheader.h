/// @file
/// What an OpenEXR file says about itself, before the library believes it.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "platform/tavotypes.h"

namespace panorama
{

/// Looks through the header of a file. The library takes sizes from it and asks for as much memory, so that a damaged
/// one could take all there is.
/// @param name of the file, for messages
/// @return the file; attributes that pixels do not depend on are of a type that the library does not look into
/// @throws tuningfile::InputError for a header that does not fit into the file, for sizes that no panorama has, and for
/// files of several parts or of depths
std::vector<BYTE> CheckedExr(std::span<const BYTE> bytes, std::string_view name);

}  // namespace panorama
