/// @file
/// Panoramas from files.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "tools/panorama/radiancemap.h"

namespace panorama
{

/// Reads an OpenEXR or Radiance picture, told by its first bytes. The values are those of the file.
/// @param name of the file, for messages
/// @throws tuningfile::InputError, whose text begins with the name
RadianceMap ReadMap(std::span<const BYTE> bytes, std::string_view name);

/// A panorama ready to be looked at: clean, with a mean of log2 of the luminance of 0, and not finer than a coarse
/// picture needs. @throws tuningfile::InputError as ReadMap does, also for a map without light
RadianceMap ReadLookable(std::span<const BYTE> bytes, std::string_view name);

/// The same from a file, which is decoded once and shared as long as somebody holds it.
/// @throws tuningfile::InputError, whose text begins with the path
std::shared_ptr<const RadianceMap> SharedMap(const std::string& rPath);

}  // namespace panorama
