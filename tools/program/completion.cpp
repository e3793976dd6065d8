#include "tools/program/completion.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tools/program/commandtable.h"

namespace program
{

namespace
{

/// What may stand behind each chain of commands, as branches of a shell's case.
struct Branches
{
    std::string chains;  ///< lead one command further
    std::string words;   ///< are completed there
};

/// @param rChain  the commands so far, each behind a blank
/// @param options names of those of outer commands that hold here too
VOID AddBranches(const CLI::App& rApp, const std::string& rChain, std::vector<std::string> options, Branches& rBranches)
{
    const std::vector<std::string> own = OptionNames(rApp);
    options.insert(options.begin(), own.begin(), own.end());
    rBranches.words += fmt::format("        '{}') commands='{}' options='{}' ;;\n", rChain,
                                   fmt::join(CommandNames(rApp), " "), fmt::join(options, " "));
    for (const CLI::App* pCommand : CommandsOf(rApp))
    {
        const std::string chain = rChain + ' ' + pCommand->get_name();
        rBranches.chains += fmt::format("            '{}') chain=\"{}\" ;;\n", chain, chain);
        AddBranches(*pCommand, chain, pCommand->get_fallthrough() ? own : std::vector<std::string>(), rBranches);
    }
}

}  // namespace

std::string BashCompletion(const CLI::App& rApp)
{
    const std::string& name = rApp.get_name();
    Branches           branches;
    AddBranches(rApp, "", {}, branches);
    return fmt::format(R"(# Completion of {0} for bash, made from its options.
_{0}()
{{
    local word=${{COMP_WORDS[COMP_CWORD]}} chain='' commands='' options='' index
    for ((index = 1; index < COMP_CWORD; ++index)); do
        case "$chain ${{COMP_WORDS[index]}}" in
{1}        esac
    done
    case "$chain" in
{2}    esac
    [[ $word != -* ]] || commands=$options
    mapfile -t COMPREPLY < <(compgen -W "$commands" -- "$word")
}}
complete -o default -F _{0} {0}
)",
                       name, branches.chains, branches.words);
}

}  // namespace program
