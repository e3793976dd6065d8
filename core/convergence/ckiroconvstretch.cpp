// The stretch: a deliberate offset on top of the converged exposure, and its meeting with the DRC branch.

#include <algorithm>
#include <cmath>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/convergence/ckiromodconvergence.h"

using namespace kirodbconvstretch;
using exposurearithmetic::Epsilon;
using exposurearithmetic::IndexBase;
using exposurearithmetic::SensiLog103;
using kiroconvergence::AggTypeCascade;
using kiroconvergence::AggTypeDisableDRCInPredictive;
using kiroconvergence::AggTypeDRCPrefParallel;

namespace
{

/// What is chosen when no stretch fits the direction of the scene.
constexpr KIROTargetStretchOutType NoStretch = {0.0f, 0.0f, 1.0f, 0.5f, FALSE};

constexpr INT32 IndexNone = -1;

/// A filtered stretch below this counts as none, log steps.
constexpr FLOAT StretchMin = 1.0f;

}  // namespace

VOID CKIROConvergence::ComputeTargetStretchOutput()
{
    m_tgtStretchOut.clear();
    for (UINT32 index = 0; index < StretchCount(); ++index)
    {
        ComputeStretch(index);
    }
    KIROTargetStretchOutType aggOut{};
    AggregateStretchOutput(aggOut);

    FLOAT shortStretchOffset = 0.0f;
    FLOAT safeStretchOffset  = 0.0f;
    FLOAT predGain           = 1.0f;
    ComputeStretchOffset(aggOut, shortStretchOffset, safeStretchOffset, predGain);
    m_output.sensiLog103[AECAlgoExposureShort] += static_cast<DOUBLE>(shortStretchOffset);
    m_output.sensiLog103[AECAlgoExposureSafe] += static_cast<DOUBLE>(safeStretchOffset);
    m_output.predGain           = predGain;
    m_output.shortStretchOffset = shortStretchOffset;
}

/// @return tuned stretches; more than there are slots is invalid tuning and counts as none
UINT32 CKIROConvergence::StretchCount() const
{
    const UINT32 count = m_pConvStretch->value.convStretchCount;
    if (count > ConvStretchCountMax)
    {
        STATS_LOG_ERROR("KIROCONVRG %d stretches tuned, at most %d", count, ConvStretchCountMax);
        return 0;
    }
    return count;
}

VOID CKIROConvergence::ComputeStretch(UINT32 index)
{
    const ConvTargetStretchType& rTuning = m_pConvStretch->value.convStretch[index];
    const auto*                  pData   = static_cast<const ConvStretchCoreDataType*>(m_triggerStretch[index].GetData(
                           GetTriggerValue(rTuning.trigger1DataBank), GetTriggerValue(rTuning.trigger2DataBank),
                           GetTriggerValue(rTuning.trigger3DataBank)));

    KIROTargetStretchOutType& rSlot = m_tgtStretchOut[index];
    rSlot.weight                    = pData->weight;
    rSlot.comp                      = pData->comp;
    rSlot.tempWeight                = pData->tempWeight;
    if (rTuning.stretchType == StretchTypeOffset)
    {
        rSlot.stretchOffset = pData->stretchFactOffset;  // the direction keeps what the slot held
    }
    else if (std::abs(pData->stretchFactOffset) < Epsilon)
    {
        rSlot.stretchOffset = 0.0f;
    }
    else
    {
        rSlot.stretchOffset = SensiLog103(pData->stretchFactOffset);
        rSlot.bBrightToDark = (rSlot.stretchOffset < 0.0f) ? TRUE : FALSE;
    }
}

