// Exposure tables: one exposure number into gain and time along tuned knees.

#include <algorithm>

#include "core/arbitration/arbitrationutils.h"
#include "core/arbitration/ckiromodarbitration.h"
#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "interface/kiroresults.h"

using exposurearithmetic::SaturateToUINT64;
using namespace kirodbarbitrationtable;

namespace
{

/// A multiplier above this is distributed. Time-first segments test their rest against 1.0 instead.
constexpr FLOAT MultiplierAboveOne = 1.0000001f;

UINT64 ExposureOfKnee(const ExposureKneeType& rKnee, FLOAT correction)
{
    return exposurearithmetic::UtilQuantities2Exposure(rKnee.gain, rKnee.time, correction);
}

ExposureKneeType KneeOf(const KIROExposureSetType& rBound)
{
    return {AECExpIncMax, rBound.gain, rBound.time};
}

/// The factors by which gain and time may grow on a segment.
struct Room
{
    FLOAT gain;
    FLOAT time;
};

/// Raises the exposure of a knee by a factor: gain as far as there is room, then time.
/// @param pSplit gain and time of the knee on entry
VOID RaiseGainFirst(const ExposureKneeType& rStart, const Room& rRoom, FLOAT factor, KIROExposureSetType* pSplit)
{
    const FLOAT startTime = static_cast<FLOAT>(rStart.time);
    if (!(rRoom.gain < factor))
    {
        pSplit->gain = rStart.gain * factor;
        return;
    }
    const FLOAT rest = factor / rRoom.gain;
    pSplit->gain     = rStart.gain * rRoom.gain;
    if (rest > MultiplierAboveOne)
    {
        pSplit->time = SaturateToUINT64(startTime * std::min(rest, rRoom.time));
    }
}

/// The same with time first.
VOID RaiseTimeFirst(const ExposureKneeType& rStart, const Room& rRoom, FLOAT factor, KIROExposureSetType* pSplit)
{
    const FLOAT startTime = static_cast<FLOAT>(rStart.time);
    if (!(rRoom.time < factor))
    {
        pSplit->time = SaturateToUINT64(startTime * factor);
        return;
    }
    const FLOAT rest = factor / rRoom.time;
    pSplit->time     = SaturateToUINT64(startTime * rRoom.time);
    if (rest > 1.0f)
    {
        pSplit->gain = rStart.gain * std::min(rest, rRoom.gain);
    }
}

}  // namespace

KiroResult CKIROArbitration::ApplyCoreTable(KIROExposureSetType* pOutExposure)
{
    if (m_pIn->controlID == kirodbarbitrationorder::ArbCtrlMatchHistory)
    {
        return MatchControlHistory(pOutExposure);
    }
    DBArbitrationTablePayload* pPayload =
        m_rContextManager.m_pBankManager->GetDataArbitrationTable(m_pIn->controlDataID);
    if (pPayload == nullptr)
    {
        STATS_LOG_ERROR("table not found");
        return ResultFailed;
    }
    STATS_LOG_TRACE("Apply %s", TextOrEmpty(pPayload->description));
    const KiroResult result = ApplyCoreTable(pOutExposure, pPayload->value, CurrentExposure().exposure);
    if (result != 0)
    {
        return result;
    }
    m_pIn->pTable = &pPayload->value;
    return UtilMakeTableExposureFit(pOutExposure, &m_pIn->range);
}

KiroResult CKIROArbitration::ApplyCoreTable(KIROExposureSetType* pOutExposure, const ExposureTableType& rTable,
                                            UINT64 exposure)
{
    if (rTable.expKneesCount < 2)
    {
        STATS_LOG_ERROR("invalid exposure table tuning");
        return ResultFailed;
    }
    const TableSegment         segment = SelectSegment(rTable, exposure);
    SplitMemo&                 rMemo   = m_splits[m_pIn->expType][(m_pIn->bIsConvRange == TRUE) ? 1 : 0];
    const KIROExposureSetType* pKept   = rMemo.Find(segment, rTable.correction, m_pIn->indexZeroExposure);
    if (pKept != nullptr)
    {
        *pOutExposure = *pKept;
        return 0;
    }
    SplitAlongSegment(segment, rTable.correction, pOutExposure);
    rMemo.Keep(segment, rTable.correction, m_pIn->indexZeroExposure, *pOutExposure);
    return 0;
}

TableSegment CKIROArbitration::SelectSegment(const ExposureTableType& rTable, UINT64 exposure) const
{
    const ExposureKneeType& rFirst = rTable.expKnees[0];
    const ExposureKneeType& rLast  = rTable.expKnees[rTable.expKneesCount - 1];

    if (exposure < ExposureOfKnee(rFirst, rTable.correction))
    {
        const ExposureKneeType rangeStart = KneeOf(m_pIn->range.start);
        const UINT64           rangeMin   = ExposureOfKnee(rangeStart, rTable.correction);
        if (rangeMin > exposure && m_pIn->bIsConvRange != TRUE &&
            !exposurearithmetic::IsSameExposure(rangeMin, exposure))
        {
            STATS_LOG_RARE("exposure %llu out of both table min exposure and current min exposure %llu", exposure,
                           rangeMin);
        }
        return {rangeStart, rFirst, rFirst.incrementPriority, std::max(rangeMin, exposure)};
    }
    if (exposure > ExposureOfKnee(rLast, rTable.correction))
    {
        const ExposureKneeType rangeEnd = KneeOf(m_pIn->range.end);
        const UINT64           rangeMax = ExposureOfKnee(rangeEnd, rTable.correction);
        if (exposure > rangeMax && m_pIn->bIsConvRange != TRUE &&
            !exposurearithmetic::IsSameExposure(rangeMax, exposure))
        {
            STATS_LOG_RARE("exposure %llu out of both table max exposure and current max exposure %llu", exposure,
                           rangeMax);
        }
        return {rLast, rangeEnd, rLast.incrementPriority, std::min(rangeMax, exposure)};
    }

    UINT32 upper = 1;
    while (upper < rTable.expKneesCount - 1 && ExposureOfKnee(rTable.expKnees[upper], rTable.correction) < exposure)
    {
        ++upper;
    }
    return {rTable.expKnees[upper - 1], rTable.expKnees[upper], rTable.expKnees[upper].incrementPriority, exposure};
}

VOID CKIROArbitration::SplitAlongSegment(const TableSegment& rSegment, FLOAT correction,
                                         KIROExposureSetType* pSplit) const
{
    const UINT64 base   = ExposureOfKnee(rSegment.start, correction);
    const FLOAT  factor = static_cast<FLOAT>(rSegment.target) / static_cast<FLOAT>(base);
    const Room   room   = {rSegment.end.gain / rSegment.start.gain,
                           static_cast<FLOAT>(rSegment.end.time) / static_cast<FLOAT>(rSegment.start.time)};

    *pSplit      = {};
    pSplit->gain = rSegment.start.gain;
    pSplit->time = rSegment.start.time;
    if (factor > MultiplierAboveOne && rSegment.priority == AECExpIncGain)
    {
        RaiseGainFirst(rSegment.start, room, factor, pSplit);
    }
    else if (factor > MultiplierAboveOne)
    {
        RaiseTimeFirst(rSegment.start, room, factor, pSplit);
    }
    pSplit->corr     = correction;
    pSplit->exposure = exposurearithmetic::UtilQuantities2Exposure(pSplit->gain, pSplit->time, correction);
    exposurearithmetic::SetIndexByFloatRatio(pSplit, m_pIn->indexZeroExposure);
}
