#include <CLI/CLI.hpp>
#include <cstdarg>
#include <cstdio>
#include <filesystem>
#include <fmt/format.h>
#include <unistd.h>

#include "host/flashcalibration.h"
#include "platform/tavodesk.h"
#include "tools/debugdata/debugfile.h"
#include "tools/kirosim/framepacer.h"
#include "tools/kirosim/queryanswers.h"
#include "tools/kirosim/replaycommand.h"
#include "tools/kirosim/runreport.h"
#include "tools/kirosim/simulation.h"
#include "tools/kirosim/stopsignal.h"
#include "tools/kirosim/trace.h"
#include "tools/recording/recorder.h"
#include "tools/tuningfile/files.h"
#include "tools/tuningfile/inputerror.h"

namespace
{

constexpr INT ExitBadInput = 1;
constexpr INT ExitBadUsage = 2;

/// Runs longer than this show a progress line on a terminal.
constexpr UINT32 ProgressFrames = 2000;

/// Lines of the table, whatever the length of the run.
constexpr UINT32 TableLines = 60;

struct RunOptions
{
    std::string           tuning;
    std::string           scene;
    std::string           variant;
    std::string           csv;
    std::string           debugData;
    std::string           ficLoad;
    std::string           ficSave;
    std::string           csvSecond;
    std::string           record;
    std::optional<UINT32> frames;
    std::optional<UINT64> seed;
    std::optional<UINT64> loops;
    bool                  isQuiet    = false;
    bool                  isVerbose  = false;
    bool                  isAsking   = false;
    bool                  isRealtime = false;
    bool                  isLoop     = false;
    bool                  isNotLive  = false;

    bool IsLooping() const
    {
        return isLoop || loops.has_value();
    }
};

bool g_isVerbose = false;

/// Shows errors and warnings of the core on demand; a simulated camera is quiet otherwise.
VOID LogToStderr(const CHAR*, INT32, const CHAR* pFunction, UINT32, UINT32 level, const CHAR* pFormat, ...)
{
    constexpr UINT32 levelWarning = 4;
    if (!g_isVerbose || level > levelWarning)
    {
        return;
    }
    va_list arguments;
    va_start(arguments, pFormat);
    std::fprintf(stderr, "%s: ", pFunction);
    std::vfprintf(stderr, pFormat, arguments);
    std::fputc('\n', stderr);
    va_end(arguments);
}

/// The store's lines, on demand too: what is wrong with a file comes as this program's own line.
VOID ShowStoreLine(VOID*, UINT64, const CHAR*, UINT32, const CHAR* pLine)
{
    if (g_isVerbose)
    {
        std::fputs(pLine, stderr);
    }
}

VOID ShowProgress(UINT64 frame, UINT32 frames)
{
    constexpr UINT64 interval = 500;
    if (frames > ProgressFrames && frame % interval == 0 && isatty(STDERR_FILENO) != 0)
    {
        std::fprintf(stderr, "\rframe %llu of %u", frame, frames);
        if (frame + interval > frames)
        {
            std::fputc('\n', stderr);
        }
    }
}

/// @throws std::runtime_error for a scene that learns nothing of its flash
VOID LoadLearned(const RunOptions& rOptions, kirosim::Scene& rScene)
{
    const bool isWanted = !rOptions.ficLoad.empty() || !rOptions.ficSave.empty();
    if (isWanted && (!rScene.flash.has_value() || !rScene.flash->isCalibrated))
    {
        throw std::runtime_error(rOptions.scene + ": the scene has no flash with calibration");
    }
    if (!rOptions.ficLoad.empty())
    {
        rScene.flash->learned = tuningfile::ReadBytes(rOptions.ficLoad);
        if (!flashcalibration::IsComplete(rScene.flash->learned))
        {
            throw std::runtime_error(rOptions.ficLoad + ": not what a run has learned of a flash");
        }
    }
}

/// A trace that is written as the run goes on, which may be for hours. Does nothing without a path.
class TraceFile
{
public:
    explicit TraceFile(const std::string& rPath)
    {
        if (!rPath.empty())
        {
            m_file.emplace(rPath);
            Write(kirosim::CsvHeader());
        }
    }

    VOID Add(const kirosim::FrameRecord& rRecord)
    {
        if (m_file.has_value())
        {
            Write(kirosim::CsvLine(rRecord));
        }
    }

    VOID Commit()
    {
        if (m_file.has_value())
        {
            m_file->Commit();
        }
    }

private:
    VOID Write(const std::string& rText)
    {
        m_file->Write({reinterpret_cast<const BYTE*>(rText.data()), rText.size()});
    }

