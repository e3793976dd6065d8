#include "core/statsprocessor/regionweights.h"

#include <algorithm>
#include <cmath>

#include "platform/tavoprocessors.h"

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
    const FLOAT width   = x2 - x1;
    const FLOAT rise    = y2 - y1;
    const bool  isStep  = x1 == x2;
    const bool  isLevel = rise == 0.0f && !std::signbit(y1) && width > 0.0f && std::isfinite(width);
    if (isStep || isLevel)  // nothing to divide; the sign of a zero below 0 would depend on luma
    {
        const FLOAT level = isStep ? y2 : y1;
        for (UINT32 region = 0; region < BatchSize; ++region)
        {
            pWeights[region] = isTaken(pLuma[region]) ? level : pWeights[region];
        }
        return;
    }
    FLOAT line[BatchSize];
    for (UINT32 region = 0; region < BatchSize; ++region)
    {
        line[region] = y1 + rise * ((pLuma[region] - x1) / width);
    }
    for (UINT32 region = 0; region < BatchSize; ++region)
    {
        pWeights[region] = isTaken(pLuma[region]) ? line[region] : pWeights[region];
    }
}

/// Soft edge: 1 up to half, falling to 0 beyond.
inline FLOAT WeighEdge(const SoftEdge& rEdge, FLOAT ratio)
{
    const FLOAT distance = std::abs(ratio - rEdge.center);
    const FLOAT fallen   = 1.0f - (distance - rEdge.half) / rEdge.fallOff;
    const FLOAT weight   = (fallen < 0.0f) ? 0.0f : fallen;
    return (distance > rEdge.half) ? weight : 1.0f;
}

/// The first row that a luma lies in or before counts: earlier ones are drawn over later ones.
TAVO_FOR_EACH_PROCESSOR
VOID TakeRows(UINT32 count, const Row* pRows, const FLOAT* pLuma, Batch& rWeights)
{
    std::fill(std::begin(rWeights), std::end(rWeights), (count == 0) ? 0.0f : pRows[count - 1].triggerData.end);
    for (UINT32 index = count; index-- > 0;)
    {
        const auto& rRow  = pRows[index];
        const FLOAT start = rRow.trigger.start;
        const FLOAT end   = rRow.trigger.end;
        TakeLine(start, rRow.triggerData.start, end, rRow.triggerData.end, pLuma, rWeights,
                 [end](FLOAT luma) { return end >= luma; });
        const bool  isFirst = index == 0;
        const auto& rBefore = pRows[isFirst ? 0 : index - 1];
        TakeLine(isFirst ? start : rBefore.trigger.end, rBefore.triggerData.end, start, rRow.triggerData.start, pLuma,
                 rWeights, [start](FLOAT luma) { return start > luma; });
    }
}

TAVO_FOR_EACH_PROCESSOR
VOID WeighEdges(const SoftEdge& rRGEdge, const SoftEdge& rBGEdge, const FLOAT* __restrict pRG,
                const FLOAT* __restrict pBG, FLOAT* __restrict pWeights)
{
    const SoftEdge rgEdge = rRGEdge;  // of its own, so that no weight that is written can change it
    const SoftEdge bgEdge = rBGEdge;
    for (UINT32 region = 0; region < BatchSize; ++region)
    {
        const FLOAT byRG = WeighEdge(rgEdge, pRG[region]);
        const FLOAT byBG = WeighEdge(bgEdge, pBG[region]);
        pWeights[region] = (byBG < byRG) ? byBG : byRG;
    }
}

}  // namespace

VOID Clamp(const FLOAT* __restrict pLuma, FLOAT clamp, FLOAT* __restrict pClamped)
{
    for (UINT32 region = 0; region < BatchSize; ++region)
    {
        pClamped[region] = std::min(clamp, pLuma[region]);
    }
}

VOID ByLuma(UINT32 count, const Row* pRows, const FLOAT* pLuma, Batch& rWeights)
{
    TakeRows(count, pRows, pLuma, rWeights);
}

VOID ByColor(const SoftEdge& rRGEdge, const SoftEdge& rBGEdge, const FLOAT* pRG, const FLOAT* pBG, Batch& rWeights)
{
    WeighEdges(rRGEdge, rBGEdge, pRG, pBG, rWeights);
}

}  // namespace regionweights
