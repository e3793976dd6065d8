/// @file
/// The checksum at the end of a parameter file.
#pragma once

#include <span>

#include "parameters/binaryfileformat.h"

namespace tuningfile
{

/// Bytes that the checksum of a version takes.
size_t ChecksumSize(const VersionUnion& rVersion);

/// Makes the last bytes of a file the checksum of those in front of them. A file too short for one stays as it is.
VOID Seal(std::span<BYTE> bytes, const VersionUnion& rVersion);

}  // namespace tuningfile
