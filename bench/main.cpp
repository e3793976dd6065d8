#include <benchmark/benchmark.h>
#include <exception>
#include <fmt/format.h>
#include <string>
#include <vector>

#include "bench/bars.h"
#include "bench/framebench.h"
#include "bench/storebench.h"
#include "bench/triggerbench.h"
#include "platform/tavocommonutils.h"

namespace
{

constexpr INT ExitBadInput = 1;
constexpr INT ExitBadUsage = 2;

/// A median over many short rounds, taken in turns, shrugs off what else the machine does meanwhile.
std::vector<std::string> DefaultOptions()
{
    return {"--benchmark_repetitions=15", "--benchmark_min_time=0.05", "--benchmark_enable_random_interleaving=true",
            "--benchmark_report_aggregates_only=true"};
}

/// Options of the command line stand behind the defaults and win.
bool TakeOptions(int argc, char** argv)
{
    std::vector<std::string> options = DefaultOptions();
    options.insert(options.begin(), argv[0]);
    options.insert(options.end(), argv + 1, argv + argc);
    std::vector<char*> pointers;
    for (std::string& rOption : options)
    {
        pointers.push_back(rOption.data());
    }
    int count = static_cast<int>(pointers.size());
    benchmark::Initialize(&count, pointers.data());
    return !benchmark::ReportUnrecognizedArguments(count, pointers.data());
}

}  // namespace

int main(int argc, char** argv)
{
    // The log is configured, and every group of it is off.
    Tavo::g_logInfoUpdated = TRUE;
    if (!TakeOptions(argc, argv))
    {
        return ExitBadUsage;
    }
    try
    {
        RegisterFrameBenchmarks();
        RegisterStoreBenchmarks();
        RegisterTriggerBenchmark();
        MedianReporter reporter;
        benchmark::RunSpecifiedBenchmarks(&reporter);
        PrintStages();
        PrintAllocations();
        PrintBars(reporter.Medians());
        return 0;
    }
    catch (const std::exception& rError)
    {
        fmt::print(stderr, "kirobench: {}\n", rError.what());
        return ExitBadInput;
    }
}
