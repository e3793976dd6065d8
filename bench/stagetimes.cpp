#include "bench/stagetimes.h"

#include <chrono>
#include <fmt/format.h>
#include <utility>
#include <vector>

#include "bench/clock.h"
#include "bench/results.h"

namespace
{

/// What one function of the table took in the frame in progress.
struct StageClock
{
    DOUBLE ns    = 0.0;
    UINT32 calls = 0;
};

/// Stands in the table for one of its functions.
template <auto Member> struct TimedFunction;

template <typename Result, typename... Arguments, Result (*IKIROCoreAlgo::*Member)(IKIROCoreAlgo*, Arguments...)>
struct TimedFunction<Member>
{
    static inline Result (*s_original)(IKIROCoreAlgo*, Arguments...) = nullptr;
    static inline StageClock s_clock;

    static Result Call(IKIROCoreAlgo* pAlgo, Arguments... arguments)
    {
        struct AddTime
        {
            Clock::time_point start = Clock::now();
            ~AddTime()
            {
                s_clock.ns += NsSince(start);
                ++s_clock.calls;
            }
        };
        const AddTime addTime;
        return s_original(pAlgo, std::forward<Arguments>(arguments)...);
    }

    static VOID Install(IKIROCoreAlgo& rAlgo)
    {
        s_original = std::exchange(rAlgo.*Member, &Call);
    }

    static VOID Remove(IKIROCoreAlgo& rAlgo)
    {
        rAlgo.*Member = s_original;
    }

    static StageClock Take()
    {
        return std::exchange(s_clock, StageClock{});
    }
};

struct Stage
{
    const CHAR* pName;
    VOID (*install)(IKIROCoreAlgo& rAlgo);
    VOID (*remove)(IKIROCoreAlgo& rAlgo);
    StageClock (*take)();
};

template <auto Member> constexpr Stage StageOf(const CHAR* pName)
{
    using Function = TimedFunction<Member>;
    return {pName, Function::Install, Function::Remove, Function::Take};
}

constexpr Stage Stages[] = {
    StageOf<&IKIROCoreAlgo::setInput>("setInput"),
    StageOf<&IKIROCoreAlgo::runStartOfFrame>("runStartOfFrame"),
    StageOf<&IKIROCoreAlgo::setStats>("setStats"),
    StageOf<&IKIROCoreAlgo::runMeteringPreprocess>("runMeteringPreprocess"),
    StageOf<&IKIROCoreAlgo::runAnalyzer>("runAnalyzer"),
    StageOf<&IKIROCoreAlgo::runMeteringPostprocess>("runMeteringPostprocess"),
    StageOf<&IKIROCoreAlgo::mixMetering>("mixMetering"),
    StageOf<&IKIROCoreAlgo::RunConvProcess>("RunConvProcess"),
    StageOf<&IKIROCoreAlgo::followMasterConvExposure>("followMasterConvExposure"),
    StageOf<&IKIROCoreAlgo::HandleExposureConstraints>("HandleExposureConstraints"),
    StageOf<&IKIROCoreAlgo::RunConvSettle>("RunConvSettle"),
    StageOf<&IKIROCoreAlgo::RunConvPostProcess>("RunConvPostProcess"),
    StageOf<&IKIROCoreAlgo::runArbitration>("runArbitration"),
    StageOf<&IKIROCoreAlgo::runExtension>("runExtension"),
    StageOf<&IKIROCoreAlgo::runEndOfFrame>("runEndOfFrame"),
    StageOf<&IKIROCoreAlgo::GetSCDOutput>("GetSCDOutput"),
    StageOf<&IKIROCoreAlgo::RebaseSCD>("RebaseSCD"),
    StageOf<&IKIROCoreAlgo::getBankData>("getBankData"),
    StageOf<&IKIROCoreAlgo::setBankData>("setBankData"),
};
constexpr size_t StageCount = std::size(Stages);

}  // namespace

std::vector<StageTime> MeasureStageTimes(IKIROCoreAlgo& rAlgo, const std::function<VOID()>& runFrame)
{
    constexpr UINT32    frames = 2001;
    std::vector<DOUBLE> stageNs[StageCount];
    UINT32              stageCalls[StageCount] = {};
    std::vector<DOUBLE> restNs;
    std::vector<DOUBLE> frameNs;
    for (const Stage& rStage : Stages)
    {
        rStage.install(rAlgo);
    }
    for (UINT32 frame = 0; frame < frames; ++frame)
    {
        const Clock::time_point start = Clock::now();
        runFrame();
        frameNs.push_back(NsSince(start));
        restNs.push_back(frameNs.back());
        for (size_t stage = 0; stage < StageCount; ++stage)
        {
            const StageClock clock = Stages[stage].take();
            stageNs[stage].push_back(clock.ns);
            stageCalls[stage] = clock.calls;
            restNs.back() -= clock.ns;
        }
    }
    for (const Stage& rStage : Stages)
    {
        rStage.remove(rAlgo);
    }

    std::vector<StageTime> times;
    for (size_t stage = 0; stage < StageCount; ++stage)
    {
        times.push_back({Stages[stage].pName, stageCalls[stage], PercentileOf(stageNs[stage], 0.5)});
    }
    times.push_back({"host, and the clock", 1, PercentileOf(restNs, 0.5)});
    times.push_back({"whole frame", 1, PercentileOf(frameNs, 0.5)});
    return times;
}

VOID PrintStageTimes(const CHAR* pTitle, const std::vector<StageTime>& rStages)
{
    fmt::print("\n{:<30}{:>6}{:>12}{:>8}\n", pTitle, "calls", "us", "%");
    for (const StageTime& rStage : rStages)
    {
        fmt::print("  {:<28}{:>6}{:>12.2f}{:>8.1f}\n", rStage.pName, rStage.calls, rStage.ns / 1e3,
                   100.0 * rStage.ns / rStages.back().ns);
    }
}
