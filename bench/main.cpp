#include <algorithm>
#include <benchmark/benchmark.h>
#include <charconv>
#include <cstdio>
#include <fmt/format.h>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/bars.h"
#include "bench/framebench.h"
#include "bench/growth.h"
#include "bench/livebench.h"
#include "bench/results.h"
#include "bench/rounds.h"
#include "bench/storebench.h"
#include "bench/triggerbench.h"
#include "platform/tavocommonutils.h"
#include "tools/program/programmain.h"
#include "tools/program/progress.h"

namespace
{

constexpr INT ExitAboveBar = 3;

constexpr UINT32 LiveSeconds      = 60;
constexpr UINT32 ShortLiveSeconds = 6;  ///< when it is one of many

/// A median over many short rounds, taken in turns, shrugs off what else the machine does meanwhile.
constexpr UINT64 DefaultRounds = 15;

std::vector<std::string> DefaultOptions()
{
    return {fmt::format("--benchmark_repetitions={}", DefaultRounds), "--benchmark_min_time=0.05",
            "--benchmark_enable_random_interleaving=true", "--benchmark_report_aggregates_only=true"};
}

struct Arguments
{
    bool                     isJson   = false;
    bool                     isGrowth = false;  ///< measure nothing but how frames grow
    std::optional<UINT32>    liveSeconds;       ///< measure nothing but live tuning, for so long
    std::vector<std::string> options;           ///< for the benchmarks
};

Arguments ReadArguments(const std::vector<std::string>& rTexts)
{
    Arguments arguments;
    for (const std::string& rText : rTexts)
    {
        UINT32     seconds  = 0;
        const auto read     = std::from_chars(rText.data(), rText.data() + rText.size(), seconds);
        const bool isNumber = read.ec == std::errc() && *read.ptr == '\0' && seconds > 0;
        if (rText == "--json")
        {
            arguments.isJson = true;
        }
        else if (rText == "--growth")
        {
            arguments.isGrowth = true;
        }
        else if (rText == "--live")
        {
            arguments.liveSeconds = LiveSeconds;
        }
        else if (arguments.liveSeconds && isNumber)
        {
            arguments.liveSeconds = seconds;
        }
        else
        {
            arguments.options.push_back(rText);
        }
    }
    return arguments;
}

/// Options of the command line stand behind the defaults and win.
bool TakeOptions(char* pProgram, const std::vector<std::string>& rOptions)
{
    std::vector<std::string> options = DefaultOptions();
    options.insert(options.end(), rOptions.begin(), rOptions.end());
    std::vector<char*> pointers = {pProgram};
    for (std::string& rOption : options)
    {
        pointers.push_back(rOption.data());
    }
    int count = static_cast<int>(pointers.size());
    benchmark::Initialize(&count, pointers.data());
    return !benchmark::ReportUnrecognizedArguments(count, pointers.data());
}

VOID Append(const std::vector<BenchResult>& rMore, std::vector<BenchResult>& rResults)
{
    rResults.insert(rResults.end(), rMore.begin(), rMore.end());
}

/// @param rounds of each benchmark, 0 if the command line has options for that
std::vector<BenchResult> RunBenchmarks(bool isPrinted, UINT64 rounds, program::Progress& rProgress)
{
    Rounds registered(rProgress, rounds);
    RegisterFrameBenchmarks(registered);
    RegisterStoreBenchmarks(registered);
    RegisterTriggerBenchmark(registered);
    if (isPrinted && rounds > 0)
    {
        fmt::print("{} benchmarks in {} rounds, the stages of frames, and {} s of frames beside a tuning tool\n",
                   registered.BenchmarkCount(), rounds, 2 * ShortLiveSeconds);
        (VOID) std::fflush(stdout);
    }
    MedianReporter reporter(isPrinted, rProgress);
    const size_t   count = benchmark::RunSpecifiedBenchmarks(&reporter);
    rProgress.Clear();
    if (!reporter.Errors().empty())
    {
        throw std::runtime_error(reporter.Errors().front());
    }
    if (reporter.Medians().size() != count)
    {
        throw std::runtime_error(
            fmt::format("{} benchmarks ran and {} medians came of them; a median needs at least two "
                        "repetitions",
                        count, reporter.Medians().size()));
    }
    std::vector<BenchResult> results = MeasureStages(isPrinted);
    Append(MeasureAllocations(isPrinted), results);
    const std::vector<BenchResult> compared = CompareWithBars(reporter.Medians());
    if (isPrinted)
    {
        PrintTable("CPU time, median", compared);
    }
    Append(compared, results);
    return results;
}

/// @return whether all that has a bar keeps it
bool Run(const Arguments& rArguments)
{
    if (!rArguments.isJson)
    {
        PrintMachine();
    }
    program::Progress        progress("kirobench");
    std::vector<BenchResult> results;
    if (rArguments.isGrowth)
    {
        results = MeasureGrowth(!rArguments.isJson, progress);
    }
    else if (!rArguments.liveSeconds)
    {
        results = RunBenchmarks(!rArguments.isJson, rArguments.options.empty() ? DefaultRounds : 0, progress);
    }
    // Whoever chooses among the benchmarks does not want to wait for this.
    if (rArguments.liveSeconds || (rArguments.options.empty() && !rArguments.isGrowth))
    {
        const std::vector<BenchResult> live =
            MeasureLiveTuning(rArguments.liveSeconds.value_or(ShortLiveSeconds), progress);
        progress.Clear();
        if (!rArguments.isJson)
        {
            PrintTable("frames beside a tuning tool, medians", live);
        }
        Append(live, results);
    }
    if (rArguments.isJson)
    {
        PrintJson(results);
    }
    return std::all_of(results.begin(), results.end(), [](const BenchResult& rResult) { return rResult.IsKept(); });
}

}  // namespace

int main(int argc, char** argv)
{
    return program::Main("kirobench: ",
                         [&]
                         {
                             // The log is configured, and every group of it is off.
                             Tavo::g_logInfoUpdated    = TRUE;
                             const Arguments arguments = ReadArguments({argv + 1, argv + argc});
                             if (!TakeOptions(argv[0], arguments.options))
                             {
                                 return program::ExitBadUsage;
                             }
                             return Run(arguments) ? 0 : ExitAboveBar;
                         });
}
