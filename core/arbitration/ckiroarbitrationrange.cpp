// Controls that narrow gain, time or index.

#include <algorithm>
#include <cmath>

#include "core/arbitration/arbitrationutils.h"
#include "core/arbitration/ckiromodarbitration.h"
#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/base/soundvalue.h"
#include "interface/kiroresults.h"

using exposurearithmetic::Epsilon;
using exposurearithmetic::SaturateToUINT64;
using exposurearithmetic::SnapMargin;
using namespace kirodbarbitrationrange;

namespace
{

FLOAT AdjustBound(FLOAT bound, const RangePoint& rPoint)
{
    switch (rPoint.adj)
    {
    case ArbRangeAbsolute:
        return rPoint.val;
    case ArbRangeRelativeFactor:
        return bound * rPoint.val;
    case ArbRangeRelativeOffset:
        return bound + rPoint.val;
    default:
        return bound;
    }
}

/// The value is cut to whole nanoseconds first, as a factor too: 1.5 acts as 1, and a fraction that counts would move
/// tuned limits.
UINT64 AdjustTimeBound(UINT64 bound, const RangePoint& rPoint)
{
    const UINT64 value = SaturateToUINT64(rPoint.val);
    switch (rPoint.adj)
    {
    case ArbRangeAbsolute:
        return value;
    case ArbRangeRelativeFactor:
        return bound * value;
    case ArbRangeRelativeOffset:
        return bound + value;
    default:
        return bound;
    }
}

/// The gain that a table gives an index can be no number or grow beyond all of them. The bound then stays as it was,
/// and the next controls narrow it on.
VOID HoldSoundBound(KIROExposureSetType* pBound, const KIROExposureSetType& rLast, const CHAR* pDescription)
{
    if (!IsSoundExposure(*pBound))
    {
        STATS_LOG_ERROR("%s yields a bound of gain %f, correction %f; gain %f stands", pDescription, pBound->gain,
                        pBound->corr, rLast.gain);
        *pBound = rLast;
    }
}

/// @return whether two times narrow to the same float
bool IsSameTime(UINT64 first, UINT64 second)
{
    return std::abs(static_cast<FLOAT>(first) - static_cast<FLOAT>(second)) < Epsilon;
}

/// A gain outside goes to the bound, and the time makes up for it; a gain that misses it by less than
/// the margin stays.
VOID MoveIntoGainRange(const KIROExposureRange& rRange, UINT64 exposure, FLOAT correction, FLOAT* pGain, UINT64* pTime)
{
    const FLOAT start = rRange.start.gain;
    const FLOAT end   = rRange.end.gain;
    if (start > *pGain && !(start - SnapMargin < *pGain))
    {
        *pGain = start;
        *pTime = exposurearithmetic::TimeOfExposure(exposure, *pGain, correction);
    }
    else if (end < *pGain && !(end + SnapMargin > *pGain))
    {
        *pGain = end;
        *pTime = exposurearithmetic::TimeOfExposure(exposure, *pGain, correction);
    }
}

/// A time outside goes to the bound, and the gain makes up for it; a gain that then misses its range by
/// less than the margin goes to the bound.
/// @return whether the time moved
bool MoveIntoTimeRange(const KIROExposureRange& rRange, UINT64 exposure, FLOAT correction, FLOAT* pGain, UINT64* pTime)
{
    const KIROExposureSetType& rStart = rRange.start;
    const KIROExposureSetType& rEnd   = rRange.end;
    if (*pTime < rStart.time)
    {
        const FLOAT gain = exposurearithmetic::GainOfExposure(exposure, rStart.time, correction);
        *pGain           = (gain < rStart.gain && rStart.gain - gain < SnapMargin) ? rStart.gain : gain;
        *pTime           = rStart.time;
        return true;
    }
    if (*pTime > rEnd.time)
    {
        const FLOAT gain = exposurearithmetic::GainOfExposure(exposure, rEnd.time, correction);
        *pGain           = (gain > rEnd.gain && gain - rEnd.gain < SnapMargin) ? rEnd.gain : gain;
        *pTime           = rEnd.time;
        return true;
    }
    return false;
}

}  // namespace

