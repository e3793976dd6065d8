/// @file
/// The completion of a command line by bash.
#pragma once

#include <string>

#include <CLI/CLI.hpp>

#include "platform/tavotypes.h"

namespace program
{

/// @return a script for bash: commands and options as the app knows them, and names of files where neither is due
std::string BashCompletion(const CLI::App& rApp);

}  // namespace program
