#include "tools/program/commandline.h"

#include <algorithm>
#include <cstdio>

#include <fmt/format.h>

#include "tools/program/commandtable.h"
#include "tools/program/completion.h"
#include "tools/program/manpage.h"
#include "tools/tuningfile/names.h"

namespace program
{

namespace
{

std::string Advice(const std::string& rUnknown, const std::vector<std::string>& rNames)
{
    return tuningfile::Advice(rUnknown, {rNames.begin(), rNames.end()});
}

/// The app and the commands of it that were given, the outermost first.
std::vector<const CLI::App*> GivenCommands(const CLI::App& rApp)
{
    std::vector<const CLI::App*> given = {&rApp};
    while (!given.back()->get_subcommands().empty())
    {
        given.push_back(given.back()->get_subcommands().front());
    }
    return given;
}

/// What is wrong with an argument that nothing took. Where an inner command hands on to the outer one what it does not
/// know, the outer one has kept it, and the options of both would have done.
std::string FaultOfArgument(const std::string& rArgument, const std::vector<const CLI::App*>& rGiven)
{
    const std::string command = (rGiven.size() > 1) ? " of " + rGiven.back()->get_name() : "";
    if (rArgument.size() > 1 && rArgument.front() == '-')
    {
        std::vector<std::string> names;
        const auto               keeper =
            std::find_if(rGiven.begin(), rGiven.end(), [](const CLI::App* pApp) { return pApp->remaining_size() > 0; });
        for (auto app = keeper; app != rGiven.end(); ++app)
        {
            const std::vector<std::string> own = OptionNames(**app);
            names.insert(names.begin(), own.begin(), own.end());
        }
        const std::string name = rArgument.substr(0, rArgument.find('='));
        return fmt::format("unknown option '{}'{}, {}", name, command, Advice(name, names));
    }
    const std::vector<std::string> commands = CommandNames(*rGiven.back());
    return commands.empty()
               ? fmt::format("unexpected argument '{}'{}, expected no more", rArgument, command)
               : fmt::format("unknown command '{}'{}, {}", rArgument, command, Advice(rArgument, commands));
}

/// What to say of a command line that was refused. An unknown argument comes first: what lacks may be a slip in it.
std::string FaultOf(const CLI::App& rApp, const CLI::ParseError& rError)
{
    const std::vector<const CLI::App*> given = GivenCommands(rApp);
    const std::vector<std::string>     rest  = rApp.remaining(true);
    if (!rest.empty())
    {
        return FaultOfArgument(rest.front(), given);
    }
    const std::vector<std::string> commands = CommandNames(*given.back());
    if (rError.get_name() == "RequiredError" && !commands.empty())
    {
        return "no command given, " + Advice("", commands);
    }
    return rError.what();
}

/// What the build asks of a program, for its package.
std::optional<std::string> PackagedText(const CLI::App& rApp, int argc, char** argv)
{
    const std::string_view option = (argc == 2) ? argv[1] : "";
    if (option == "--print-bash-completion")
    {
        return BashCompletion(rApp);
    }
    return (option == "--print-man-page") ? std::optional<std::string>(ManPage(rApp)) : std::nullopt;
}

}  // namespace

std::string CommandText(int argc, char** argv)
{
    constexpr std::string_view plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789%+,-./:=@_";
    std::string                text;
    for (int index = 0; index < argc; ++index)
    {
        std::string argument = argv[index];
        if (index == 0)
        {
            argument.erase(0, argument.find_last_of('/') + 1);
        }
        else if (argument.empty() || argument.find_first_not_of(plain) != std::string::npos)
        {
            for (size_t quote = argument.find('\''); quote != std::string::npos; quote = argument.find('\'', quote + 4))
            {
                argument.replace(quote, 1, "'\\''");
            }
            argument = '\'' + argument + '\'';
        }
        text += ((index == 0) ? "" : " ") + argument;
    }
    return text;
}

std::optional<int> ReadCommandLine(CLI::App& rApp, int argc, char** argv)
{
    rApp.set_version_flag("--version", rApp.get_name() + " " KIROCORE_VERSION, "print the version and end");
    if (const std::optional<std::string> text = PackagedText(rApp, argc, argv); text.has_value())
    {
        fmt::print("{}", *text);
        return 0;
    }
    try
    {
        rApp.parse(argc, argv);
        return std::nullopt;
    }
    catch (const CLI::ParseError& rError)
    {
        if (rError.get_exit_code() == 0)
        {
            return rApp.exit(rError);  // prints the help or the version
        }
        (VOID) std::fprintf(stderr, "%s: %s\n", rApp.get_name().c_str(), FaultOf(rApp, rError).c_str());
        return ExitBadUsage;
    }
}

}  // namespace program
