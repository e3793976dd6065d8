// Controls that narrow gain, time or index.

#include <algorithm>
#include <cmath>

#include "core/arbitration/arbitrationutils.h"
#include "core/arbitration/ckiromodarbitration.h"
#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/base/soundvalue.h"
#include "core/extension/ckirocamsync.h"
#include "interface/kiroresults.h"

using exposurearithmetic::Epsilon;
using exposurearithmetic::SaturateToUINT64;
using exposurearithmetic::SnapMargin;
using namespace kirodbarbitrationrange;

namespace
{

/// Data ID of the time range that precision flash rewrites.
constexpr INT32 PrecisionFlashRangeID = 17;

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

KiroResult CKIROArbitration::AdjustSpecialRange(RangeType* pAdj, const CHAR* pDescription)
{
    using namespace kirodbarbitrationorder;
    const ArbitrationControl control = m_pIn->controlID;
    if (m_pIn->controlDataID == PrecisionFlashRangeID && m_pIn->bFPrecisionFlashFlag == TRUE)
    {
        STATS_LOG_TRACE("range tuning dataId %d desbription (%s), range(%f, %f)", m_pIn->controlDataID, pDescription,
                        pAdj->start.val, pAdj->end.val);
        const KiroResult result = ApplyPrecisionFlashRange(pAdj);
        if (result != 0 && control != ArbCtrlMasterTime && control != ArbCtrlSHDRTimeRange)
        {
            return result;
        }
    }
    if (control == ArbCtrlMasterTime)
    {
        return ApplyCoreRangeAECSync(pAdj);
    }
    if (control == ArbCtrlSHDRTimeRange)
    {
        return ApplyCoreRangeSHDRTime(pAdj);
    }
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
    (VOID) ApplyCoreTable(pBound, m_pIn->pTable, exposure);
}

KiroResult CKIROArbitration::ArbitrateExposureRange(KIROExposureRange* pTempRange, const RangeType* pAdj)
{
    const KIROExposureSetType& rStart     = pTempRange->start;
    const KIROExposureSetType& rEnd       = pTempRange->end;
    const UINT64               exposure   = CurrentExposure().exposure;
    const FLOAT                correction = m_pIn->range.start.corr;
    FLOAT                      gain       = CurrentExposure().gain;
    UINT64                     time       = CurrentExposure().time;

    if (rStart.gain > gain && !(rStart.gain - SnapMargin < gain))
    {
        gain = rStart.gain;
        time = exposurearithmetic::TimeOfExposure(exposure, gain, correction);
    }
    else if (rEnd.gain < gain && !(rEnd.gain + SnapMargin > gain))
    {
        gain = rEnd.gain;
        time = exposurearithmetic::TimeOfExposure(exposure, gain, correction);
    }

    bool isTimeMoved = true;
    if (time < rStart.time)
    {
        time = rStart.time;
        gain = exposurearithmetic::GainOfExposure(exposure, time, correction);
        gain = (gain < rStart.gain && rStart.gain - gain < SnapMargin) ? rStart.gain : gain;
    }
    else if (time > rEnd.time)
    {
        time = rEnd.time;
        gain = exposurearithmetic::GainOfExposure(exposure, time, correction);
        gain = (gain > rEnd.gain && gain - rEnd.gain < SnapMargin) ? rEnd.gain : gain;
    }
    else
    {
        isTimeMoved = false;
    }

    const bool isTimeRangeEmpty = isTimeMoved && rStart.time > rEnd.time;
    const bool isGainInside     = rStart.gain - Epsilon <= gain && rEnd.gain + Epsilon >= gain;
    if (m_pIn->bIsConvRange != TRUE && (isTimeRangeEmpty || !isGainInside))
    {
        if (isTimeRangeEmpty)
        {
            STATS_LOG_WARNING("tentative before conflict resolution time %llu out of time %llu %llu", time, rStart.time,
                              rEnd.time);
        }
        if (gain < rStart.gain || gain > rEnd.gain)
        {
            STATS_LOG_WARNING("tentative before conflict resolution gain %.3f out of gain %.3f %.3f", gain, rStart.gain,
                              rEnd.gain);
        }
        const KiroResult result = UtilResolveRangeConflicts(pTempRange, &m_pIn->sensorRange, &gain, &time,
                                                            pAdj->handling.arbitration.conflictHandling);
        if (result != 0)
        {
            return result;
        }
        UtilUpdateExposureAndIndexLimits(pTempRange, m_pIn->indexZeroExposure);
        m_pOut->range = *pTempRange;
    }
    WriteArbitratedExposure(gain, time, correction);
    return 0;
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

KiroResult CKIROArbitration::ApplyPrecisionFlashRange(RangeType* pAdj) const
{
    const KIROPrecisionFlashInfo& rInfo      = m_pIn->precisionFlashInfo;
    const FLOAT                   minExpTime = std::max(static_cast<FLOAT>(rInfo.minFlashTime) / rInfo.e1ToE1PlusE2,
                                                        static_cast<FLOAT>(rInfo.rollingShutterDelayTime) / (1.0f - rInfo.e1ToE1PlusE2));
    const FLOAT                   maxExpTime = static_cast<FLOAT>(rInfo.maxExpoTime);
    if (minExpTime > pAdj->start.val)
    {
        pAdj->start.val = minExpTime;
        pAdj->start.adj = ArbRangeAbsolute;
    }
    if (pAdj->end.val > maxExpTime)
    {
        pAdj->end.val   = maxExpTime;
        pAdj->start.adj = ArbRangeAbsolute;  // not end.adj: an end that is tuned relative stays so
    }
    return (pAdj->start.val > pAdj->end.val) ? ResultFailed : 0;
}

KiroResult CKIROArbitration::ApplyCoreRangeAECSync(RangeType* pAdj) const
{
    const CKIROCamsync&    rCamSync  = *m_rContextManager.m_pCamSync;
    const AECMultiCamInfo* pPeerInfo = rCamSync.getPeerInfo();
    if (pPeerInfo == nullptr)
    {
        STATS_LOG_ERROR("no peer info");
        return ResultNotFound;
    }
    if (rCamSync.getExposureType() != kirosync::AECAlgoExposureFollow)
    {
        STATS_LOG_ERROR("not in follow mode");
        return ResultNotFollowing;
    }
    const KiroResult result = UtilSyncUpExposureTime(m_pIn->expType, m_pTuningData, pPeerInfo, &pAdj->start.val);
    pAdj->end.val           = pAdj->start.val;
    if (result == 0)
    {
        STATS_LOG_TRACE("syncing with master exposure time: %f", pAdj->start.val);
    }
    return result;
}

KiroResult CKIROArbitration::ApplyCoreRangeSHDRTime(RangeType* pAdj) const
{
    const UINT64 longTime = m_pIn->exposures[AECAlgoExposureLong].time;
    if (m_pIn->expType == AECAlgoExposureLong)
    {
        STATS_LOG_ERROR("SHDR time range is not meant for long exposure");
        return ResultFailed;
    }
    if (pAdj->end.adj != ArbRangeAbsolute)
    {
        STATS_LOG_ERROR("expected adjustment to be absolute instead of %d %f", pAdj->end.adj, pAdj->end.val);
        return ResultFailed;
    }
    if (longTime == 0)
    {
        STATS_LOG_ERROR("long exposure is zero");
        return ResultFailed;
    }

    const UINT64 longMaxTime    = m_ranges[AECAlgoExposureLong].end.time;
    const FLOAT  budgetIncrease = std::max(static_cast<FLOAT>(longMaxTime) - static_cast<FLOAT>(longTime), 0.0f);
    const FLOAT  newMaxTime =
        std::min(pAdj->end.val, static_cast<FLOAT>(m_ranges[m_pIn->expType].end.time) + budgetIncrease);
    if (static_cast<FLOAT>(m_pIn->range.end.time) + Epsilon < newMaxTime)
    {
        STATS_LOG_TRACE("tuned %.0f updating time %llu to %.0f SHDR long time %llu max %llu", pAdj->end.val,
                        m_pIn->range.end.time, newMaxTime, longTime, longMaxTime);
        pAdj->end.val = newMaxTime;
    }
    else
    {
        pAdj->end.val = 1.0f;
        pAdj->end.adj = ArbRangeRelativeFactor;
    }
    return 0;
}
