#include <cstdio>
#include <filesystem>
#include <fmt/format.h>
#include <unistd.h>

#include "platform/tavodesk.h"
#include "tools/kirosim/stopsignal.h"
#include "tools/kirosoak/hostsequences.h"
#include "tools/kirosoak/soak.h"
#include "tools/program/commandline.h"
#include "tools/tuningfile/files.h"

namespace
{

constexpr INT ExitFault = 1;

struct Options
{
    std::string              tuning;
    std::vector<std::string> scenes;
    UINT64                   frames    = 10000000;
    UINT64                   sequences = 0;
    UINT64                   seed      = 1;
    bool                     reloads   = false;
};

/// A parameter file made of a tuning's text; gone with this object.
class CompiledTuning
{
public:
    explicit CompiledTuning(const std::string& rText)
        : m_path(std::filesystem::temp_directory_path() / fmt::format("kirosoak-{}.bin", getpid()))
    {
        tuningfile::ReplaceFile(m_path, tuningfile::CompileFile(rText));
    }

    ~CompiledTuning()
    {
        std::error_code ignored;
        std::filesystem::remove(m_path, ignored);
    }

    CompiledTuning(const CompiledTuning&)            = delete;
    CompiledTuning& operator=(const CompiledTuning&) = delete;

    std::string Path() const
    {
        return m_path;
    }

private:
    const std::filesystem::path m_path;
};

/// A soak says what is wrong itself: what the library logs while its tuning is edited is expected.
VOID DiscardLog(const CHAR*, INT32, const CHAR*, UINT32, UINT32, const CHAR*, ...)
{
}

VOID ShowLap(const std::string& rLine)
{
    fmt::print("{}", rLine);
    (VOID) std::fflush(stdout);
}

/// @return the program's status
INT ShowFaults(const std::vector<std::string>& rFaults)
{
    for (const std::string& rFault : rFaults)
    {
        fmt::print(stderr, "kirosoak: {}\n", rFault);
    }
    if (kirosim::StopSignal::IsRaised())
    {
        throw std::runtime_error("interrupted");
    }
    return rFaults.empty() ? 0 : ExitFault;
}

INT RunScenes(const Options& rOptions, const CompiledTuning& rTuning)
{
    const kirosoak::SoakResult result = kirosoak::Soak(
        {rOptions.frames, rOptions.scenes, rTuning.Path(), ShowLap, kirosim::StopSignal::IsRaised}, DiscardLog);
    fmt::print("{} frames in {} laps of {} scenes: {} cameras, {} steps settled, {} values edited, {} reloads, {} mode "
               "changes, {} snapshots; heap {:+} bytes, resident {:+} bytes\n",
               result.frames, result.laps, rOptions.scenes.size(), result.cameras, result.settles, result.edits,
               result.reloads, result.modeChanges, result.snapshots, result.heapGrowth, result.residentGrowth);
    return ShowFaults(result.faults);
}

INT RunSequences(const Options& rOptions, const CompiledTuning& rTuning)
{
    const kirosoak::SequenceResult result =
        kirosoak::RunSequences({rOptions.tuning, rTuning.Path(), rOptions.reloads ? ~UINT64{0} : 0, rOptions.sequences,
                                rOptions.seed, ShowLap, kirosim::StopSignal::IsRaised},
                               DiscardLog);
    fmt::print("{} cases of reloads and {} sequences of a host's calls from seed {} on, {} frames\n",
               result.reloadCases, result.sequences, rOptions.seed, result.frames);
    return ShowFaults(result.faults);
}

/// @return the program's status
INT Run(const Options& rOptions)
{
    TavoDesk::SetSystemLogSink([](VOID*, UINT64, const CHAR*, UINT32, const CHAR*) {}, nullptr);
    const kirosim::StopSignal stopSignal;  // before there is a file to clear away
    const CompiledTuning      tuning(rOptions.tuning);
    INT                       status = 0;
    if (rOptions.reloads || rOptions.sequences > 0)
    {
        status = RunSequences(rOptions, tuning);
    }
    if (status == 0 && !rOptions.scenes.empty())
    {
        status = RunScenes(rOptions, tuning);
    }
    return status;
}

int RunProgram(int argc, char** argv)
{
    CLI::App app{
        "Runs scenes lap after lap while their tuning is edited and reloaded; laps must be alike, memory flat.",
        "kirosoak"};
    Options options;
    app.add_option("--tuning", options.tuning, "tuning, as text (.yaml)")->check(program::FileName)->required();
    app.add_option("--frames", options.frames, "frames to run, rounded up to whole laps")->capture_default_str();
    app.add_flag("--reloads", options.reloads, "reload files of all kinds, one after the other, before the scenes");
    app.add_option("--sequences", options.sequences, "random sequences of a host's calls to run before the scenes");
    app.add_option("--seed", options.seed, "of the first sequence; the others have the next numbers")
        ->capture_default_str();
    app.add_option("scenes", options.scenes, "scenes (.yaml)")->check(program::FileName);
    if (const std::optional<int> status = program::ReadCommandLine(app, argc, argv))
    {
        return *status;
    }
    if (options.scenes.empty() && !options.reloads && options.sequences == 0)
    {
        fmt::print(stderr, "kirosoak: nothing to do, expected scenes, --reloads or --sequences\n");
        return program::ExitBadUsage;
    }
    return Run(options);
}

}  // namespace

int main(int argc, char** argv)
{
    return program::Main("kirosoak: ", [&] { return RunProgram(argc, argv); });
}
