/// @file
/// The command that writes a first tuning.
#pragma once

#include <functional>

#include "tools/program/commandline.h"

namespace kirotune
{

/// Adds "new". @param rRun set to the command that was given
VOID AddNewCommand(CLI::App& rApp, std::function<int()>& rRun);

}  // namespace kirotune
