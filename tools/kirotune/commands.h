/// @file
/// The commands of kirotune. Each prints its result to stdout and remarks to stderr, and returns the exit status. A
/// file
/// "-" is standard input or standard output.
#pragma once

#include <string>
#include <vector>

#include "parameters/versionunion.h"

namespace kirotune
{

/// @param rPatches texts that change numbers of the tuning, one after the other
/// @throws tuningfile::InputError, as all commands do, on bad input
int Compile(const std::string& rInput, const std::vector<std::string>& rPatches, const std::string& rOutput,
            const VersionUnion& rVersion);

int Dump(const std::string& rInput, const std::string& rOutput);

/// @param isJson one object instead of lines for a person
int Info(const std::string& rInput, bool isJson);

}  // namespace kirotune
