/// kirotune: makes, reads and checks tuning files, reads debug records, and tunes running cameras.
#include <functional>
#include <limits>
#include <optional>

#include "tools/kirotune/checkcommand.h"
#include "tools/kirotune/commands.h"
#include "tools/kirotune/debugcommand.h"
#include "tools/kirotune/livecommand.h"
#include "tools/kirotune/newcommand.h"
#include "tools/kirotune/pagecommand.h"
#include "tools/kirotune/referencecommand.h"
#include "tools/program/commandline.h"
#include "tools/tuningfile/binaryoutput.h"

namespace
{

using Command = std::function<int()>;

/// What the commands on files are called with.
struct Arguments
{
    std::string              input;
    std::string              output = "-";
    std::vector<std::string> patches;
    std::string              version = "7.0.0";
    std::string              explained;
    bool                     isJson = false;
    std::optional<UINT32>    frame;
    bool                     isList = false;
};

constexpr const CHAR* ParameterFile = "parameter file, or - for stdin";

VOID AddInput(CLI::App& rCommand, Arguments& rArguments, const CHAR* pName, const CHAR* pMeaning)
{
    rCommand.add_option(pName, rArguments.input, pMeaning)->check(program::FileName)->required();
}

VOID AddTuningCommands(CLI::App& rApp, Arguments& rArguments, Command& rRun)
{
    CLI::App* pCompile = rApp.add_subcommand("compile", "make a parameter file of a text tuning");
    AddInput(*pCompile, rArguments, "tuning", "text tuning (.yaml), or - for stdin");
    pCompile->add_option("-o,--output", rArguments.output, "parameter file to write, or - for stdout")
        ->check(program::FileName)
        ->required();
    pCompile
        ->add_option("--patch", rArguments.patches,
                     "text that changes numbers of the tuning, as 'live save' writes it; may be repeated")
        ->allow_extra_args(false)
        ->check(program::FileName);
    pCompile
        ->add_option("--version", rArguments.version,
                     "version of the file, 1.0.0 to 7.0.0; below 6.0.0 it holds no modules")
        ->capture_default_str()
        ->check([](const std::string& rText)
                { return tuningfile::ParseVersion(rText) ? "" : "expected a version from 1.0.0 to 7.0.0"; });
    pCompile->callback(
        [&]
        {
            rRun = [&]
            {
                return kirotune::Compile(rArguments.input, rArguments.patches, rArguments.output,
                                         *tuningfile::ParseVersion(rArguments.version));
            };
        });

    CLI::App* pDump = rApp.add_subcommand("dump", "turn a parameter file into text");
    AddInput(*pDump, rArguments, "file", ParameterFile);
    pDump->add_option("-o,--output", rArguments.output, "text to write; stdout by default")->check(program::FileName);
    pDump->callback([&] { rRun = [&] { return kirotune::Dump(rArguments.input, rArguments.output); }; });

    CLI::App*    pInfo = rApp.add_subcommand("info", "show what a parameter file holds, or what a tunable means");
    CLI::Option* pFile = pInfo->add_option("file", rArguments.input, ParameterFile)->check(program::FileName);
    CLI::Option* pExplain =
        pInfo
            ->add_option(
                "--explain", rArguments.explained,
                "module or member, such as kirodbconvbase.data.value.tolerance; of a member the name alone will do")
            ->excludes(pFile);
    pInfo->add_flag("--json", rArguments.isJson, "print JSON for scripts")->excludes(pExplain);
    pInfo->callback(
        [&, pFile, pExplain]
        {
            if (pFile->empty() && pExplain->empty())
            {
                throw CLI::RequiredError("file");
            }
            rRun = [&]
            {
                if (rArguments.explained.empty())
                {
                    return kirotune::Info(rArguments.input, rArguments.isJson);
                }
                kirotune::Explain(rArguments.explained);
                return 0;
            };
        });
}

VOID AddDebugCommand(CLI::App& rApp, Arguments& rArguments, Command& rRun)
{
    CLI::App* pDebug = rApp.add_subcommand("debug", "show debug records of a run");
    AddInput(*pDebug, rArguments, "file", "debug records, as kirosim --debug-data writes them, or - for stdin");
    auto* pFrame = pDebug->add_option("--frame", rArguments.frame, "frame to show, instead of the last one")
                       ->check(CLI::Range(std::numeric_limits<UINT32>::max()));
    pDebug->add_flag("--list", rArguments.isList, "a line for each frame")->excludes(pFrame);
    pDebug->callback(
        [&] { rRun = [&] { return kirotune::Debug(rArguments.input, rArguments.frame, rArguments.isList); }; });
}

int RunProgram(int argc, char** argv)
{
    CLI::App app("Makes, reads and checks tuning files, reads debug records, and tunes running cameras.", "kirotune");
    app.require_subcommand(1);

    Arguments arguments;
    Command   run;
    kirotune::AddNewCommand(app, run);
    AddTuningCommands(app, arguments, run);
    kirotune::AddCheckCommand(app, run);
    kirotune::AddReferenceCommands(app, run);
    AddDebugCommand(app, arguments, run);
    kirotune::AddLiveCommands(app, run);
    kirotune::AddPageCommand(app, run);

    const std::optional<int> status = program::ReadCommandLine(app, argc, argv);
    return status.has_value() ? *status : run();
}

}  // namespace

int main(int argc, char** argv)
{
    return program::Main("", [&] { return RunProgram(argc, argv); });
}
