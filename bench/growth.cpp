#include "bench/growth.h"

#include <ctime>
#include <deque>
#include <fmt/format.h>

#include "bench/framerig.h"
#include "bench/growthtuning.h"

namespace
{

/// What one more costs in the upper half of a series, in times of what it costs in the lower half. Cost that grows in
/// proportion has 1, with room for noise and for what comes by vectors.
constexpr DOUBLE SlopeBar = 2.5;

constexpr UINT32 GrowthRounds         = 25;
constexpr UINT32 FramesPerGrowthRound = 100;

/// Frames that differ in how much of one thing they have.
struct GrowthSeries
{
    const CHAR*               pName;
    std::vector<UINT32>       counts;
    std::vector<GrowthTuning> frames;
};

std::vector<GrowthSeries> AllSeries()
{
    std::vector<GrowthSeries> all;
    all.push_back({"regions", {256, 512, 1024, 2048, 3072}, {}});
    for (const UINT32 regions : all.back().counts)
    {
        all.back().frames.push_back({.regions = regions, .calculators = 8});
    }
    all.push_back({"calculators", {1, 2, 4, 8, 16, 32, 64}, {}});
    for (const UINT32 count : all.back().counts)
    {
        all.back().frames.push_back({.calculators = count});
    }
    constexpr UINT32 channels = 8;
    all.push_back({"tables", {1, 2, 4, 8, 16, 17, 20, 24}, {}});
    for (const UINT32 count : all.back().counts)
    {
        all.back().frames.push_back({.channels = channels, .calculators = channels * count});
    }
    all.push_back({"analyzers", {1, 2, 4, 8, 16, 32, 64}, {}});
    for (const UINT32 count : all.back().counts)
    {
        all.back().frames.push_back({.analyzers = count});
    }
    all.push_back({"detectors", {1, 2, 4, 8, 16, 32}, {}});
    for (const UINT32 count : all.back().counts)
    {
        all.back().frames.push_back({.detectors = count});
    }
    all.push_back({"modes", {1, 2, 3, 4, 5, 6, 7}, {}});
    for (const UINT32 count : all.back().counts)
    {
        all.back().frames.push_back({.modes = count});
    }
    return all;
}

DOUBLE ProcessorNs()
{
    timespec time{};
    (VOID) clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<DOUBLE>(time.tv_sec) * 1e9 + static_cast<DOUBLE>(time.tv_nsec);
}

/// GrowthRounds are taken in turns, so that other work of the machine affects all frames of a series alike.
/// @return the median of each
std::vector<DOUBLE> MeasureSeries(const GrowthSeries& rSeries, program::Progress& rProgress)
{
    std::deque<LightFrame> frames;
    for (const GrowthTuning& rTuning : rSeries.frames)
    {
        frames.emplace_back(CompileGrowth(rTuning), GrowthGridWidth(rTuning),
                            rTuning.regions / GrowthGridWidth(rTuning), rTuning.channels);
    }
    std::vector<std::vector<DOUBLE>> times(frames.size());
    for (UINT32 round = 0; round < GrowthRounds; ++round)
    {
        rProgress.Show(fmt::format("growth with {}, round {} of {}", rSeries.pName, round + 1, GrowthRounds));
        for (size_t index = 0; index < frames.size(); ++index)
        {
            const DOUBLE start = ProcessorNs();
            for (UINT32 frame = 0; frame < FramesPerGrowthRound; ++frame)
            {
                frames[index].Run();
            }
            times[index].push_back((ProcessorNs() - start) / FramesPerGrowthRound);
        }
    }
    std::vector<DOUBLE> medians;
    for (std::vector<DOUBLE>& rTimes : times)
    {
        medians.push_back(PercentileOf(rTimes, 0.5));
    }
    return medians;
}

/// Between two frames of a series: what one more costs.
DOUBLE Slope(const GrowthSeries& rSeries, const std::vector<DOUBLE>& rNs, size_t from, size_t to)
{
    return (rNs[to] - rNs[from]) / static_cast<DOUBLE>(rSeries.counts[to] - rSeries.counts[from]);
}

VOID PrintSeries(const GrowthSeries& rSeries, const std::vector<DOUBLE>& rNs)
{
    fmt::print("\n{:<14}{:>12}{:>16}\n", rSeries.pName, "us", "ns each more");
    for (size_t index = 0; index < rNs.size(); ++index)
    {
        const std::string slope =
            (index > 0) ? fmt::format("{:.1f}", Slope(rSeries, rNs, index - 1, index)) : std::string();
        fmt::print("{:<14}{:>12.2f}{:>16}\n", rSeries.counts[index], rNs[index] / 1e3, slope);
    }
}

}  // namespace

std::vector<BenchResult> MeasureGrowth(bool isPrinted, program::Progress& rProgress)
{
    std::vector<BenchResult> results;
    std::vector<BenchResult> slopes;
    for (const GrowthSeries& rSeries : AllSeries())
    {
        const std::vector<DOUBLE> ns   = MeasureSeries(rSeries, rProgress);
        const size_t              last = ns.size() - 1;
        rProgress.Clear();
        if (isPrinted)
        {
            PrintSeries(rSeries, ns);
        }
        for (size_t index = 0; index <= last; ++index)
        {
            results.push_back({fmt::format("growth/{}/{}", rSeries.pName, rSeries.counts[index]), "ns", ns[index], {}});
        }
        slopes.push_back({fmt::format("growth/{}, upper half", rSeries.pName), "ratio",
                          Slope(rSeries, ns, last / 2, last) / Slope(rSeries, ns, 0, last / 2), SlopeBar});
    }
    if (isPrinted)
    {
        PrintTable("slopes, times those of the lower half", slopes);
    }
    results.insert(results.end(), slopes.begin(), slopes.end());
    return results;
}