    std::optional<tuningfile::FileReplacement> m_file;
};

/// The files that a run leaves; none takes its place before the run is over, and its cameras may be gone by then.
class RunFiles
{
public:
    RunFiles(const RunOptions& rOptions, kirosim::Simulation& rSimulation)
        : m_rOptions(rOptions), m_rCamera(rSimulation.MainCamera()), m_csv(rOptions.csv),
          m_csvSecond(rOptions.csvSecond)
    {
        if (!rOptions.debugData.empty())
        {
            m_debugFile.emplace(rOptions.debugData);
            m_rCamera.EnableDebugData();
        }
    }

    VOID Add(const kirosim::FrameRecord& rRecord)
    {
        if (m_debugFile.has_value())
        {
            m_debugFile->Add(m_rCamera.DebugData());
        }
        if (rRecord.flash.shot.has_value())
        {
            m_learned = rRecord.flash.shot->learned;
        }
        m_csv.Add(rRecord);
    }

    VOID AddSecond(const kirosim::FrameRecord& rRecord)
    {
        m_csvSecond.Add(rRecord);
    }

    VOID Write()
    {
        m_csv.Commit();
        m_csvSecond.Commit();
        if (m_debugFile.has_value())
        {
            m_debugFile->Commit();
        }
        if (m_rOptions.ficSave.empty())
        {
            return;
        }
        if (m_learned.empty())
        {
            throw std::runtime_error(m_rOptions.scene + ": the run was too short for a picture, nothing was learned");
        }
        tuningfile::ReplaceFile(m_rOptions.ficSave, m_learned);
    }

private:
    const RunOptions&                         m_rOptions;
    kirosim::Camera&                          m_rCamera;
    TraceFile                                 m_csv;
    TraceFile                                 m_csvSecond;
    std::vector<BYTE>                         m_learned;  ///< of the flash's colour, as of the last picture
    std::optional<debugdata::DebugFileWriter> m_debugFile;
};

kirosim::Scene ReadRunScene(const RunOptions& rOptions)
{
    kirosim::Scene scene = kirosim::ReadScene(rOptions.scene, rOptions.variant);
    scene.frames         = rOptions.frames.value_or(scene.frames);
    scene.seed           = rOptions.seed.value_or(scene.seed);
    LoadLearned(rOptions, scene);
    if (!rOptions.csvSecond.empty() && scene.pSecond == nullptr)
    {
        throw std::runtime_error(rOptions.scene + ": --csv-second wants a scene with a second camera");
    }
    return scene;
}

/// How the run goes on: paced or not, round after round or not, and up to a signal.
kirosim::RunPlan PlanOf(const RunOptions& rOptions, kirosim::FramePacer& rPacer)
{
    kirosim::RunPlan plan;
    plan.rounds = rOptions.IsLooping() ? rOptions.loops : std::optional<UINT64>(1);
    if (rOptions.isRealtime)
    {
        plan.beforeFrame = [&rPacer]()
        {
            rPacer.Wait(kirosim::StopSignal::IsRaised);
            return !kirosim::StopSignal::IsRaised();
        };
    }
    else
    {
        plan.beforeFrame = []() { return !kirosim::StopSignal::IsRaised(); };
    }
    return plan;
}

/// What a person sees while the run goes on.
VOID ShowFrame(const RunOptions& rOptions, const kirosim::Scene& rScene, const kirosim::FrameRecord& rRecord,
               const std::string& rRoundLines)
{
    const UINT32 interval = std::max(rScene.frames / TableLines, 1U);
    std::string  lines = (!rOptions.isQuiet && (rRecord.frame - 1) % interval == 0) ? kirosim::TableLine(rRecord) : "";
    if (rOptions.IsLooping())
    {
        lines += rRoundLines;
    }
    else
    {
        ShowProgress(rRecord.frame, rScene.frames);
    }
    if (!lines.empty())
    {
        fmt::print("{}", lines);
        (VOID) std::fflush(stdout);
    }
}

/// Where a camera that runs on can be tuned.
VOID ShowPort(const RunOptions& rOptions, kirosim::LoadedTuning& rTuning)
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
    fmt::print("live tuning at port {}\n", port);
    (VOID) std::fflush(stdout);
}

