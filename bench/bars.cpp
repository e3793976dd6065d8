#include "bench/bars.h"

namespace
{

struct Bar
{
    const CHAR* pName;  ///< of the benchmark
    DOUBLE      ns;
};

constexpr Bar Bars[] = {
    {benchname::LightFrame, 1.8e3},    {benchname::LeastFrame, 1.2e3},  {benchname::GetModuleBuffer, 22.0},
    {benchname::GetModuleFile, 150.0}, {benchname::TriggerTree, 50.0},  {benchname::LoadPhoneBuffer, 0.35e6},
    {benchname::LoadLargeBuffer, 4e6}, {benchname::LoadLargeFile, 5e6},
};

/// The heavy frame, in times of its chains walked one after another.
constexpr DOUBLE HeavyFloors = 0.45;

/// What all that hangs on a frame may add to the heavy one.
constexpr DOUBLE EverythingMoreNs = 15e3;

}  // namespace

MedianReporter::MedianReporter(bool isShown, program::Progress& rProgress)
    : ConsoleReporter(OO_None), m_isShown(isShown), m_rProgress(rProgress)
{
}

bool MedianReporter::ReportContext(const Context& rContext)
{
    return !m_isShown || ConsoleReporter::ReportContext(rContext);
}

void MedianReporter::ReportRuns(const std::vector<Run>& rRuns)
{
    if (m_isShown)
    {
        m_rProgress.Clear();
        ConsoleReporter::ReportRuns(rRuns);
    }
    for (const Run& rRun : rRuns)
    {
        if (rRun.error_occurred)
        {
            m_errors.push_back(rRun.benchmark_name() + ": " + rRun.error_message);
        }
        if (rRun.aggregate_name == "median")
        {
            m_medians[rRun.run_name.function_name] =
                rRun.GetAdjustedCPUTime() / benchmark::GetTimeUnitMultiplier(rRun.time_unit) * 1e9;
        }
    }
}

std::vector<BenchResult> CompareWithBars(const std::map<std::string, DOUBLE>& rMedians)
{
    std::vector<BenchResult>      results;
    std::map<std::string, DOUBLE> others     = rMedians;
    const auto                    floor      = rMedians.find(benchname::HeavyFloor);
    const auto                    heavy      = rMedians.find(benchname::HeavyFrame);
    const auto                    everything = rMedians.find(benchname::EverythingFrame);
    if (heavy != rMedians.end() && floor != rMedians.end())
    {
        results.push_back({"frame/heavy, times its floor", "ratio", heavy->second / floor->second, HeavyFloors});
    }
    if (heavy != rMedians.end() && everything != rMedians.end())
    {
        results.push_back(
            {"frame/everything_on, more than heavy", "ns", everything->second - heavy->second, EverythingMoreNs});
    }
    for (const Bar& rBar : Bars)
    {
        if (const auto median = rMedians.find(rBar.pName); median != rMedians.end())
        {
            results.push_back({rBar.pName, "ns", median->second, rBar.ns});
            others.erase(rBar.pName);
        }
    }
    for (const auto& [rName, median] : others)
    {
        results.push_back({rName, "ns", median, {}});
    }
    return results;
}
