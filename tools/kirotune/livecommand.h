/// @file
/// The part of the command line that tunes running cameras.
#pragma once

#include <functional>

#include <CLI/CLI.hpp>

#include "platform/tavotypes.h"

namespace kirotune
{

/// Adds "live" with its commands.
/// @param rRun set, when one of them has been parsed, to what does it; must outlive the parsing
VOID AddLiveCommands(CLI::App& rApp, std::function<int()>& rRun);

}  // namespace kirotune