VOID CKIROConvergence::AggregateStretchOutput(KIROTargetStretchOutType& rAggOut)
{
    const BOOL bBrightToDark = (GetExposureInfo(KIROConvTgtMatchDelta, AECAlgoExposureSafe) < 0.0) ? TRUE : FALSE;
    const AECConvStretchAggType aggType = m_pConvStretch->value.convStretchAgg;
    if (static_cast<UINT32>(aggType) > StretchAggMostWeight)
    {
        STATS_LOG_ERROR("KIROCONVRG Invalid Agg type");
    }
    else if (aggType == StretchAggAverage)
    {
        AverageStretches(rAggOut, bBrightToDark);
    }
    else if (StretchCount() > 0)
    {
        SortStretches();
        const bool  isByWeight = aggType == StretchAggLeastWeight || aggType == StretchAggMostWeight;
        const INT32 finalIndex = isByWeight ? SelectByWeight(bBrightToDark) : SelectByEffect(bBrightToDark);
        STATS_LOG_TRACE("KIROCONVRG finalIndex selected:%d", finalIndex);
        // With all offsets negative the least effect gives -2: the slot that 32-bit unsigned arithmetic makes of it,
        // not "none", which would take the stretch away.
        const KIROTargetStretchOutType& rChosen =
            (finalIndex == IndexNone) ? NoStretch : m_tgtStretchOut[static_cast<UINT32>(finalIndex)];
        rAggOut.weight        = (finalIndex == IndexNone) ? rAggOut.weight : rChosen.weight;
        rAggOut.stretchOffset = rChosen.stretchOffset;
        rAggOut.comp          = rChosen.comp;
        rAggOut.tempWeight    = rChosen.tempWeight;
    }
    STATS_LOG_TRACE("KIROCONVRG Agg out: stretchOffset:%f comp:%f tempWeight:%f", rAggOut.stretchOffset, rAggOut.comp,
                    rAggOut.tempWeight);
}

