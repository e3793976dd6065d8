#include "bench/framebench.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include "bench/bars.h"
#include "bench/framerig.h"
#include "bench/heavyfloor.h"
#include "bench/leasttuning.h"
#include "bench/stagetimes.h"
#include "platform/tavodesk.h"
#include "tools/heapwatch/heapwatch.h"

namespace
{

HeavyFrame& Heavy()
{
    static HeavyFrame frame(false);
    return frame;
}

HeavyFrame& Everything()
{
    static HeavyFrame frame(true);
    return frame;
}

LightFrame& Light()
{
    static LightFrame frame;
    return frame;
}

LightFrame& Least()
{
    static LightFrame frame(leasttuning::Compile(), 16, 16);
    return frame;
}

template <typename Frame> VOID RunFrames(benchmark::State& rState, Frame& rFrame)
{
    for ([[maybe_unused]] auto _ : rState)
    {
        rFrame.Run();
    }
}

VOID RunFloor(benchmark::State& rState)
{
    static const HeavyFloor floor(Heavy().Stats());
    for ([[maybe_unused]] auto _ : rState)
    {
        floor.Run();
    }
}

template <typename Frame>
VOID MeasureAllocationsOf(const CHAR* pName, Frame& rFrame, bool isPrinted, std::vector<BenchResult>& rResults)
{
    constexpr UINT64 frames          = 1000;
    const UINT64     frameworkBefore = TavoDesk::GetAllocationCounters().allocations;
    const UINT64     allBefore       = heapwatch::Requests();
    for (UINT64 frame = 0; frame < frames; ++frame)
    {
        rFrame.Run();
    }
    const UINT64 framework = TavoDesk::GetAllocationCounters().allocations - frameworkBefore;
    const UINT64 all       = heapwatch::Requests() - allBefore;
    if (isPrinted)
    {
        const bool isKept = framework == 0 && all == 0;
        fmt::print("{} frame, {} in a row: {} by TavoCalloc, {} by any allocator  {}\n", pName, frames, framework, all,
                   isKept ? "ok" : "above");
    }
    rResults.push_back({fmt::format("frame/{}/allocations_in_1000", pName), "count", static_cast<DOUBLE>(all), 0.0});
}

template <typename Frame>
VOID MeasureStagesOf(const CHAR* pName, Frame& rFrame, bool isPrinted, std::vector<BenchResult>& rResults)
{
    const std::vector<StageTime> stages = MeasureStageTimes(*rFrame.Rig().Host().Algo(), [&rFrame] { rFrame.Run(); });
    if (isPrinted)
    {
        PrintStageTimes(fmt::format("{} frame", pName).c_str(), stages);
    }
    for (const StageTime& rStage : stages)
    {
        rResults.push_back({fmt::format("frame/{}/{}", pName, rStage.pName), "ns", rStage.ns, {}});
    }
}

}  // namespace

VOID RegisterFrameBenchmarks(Rounds& rRounds)
{
    (VOID) rRounds.Add(benchname::HeavyFrame, [](benchmark::State& rState) { RunFrames(rState, Heavy()); });
    (VOID) rRounds.Add(benchname::EverythingFrame, [](benchmark::State& rState) { RunFrames(rState, Everything()); });
    (VOID) rRounds.Add(benchname::HeavyFloor, RunFloor);
    (VOID) rRounds.Add(benchname::LightFrame, [](benchmark::State& rState) { RunFrames(rState, Light()); });
    (VOID) rRounds.Add(benchname::LeastFrame, [](benchmark::State& rState) { RunFrames(rState, Least()); });
}

std::vector<BenchResult> MeasureAllocations(bool isPrinted)
{
    if (isPrinted)
    {
        fmt::print("\nallocations\n");
    }
    std::vector<BenchResult> results;
    MeasureAllocationsOf("heavy", Heavy(), isPrinted, results);
    MeasureAllocationsOf("everything_on", Everything(), isPrinted, results);
    MeasureAllocationsOf("light", Light(), isPrinted, results);
    MeasureAllocationsOf("least", Least(), isPrinted, results);
    return results;
}

std::vector<BenchResult> MeasureStages(bool isPrinted)
{
    std::vector<BenchResult> results;
    MeasureStagesOf("heavy", Heavy(), isPrinted, results);
    MeasureStagesOf("everything_on", Everything(), isPrinted, results);
    MeasureStagesOf("light", Light(), isPrinted, results);
    return results;
}
