/// @file
/// Tunings as parameter files.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "parameters/binaryfileformat.h"
#include "tools/tuningfile/tuning.h"

namespace tuningfile
{

constexpr VersionUnion OldestVersion{1, 0, 0};
constexpr VersionUnion NewestVersion = BinaryFileFormat::MultiModeTableVersion;

/// Reads "7.0.0". @return nothing if the text is no version from OldestVersion to NewestVersion
std::optional<VersionUnion> ParseVersion(std::string_view text);

/// What the offsets in a parameter file reach.
constexpr size_t MaxFileSize = 0xFFFFFFFF;

/// The bytes of a file of a version from OldestVersion to NewestVersion. Files below 6.0.0 carry no modules, since
/// nothing reads modules from them.
/// @throws InputError if the tuning exceeds what the format can address
std::vector<BYTE> WriteBinary(const Tuning& rTuning, const VersionUnion& rVersion);

/// What WriteBinary leaves out because the version has no place for it; each as a noun, such as "links".
std::vector<std::string> LeftOut(const Tuning& rTuning, const VersionUnion& rVersion);

}  // namespace tuningfile
