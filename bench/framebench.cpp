#include "bench/framebench.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include "bench/allocationcounter.h"
#include "bench/bars.h"
#include "bench/framerig.h"
#include "bench/heavyfloor.h"
#include "bench/stagetimes.h"

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

template <typename Frame> VOID RunFrames(benchmark::State& rState, Frame& rFrame)
{
    for (auto _ : rState)
    {
        rFrame.Run();
    }
}

VOID RunFloor(benchmark::State& rState)
{
    static const HeavyFloor floor(Heavy().Stats());
    for (auto _ : rState)
    {
        floor.Run();
    }
}

template <typename Frame> VOID PrintAllocationsOf(const CHAR* pName, Frame& rFrame)
{
    constexpr UINT64   frames  = 1000;
    constexpr UINT64   allowed = frames;  // the history's node
    const HeapCounters before  = GetHeapCounters();
    for (UINT64 frame = 0; frame < frames; ++frame)
    {
        rFrame.Run();
    }
    const HeapCounters after     = GetHeapCounters();
    const UINT64       framework = after.framework - before.framework;
    const UINT64       all       = after.all - before.all;
    const bool         isKept    = framework == allowed && all == allowed;
    fmt::print("{} frame, {} in a row: {} by TavoCalloc, {} by any allocator, {} expected  {}\n", pName, frames,
               framework, all, allowed, isKept ? "ok" : "above");
}

}  // namespace

VOID RegisterFrameBenchmarks()
{
    benchmark::RegisterBenchmark(benchname::HeavyFrame, [](benchmark::State& rState) { RunFrames(rState, Heavy()); });
    benchmark::RegisterBenchmark(benchname::EverythingFrame,
                                 [](benchmark::State& rState) { RunFrames(rState, Everything()); });
    benchmark::RegisterBenchmark(benchname::HeavyFloor, RunFloor);
    benchmark::RegisterBenchmark(benchname::LightFrame, [](benchmark::State& rState) { RunFrames(rState, Light()); });
}

VOID PrintAllocations()
{
    fmt::print("\nallocations\n");
    PrintAllocationsOf("heavy", Heavy());
    PrintAllocationsOf("everything on", Everything());
    PrintAllocationsOf("light", Light());
}

VOID PrintStages()
{
    PrintStageTimes("heavy frame", *Heavy().Rig().Host().Algo(), [] { Heavy().Run(); });
    PrintStageTimes("everything on", *Everything().Rig().Host().Algo(), [] { Everything().Run(); });
    PrintStageTimes("light frame", *Light().Rig().Host().Algo(), [] { Light().Run(); });
}
