/// kirotune: makes, reads and checks tuning files, reads debug records, and tunes running cameras.
#include <functional>
#include <optional>

#include "tools/kirotune/commands.h"
#include "tools/kirotune/debugcommand.h"
#include "tools/kirotune/livecommand.h"
#include "tools/program/commandline.h"
#include "tools/tuningfile/binaryoutput.h"

namespace
{

int RunProgram(int argc, char** argv)
{
    CLI::App app("Makes, reads and checks tuning files, reads debug records, and tunes running cameras.", "kirotune");
    app.require_subcommand(1);

    std::string          input;
    std::string          output;
    std::string          version = "7.0.0";
    std::function<int()> run;

    CLI::App* pCompile = app.add_subcommand("compile", "make a parameter file of a text tuning");
    pCompile->add_option("tuning", input, "text tuning (.yaml)")->check(program::FileName)->required();
    pCompile->add_option("-o,--output", output, "parameter file to write")->check(program::FileName)->required();
    pCompile->add_option("--version", version, "version of the file, 1.0.0 to 7.0.0; below 6.0.0 it holds no modules")
        ->capture_default_str()
        ->check([](const std::string& rText)
                { return tuningfile::ParseVersion(rText) ? "" : "expected a version from 1.0.0 to 7.0.0"; });
    pCompile->callback([&]
                       { run = [&] { return kirotune::Compile(input, output, *tuningfile::ParseVersion(version)); }; });

    CLI::App* pDump = app.add_subcommand("dump", "turn a parameter file into text");
    pDump->add_option("file", input, "parameter file")->check(program::FileName)->required();
    pDump->add_option("-o,--output", output, "text to write; stdout by default")->check(program::FileName);
    pDump->callback([&] { run = [&] { return kirotune::Dump(input, output); }; });

    CLI::App* pInfo = app.add_subcommand("info", "show what a parameter file holds");
    pInfo->add_option("file", input, "parameter file")->check(program::FileName)->required();
    pInfo->callback([&] { run = [&] { return kirotune::Info(input); }; });

    CLI::App* pCheck = app.add_subcommand("check", "show what a device would say to a tuning");
    pCheck->add_option("file", input, "parameter file or text tuning (.yaml)")->check(program::FileName)->required();
    pCheck->callback([&] { run = [&] { return kirotune::Check(input); }; });

    CLI::App* pSchema   = app.add_subcommand("schema", "print the schema of text tunings");
    bool      reference = false;
    bool      json      = false;
    auto*     pJson     = pSchema->add_flag("--json", json, "as JSON Schema for editors (default)");
    pSchema->add_flag("--reference", reference, "as a reference of all tunables in Markdown")->excludes(pJson);
    pSchema->callback([&] { run = [&] { return kirotune::Schema(reference); }; });

    CLI::App*             pDebug = app.add_subcommand("debug", "show debug records of a run");
    std::optional<UINT32> frame;
    bool                  isList = false;
    pDebug->add_option("file", input, "debug records, as kirosim --debug-data writes them")
        ->check(program::FileName)
        ->required();
    auto* pFrame = pDebug->add_option("--frame", frame, "frame to show, instead of the last one");
    pDebug->add_flag("--list", isList, "a line for each frame")->excludes(pFrame);
    pDebug->callback([&] { run = [&] { return kirotune::Debug(input, frame, isList); }; });

    kirotune::AddLiveCommands(app, run);

    const std::optional<int> status = program::ReadCommandLine(app, argc, argv);
    return status.has_value() ? *status : run();
}

}  // namespace

int main(int argc, char** argv)
{
    return program::Main("", [&] { return RunProgram(argc, argv); });
}
