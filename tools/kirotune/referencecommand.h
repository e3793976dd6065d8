/// @file
/// The commands that tell what tunables mean: for editors, as pages, and one by one.
#pragma once

#include <functional>
#include <string>

#include "tools/program/commandline.h"

namespace kirotune
{

/// Adds "schema" and "reference". @param rRun set to the command that was given
VOID AddReferenceCommands(CLI::App& rApp, std::function<int()>& rRun);

/// Prints what a module, or a member of it, means.
/// @param rPath "kirodbconvbase", "kirodbconvbase.data.value.tolerance"; indices ("data[0]") are passed over
/// @throws tuningfile::InputError if there is none
VOID Explain(const std::string& rPath);

}  // namespace kirotune
