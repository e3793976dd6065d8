/// kirosim: a camera on a desk, and what was recorded of one.
#include <limits>

#include <fmt/format.h>

#include "tools/kirosim/figures/figuretable.h"
#include "tools/kirosim/librarylog.h"
#include "tools/kirosim/replaycommand.h"
#include "tools/kirosim/reportcommand.h"
#include "tools/kirosim/runcommand.h"
#include "tools/kirosim/runlist.h"
#include "tools/kirosim/scene.h"
#include "tools/kirosim/sceneschema.h"
#include "tools/program/commandline.h"

namespace
{

VOID AddRunOptions(CLI::App& rRun, kirosim::RunOptions& rOptions, kirosim::RunChoice& rChoice)
{
    const auto addFile = [&rRun](const char* pName, std::string& rPath, const char* pMeaning)
    { return rRun.add_option(pName, rPath, pMeaning)->check(program::FileName); };
    const CLI::Range atLeastOne(1U, std::numeric_limits<UINT32>::max());
    addFile("--tuning", rOptions.tuning, "tuning: a parameter file, or its text (.yaml); - for stdin")->required();
    const auto addList = [&rRun](const char* pName, std::vector<std::string>& rList, const char* pMeaning)
    { return rRun.add_option(pName, rList, pMeaning)->allow_extra_args(false); };
    addList("--set", rOptions.edits,
            "change a number of the tuning for the runs: MODE/MODULE/MEMBER=VALUE, such as "
            "Default/kiroconvergence/unitStepSize=0.5; again for another");
    addList("--scene", rChoice.scenes, "scene (.yaml); - for stdin. Each further one is another run on the same tuning")
        ->check(program::FileName)
        ->required();
    addList("--variant", rChoice.variants,
            "variant of the scene; again for another run. plain is the scene as it is, all is that and all variants");
    rRun.add_option("--frames", rOptions.frames, "frames to run, instead of the scene's")->check(atLeastOne);
    addList("--seed", rChoice.seeds,
            "seed of the noise, instead of the scene's; again, or a range such as 1..8, for more runs")
        ->check(CLI::Validator(kirosim::FaultOfSeeds, "SEED"));
    addFile("--csv", rOptions.csv,
            "write every frame to this file; - for stdout, and all else goes to stderr. In names of files, {scene}, "
            "{variant} and {seed} stand for those of each run");
    addFile("--debug-data", rOptions.debugData, "write the debug record of every frame to this file");
    addFile("--fic-load", rOptions.ficLoad, "begin with what an earlier run learned of the flash");
    addFile("--fic-save", rOptions.ficSave, "keep what this run learns of the flash");
    addFile("--csv-second", rOptions.csvSecond, "write every frame of the second camera to this file");
    addFile("--record", rOptions.record,
            "write what crosses the function table to this file, for replay; opens no port for live tuning");
    CLI::Option* pReport =
        addFile("--report", rOptions.report, "write charts, pictures and summary as a page for a browser (.html)");
    rRun.add_option("--pictures", rOptions.pictures, "in the report, a picture of every so many frames, too")
        ->check(atLeastOne)
        ->needs(pReport);
    addFile("--against", rOptions.against, "in the report, compare with this trace of another run (.csv)")
        ->needs(pReport);
    rRun.add_flag(
        "--json", rOptions.isJson,
        "print the summary with figures of merit as JSON, and all else to stderr; of several runs, each on a line");
    rRun.add_flag("--queries", rOptions.isAsking, "print what the library answers to queries after the run");
    rRun.add_flag("--realtime", rOptions.isRealtime, "run at the camera's frame rate; Ctrl-C ends the run");
    rRun.add_flag("--loop", rOptions.isLoop, "start the scene again at its end, until Ctrl-C; the camera runs on");
    rRun.add_option("--loops", rOptions.loops, "run this many rounds of the scene")->check(atLeastOne);
    rRun.add_option("--live-address", rOptions.liveAddress,
                    "IPv4 address of this machine at which live tuning listens, 0.0.0.0 for all")
        ->capture_default_str();
    rRun.add_flag("--no-live", rOptions.isNotLive, "open no port for live tuning");
    rRun.add_flag("--strict", rOptions.isStrict, "fail if the tuning lacks a mode for which the scene asks");
    rRun.add_flag("--quiet", rOptions.isQuiet, "leave out the table");
}

VOID AddReplayOptions(CLI::App& rReplay, kirosim::ReplayOptions& rOptions)
{
    rReplay.add_option("file", rOptions.file, "recording, of kirosim run --record")
        ->check(program::FileName)
        ->required();
    rReplay
        .add_option("--tuning", rOptions.tunings,
                    "tuning, if it is not where it was; once for each tuning of the recording, in their order")
        ->check(program::FileName)
        ->allow_extra_args(false);
    CLI::Option* pReport =
        rReplay
            .add_option("--report", rOptions.report, "write charts of the first camera as a page for a browser (.html)")
            ->check(program::FileName);
    rReplay.add_option("--against", rOptions.against, "in the report, compare with this trace of another run (.csv)")
        ->check(program::FileName)
        ->needs(pReport);
    rReplay.add_flag("--force", rOptions.isForced, "take another tuning than the recorded one");
    rReplay.add_flag("--all", rOptions.isAll, "go on after a difference, up to 100");
}

VOID AddReportOptions(CLI::App& rReport, kirosim::ReportOptions& rOptions)
{
    const auto addFile = [&rReport](const char* pName, std::string& rPath, const char* pMeaning)
    { return rReport.add_option(pName, rPath, pMeaning)->check(program::FileName); };
    addFile("file", rOptions.trace, "trace, of kirosim run --csv; - for stdin")->required();
    addFile("-o,--output", rOptions.output, "page to write (.html), or - for stdout")->required();
    addFile("--against", rOptions.against, "trace of another run, as thin lines and in a table of differences");
}

int RunProgram(int argc, char** argv)
{
    CLI::App app{"A camera on a desk, exposed by the library.", "kirosim"};
    app.require_subcommand(1);
    bool                   isVerbose = false;
    kirosim::RunOptions    options;
    kirosim::RunChoice     choice;
    kirosim::ReplayOptions replayOptions;
    kirosim::ReportOptions reportOptions;
    options.command       = program::CommandText(argc, argv);
    replayOptions.command = options.command;
    reportOptions.command = options.command;

    CLI::App* pRun = app.add_subcommand("run", "run scenes and show how the exposure was controlled");
    AddRunOptions(*pRun, options, choice);
    pRun->footer(
        "Exit status: 0, 1 for bad input or a run that could not be finished, 2 for bad usage, 3 if a camera "
        "never controlled its exposure. Of several runs, the worst; one that fails does not keep the others from "
        "running.");
    CLI::App* pReplay = app.add_subcommand("replay", "drive the library from a recording and compare");
    AddReplayOptions(*pReplay, replayOptions);
    for (CLI::App* pCommand : {pRun, pReplay})
    {
        pCommand->add_flag("--verbose", isVerbose, "print errors and warnings of the library");
    }
    CLI::App* pReport = app.add_subcommand("report", "show the trace of a run as a page for a browser");
    AddReportOptions(*pReport, reportOptions);
    CLI::App* pVariants = app.add_subcommand("variants", "list the variants of a scene");
    pVariants->add_option("--scene", options.scene, "scene (.yaml)")->check(program::FileName)->required();

    CLI::App* pSchema = app.add_subcommand("schema", "print what a scene may say, as a reference in Markdown");
    bool      isJson  = false;
    pSchema->add_flag("--json", isJson, "as JSON Schema for editors");

    CLI::App* pFigures =
        app.add_subcommand("figures", "print what the figures of merit mean, as a reference in Markdown");

    if (const std::optional<int> status = program::ReadCommandLine(app, argc, argv))
    {
        return *status;
    }
    kirosim::librarylog::Show(isVerbose);
    if (pReplay->parsed())
    {
        return kirosim::Replay(replayOptions, kirosim::librarylog::Write) ? 0 : program::ExitBadInput;
    }
    if (pSchema->parsed())
    {
        fmt::print("{}", isJson ? kirosim::SceneJsonSchema() : kirosim::SceneReference());
        return 0;
    }
    if (pFigures->parsed())
    {
        fmt::print("{}", kirosim::FigureReference());
        return 0;
    }
    if (pRun->parsed())
    {
        return kirosim::Run(kirosim::RunsOf(options, choice));
    }
    if (pReport->parsed())
    {
        kirosim::MakeReport(reportOptions);
        return 0;
    }
    for (const std::string& rName : kirosim::ReadVariants(options.scene))
    {
        fmt::print("{}\n", rName);
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv)
{
    return program::Main("kirosim: ", [&] { return RunProgram(argc, argv); });
}
