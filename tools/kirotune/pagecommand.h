/// @file
/// The command that shows a running camera in a browser.
#pragma once

#include <functional>

#include "tools/program/commandline.h"

namespace kirotune
{

/// Adds "page". @param rRun set to the command that was given
VOID AddPageCommand(CLI::App& rApp, std::function<int()>& rRun);

}  // namespace kirotune
