#include <cstdio>
#include <filesystem>
#include <fmt/format.h>

#include "host/discardlog.h"
#include "platform/tavodesk.h"
#include "tools/kirosim/stopsignal.h"
#include "tools/kirosoak/hostsequences.h"
#include "tools/kirosoak/soak.h"
#include "tools/program/commandline.h"
#include "tools/program/progress.h"
#include "tools/program/temporaries.h"
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

/// Shows how much is done, and the lines of a run between that.
class Watch
{
public:
    explicit Watch(const CHAR* pWhat) : m_progress(pWhat)
    {
    }

    VOID PrintLine(const std::string& rLine)
    {
        m_progress.Clear();
        fmt::print("{}", rLine);
        (VOID) std::fflush(stdout);
    }

    /// Asked once for each thing to do. @return whether the run is to end
    bool IsStopped()
    {
        m_progress.Show(++m_done, 0);
        return kirosim::StopSignal::IsRaised();
    }

    VOID End()
    {
        m_progress.Clear();
    }

private:
    program::Progress m_progress;
    UINT64            m_done = 0;
};

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

INT RunScenes(const Options& rOptions, const std::string& rTuning)
{
    Watch                      watch("kirosoak: frame");
    const kirosoak::SoakResult result = kirosoak::Soak({rOptions.frames, rOptions.scenes, rTuning,
                                                        [&watch](const std::string& rLine) { watch.PrintLine(rLine); },
                                                        [&watch] { return watch.IsStopped(); }},
                                                       DiscardLog);
    watch.End();
    fmt::print("{} frames in {} laps of {} scenes: {} cameras, {} steps settled, {} values edited, {} reloads, {} mode "
               "changes, {} snapshots; heap {:+} bytes, resident {:+} bytes\n",
               result.frames, result.laps, rOptions.scenes.size(), result.cameras, result.settles, result.edits,
               result.reloads, result.modeChanges, result.snapshots, result.heapGrowth, result.residentGrowth);
    return ShowFaults(result.faults);
}

INT RunSequences(const Options& rOptions, const std::string& rTuning)
{
    Watch                          watch("kirosoak: sequence");
    const kirosoak::SequenceResult result = kirosoak::RunSequences(
        {rOptions.tuning, rTuning, rOptions.reloads ? ~UINT64{0} : 0, rOptions.sequences, rOptions.seed,
         [&watch](const std::string& rLine) { watch.PrintLine(rLine); }, [&watch] { return watch.IsStopped(); }},
        DiscardLog);
    watch.End();
    fmt::print("{} cases of reloads and {} sequences of a host's calls from seed {} on, {} frames\n",
               result.reloadCases, result.sequences, rOptions.seed, result.frames);
    return ShowFaults(result.faults);
}

/// @return the program's status
INT Run(const Options& rOptions)
{
    TavoDesk::SetSystemLogSink([](VOID*, UINT64, const CHAR*, UINT32, const CHAR*) {}, nullptr);
    const kirosim::StopSignal stopSignal;  // before there is a file to clear away
    const std::vector<BYTE>   compiled = tuningfile::CompileFile(rOptions.tuning);
    const program::Temporary  file(std::filesystem::temp_directory_path() / "kirosoak");
    INT                       status = 0;
    tuningfile::ReplaceFile(file.Path(), compiled);
    if (rOptions.reloads || rOptions.sequences > 0)
    {
        status = RunSequences(rOptions, file.Path());
    }
    if (status == 0 && !rOptions.scenes.empty())
    {
        status = RunScenes(rOptions, file.Path());
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
