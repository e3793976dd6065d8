/// @file
/// Channels of statistics that a host delivers.
#pragma once

#include <string>
#include <vector>

namespace tuningcheck
{

/// Those of this repository's hosts.
std::vector<std::string> HostChannels();

/// Reads names, one on each line; blank lines and those that begin with # are left out.
/// @throws tuningfile::InputError if the file cannot be read or names none
std::vector<std::string> ReadChannels(const std::string& rPath);

}  // namespace tuningcheck
