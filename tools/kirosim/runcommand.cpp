#include "tools/kirosim/runcommand.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>

#include <fmt/format.h>

#include "parameters/live/vernierprotocol.h"
#include "tools/kirosim/framepacer.h"
#include "tools/kirosim/jsonfacts.h"
#include "tools/kirosim/learnedfile.h"
#include "tools/kirosim/librarylog.h"
#include "tools/kirosim/livepicture.h"
#include "tools/kirosim/missingmodes.h"
#include "tools/kirosim/queryanswers.h"
#include "tools/kirosim/runfiles.h"
#include "tools/kirosim/runlist.h"
#include "tools/kirosim/runpage.h"
#include "tools/kirosim/runreport.h"
#include "tools/kirosim/simulation.h"
#include "tools/kirosim/stopsignal.h"
#include "tools/kirosim/trace.h"
#include "tools/kirosim/tuningedits.h"
#include "tools/kirosim/unseenmoves.h"
#include "tools/program/programmain.h"
#include "tools/program/progress.h"
#include "tools/recording/recorder.h"

namespace kirosim
{

namespace
{

/// Runs longer than this show a progress line on a terminal.
constexpr UINT32 ProgressFrames = 2000;

/// Lines of the table, whatever the length of the run.
constexpr UINT32 TableLines = 60;

/// A terminal that is gone must not end a run before its files are whole; the program's end tells of it.
VOID Print(const RunOptions& rOptions, const std::string& rText)
{
    (VOID) std::fputs(rText.c_str(), (rOptions.IsStdoutTaken() || rOptions.isJson) ? stderr : stdout);
}

/// The facts behind what tells the runs of a list apart.
std::string JsonLineOf(const RunOptions& rOptions, const RunReport& rReport)
{
    TextNode line = JsonObject(
        {{"scene", Json(rOptions.scene)}, {"variant", Json(rOptions.variant)}, {"seed", Json(rOptions.seed)}});
    TextNode facts = rReport.Facts();
    for (TextItem& rItem : facts.items)
    {
        line.Add(std::move(rItem.name), std::move(rItem.value));
    }
    return ToJsonLine(line);
}

VOID PrintSummary(const RunOptions& rOptions, const RunReport& rReport)
{
    if (!rOptions.isJson)
    {
        Print(rOptions, rReport.Format());
        return;
    }
    const std::string text = rOptions.isJsonLine ? JsonLineOf(rOptions, rReport) : ToJson(rReport.Facts());
    (VOID) std::fputs(text.c_str(), rOptions.IsStdoutTaken() ? stderr : stdout);
}

/// @throws std::runtime_error for a scene that learns nothing of its flash
VOID LoadLearned(const RunOptions& rOptions, Scene& rScene)
{
    const bool isWanted = !rOptions.ficLoad.empty() || !rOptions.ficSave.empty();
    if (isWanted && (!rScene.flash.has_value() || !rScene.flash->isCalibrated))
    {
        throw std::runtime_error(rOptions.scene + ": the scene has no flash with calibration");
    }
    if (!rOptions.ficLoad.empty())
    {
        rScene.flash->learned = ReadLearned(rOptions.ficLoad);
    }
}

Scene ReadRunScene(const RunOptions& rOptions)
{
    Scene scene  = ReadScene(rOptions.scene, rOptions.variant);
    scene.frames = rOptions.frames.value_or(scene.frames);
    scene.seed   = rOptions.seed.value_or(scene.seed);
    LoadLearned(rOptions, scene);
    if (!rOptions.csvSecond.empty() && scene.pSecond == nullptr)
    {
        throw std::runtime_error(rOptions.scene + ": --csv-second wants a scene with a second camera");
    }
    return scene;
}

/// How the run goes on: paced or not, round after round or not, and up to a signal.
RunPlan PlanOf(const RunOptions& rOptions, FramePacer& rPacer)
{
    RunPlan plan;
    plan.rounds = rOptions.IsLooping() ? rOptions.loops : std::optional<UINT64>(1);
    if (rOptions.isRealtime)
    {
        plan.beforeFrame = [&rPacer](DOUBLE time)
        {
            rPacer.Wait(time, StopSignal::IsRaised);
            return !StopSignal::IsRaised();
        };
    }
    else
    {
        plan.beforeFrame = [](DOUBLE) { return !StopSignal::IsRaised(); };
    }
    return plan;
}

/// What a person sees while the run goes on.
VOID ShowFrame(const RunOptions& rOptions, const Scene& rScene, const FrameRecord& rRecord,
               const std::string& rRoundLines, program::Progress& rProgress)
{
    const UINT32 interval = std::max(rScene.frames / TableLines, 1U);
    std::string  lines    = (!rOptions.isQuiet && (rRecord.frame - 1) % interval == 0) ? TableLine(rRecord) : "";
    if (rOptions.IsLooping())
    {
        lines += rRoundLines;
    }
    else if (rScene.frames > ProgressFrames)
    {
        rProgress.Show(rRecord.frame, rScene.frames);
    }
    if (!lines.empty())
    {
        rProgress.Clear();
        Print(rOptions, lines);
        (VOID) std::fflush(stdout);
    }
}

/// Where a camera that runs on can be tuned.
VOID ShowPort(const RunOptions& rOptions, LoadedTuning& rTuning)
{
    if (!rTuning.IsLive() || !(rOptions.isRealtime || rOptions.IsLooping()))
    {
        return;
    }
    const UINT16 port = rTuning.Manager().GetLiveTuningPort();
    if (port == 0)
    {
        fmt::print(stderr, "kirosim: no port is free for live tuning\n");
        return;
    }
    if (port != vernier::DefaultPort)
    {
        fmt::print(stderr, "kirosim: port {} is taken, live tuning is at port {}: kirotune live --port {}\n",
                   vernier::DefaultPort, port, port);
    }
    Print(rOptions, fmt::format("live tuning at port {}\n", port));
    (VOID) std::fflush(stdout);
}

/// @throws std::runtime_error in a strict run
VOID TellMissingModes(const RunOptions& rOptions, const Scene& rScene, LoadedTuning& rTuning)
{
    for (const std::string& rLine : MissingModes(rScene, rTuning))
    {
        const std::string line = fmt::format("{}: {}", rOptions.scene, rLine);
        if (rOptions.isStrict)
        {
            throw std::runtime_error(line);
        }
        (VOID) std::fprintf(stderr, "kirosim: %s: the mode above it is used\n", line.c_str());
    }
}

/// A length that was asked for is meant.
VOID TellUnseenMove(const RunOptions& rOptions, const Scene& rScene)
{
    const std::string line = rOptions.frames.has_value() ? "" : UnseenMove(rScene);
    if (!line.empty())
    {
        fmt::print(stderr, "kirosim: {}: {}\n", rOptions.scene, line);
    }
}

/// @return what puts the recorder between host and core; empty without one
KiroTableDecorator MakeRecorder(const RunOptions& rOptions, LoadedTuning& rTuning,
                                std::optional<recording::Recorder>& rRecorder)
{
    if (rOptions.record.empty())
    {
        return {};
    }
    rRecorder.emplace(rOptions.record);
    rRecorder->AddTuning(&rTuning.Manager(), rTuning.Reference());
    return [&rRecorder](IKIROCoreAlgo* pAlgo, const StatsTuningData& rTuningData)
    { return rRecorder->Wrap(pAlgo, rTuningData); };
}

/// @return what is wrong with the recording, empty if nothing is
std::string FinishRecording(std::optional<recording::Recorder>& rRecorder)
{
    try
    {
        if (rRecorder.has_value())
        {
            rRecorder->Finish();
        }
        return {};
    }
    catch (const std::runtime_error& rError)
    {
        return rError.what();
    }
}

/// @param rPage the report, if one is wanted @param rPicture what tools may ask for, if there are any
VOID RunFrames(const RunOptions& rOptions, const Scene& rScene, Simulation& rSimulation, RunReport& rReport,
               RunFiles& rFiles, std::optional<RunPage>& rPage, std::optional<LivePicture>& rPicture)
{
    FramePacer        pacer;
    program::Progress progress("frame");
    if (!rOptions.isQuiet)
    {
        Print(rOptions, TableHeader());
    }
    rSimulation.Run(
        [&](const FrameRecord& rRecord)
        {
            rReport.Show(rRecord, rSimulation.MainCamera());
            rReport.Add(rRecord);
            rFiles.Add(rRecord);
            if (rPage.has_value())
            {
                rPage->Add(rRecord, rSimulation.MainCamera());
            }
            if (rPicture.has_value())
            {
                rPicture->Offer(rRecord.frame, rSimulation.MainCamera());
            }
            ShowFrame(rOptions, rScene, rRecord, rReport.RoundLines(), progress);
        },
        [&](const FrameRecord& rRecord)
        {
            rReport.ShowSecond(rRecord, *rSimulation.SecondCamera());
            rReport.AddSecond(rRecord);
            rFiles.AddSecond(rRecord);
            if (rPage.has_value())
            {
                rPage->AddSecond(rRecord);
            }
        },
        PlanOf(rOptions, pacer));
    if (StopSignal::IsRaised() && !rOptions.IsOpenEnded())
    {
        throw std::runtime_error("interrupted");  // half of such a run is no result
    }
    if (rPage.has_value())
    {
        rPage->End(rSimulation.MainCamera());
    }
}

/// @return whether every camera has controlled its exposure in some frame
bool RunScene(const RunOptions& rOptions, LoadedTuning& rTuning)
{
    const Scene scene = ReadRunScene(rOptions);
    TellMissingModes(rOptions, scene, rTuning);
    TellUnseenMove(rOptions, scene);
    ShowPort(rOptions, rTuning);
    RunFiles                           files(rOptions);
    std::optional<RunPage>             page;
    std::optional<recording::Recorder> recorder;
    std::optional<Simulation>          simulation;
    if (!rOptions.report.empty())
    {
        page.emplace(rOptions, scene, rTuning);
    }
    simulation.emplace(scene, rTuning, librarylog::Write, MakeRecorder(rOptions, rTuning, recorder));
    files.Watch(simulation->MainCamera());
    RunReport                  report(scene, rOptions.isJson || page.has_value());
    std::optional<LivePicture> picture;
    if (rTuning.IsLive())
    {
        picture.emplace(rTuning.Manager());
    }
    RunFrames(rOptions, scene, *simulation, report, files, page, picture);
    const std::string answers = rOptions.isAsking ? QueryAnswers(simulation->MainCamera().Host().Algo()) : "";
    simulation.reset();  // its end is recorded too
    // None of the files keeps the others from being whole.
    const std::string recordingError = FinishRecording(recorder);
    files.Commit();
    if (page.has_value())
    {
        page->Commit(report);
    }
    PrintSummary(rOptions, report);
    Print(rOptions, answers);
    if (!recordingError.empty())
    {
        throw std::runtime_error(recordingError);
    }
    return report.HasControlled();
}

/// One of several runs: what is wrong with it does not keep the others from running.
/// @return status of the run
int RunOfList(const RunOptions& rOptions, LoadedTuning& rTuning)
{
    if (!rOptions.isJson)
    {
        Print(rOptions, fmt::format("== {}\n", RunName(rOptions)));
    }
    try
    {
        const bool hasControlled = RunScene(rOptions, rTuning);
        (VOID) std::fflush(stdout);  // whoever started the list may wait for each run
        return hasControlled ? 0 : ExitNoControl;
    }
    catch (const std::exception& rFault)
    {
        if (StopSignal::IsRaised())
        {
            throw;
        }
        (VOID) std::fprintf(stderr, "kirosim: %s: %s\n", RunName(rOptions).c_str(), rFault.what());
        return program::ExitBadInput;
    }
}

/// @throws std::runtime_error for runs that cannot follow one another, or not be repeated
VOID CheckRuns(const std::vector<RunOptions>& rRuns)
{
    for (const RunOptions& rRun : rRuns)
    {
        CheckRunFiles(rRun);
    }
    if (rRuns.size() > 1 && rRuns.front().IsOpenEnded())
    {
        throw std::runtime_error("--loop and --realtime: the first run would not end, expected one run");
    }
    if (!rRuns.front().record.empty() && !rRuns.front().edits.empty())
    {
        throw std::runtime_error("--record with --set: a replay takes the tuning as its file has it");
    }
}

}  // namespace

int Run(const std::vector<RunOptions>& rRuns)
{
    const RunOptions& rFirst = rRuns.front();
    CheckRuns(rRuns);
    // What a tool changes meanwhile would not be part of a recording.
    LoadedTuning tuning(rFirst.tuning, !rFirst.isNotLive && rFirst.record.empty(), LoadedTuning::Source::Copy,
                        rFirst.liveAddress.c_str());
    ApplyEdits(rFirst.edits, tuning);
    const StopSignal stopSignal;  // before there are files to clear away
    if (rRuns.size() == 1)
    {
        return RunScene(rFirst, tuning) ? 0 : ExitNoControl;
    }
    int worst = 0;
    for (const RunOptions& rRun : rRuns)
    {
        const int status = RunOfList(rRun, tuning);
        worst            = (status == program::ExitBadInput || worst == 0) ? status : worst;
    }
    return worst;
}

}  // namespace kirosim
