/// @file
/// Command lines, as all programs read them.
#pragma once

#include <optional>
#include <string>

#include <CLI/CLI.hpp>

#include "platform/tavotypes.h"
#include "tools/program/programmain.h"

namespace program
{

/// For arguments that name a file.
inline const CLI::Validator FileName([](const std::string& rText)
                                     { return rText.empty() ? "expected the name of a file" : ""; },
                                     "FILE", "file name");

/// The command line as it can be given to a shell again, on one line and without the program's folder.
std::string CommandText(int argc, char** argv);

/// Reads the command line, and answers --version by itself. Misuse is told in one line, with advice on a misspelt
/// option or command.
/// @param rApp with the name of the program
/// @return the status to end with, after the help or an error; nothing if the program is to go on
std::optional<int> ReadCommandLine(CLI::App& rApp, int argc, char** argv);

}  // namespace program
