/// @file
/// The command that judges tunings.
#pragma once

#include <functional>

#include "tools/program/commandline.h"

namespace kirotune
{

/// Adds "check". @param rRun set to the command that was given
VOID AddCheckCommand(CLI::App& rApp, std::function<int()>& rRun);

}  // namespace kirotune