/// @return what puts the recorder between host and core; empty without one
KiroTableDecorator MakeRecorder(const RunOptions& rOptions, kirosim::LoadedTuning& rTuning,
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

VOID Run(const RunOptions& rOptions)
{
    const kirosim::Scene scene = ReadRunScene(rOptions);
    // What a tool changes meanwhile would not be part of a recording.
    kirosim::LoadedTuning tuning(rOptions.tuning, !rOptions.isNotLive && rOptions.record.empty());
    ShowPort(rOptions, tuning);
    std::optional<recording::Recorder> recorder;
    std::optional<kirosim::Simulation> simulation;
    simulation.emplace(scene, tuning, LogToStderr, MakeRecorder(rOptions, tuning, recorder));
    kirosim::RunReport        report(scene);
    const kirosim::StopSignal stopSignal;  // before there are files to clear away
    RunFiles                  files(rOptions, *simulation);
    kirosim::FramePacer       pacer(scene.fps);
    if (!rOptions.isQuiet)
    {
        fmt::print("{}", kirosim::TableHeader());
    }
    simulation->Run(
        [&](const kirosim::FrameRecord& rRecord)
        {
            report.Add(rRecord);
            files.Add(rRecord);
            ShowFrame(rOptions, scene, rRecord, report.RoundLines());
        },
        [&](const kirosim::FrameRecord& rRecord)
        {
            report.AddSecond(rRecord);
            files.AddSecond(rRecord);
        },
        PlanOf(rOptions, pacer));
    if (kirosim::StopSignal::IsRaised() && !rOptions.isRealtime && !rOptions.IsLooping())
    {
        // Half of a run in batch is no result.
        throw std::runtime_error("interrupted");
    }
    const std::string answers =
        rOptions.isAsking ? kirosim::QueryAnswers(simulation->MainCamera().Host().Algo()) : std::string();
    simulation.reset();  // its end is recorded too
    // None of the files keeps the others from being whole.
    const std::string recordingError = FinishRecording(recorder);
    files.Write();
    fmt::print("{}{}", report.Format(), answers);
    if (!recordingError.empty())
    {
        throw std::runtime_error(recordingError);
    }
}

}  // namespace

int main(int argc, char** argv)
{
    CLI::App app{"kirosim: a camera on a desk, exposed by the library"};
    app.require_subcommand(1);
    RunOptions options;

    CLI::App* pRun = app.add_subcommand("run", "run a scene and show how the exposure was controlled");
    pRun->add_option("--tuning", options.tuning, "tuning: a parameter file, or its text (.yaml)")->required();
    pRun->add_option("--scene", options.scene, "scene (.yaml)")->required();
    pRun->add_option("--variant", options.variant, "variant of the scene");
    pRun->add_option("--frames", options.frames, "frames to run, instead of the scene's");
    pRun->add_option("--seed", options.seed, "seed of the noise, instead of the scene's");
    pRun->add_option("--csv", options.csv, "write every frame to this file");
    pRun->add_option("--debug-data", options.debugData, "write the debug record of every frame to this file");
    pRun->add_option("--fic-load", options.ficLoad, "begin with what an earlier run learned of the flash");
    pRun->add_option("--fic-save", options.ficSave, "keep what this run learns of the flash");
    pRun->add_option("--csv-second", options.csvSecond, "write every frame of the second camera to this file");
    pRun->add_option("--record", options.record,
                     "write what crosses the function table to this file, for replay; "
                     "opens no port for live tuning");
    pRun->add_flag("--queries", options.isAsking, "print what the library answers to queries after the run");
    pRun->add_flag("--realtime", options.isRealtime, "run at the scene's frame rate; Ctrl-C ends the run");
    pRun->add_flag("--loop", options.isLoop, "start the scene again at its end, until Ctrl-C; the camera runs on");
    pRun->add_option("--loops", options.loops, "run this many rounds of the scene")->check(CLI::PositiveNumber);
    pRun->add_flag("--no-live", options.isNotLive, "open no port for live tuning");
    pRun->add_flag("--quiet", options.isQuiet, "leave out the table");
    pRun->add_flag("--verbose", options.isVerbose, "print errors and warnings of the library");

    kirosim::ReplayOptions replayOptions;
    CLI::App*              pReplay = app.add_subcommand("replay", "drive the library from a recording and compare");
    pReplay->add_option("file", replayOptions.file, "recording, of kirosim run --record")->required();
    pReplay
        ->add_option("--tuning", replayOptions.tunings,
                     "tuning, if it is not where it was; once for each tuning of the recording, in their order")
        ->allow_extra_args(false);
    pReplay->add_flag("--force", replayOptions.isForced, "take another tuning than the recorded one");
    pReplay->add_flag("--all", replayOptions.isAll, "go on after a difference, up to 100");
    pReplay->add_flag("--verbose", options.isVerbose, "print errors and warnings of the library");

    CLI::App* pVariants = app.add_subcommand("variants", "list the variants of a scene");
    pVariants->add_option("--scene", options.scene, "scene (.yaml)")->required();

    try
    {
        app.parse(argc, argv);
    }
    catch (const CLI::ParseError& rError)
    {
        return (app.exit(rError) == 0) ? 0 : ExitBadUsage;
    }
    g_isVerbose = options.isVerbose;
    TavoDesk::SetSystemLogSink(&ShowStoreLine, nullptr);
    try
    {
        if (pRun->parsed())
        {
            Run(options);
        }
        else if (pReplay->parsed())
        {
            return kirosim::Replay(replayOptions, LogToStderr) ? 0 : ExitBadInput;
        }
        else
        {
            for (const std::string& rName : kirosim::ReadVariants(options.scene))
            {
                fmt::print("{}\n", rName);
            }
        }
    }
    catch (const std::exception& rError)
    {
        fmt::print(stderr, "kirosim: {}\n", rError.what());
        return ExitBadInput;
    }
    return 0;
}
