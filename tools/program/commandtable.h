/// @file
/// What a command line knows: the commands and options of a program, as they were added.
#pragma once

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "platform/tavotypes.h"

namespace program
{

/// The commands that stand directly below an app, in the order of its help.
std::vector<const CLI::App*> CommandsOf(const CLI::App& rApp);

std::vector<std::string> CommandNames(const CLI::App& rApp);

/// The options that a help shows, without arguments that have no name.
std::vector<const CLI::Option*> OptionsOf(const CLI::App& rApp);

/// An option's names with their dashes, the short ones first.
std::vector<std::string> NamesOf(const CLI::Option& rOption);

/// All names of all options of one app.
std::vector<std::string> OptionNames(const CLI::App& rApp);

}  // namespace program
