#include "tools/kirotune/newcommand.h"

#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <string>

#include <fmt/format.h>
#include <unistd.h>

#include "tools/newtuning/firsttuning.h"
#include "tools/newtuning/questions.h"
#include "tools/program/standardstreams.h"
#include "tools/tuningfile/files.h"
#include "tools/tuningfile/inputerror.h"

namespace kirotune
{

namespace
{

using newtuning::Answers;
using newtuning::Question;
using tuningfile::InputError;

struct NewOptions
{
    std::map<std::string, std::string> answers;  ///< by the question's name
    std::string                        output   = "-";
    bool                               isAsking = false;
    bool                               isForced = false;
};

/// Asks until an answer will do. Questions go to stderr: stdout may be the tuning.
VOID Ask(const Question& rQuestion, Answers& rAnswers)
{
    const std::string byDefault = rQuestion.Default(rAnswers);
    for (;;)
    {
        fmt::print(stderr, "{} [{}]: ", rQuestion.pText, byDefault);
        std::string answer;
        if (!std::getline(std::cin, answer))
        {
            fmt::print(stderr, "\n");
            throw InputError(fmt::format("the input ends before the answer to '{}'", rQuestion.pText));
        }
        const std::string expected = rQuestion.Take(answer.empty() ? byDefault : answer, rAnswers);
        if (expected.empty())
        {
            return;
        }
        fmt::print(stderr, "  not {}: expected {}\n", answer, expected);
    }
}

Answers CollectAnswers(const NewOptions& rOptions)
{
    // A person who names options knows what to say.
    const bool isAsking = rOptions.isAsking || (rOptions.answers.empty() && isatty(STDIN_FILENO) != 0);
    if (!isAsking && rOptions.answers.empty())
    {
        fmt::print(stderr, "stdin is no terminal: defaults are taken, expected --ask if answers come that way\n");
    }
    Answers answers;
    for (const Question& rQuestion : newtuning::Questions())
    {
        const auto given = rOptions.answers.find(rQuestion.pName);
        if (given == rOptions.answers.end() && isAsking)
        {
            Ask(rQuestion, answers);
            continue;
        }
        const bool        isGiven  = given != rOptions.answers.end();
        const std::string text     = isGiven ? given->second : rQuestion.Default(answers);
        const std::string expected = rQuestion.Take(text, answers);
        if (!expected.empty())
        {
            throw InputError(fmt::format("--{} is {}{}, expected {}", rQuestion.pName, text,
                                         isGiven ? "" : " by default", expected));
        }
    }
    return answers;
}

int New(const NewOptions& rOptions)
{
    const std::string& rOutput = rOptions.output;
    if (!rOptions.isForced && std::filesystem::is_regular_file(rOutput))
    {
        throw InputError(rOutput + ": is there already, expected a new file, or --force to replace it");
    }
    const std::string text = newtuning::FirstTuning(CollectAnswers(rOptions));
    tuningfile::ReplaceFile(rOutput, {reinterpret_cast<const BYTE*>(text.data()), text.size()});
    if (!program::IsStandardStream(rOutput))
    {
        fmt::print("{0}: written; kirotune check {0} judges it, kirosim run --tuning {0} shows it at work\n", rOutput);
    }
    return 0;
}

}  // namespace

VOID AddNewCommand(CLI::App& rApp, std::function<int()>& rRun)
{
    const auto pOptions = std::make_shared<NewOptions>();
    CLI::App*  pNew     = rApp.add_subcommand("new", "write a first tuning for a camera, with comments");
    pNew->add_option("-o,--output", pOptions->output, "text tuning to write (.yaml), or - for stdout")
        ->check(program::FileName)
        ->capture_default_str();
    pNew->add_flag("--force", pOptions->isForced, "replace a file that is there already");
    pNew->add_flag("--ask", pOptions->isAsking,
                   "ask for what no option says, as it is done at a terminal without any option");
    Answers byDefault;
    for (const Question& rQuestion : newtuning::Questions())
    {
        const std::string name  = rQuestion.pName;
        const std::string usual = rQuestion.Default(byDefault);
        (VOID) rQuestion.Take(usual, byDefault);
        if (name == "hdr")
        {
            pNew->add_flag_function(
                "--hdr,!--no-hdr",
                [pOptions, name](INT64 count) { pOptions->answers[name] = (count > 0) ? "yes" : "no"; },
                rQuestion.pText);
            continue;
        }
        pNew->add_option_function<std::string>(
                "--" + name, [pOptions, name](const std::string& rText) { pOptions->answers[name] = rText; },
                rQuestion.pText)
            ->default_str(usual);
    }
    pNew->callback([pOptions, &rRun] { rRun = [pOptions] { return New(*pOptions); }; });
}

}  // namespace kirotune
