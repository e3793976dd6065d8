#include "tools/program/commandtable.h"

namespace program
{

std::vector<const CLI::App*> CommandsOf(const CLI::App& rApp)
{
    return rApp.get_subcommands([](const CLI::App* pCommand) { return !pCommand->get_name().empty(); });
}

std::vector<std::string> CommandNames(const CLI::App& rApp)
{
    std::vector<std::string> names;
    for (const CLI::App* pCommand : CommandsOf(rApp))
    {
        names.push_back(pCommand->get_name());
    }
    return names;
}

std::vector<const CLI::Option*> OptionsOf(const CLI::App& rApp)
{
    return rApp.get_options([](const CLI::Option* pOption)
                            { return pOption->nonpositional() && !pOption->get_group().empty(); });
}

std::vector<std::string> NamesOf(const CLI::Option& rOption)
{
    std::vector<std::string> names;
    for (const std::string& rName : rOption.get_snames())
    {
        names.push_back("-" + rName);
    }
    for (const std::string& rName : rOption.get_lnames())
    {
        names.push_back("--" + rName);
    }
    return names;
}

std::vector<std::string> OptionNames(const CLI::App& rApp)
{
    std::vector<std::string> names;
    for (const CLI::Option* pOption : OptionsOf(rApp))
    {
        for (const std::string& rName : NamesOf(*pOption))
        {
            names.push_back(rName);
        }
    }
    return names;
}

}  // namespace program
