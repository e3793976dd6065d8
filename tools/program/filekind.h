/// @file
/// What stands behind the name of a file, before it is opened: some things block then, or are destroyed.
#pragma once

#include <optional>
#include <string>

#include "platform/tavotypes.h"

namespace program
{

/// @return the descriptor that a name stands for, such as /dev/stdout, /dev/fd/63 of a shell's <(command), or
/// /proc/self/fd/1; nothing for any other name
std::optional<int> DescriptorOf(const std::string& rPath);

/// The file that a name stands for: the end of its symbolic links, which need not exist.
/// @throws std::system_error for links that go round in a circle
std::string EndOfLinks(const std::string& rPath);

/// @return "a folder", "a pipe" and the like for what cannot be used as a file; empty for plain files, for what does
/// not exist, and for devices of characters such as /dev/null. A pipe that a descriptor names can be used
std::string UnusableKind(const std::string& rPath);

/// @return whether two names stand for one file, whatever their spelling; for files that do not exist yet as well
bool IsSameFile(const std::string& rOne, const std::string& rOther);

}  // namespace program
