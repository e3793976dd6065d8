/// @file
/// The commands of kirotune. Each prints its result to stdout and remarks to stderr, and returns the exit status.
#pragma once

#include <string>

#include "parameters/versionunion.h"

namespace kirotune
{

/// @throws tuningfile::InputError, as all commands do, on bad input
int Compile(const std::string& rInput, const std::string& rOutput, const VersionUnion& rVersion);

/// @param rOutput empty for stdout
int Dump(const std::string& rInput, const std::string& rOutput);

int Info(const std::string& rInput);

}  // namespace kirotune
