// The stretch: a deliberate offset on top of the converged exposure, made of several tuned ones.

#include <algorithm>
#include <cmath>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/convergence/convergencestages.h"

using namespace kirodbconvstretch;
using exposurearithmetic::Epsilon;

namespace convergencestages
{

namespace
{

/// What is chosen when no stretch fits the direction of the scene.
constexpr KIROTargetStretchOutType NoStretch = {0.0f, 0.0f, 1.0f, 0.5f, FALSE};

constexpr INT32 IndexNone = -1;

/// A filtered stretch below this counts as none, log steps.
constexpr FLOAT StretchMin = 1.0f;

bool IsByWeight(const DBConvStretchCoreData& rTuning)
{
    return rTuning.convStretchAgg == StretchAggLeastWeight || rTuning.convStretchAgg == StretchAggMostWeight;
}

KIROTargetStretchOutType AverageStretches(const DBConvStretchCoreData& rTuning, BOOL bBrightToDark,
                                          const KIROStretchOutputDeque& rStretches)
{
    const bool isDirectionChecked = rTuning.convSameDirection == TRUE;
    FLOAT      totalWeight        = 0.0f;
    FLOAT      offset             = 0.0f;
    FLOAT      comp               = 0.0f;
    FLOAT      tempWeight         = 0.0f;
    for (UINT32 index = 0; index < StretchCount(rTuning); ++index)
    {
        const KIROTargetStretchOutType& rSlot = rStretches[index];
        if (isDirectionChecked && rSlot.bBrightToDark != bBrightToDark)
        {
            STATS_LOG_TRACE("KIROCONVRG Ignore stretch id %d offset:%f", index, rSlot.stretchOffset);
            continue;
        }
        offset     = std::fma(rSlot.weight, rSlot.stretchOffset, offset);
        comp       = std::fma(rSlot.weight, rSlot.comp, comp);
        tempWeight = std::fma(rSlot.weight, rSlot.tempWeight, tempWeight);
        totalWeight += rSlot.weight;
    }
    if (!(totalWeight > 0.0f))
    {
        return {};
    }
    return {0.0f, offset / totalWeight, comp / totalWeight, tempWeight / totalWeight, FALSE};
}

/// Ascending by weight or by offset, as the aggregation asks; equal entries keep their order.
VOID SortStretches(const DBConvStretchCoreData& rTuning, KIROStretchOutputDeque& rStretches)
{
    const auto key = [isByWeight = IsByWeight(rTuning)](const KIROTargetStretchOutType& rSlot)
    { return isByWeight ? rSlot.weight : rSlot.stretchOffset; };

    const UINT32 count = StretchCount(rTuning);
    for (UINT32 sorted = 0; sorted + 1 < count; ++sorted)
    {
        for (UINT32 index = 0; index + 1 < count - sorted; ++index)
        {
            if (key(rStretches[index]) > key(rStretches[index + 1]))
            {
                std::swap(rStretches[index], rStretches[index + 1]);
            }
        }
    }
}

INT32 SelectByWeight(const DBConvStretchCoreData& rTuning, BOOL bBrightToDark, const KIROStretchOutputDeque& rStretches)
{
    const bool isLeast = rTuning.convStretchAgg == StretchAggLeastWeight;
    // For the most weight the direction is read from the slot of index -1, not of the last entry: a tuning that checks
    // directions would choose other stretches by the last one.
    const UINT32 checkedIndex = isLeast ? 0U : static_cast<UINT32>(IndexNone);
    if (rTuning.convSameDirection == TRUE && rStretches[checkedIndex].bBrightToDark != bBrightToDark)
    {
        return IndexNone;
    }
    return isLeast ? 0 : static_cast<INT32>(StretchCount(rTuning)) - 1;
}

INT32 SelectByEffect(const DBConvStretchCoreData& rTuning, BOOL bBrightToDark, const KIROStretchOutputDeque& rStretches)
{
    const INT32 count       = static_cast<INT32>(StretchCount(rTuning));
    INT32       posOffIndex = IndexNone;
    for (INT32 index = 0; index < count && posOffIndex == IndexNone; ++index)
    {
        if (rStretches[static_cast<UINT32>(index)].stretchOffset > 0.0f)
        {
            posOffIndex = index;
        }
    }
    const FLOAT first = rStretches[0].stretchOffset;
    const FLOAT last  = rStretches[static_cast<UINT32>(count - 1)].stretchOffset;
    if (rTuning.convStretchAgg == StretchAggLeastEffect)
    {
        if (bBrightToDark != TRUE)
        {
            return posOffIndex;
        }
        return (first >= 0.0f) ? IndexNone : posOffIndex - 1;
    }
    if (bBrightToDark == TRUE)
    {
        return (first > 0.0f) ? IndexNone : 0;
    }
    return (last > 0.0f) ? count - 1 : IndexNone;
}

KIROTargetStretchOutType SelectStretch(const DBConvStretchCoreData& rTuning, BOOL bBrightToDark,
                                       KIROStretchOutputDeque& rStretches)
{
    SortStretches(rTuning, rStretches);
    const INT32 finalIndex = IsByWeight(rTuning) ? SelectByWeight(rTuning, bBrightToDark, rStretches)
                                                 : SelectByEffect(rTuning, bBrightToDark, rStretches);
    STATS_LOG_TRACE("KIROCONVRG finalIndex selected:%d", finalIndex);
    // With all offsets negative the least effect gives -2: the slot that 32-bit unsigned arithmetic makes of it, not
    // "none", which would take the stretch away.
    return (finalIndex == IndexNone) ? NoStretch : rStretches[static_cast<UINT32>(finalIndex)];
}

}  // namespace

UINT32 StretchCount(const DBConvStretchCoreData& rTuning)
{
    const UINT32 count = rTuning.convStretchCount;
    if (count > ConvStretchCountMax)
    {
        STATS_LOG_ERROR("KIROCONVRG %d stretches tuned, at most %d", count, ConvStretchCountMax);
        return 0;
    }
    return count;
}

VOID SetStretch(AECConvStretchType type, const ConvStretchCoreDataType& rData, KIROTargetStretchOutType& rSlot)
{
    rSlot.weight     = rData.weight;
    rSlot.comp       = rData.comp;
    rSlot.tempWeight = rData.tempWeight;
    if (type == StretchTypeOffset)
    {
        rSlot.stretchOffset = rData.stretchFactOffset;
    }
    else if (std::abs(rData.stretchFactOffset) < Epsilon)
    {
        rSlot.stretchOffset = 0.0f;
    }
    else
    {
        rSlot.stretchOffset = exposurearithmetic::SensiLog103(rData.stretchFactOffset);
        rSlot.bBrightToDark = (rSlot.stretchOffset < 0.0f) ? TRUE : FALSE;
    }
}

KIROTargetStretchOutType AggregateStretchOutput(const DBConvStretchCoreData& rTuning, BOOL bBrightToDark,
                                                KIROStretchOutputDeque& rStretches)
{
    KIROTargetStretchOutType    aggOut{};
    const AECConvStretchAggType aggType = rTuning.convStretchAgg;
    if (static_cast<UINT32>(aggType) > StretchAggMostWeight)
    {
        STATS_LOG_ERROR("KIROCONVRG Invalid Agg type");
    }
    else if (aggType == StretchAggAverage)
    {
        aggOut = AverageStretches(rTuning, bBrightToDark, rStretches);
    }
    else if (StretchCount(rTuning) > 0)
    {
        aggOut = SelectStretch(rTuning, bBrightToDark, rStretches);
    }
    STATS_LOG_TRACE("KIROCONVRG Agg out: stretchOffset:%f comp:%f tempWeight:%f", aggOut.stretchOffset, aggOut.comp,
                    aggOut.tempWeight);
    return aggOut;
}

StretchOffsets ComputeStretchOffset(const KIROTargetStretchOutType& rAggOut, FLOAT previousShortStretch, FLOAT gridStep)
{
    const FLOAT tempWeight = rAggOut.tempWeight;
    const FLOAT filtered   = rAggOut.stretchOffset * tempWeight + (1.0f - tempWeight) * previousShortStretch;

    FLOAT shortStretchOffset = 0.0f;
    FLOAT predGain           = 1.0f;
    if (!(std::abs(filtered) < StretchMin))
    {
        shortStretchOffset = std::round(filtered / gridStep) * gridStep;
        if (shortStretchOffset < 0.0f)
        {
            predGain = std::pow(exposurearithmetic::IndexBase, std::abs(shortStretchOffset) * rAggOut.comp);
        }
    }
    const FLOAT logOfGain = (predGain == 1.0f) ? 0.0f : std::log10(predGain);  // of most frames
    const FLOAT safeStretchOffset =
        std::fma(logOfGain, static_cast<FLOAT>(exposurearithmetic::IndexPerDecade), shortStretchOffset);
    return {shortStretchOffset, safeStretchOffset, predGain};
}

}  // namespace convergencestages
