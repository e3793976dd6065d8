/// @file
/// Command lines, as all programs read them.
#pragma once

#include <cstdio>
#include <optional>

#include <CLI/CLI.hpp>

#include "platform/tavotypes.h"
#include "tools/program/programmain.h"

namespace program
{

/// For arguments that name a file.
inline const CLI::Validator FileName([](const std::string& rText)
                                     { return rText.empty() ? "expected the name of a file" : ""; },
                                     "FILE", "file name");

/// @param rApp with the name of the program
/// @return the status to end with, after the help or an error; nothing if the program is to go on
inline std::optional<int> ReadCommandLine(CLI::App& rApp, int argc, char** argv)
{
    try
    {
        rApp.parse(argc, argv);
        return std::nullopt;
    }
    catch (const CLI::ParseError& rError)
    {
        if (rError.get_exit_code() == 0)
        {
            return rApp.exit(rError);  // prints the help
        }
        (VOID) std::fprintf(stderr, "%s: %s\n", rApp.get_name().c_str(), rError.what());
        return ExitBadUsage;
    }
}

}  // namespace program