KiroResult CKIROArbitration::ApplyCoreRange()
{
    const DBArbitrationRangePayload* pPayload =
        m_rContextManager.m_pBankManager->GetDataArbitrationRange(m_pIn->controlDataID);
    if (pPayload == nullptr)
    {
        STATS_LOG_ERROR("did not find data bank %d", m_pIn->controlDataID);
        return ResultNotFound;
    }
    const CHAR* pDescription = TextOrEmpty(pPayload->description);
    STATS_LOG_TRACE("Apply %s", pDescription);

    RangeType         adjustment = pPayload->value;
    KIROExposureRange tmpRange   = m_pIn->range;

    KiroResult result = AdjustSpecialRange(&adjustment, pDescription);
    if (result != 0)
    {
        return result;
    }
    result = UpdateRange(&tmpRange, &adjustment);
    if (result != 0)
    {
        return result;
    }
    HoldSoundBound(&tmpRange.start, m_pIn->range.start, pDescription);
    HoldSoundBound(&tmpRange.end, m_pIn->range.end, pDescription);
    UtilUpdateExposureAndIndexLimits(&tmpRange, m_pIn->indexZeroExposure);

    if (adjustment.handling.arbitration.enableArbitration == TRUE)
    {
        result = ArbitrateExposureRange(&tmpRange, &adjustment);
        if (result != 0 && m_pIn->bIsConvRange != TRUE)
        {
            return result;
        }
    }
    if (adjustment.handling.compensation.enableCompensation == TRUE)
    {
        CompensateRange(&m_pIn->range, &tmpRange, adjustment.handling.compensation.compensationQuantity);
    }
    m_pOut->range = tmpRange;
    return 0;
}

KiroResult CKIROArbitration::UpdateRange(KIROExposureRange* pTempRange, const RangeType* pAdj)
{
    switch (pAdj->quantity)
    {
    case ArbQuantityGain:
        return UpdateRangeGain(&pTempRange->start.gain, &pTempRange->end.gain, pAdj);
    case ArbQuantityTime:
        return UpdateRangeTime(&pTempRange->start.time, &pTempRange->end.time, pAdj);
    case ArbQuantityIndex:
        return UpdateRangeIndex(pTempRange, pAdj);
    default:
        STATS_LOG_ERROR("unknown quantity: %d", pAdj->quantity);
        return 0;
    }
}

KiroResult CKIROArbitration::UpdateRangeGain(FLOAT* pStartGain, FLOAT* pEndGain, const RangeType* pAdj) const
{
    *pStartGain =
        soundvalue::OrLast(AdjustBound(*pStartGain, pAdj->start), *pStartGain, m_pIn->sensorRange.minGain, "min gain");
    *pEndGain =
        soundvalue::OrLast(AdjustBound(*pEndGain, pAdj->end), *pEndGain, m_pIn->sensorRange.maxGain, "max gain");
    if (*pStartGain > *pEndGain)
    {
        STATS_LOG_ERROR("cannot apply new range: min gain %.3f larger than max gain %.3f", *pStartGain, *pEndGain);
        return ResultFailed;
    }
    if (*pStartGain < m_pIn->sensorRange.minGain)
    {
        STATS_LOG_ERROR("cannot apply new range: min gain %.3f smaller than sensor min gain %.3f", *pStartGain,
                        m_pIn->sensorRange.minGain);
        return ResultFailed;
    }
    return 0;
}

