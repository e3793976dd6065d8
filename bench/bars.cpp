#include "bench/bars.h"

#include <fmt/format.h>

namespace
{

struct Bar
{
    const CHAR* pName;       ///< of the benchmark
    const CHAR* pReference;  ///< benchmark whose median the limit counts in; null for ns
    DOUBLE      limit;
};

constexpr Bar Bars[] = {
    {benchname::HeavyFrame, benchname::HeavyFloor, 4.0},
    {benchname::LightFrame, nullptr, 12e3},
    {benchname::GetModuleBuffer, nullptr, 150.0},
    {benchname::GetModuleFile, nullptr, 300.0},
    {benchname::TriggerTree, nullptr, 120.0},
    {benchname::LoadPhoneBuffer, nullptr, 1e6},
    {benchname::LoadLargeBuffer, nullptr, 30e6},
    {benchname::LoadLargeFile, nullptr, 30e6},
};

/// What all that hangs on a frame may add to the heavy one.
constexpr DOUBLE EverythingMoreNs = 60e3;

/// A time with a unit that suits it.
std::string TimeText(DOUBLE ns)
{
    if (ns < 1e3)
    {
        return fmt::format("{:.1f} ns", ns);
    }
    return (ns < 1e6) ? fmt::format("{:.2f} us", ns / 1e3) : fmt::format("{:.3f} ms", ns / 1e6);
}

VOID PrintEverythingBar(const std::map<std::string, DOUBLE>& rMedians)
{
    const auto heavy      = rMedians.find(benchname::HeavyFrame);
    const auto everything = rMedians.find(benchname::EverythingFrame);
    if (heavy == rMedians.end() || everything == rMedians.end())
    {
        return;
    }
    const DOUBLE more = everything->second - heavy->second;
    fmt::print("{:<40}{:>12}{:>12}{:>9.2f}  {}\n", "everything on, more than heavy", TimeText(more),
               TimeText(EverythingMoreNs), more / EverythingMoreNs, (more <= EverythingMoreNs) ? "ok" : "above");
}

}  // namespace

MedianReporter::MedianReporter() : ConsoleReporter(OO_None)
{
}

void MedianReporter::ReportRuns(const std::vector<Run>& rRuns)
{
    ConsoleReporter::ReportRuns(rRuns);
    for (const Run& rRun : rRuns)
    {
        if (rRun.aggregate_name == "median")
        {
            m_medians[rRun.run_name.function_name] =
                rRun.GetAdjustedCPUTime() / benchmark::GetTimeUnitMultiplier(rRun.time_unit) * 1e9;
        }
    }
}

VOID PrintBars(const std::map<std::string, DOUBLE>& rMedians)
{
    fmt::print("\n{:<40}{:>12}{:>12}{:>9}\n", "bar (CPU time, median)", "measured", "bar", "ratio");
    for (const Bar& rBar : Bars)
    {
        const auto median    = rMedians.find(rBar.pName);
        const auto reference = (rBar.pReference != nullptr) ? rMedians.find(rBar.pReference) : rMedians.end();
        if (median == rMedians.end() || (rBar.pReference != nullptr && reference == rMedians.end()))
        {
            continue;
        }
        const DOUBLE limit  = (rBar.pReference != nullptr) ? rBar.limit * reference->second : rBar.limit;
        const bool   isKept = median->second <= limit;
        fmt::print("{:<40}{:>12}{:>12}{:>9.2f}  {}\n", rBar.pName, TimeText(median->second), TimeText(limit),
                   median->second / limit, isKept ? "ok" : "above");
        if (rBar.pReference != nullptr)
        {
            fmt::print("  {:.2f} times its floor of {}, at most {:.0f} times\n", median->second / reference->second,
                       TimeText(reference->second), rBar.limit);
        }
    }
    PrintEverythingBar(rMedians);
}
