#include "core/statsprocessor/regionweights.h"

#include <algorithm>
#include <cmath>

namespace regionweights
{

namespace
{

/// Takes the values of a line where a condition on luma holds. Values and conditions are computed apart: a division on
/// one branch only would keep the compiler from computing several at once.
/// @param isTaken holds for no luma outside the line
template <typename Condition>
VOID TakeLine(FLOAT x1, FLOAT y1, FLOAT x2, FLOAT y2, const FLOAT* __restrict pLuma, FLOAT* __restrict pWeights,
              Condition isTaken)
{
    const FLOAT width = x2 - x1;
    const FLOAT rise  = y2 - y1;
    FLOAT       line[BatchSize];
    if (x1 == x2)
    {
        std::fill_n(line, BatchSize, y2);  // a step
    }
    else if (rise == 0.0f && !std::signbit(y1) && width > 0.0f && std::isfinite(width))
    {
        std::fill_n(line, BatchSize, y1);  // level: nothing to divide, but for a zero whose sign depends on luma
    }
    else
    {
        for (UINT32 region = 0; region < BatchSize; ++region)
        {
            line[region] = y1 + rise * ((pLuma[region] - x1) / width);
        }
    }
    for (UINT32 region = 0; region < BatchSize; ++region)
    {
        pWeights[region] = isTaken(pLuma[region]) ? line[region] : pWeights[region];
    }
}

/// Soft edge: 1 up to half, falling to 0 beyond.
VOID WeighEdge(const SoftEdge& rEdge, const FLOAT* __restrict pRatios, FLOAT* __restrict pWeights)
{
    const SoftEdge edge = rEdge;
    FLOAT          fallen[BatchSize];
    for (UINT32 region = 0; region < BatchSize; ++region)
    {
        fallen[region] = 1.0f - (std::abs(pRatios[region] - edge.center) - edge.half) / edge.fallOff;
    }
    for (UINT32 region = 0; region < BatchSize; ++region)
    {
        const FLOAT weight = (fallen[region] < 0.0f) ? 0.0f : fallen[region];
        pWeights[region]   = (std::abs(pRatios[region] - edge.center) > edge.half) ? weight : 1.0f;
    }
}

}  // namespace

VOID ByLuma(UINT32 count, const kiroglobalelements::TriggerSystemEndLevelStartEndType* pRows, const Batch& rLuma,
            Batch& rWeights)
{
    std::fill(std::begin(rWeights), std::end(rWeights), (count == 0) ? 0.0f : pRows[count - 1].triggerData.end);
    // The first row that a luma lies in or before counts: earlier ones are drawn over later ones.
    for (UINT32 index = count; index-- > 0;)
    {
        const auto& rRow  = pRows[index];
        const FLOAT start = rRow.trigger.start;
        const FLOAT end   = rRow.trigger.end;
        TakeLine(start, rRow.triggerData.start, end, rRow.triggerData.end, rLuma, rWeights,
                 [end](FLOAT luma) { return end >= luma; });
        const bool  isFirst = index == 0;
        const auto& rBefore = pRows[isFirst ? 0 : index - 1];
        TakeLine(isFirst ? start : rBefore.trigger.end, rBefore.triggerData.end, start, rRow.triggerData.start, rLuma,
                 rWeights, [start](FLOAT luma) { return start > luma; });
    }
}

VOID ByColor(const SoftEdge& rRGEdge, const SoftEdge& rBGEdge, const Batch& rRG, const Batch& rBG, Batch& rWeights)
{
    FLOAT byRG[BatchSize];
    FLOAT byBG[BatchSize];
    WeighEdge(rRGEdge, rRG, byRG);
    WeighEdge(rBGEdge, rBG, byBG);
    for (UINT32 region = 0; region < BatchSize; ++region)
    {
        rWeights[region] = (byBG[region] < byRG[region]) ? byBG[region] : byRG[region];
    }
}

}  // namespace regionweights
