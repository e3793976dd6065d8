/// @file
/// Command lines, as all programs read them.
#pragma once

#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "platform/tavotypes.h"
#include "tools/program/programmain.h"
#include "tools/tuningfile/names.h"

namespace program
{

/// For arguments that name a file.
inline const CLI::Validator FileName([](const std::string& rText)
                                     { return rText.empty() ? "expected the name of a file" : ""; },
                                     "FILE", "file name");

/// What a command takes where there is an argument that it does not know: options, or commands of its own.
inline std::vector<std::string> KnownNames(const CLI::App& rCommand, bool areOptions)
{
    std::vector<std::string> names;
    if (areOptions)
    {
        for (const CLI::Option* pOption : rCommand.get_options())
        {
            for (const std::string& rName : pOption->get_lnames())
            {
                names.push_back("--" + rName);
            }
        }
        return names;
    }
    for (const CLI::App* pCommand : rCommand.get_subcommands([](const CLI::App*) { return true; }))
    {
        names.push_back(pCommand->get_name());
    }
    return names;
}

/// @return what to say about the first argument that a command does not know, if it might be a slip
inline std::optional<std::string> AdviceOnUnknown(const CLI::App& rCommand)
{
    const std::vector<std::string> unknown = rCommand.remaining();
    if (unknown.empty())
    {
        const std::vector<CLI::App*> used = rCommand.get_subcommands();
        return used.empty() ? std::nullopt : AdviceOnUnknown(*used.front());
    }
    const std::string              name     = unknown.front().substr(0, unknown.front().find('='));
    const bool                     isOption = name.starts_with('-');
    const std::vector<std::string> known    = KnownNames(rCommand, isOption);
    if (known.empty())
    {
        return std::nullopt;
    }
    return fmt::format("unknown {} '{}', {}", isOption ? "option" : "command", name,
                       tuningfile::Advice(name, {known.begin(), known.end()}));
}

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
        const std::string fault = AdviceOnUnknown(rApp).value_or(rError.what());
        (VOID) std::fprintf(stderr, "%s: %s\n", rApp.get_name().c_str(), fault.c_str());
        return ExitBadUsage;
    }
}

}  // namespace program