KiroResult CKIROArbitration::UpdateRangeTime(UINT64* pStartTime, UINT64* pEndTime, const RangeType* pAdj) const
{
    const KIROSensorRange& rSensor = m_pIn->sensorRange;

    *pStartTime = AdjustTimeBound(*pStartTime, pAdj->start);
    *pEndTime   = AdjustTimeBound(*pEndTime, pAdj->end);
    if (*pStartTime > *pEndTime)
    {
        STATS_LOG_ERROR("cannot apply new range: min time %llu larger than max time %llu", *pStartTime, *pEndTime);
        return ResultFailed;
    }
    if (*pStartTime < rSensor.minTime)
    {
        if (IsSameTime(*pStartTime, rSensor.minTime))
        {
            *pStartTime = rSensor.minTime;
            return 0;
        }
        STATS_LOG_ERROR("cannot apply new range: min time %llu smaller than sensor min time %llu", *pStartTime,
                        rSensor.minTime);
        return ResultFailed;
    }
    if (*pEndTime > rSensor.maxTime)
    {
        if (IsSameTime(*pEndTime, rSensor.maxTime))
        {
            *pEndTime = rSensor.maxTime;
            return 0;
        }
        STATS_LOG_ERROR("cannot apply new range: max time %llu larger than sensor max time %llu", *pEndTime,
                        rSensor.maxTime);
        return ResultFailed;
    }
    return 0;
}

KiroResult CKIROArbitration::UpdateRangeIndex(KIROExposureRange* pTempRange, const RangeType* pAdj)
{
    if (m_pIn->pTable == nullptr)
    {
        STATS_LOG_ERROR("cannot retrieve last used table");
        return ResultFailed;
    }
    const FLOAT oldStart = m_pIn->range.start.indx;
    const FLOAT oldEnd   = m_pIn->range.end.indx;
    const FLOAT newStart = AdjustBound(oldStart, pAdj->start);
    const FLOAT newEnd   = AdjustBound(oldEnd, pAdj->end);

    const bool isInside = oldStart <= newStart && newStart <= newEnd && newEnd <= oldEnd && newStart <= oldEnd;
    if (!isInside)
    {
        STATS_LOG_ERROR("cannot apply; calculated indices %.1f %.1f keeping indices %.1f %.1f", newStart, newEnd,
                        oldStart, oldEnd);
        return ResultFailed;
    }
    if (std::abs(newStart - oldStart) >= Epsilon)
    {
        UpdateOneRangeIndex(newStart, &pTempRange->start);
    }
    if (std::abs(newEnd - oldEnd) >= Epsilon)
    {
        UpdateOneRangeIndex(newEnd, &pTempRange->end);
    }
    return 0;
}

VOID CKIROArbitration::UpdateOneRangeIndex(FLOAT index, KIROExposureSetType* pBound)
{
    const UINT64 exposure = exposurearithmetic::ExposureOfIndex(index, m_pIn->indexZeroExposure);
    // A table that cannot split the exposure leaves the bound as it was.
    (VOID) ApplyCoreTable(pBound, *m_pIn->pTable, exposure);
}

KiroResult CKIROArbitration::ArbitrateExposureRange(KIROExposureRange* pTempRange, const RangeType* pAdj)
{
    const UINT64 exposure   = CurrentExposure().exposure;
    const FLOAT  correction = m_pIn->range.start.corr;
    FLOAT        gain       = CurrentExposure().gain;
    UINT64       time       = CurrentExposure().time;
    MoveIntoGainRange(*pTempRange, exposure, correction, &gain, &time);
    const bool isTimeMoved = MoveIntoTimeRange(*pTempRange, exposure, correction, &gain, &time);
    if (m_pIn->bIsConvRange != TRUE)
    {
        const KiroResult result = ResolveConflict(pTempRange, pAdj, isTimeMoved, &gain, &time);
        if (result != 0)
        {
            return result;
        }
    }
    WriteArbitratedExposure(gain, time, correction);
    return 0;
}

