/// @file
/// Radiance pictures (.hdr): four bytes a pixel, three mantissas and an exponent that they share.
#pragma once

#include <span>
#include <string_view>

#include "tools/panorama/radiancemap.h"

namespace panorama
{

/// Whether a file is such a picture, by its first bytes.
bool IsHdr(std::span<const BYTE> bytes);

/// Reads flat lines and both kinds of run lengths.
/// @param name of the file, for messages
/// @throws tuningfile::InputError for a damaged file, and for one that does not stand upright or is not of RGB
RadianceMap ReadHdr(std::span<const BYTE> bytes, std::string_view name);

}  // namespace panorama
