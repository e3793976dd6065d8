#include "core/statsprocessor/exactsum.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "platform/tavoprocessors.h"

namespace
{

/// A compiler splits what its machine has no vectors for.
constexpr UINT32 LaneCount = 8;
using Lanes                = FLOAT __attribute__((vector_size(LaneCount * sizeof(FLOAT))));
using Answers              = INT32 __attribute__((vector_size(LaneCount * sizeof(INT32))));

/// Additions wait for one another in each chain only.
constexpr UINT32 ChainsPerStep = 2;
constexpr UINT32 StepSize      = ChainsPerStep * LaneCount;

/// What values must be like for their sums to be exact.
struct Bounds
{
    FLOAT clamp;
    FLOAT limit;    ///< values lie below it, and above its opposite
    FLOAT aligner;  ///< so large that adding it rounds a value to multiples of the quantum
};

struct Chain
{
    Lanes   sums;
    Answers areExact;  ///< all bits set, or none
};

VOID AddLanes(const FLOAT* pValues, const Bounds& rBounds, Chain& rChain)
{
    Lanes read;
    std::memcpy(&read, pValues, sizeof(read));
    const Lanes value   = (rBounds.clamp < read) ? Lanes{} + rBounds.clamp : read;
    const Lanes aligned = (value + rBounds.aligner) - rBounds.aligner;
    rChain.areExact &= (aligned == value) & (value < rBounds.limit) & (value > -rBounds.limit);
    rChain.sums += value;
}

VOID AddStep(const FLOAT* pValues, const Bounds& rBounds, Chain (&rChains)[ChainsPerStep])
{
#pragma GCC unroll 2
    for (UINT32 chain = 0; chain < ChainsPerStep; ++chain)
    {
        AddLanes(pValues + static_cast<size_t>(chain) * LaneCount, rBounds, rChains[chain]);
    }
}

bool AreExact(const Chain (&rChains)[ChainsPerStep])
{
    const Answers both     = rChains[0].areExact & rChains[1].areExact;
    INT32         areExact = both[0];
#pragma GCC unroll 8
    for (UINT32 lane = 1; lane < LaneCount; ++lane)
    {
        areExact &= both[lane];
    }
    return areExact != 0;
}

FLOAT SumOf(const Chain (&rChains)[ChainsPerStep])
{
    const Lanes both = rChains[0].sums + rChains[1].sums;
    FLOAT       sum  = both[0];
#pragma GCC unroll 8
    for (UINT32 lane = 1; lane < LaneCount; ++lane)
    {
        sum += both[lane];
    }
    return sum;
}

/// Leaves early: values that do not qualify mostly show it by the first of them.
/// @param count StepSize or more
TAVO_FOR_EACH_PROCESSOR
bool AddSteps(const FLOAT* pValues, UINT32 count, const Bounds& rBounds, FLOAT& rSum)
{
    const Bounds bounds                = rBounds;
    Chain        chains[ChainsPerStep] = {{{}, ~Answers{}}, {{}, ~Answers{}}};
    AddStep(pValues, bounds, chains);
    if (!AreExact(chains))
    {
        return false;
    }
    UINT32 step = StepSize;
    for (; step + StepSize <= count; step += StepSize)
    {
        AddStep(pValues + step, bounds, chains);
    }
    if (step < count)
    {
        FLOAT rest[StepSize] = {};
        std::copy(pValues + step, pValues + count, rest);
        AddStep(rest, bounds, chains);
    }
    rSum = SumOf(chains);
    return AreExact(chains);
}

}  // namespace

bool exactsum::Add(const FLOAT* pValues, UINT32 count, FLOAT clamp, INT32 bitDepth, FLOAT& rSum)
{
    // The rest behind whole steps is filled up with zeros, which a clamp below 0 would turn into something.
    if (bitDepth < 1 || bitDepth > BitDepthMax || count < StepSize || !(clamp >= 0.0f))
    {
        return false;
    }
    // A quantum is 2^-24 of what all values together stay below. The spacing of FLOATs about the aligner, which is
    // 1.5 * 2^23 of them, is one quantum; no value moves it out of that range.
    const FLOAT limit = static_cast<FLOAT>(1U << bitDepth);
    return AddSteps(pValues, count, {clamp, limit, 0.75f * limit * static_cast<FLOAT>(std::bit_ceil(count))}, rSum);
}