VOID CKIROConvergence::AverageStretches(KIROTargetStretchOutType& rAggOut, BOOL bBrightToDark) const
{
    const bool isDirectionChecked = m_pConvStretch->value.convSameDirection == TRUE;
    FLOAT      totalWeight        = 0.0f;
    FLOAT      offset             = 0.0f;
    FLOAT      comp               = 0.0f;
    FLOAT      tempWeight         = 0.0f;
    for (UINT32 index = 0; index < StretchCount(); ++index)
    {
        const KIROTargetStretchOutType& rSlot = m_tgtStretchOut[index];
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
    const bool hasWeight  = totalWeight > 0.0f;
    rAggOut.stretchOffset = hasWeight ? offset / totalWeight : 0.0f;
    rAggOut.comp          = hasWeight ? comp / totalWeight : 0.0f;
    rAggOut.tempWeight    = hasWeight ? tempWeight / totalWeight : 0.0f;
}

/// Ascending by weight or by offset, as the aggregation asks; equal entries keep their order.
VOID CKIROConvergence::SortStretches()
{
    const AECConvStretchAggType aggType    = m_pConvStretch->value.convStretchAgg;
    const bool                  isByWeight = aggType == StretchAggLeastWeight || aggType == StretchAggMostWeight;
    const auto                  key        = [isByWeight](const KIROTargetStretchOutType& rSlot)
    { return isByWeight ? rSlot.weight : rSlot.stretchOffset; };

    const UINT32 count = StretchCount();
    for (UINT32 sorted = 0; sorted + 1 < count; ++sorted)
    {
        for (UINT32 index = 0; index + 1 < count - sorted; ++index)
        {
            if (key(m_tgtStretchOut[index]) > key(m_tgtStretchOut[index + 1]))
            {
                std::swap(m_tgtStretchOut[index], m_tgtStretchOut[index + 1]);
            }
        }
    }
}

INT32 CKIROConvergence::SelectByWeight(BOOL bBrightToDark) const
{
    const bool isLeast   = m_pConvStretch->value.convStretchAgg == StretchAggLeastWeight;
    const bool isChecked = m_pConvStretch->value.convSameDirection == TRUE;
    // For the most weight the direction is read from the slot of index -1, not of the last entry: a tuning that checks
    // directions would choose other stretches by the last one.
    const UINT32 checkedIndex = isLeast ? 0U : static_cast<UINT32>(IndexNone);
    if (isChecked && m_tgtStretchOut[checkedIndex].bBrightToDark != bBrightToDark)
    {
        return IndexNone;
    }
    return isLeast ? 0 : static_cast<INT32>(StretchCount()) - 1;
}

INT32 CKIROConvergence::SelectByEffect(BOOL bBrightToDark) const
{
    const INT32 count       = static_cast<INT32>(StretchCount());
    INT32       posOffIndex = IndexNone;
    for (INT32 index = 0; index < count && posOffIndex == IndexNone; ++index)
    {
        if (m_tgtStretchOut[static_cast<UINT32>(index)].stretchOffset > 0.0f)
        {
            posOffIndex = index;
        }
    }
    const FLOAT first = m_tgtStretchOut[0].stretchOffset;
    const FLOAT last  = m_tgtStretchOut[static_cast<UINT32>(count - 1)].stretchOffset;
    if (m_pConvStretch->value.convStretchAgg == StretchAggLeastEffect)
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

VOID CKIROConvergence::ComputeStretchOffset(const KIROTargetStretchOutType& rAggOut, FLOAT& rShortStretchOffset,
                                            FLOAT& rSafeStretchOffset, FLOAT& rPredGain) const
{
    const FLOAT tempWeight = rAggOut.tempWeight;
    const FLOAT filtered   = rAggOut.stretchOffset * tempWeight + (1.0f - tempWeight) * PreviousShortStretch();

    rShortStretchOffset = 0.0f;
    rPredGain           = 1.0f;
    if (!(std::abs(filtered) < StretchMin))
    {
        const FLOAT stepSize = GridStep();
        rShortStretchOffset  = std::round(filtered / stepSize) * stepSize;
        if (rShortStretchOffset < 0.0f)
        {
            rPredGain = std::pow(IndexBase, std::abs(rShortStretchOffset) * rAggOut.comp);
        }
    }
    rSafeStretchOffset =
        std::fma(std::log10(rPredGain), static_cast<FLOAT>(exposurearithmetic::IndexPerDecade), rShortStretchOffset);
}

VOID CKIROConvergence::DRCStretchAggregator()
{
    const DOUBLE safeExp  = m_output.sensiLog103[AECAlgoExposureSafe];
    const FLOAT  drcRatio = std::pow(IndexBase, static_cast<FLOAT>(safeExp - m_DRCOutput[AECAlgoExposureShort]));
    const FLOAT  stretchRatio =
        std::pow(IndexBase, static_cast<FLOAT>(safeExp - m_output.sensiLog103[AECAlgoExposureShort]));

    m_output.sensiLog103[AECAlgoExposureLong] = m_DRCOutput[AECAlgoExposureLong];
    if (stretchRatio > 1.0f && drcRatio > 1.0f)
    {
        JoinDRCAndStretch(stretchRatio, drcRatio);
    }
    else if (stretchRatio > 1.0f)
    {
        STATS_LOG_TRACE("KIROCONVRG Use normal/predictive output");
    }
    else if (stretchRatio < 1.0f)
    {
        STATS_LOG_TRACE("KIROCONVRG Not valid");
    }
    else if (drcRatio > 1.0f)
    {
        m_output.predGain = 1.0f;
        AdoptDRCOutput();
        STATS_LOG_TRACE("KIROCONVRG Use DRC output");
    }
    else
    {
        STATS_LOG_TRACE("KIROCONVRG Use normal/predictive output");
    }
}

/// Both wish Short below Safe.
VOID CKIROConvergence::JoinDRCAndStretch(FLOAT stretchRatio, FLOAT drcRatio)
{
    switch (m_pTuning->drcStretchAgg)
    {
    case AggTypeDRCPrefParallel:
        if (!(stretchRatio > drcRatio))
        {
            m_output.predGain = 1.0f;
            AdoptDRCOutput();
            STATS_LOG_TRACE("KIROCONVRG DRC > Stretch, Keep DRC and set PG to unity");
        }
        else if (m_output.predGain < drcRatio)
        {
            m_output.predGain = 1.0f;
            STATS_LOG_TRACE("KIROCONVRG drcRatio < predGain, Keep DRC and set PG to unity");
        }
        else
        {
            m_output.predGain = m_output.predGain / drcRatio;
            STATS_LOG_TRACE("KIROCONVRG drcRatio < predGain, Keep DRC and set PG: %f", m_output.predGain);
        }
        break;
    case AggTypeCascade:
        AdoptDRCOutput();
        m_output.sensiLog103[AECAlgoExposureShort] -= static_cast<DOUBLE>(SensiLog103(stretchRatio));
        STATS_LOG_TRACE("KIROCONVRG Cascade pred and DRC together");
        break;
    case AggTypeDisableDRCInPredictive:
        STATS_LOG_TRACE("KIROCONVRG Consider only stretch predictive gain");
        break;
    default:
        break;
    }
}

VOID CKIROConvergence::AdoptDRCOutput()
{
    std::copy(std::begin(m_DRCOutput), std::end(m_DRCOutput), m_output.sensiLog103);
}
