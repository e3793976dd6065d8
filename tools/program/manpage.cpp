#include "tools/program/manpage.h"

#include <fmt/format.h>

#include "tools/program/commandtable.h"

namespace program
{

namespace
{

/// A text as it stands in a line of its own: nothing in it is an instruction.
std::string Plain(std::string_view text)
{
    std::string plain = (text.starts_with('.') || text.starts_with('\'')) ? "\\&" : "";
    for (const CHAR letter : text)
    {
        plain += (letter == '\\') ? "\\e" : (letter == '-') ? "\\-" : std::string(1, letter);
    }
    return plain;
}

/// What stands for the value of an option; empty for one that has none.
std::string ValueOf(const CLI::Option& rOption)
{
    if (rOption.get_items_expected_max() == 0)
    {
        return {};
    }
    const std::string type = rOption.get_type_name();  // such as "TEXT:FILE" or "UINT:UINT in [1 - 5]"
    return (type.find("FILE") != type.npos) ? "FILE" : type.substr(0, type.find(':'));
}

std::string Entry(const std::string& rHead, const CLI::Option& rOption)
{
    std::string meaning = rOption.get_description();
    meaning += rOption.get_required() ? " (required)" : "";
    meaning += rOption.get_default_str().empty() ? "" : fmt::format(" (default: {})", rOption.get_default_str());
    return fmt::format(".TP\n{}\n{}\n", rHead, Plain(meaning));
}

std::string OptionEntry(const CLI::Option& rOption)
{
    std::string names;
    for (const std::string& rName : NamesOf(rOption))
    {
        names += fmt::format("{}\\fB{}\\fR", names.empty() ? "" : ", ", Plain(rName));
    }
    const std::string value = ValueOf(rOption);
    return Entry(value.empty() ? names : fmt::format("{} \\fI{}\\fR", names, Plain(value)), rOption);
}

std::vector<const CLI::Option*> ArgumentsOf(const CLI::App& rApp)
{
    return rApp.get_options([](const CLI::Option* pOption) { return !pOption->nonpositional(); });
}

std::string Synopsis(const CLI::App& rApp, const std::string& rCommand)
{
    std::string line = fmt::format("\\fB{}\\fR [\\fIOPTION\\fR]...", Plain(rCommand));
    for (const CLI::Option* pArgument : ArgumentsOf(rApp))
    {
        const std::string name = fmt::format("\\fI{}\\fR", Plain(pArgument->get_name()));
        line += pArgument->get_required() ? " " + name : fmt::format(" [{}]", name);
    }
    return line + (CommandsOf(rApp).empty() ? "\n" : " \\fICOMMAND\\fR ...\n");
}

std::string Entries(const CLI::App& rApp)
{
    std::string text;
    for (const CLI::Option* pArgument : ArgumentsOf(rApp))
    {
        text += Entry(fmt::format("\\fI{}\\fR", Plain(pArgument->get_name())), *pArgument);
    }
    for (const CLI::Option* pOption : OptionsOf(rApp))
    {
        text += OptionEntry(*pOption);
    }
    return text;
}

/// A section for each command, and behind it those of its own commands.
std::string Commands(const CLI::App& rApp, const std::string& rProgram)
{
    std::string text;
    for (const CLI::App* pCommand : CommandsOf(rApp))
    {
        const std::string command = rProgram + ' ' + pCommand->get_name();
        text += fmt::format(".SS {}\n{}.PP\n{}\n{}", Plain(command), Synopsis(*pCommand, command),
                            Plain(pCommand->get_description()), Entries(*pCommand));
        text += pCommand->get_footer().empty() ? "" : fmt::format(".PP\n{}\n", Plain(pCommand->get_footer()));
        text += Commands(*pCommand, command);
    }
    return text;
}

}  // namespace

std::string ManPage(const CLI::App& rApp)
{
    const std::string& name     = rApp.get_name();
    const std::string  commands = Commands(rApp, name);
    return fmt::format(".TH {} 1\n.SH NAME\n{} \\- {}\n.SH SYNOPSIS\n{}.SH OPTIONS\n{}{}{}", name, name,
                       Plain(rApp.get_description()), Synopsis(rApp, name), Entries(rApp),
                       commands.empty() ? "" : ".SH COMMANDS\n", commands);
}

}  // namespace program
