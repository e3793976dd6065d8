#include <CLI/CLI.hpp>
#include <cstdarg>
#include <cstdio>
#include <fmt/format.h>
#include <unistd.h>

#include "host/flashcalibration.h"
#include "platform/tavodesk.h"
#include "tools/debugdata/debugfile.h"
#include "tools/kirosim/queryanswers.h"
#include "tools/kirosim/report.h"
#include "tools/kirosim/simulation.h"
#include "tools/kirosim/summary.h"
#include "tools/kirosim/trace.h"
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
    std::optional<UINT32> frames;
    std::optional<UINT64> seed;
    bool                  isQuiet   = false;
    bool                  isVerbose = false;
    bool                  isAsking  = false;
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

VOID WriteText(const std::string& rPath, const std::string& rText)
{
    if (!rPath.empty())
    {
        tuningfile::ReplaceFile(rPath, {reinterpret_cast<const BYTE*>(rText.data()), rText.size()});
    }
}

/// The files that a run leaves; none is touched before the run is over.
class RunFiles
{
public:
    RunFiles(const RunOptions& rOptions, kirosim::Simulation& rSimulation)
        : m_rOptions(rOptions), m_rCamera(rSimulation.MainCamera()), m_csv(kirosim::CsvHeader()), m_csvSecond(m_csv)
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
        if (!m_rOptions.csv.empty())
        {
            m_csv += kirosim::CsvLine(rRecord);
        }
    }

    VOID AddSecond(const kirosim::FrameRecord& rRecord)
    {
        if (!m_rOptions.csvSecond.empty())
        {
            m_csvSecond += kirosim::CsvLine(rRecord);
        }
    }

    VOID Write()
    {
        WriteText(m_rOptions.csv, m_csv);
        WriteText(m_rOptions.csvSecond, m_csvSecond);
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
    std::string                               m_csv;
    std::string                               m_csvSecond;
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

VOID Run(const RunOptions& rOptions)
{
    g_isVerbose = rOptions.isVerbose;
    TavoDesk::SetSystemLogSink(&ShowStoreLine, nullptr);
    const kirosim::Scene    scene = ReadRunScene(rOptions);
    kirosim::LoadedTuning   tuning(rOptions.tuning);
    kirosim::Simulation     simulation(scene, tuning, LogToStderr);
    kirosim::SummaryBuilder summary(scene);
    const auto              reports = kirosim::ReportsOf(scene);
    RunFiles                files(rOptions, simulation);
    const UINT32            interval = std::max(scene.frames / TableLines, 1U);
    if (!rOptions.isQuiet)
    {
        fmt::print("{}", kirosim::TableHeader());
    }
    simulation.Run(
        [&](const kirosim::FrameRecord& rRecord)
        {
            summary.Add(rRecord);
            for (const auto& pReport : reports)
            {
                pReport->Add(rRecord);
            }
            files.Add(rRecord);
            if (!rOptions.isQuiet && (rRecord.frame - 1) % interval == 0)
            {
                fmt::print("{}", kirosim::TableLine(rRecord));
            }
            ShowProgress(rRecord.frame, scene.frames);
        },
        [&](const kirosim::FrameRecord& rRecord)
        {
            for (const auto& pReport : reports)
            {
                pReport->AddSecond(rRecord);
            }
            files.AddSecond(rRecord);
        });
    files.Write();
    fmt::print("{}", kirosim::FormatSummary(summary.Finish()));
    for (const auto& pReport : reports)
    {
        fmt::print("{}", pReport->Format());
    }
    if (rOptions.isAsking)
    {
        fmt::print("{}", kirosim::QueryAnswers(simulation.MainCamera().Host().Algo()));
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
    pRun->add_flag("--queries", options.isAsking, "print what the library answers to queries after the run");
    pRun->add_flag("--quiet", options.isQuiet, "print the summary only");
    pRun->add_flag("--verbose", options.isVerbose, "print errors and warnings of the library");

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
    try
    {
        if (pRun->parsed())
        {
            Run(options);
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
