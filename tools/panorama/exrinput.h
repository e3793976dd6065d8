/// @file
/// OpenEXR pictures: half or single floats in lines or tiles.
#pragma once

#include <span>
#include <string_view>

#include "tools/panorama/radiancemap.h"

namespace panorama
{

/// Whether a file is such a picture, by its first bytes.
bool IsExr(std::span<const BYTE> bytes);

/// Reads the channels R, G and B, or Y alone as grey.
/// @param name of the file, for messages
/// @throws tuningfile::InputError for a damaged file, and for one without these channels
RadianceMap ReadExr(std::span<const BYTE> bytes, std::string_view name);

}  // namespace panorama