KiroResult CKIROArbitration::ResolveConflict(KIROExposureRange* pTempRange, const RangeType* pAdj, bool isTimeMoved,
                                             FLOAT* pGain, UINT64* pTime)
{
    const KIROExposureSetType& rStart           = pTempRange->start;
    const KIROExposureSetType& rEnd             = pTempRange->end;
    const bool                 isTimeRangeEmpty = isTimeMoved && rStart.time > rEnd.time;
    const bool                 isGainInside     = rStart.gain - Epsilon <= *pGain && rEnd.gain + Epsilon >= *pGain;
    if (!isTimeRangeEmpty && isGainInside)
    {
        return 0;
    }
    if (isTimeRangeEmpty)
    {
        STATS_LOG_WARNING("tentative before conflict resolution time %llu out of time %llu %llu", *pTime, rStart.time,
                          rEnd.time);
    }
    if (*pGain < rStart.gain || *pGain > rEnd.gain)
    {
        STATS_LOG_WARNING("tentative before conflict resolution gain %.3f out of gain %.3f %.3f", *pGain, rStart.gain,
                          rEnd.gain);
    }
    const KiroResult result = UtilResolveRangeConflicts(pTempRange, &m_pIn->sensorRange, pGain, pTime,
                                                        pAdj->handling.arbitration.conflictHandling);
    if (result == 0)
    {
        UtilUpdateExposureAndIndexLimits(pTempRange, m_pIn->indexZeroExposure);
        m_pOut->range = *pTempRange;
    }
    return result;
}

VOID CKIROArbitration::WriteArbitratedExposure(FLOAT gain, UINT64 time, FLOAT correction)
{
    KIROExposureSetType& rOut = m_pOut->exposureSet;
    rOut.time                 = time;
    rOut.gain                 = gain;
    rOut.corr                 = correction;
    rOut.exposure             = exposurearithmetic::UtilQuantities2Exposure(gain, time, correction);
    exposurearithmetic::SetIndexByFloatRatio(&rOut, m_pIn->indexZeroExposure);
}

VOID CKIROArbitration::CompensateRange(const KIROExposureRange* pOld, KIROExposureRange* pNew,
                                       ArbExposureQuantity quantity) const
{
    const KIROSensorRange& rSensor = m_pIn->sensorRange;
    switch (quantity)
    {
    case ArbQuantityTime:
        if (pOld->start.time != 0 && pOld->end.time != 0)
        {
            const FLOAT minChange =
                static_cast<FLOAT>(pOld->start.time) / std::max(static_cast<FLOAT>(pNew->start.time), Epsilon);
            const FLOAT maxChange =
                static_cast<FLOAT>(pOld->end.time) / std::max(static_cast<FLOAT>(pNew->end.time), Epsilon);
            pNew->start.gain = std::max(minChange * pNew->start.gain, rSensor.minGain);
            pNew->end.gain   = std::max(maxChange * pNew->end.gain, pNew->start.gain);
        }
        break;
    case ArbQuantityGain:
        if (pOld->start.gain * pOld->end.gain > 0.0f)
        {
            const UINT64 startTime = SaturateToUINT64(pOld->start.gain / std::max(pNew->start.gain, Epsilon) *
                                                      static_cast<FLOAT>(pNew->start.time));
            const UINT64 endTime   = SaturateToUINT64(pOld->end.gain / std::max(pNew->end.gain, Epsilon) *
                                                      static_cast<FLOAT>(pNew->end.time));
            pNew->start.time       = std::max(startTime, rSensor.minTime);
            pNew->end.time         = std::max(std::min(endTime, rSensor.maxTime), pNew->start.time);
        }
        break;
    case ArbQuantityIndex:
        STATS_LOG_WARNING("not compensating index range adjust; only gain or time");
        break;
    default:
        STATS_LOG_ERROR("unknown quantity!");
        break;
    }
    UtilUpdateExposureAndIndexLimits(pNew, m_pIn->indexZeroExposure);
}
