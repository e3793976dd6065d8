/// @file
/// Tunings in files: which kind a file is, and how to read and write it.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "tools/tuningfile/binaryoutput.h"
#include "tools/tuningfile/tuning.h"

namespace tuningfile
{

/// @return whether a name is that of a text, ".yaml" or ".yml"
bool IsText(const std::string& rPath);

/// @throws InputError if the file cannot be read or is above 4 GB
std::vector<BYTE> ReadBytes(const std::string& rPath);

/// Reads a text tuning. @throws InputError
Tuning ReadTextFile(const std::string& rPath);

/// Makes the parameter file of a text tuning. The store takes the bytes as they are.
/// @throws InputError, whose message names the place in the text
std::vector<BYTE> CompileFile(const std::string& rPath, const VersionUnion& rVersion = NewestVersion);

/// Puts bytes in the place of a file, or makes it; a failure leaves what was there.
/// @throws InputError if that cannot be done
VOID ReplaceFile(const std::string& rPath, std::span<const BYTE> bytes);

}  // namespace tuningfile
