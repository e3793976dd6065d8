/// @file
/// The manual page of a program.
#pragma once

#include <string>

#include <CLI/CLI.hpp>

#include "platform/tavotypes.h"

namespace program
{

/// @return the page for section 1: what the help of the app and of all its commands says
std::string ManPage(const CLI::App& rApp);

}  // namespace program
