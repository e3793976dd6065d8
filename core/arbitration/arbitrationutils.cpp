#include "core/arbitration/arbitrationutils.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"
#include "interface/kiroresults.h"
#include "schema/kirosync.h"

using exposurearithmetic::Epsilon;
using exposurearithmetic::SaturateToUINT64;
using exposurearithmetic::SnapMargin;

namespace
{

VOID UpdateBoundExposure(KIROExposureSetType* pBound)
{
    const UINT64 exposure = exposurearithmetic::UtilQuantities2Exposure(pBound->gain, pBound->time, pBound->corr);
    if (!exposurearithmetic::IsSameExposure(exposure, pBound->exposure))
    {
        pBound->exposure = exposure;
    }
}

KiroResult FailBelowSensorTime(UINT64 time, const KIROSensorRange* pSensorRange)
{
    STATS_LOG_ERROR("conflict: range time resolution pushed time %llu below sensor min %llu", time,
                    pSensorRange->minTime);
    return ResultFailed;
}

KiroResult FailAboveSensorTime(UINT64 time, const KIROSensorRange* pSensorRange)
{
    STATS_LOG_ERROR("conflict: range time resolution pushed time %llu above sensor max %llu", time,
                    pSensorRange->maxTime);
    return ResultFailed;
}

KiroResult FailBelowSensorGain(FLOAT gain, const KIROSensorRange* pSensorRange)
{
    STATS_LOG_ERROR("conflict: range gain resolution pushed gain %.3f below sensor min %.3f", gain,
                    pSensorRange->minGain);
    return ResultFailed;
}

KiroResult WidenTimeRange(KIROExposureRange* pRange, const KIROSensorRange* pSensorRange, FLOAT* pGain, UINT64* pTime)
{
    UINT64& rStart = pRange->start.time;
    UINT64& rEnd   = pRange->end.time;
    if (*pTime < rStart)
    {
        rStart = *pTime;
        return (rStart < pSensorRange->minTime) ? FailBelowSensorTime(rStart, pSensorRange) : 0;
    }
    if (*pTime > rEnd)
    {
        rEnd = *pTime;
        return (rEnd > pSensorRange->maxTime) ? FailAboveSensorTime(rEnd, pSensorRange) : 0;
    }
    if (*pGain < pRange->start.gain)
    {
        const UINT64 time = SaturateToUINT64(static_cast<FLOAT>(*pTime) * (*pGain / pRange->start.gain));
        rStart            = std::min(time, rStart);
        if (rStart < pSensorRange->minTime)
        {
            return FailBelowSensorTime(rStart, pSensorRange);
        }
        *pGain = pRange->start.gain;
        *pTime = time;
    }
    else if (*pGain > pRange->end.gain)
    {
        const UINT64 time = SaturateToUINT64(static_cast<FLOAT>(*pTime) * (*pGain / pRange->end.gain));
        rEnd              = std::max(rEnd, time);
        if (rEnd > pSensorRange->maxTime)
        {
            return FailAboveSensorTime(rEnd, pSensorRange);
        }
        *pGain = pRange->end.gain;
        *pTime = time;
    }
    return 0;
}

KiroResult WidenGainRange(KIROExposureRange* pRange, const KIROSensorRange* pSensorRange, FLOAT* pGain, UINT64* pTime)
{
    FLOAT& rStart = pRange->start.gain;
    FLOAT& rEnd   = pRange->end.gain;
    if (*pGain < rStart)
    {
        rStart = *pGain;
        return (rStart < pSensorRange->minGain) ? FailBelowSensorGain(rStart, pSensorRange) : 0;
    }
    if (*pGain > rEnd)
    {
        rEnd = *pGain;
        return 0;
    }
    if (*pTime > pRange->end.time)
    {
        const FLOAT gain = static_cast<FLOAT>(*pTime) / static_cast<FLOAT>(pRange->end.time) * *pGain;
        rEnd             = std::max(rEnd, gain);
        *pGain           = gain;
        *pTime           = pRange->end.time;
    }
    else if (*pTime < pRange->start.time)
    {
        const FLOAT gain = static_cast<FLOAT>(*pTime) / static_cast<FLOAT>(pRange->start.time) * *pGain;
        *pTime           = pRange->start.time;
        rStart           = std::min(rStart, gain);
        if (rStart < pSensorRange->minGain)
        {
            return FailBelowSensorGain(rStart, pSensorRange);
        }
        *pGain = gain;
    }
    return 0;
}

KiroResult ForceIntoRange(const KIROExposureRange* pRange, FLOAT* pGain, UINT64* pTime)
{
    *pTime = std::min(std::max(*pTime, pRange->start.time), pRange->end.time);
    *pGain = std::min(std::max(*pGain, pRange->start.gain), pRange->end.gain);
    STATS_LOG_WARNING("warning: using Force option, ranges %.3f %.3f %llu %llu output %.3f %llu", pRange->start.gain,
                      pRange->end.gain, pRange->start.time, pRange->end.time, *pGain, *pTime);
    return 0;
}

/// A table that does not fit an exposure stands aside, as that of a flickering lamp does in bright light: no warning.
KiroResult FailGainOfLUT(FLOAT gain, FLOAT startGain, FLOAT endGain)
{
    if (endGain == std::numeric_limits<FLOAT>::max())
    {
        STATS_LOG_TRACE("LUT not applying: gain %.3f smaller than min sensor gain %.3f", gain, startGain);
    }
    else
    {
        STATS_LOG_TRACE("LUT not applying: gain %.3f out of gain range %.3f %.3f", gain, startGain, endGain);
    }
    return ResultFailed;
}

KiroResult FailTimeOfLUT(UINT64 time, UINT64 startTime, UINT64 endTime)
{
    STATS_LOG_TRACE("LUT not applying: time %llu out of time range %llu %llu", time, startTime, endTime);
    return ResultFailed;
}

/// Sets the gain to a bound and scales the time, keeping the product.
VOID MoveGainToBound(KIROExposureSetType* pOut, FLOAT bound)
{
    pOut->time = SaturateToUINT64(static_cast<FLOAT>(pOut->time) * (pOut->gain / std::max(bound, Epsilon)));
    pOut->gain = bound;
}

/// Clamps the time and scales the gain, keeping the product.
VOID ClampTimeOfLUT(KIROExposureSetType* pOut, UINT64 startTime, UINT64 endTime)
{
    const FLOAT oldTime = static_cast<FLOAT>(pOut->time);
    if (pOut->time < startTime)
    {
        pOut->time = startTime;
        pOut->gain *= oldTime / static_cast<FLOAT>(startTime);
    }
    else if (pOut->time > endTime)
    {
        pOut->time = endTime;
        pOut->gain *= oldTime / std::max(static_cast<FLOAT>(endTime), Epsilon);
    }
}

bool IsTimeOutside(UINT64 time, UINT64 startTime, UINT64 endTime)
{
    return time < startTime || time > endTime;
}

}  // namespace

VOID UtilUpdateExposureAndIndexLimits(KIROExposureRange* pR, UINT64 indexZeroExposure)
{
    UpdateBoundExposure(&pR->start);
    UpdateBoundExposure(&pR->end);
    if (pR->start.exposure > pR->end.exposure)
    {
        STATS_LOG_WARNING("max exposure %llu smaller than min %llu forcing to min; start %.2f %llu %.2f end %.2f %llu "
                          "%.2f",
                          pR->end.exposure, pR->start.exposure, pR->start.gain, pR->start.time, pR->start.corr,
                          pR->end.gain, pR->end.time, pR->end.corr);
        pR->end.exposure = pR->start.exposure;
    }
    pR->start.indx = exposurearithmetic::IndexOfExposure(pR->start.exposure, indexZeroExposure);
    pR->end.indx   = exposurearithmetic::IndexOfExposure(pR->end.exposure, indexZeroExposure);
}

KiroResult UtilResolveRangeConflicts(KIROExposureRange* pRange, const KIROSensorRange* pSensorRange, FLOAT* pGain,
                                     UINT64* pTime, kirodbarbitrationrange::RangeConflictHandlingType solution)
{
    switch (solution)
    {
    case kirodbarbitrationrange::ModifyTimeRange:
        return WidenTimeRange(pRange, pSensorRange, pGain, pTime);
    case kirodbarbitrationrange::ModifyGainRange:
        return WidenGainRange(pRange, pSensorRange, pGain, pTime);
    case kirodbarbitrationrange::ForceExposure:
        return ForceIntoRange(pRange, pGain, pTime);
    case kirodbarbitrationrange::Discard:
        STATS_LOG_WARNING("discard handling");
        return ResultFailed;
    case kirodbarbitrationrange::Ignore:
        STATS_LOG_WARNING("ignore arbitration out of range");
        return 0;
    default:
        STATS_LOG_ERROR("unknown handling %d", solution);
        return ResultFailed;
    }
}

KiroResult UtilResolveLUTConflicts(const KIROExposureRange* pRange, const KIROSensorRange* pSensorRange,
                                   KIROExposureSetType*                             pOut,
                                   const kirodbarbitrationlut::LUTConflictHandling* pHandling)
{
    const KIROExposureSetType& rStart = pRange->start;
    const KIROExposureSetType& rEnd   = pRange->end;

    if (pHandling->enforceGain.bCheckAgainstCurrRange == TRUE &&
        (pOut->gain < rStart.gain - Epsilon || pOut->gain > rEnd.gain + Epsilon))
    {
        if (pHandling->enforceGain.modifyBeforeDiscard != TRUE)
        {
            return FailGainOfLUT(pOut->gain, rStart.gain, rEnd.gain);
        }
        if (pOut->gain < rStart.gain)
        {
            MoveGainToBound(pOut, rStart.gain);
        }
        else if (pOut->gain > rEnd.gain)
        {
            MoveGainToBound(pOut, rEnd.gain);
        }
    }
    if (pHandling->enforceTime.bCheckAgainstCurrRange == TRUE && IsTimeOutside(pOut->time, rStart.time, rEnd.time))
    {
        if (pHandling->enforceTime.modifyBeforeDiscard != TRUE)
        {
            return FailTimeOfLUT(pOut->time, rStart.time, rEnd.time);
        }
        ClampTimeOfLUT(pOut, rStart.time, rEnd.time);
    }

    if (pHandling->enforceTime.modifyBeforeDiscard == TRUE)
    {
        ClampTimeOfLUT(pOut, pSensorRange->minTime, pSensorRange->maxTime);
    }
    if (pHandling->enforceGain.modifyBeforeDiscard == TRUE && pOut->gain < pSensorRange->minGain - Epsilon)
    {
        MoveGainToBound(pOut, pSensorRange->minGain);
    }

    if (IsTimeOutside(pOut->time, pSensorRange->minTime, pSensorRange->maxTime))
    {
        return FailTimeOfLUT(pOut->time, pSensorRange->minTime, pSensorRange->maxTime);
    }
    if (pOut->gain < pSensorRange->minGain - Epsilon)
    {
        return FailGainOfLUT(pOut->gain, pSensorRange->minGain, std::numeric_limits<FLOAT>::max());
    }
    return 0;
}

KiroResult UtilMakeTableExposureFit(KIROExposureSetType* pExp, const KIROExposureRange* pRange)
{
    const KIROExposureSetType& rStart = pRange->start;
    const KIROExposureSetType& rEnd   = pRange->end;

    if (pExp->gain < rStart.gain)
    {
        const bool isNear = rStart.gain - SnapMargin < pExp->gain;
        pExp->gain        = rStart.gain;
        pExp->time = isNear ? pExp->time : exposurearithmetic::TimeOfExposure(pExp->exposure, pExp->gain, pExp->corr);
    }
    else if (pExp->gain > rEnd.gain)
    {
        const bool isNear = rEnd.gain + SnapMargin > pExp->gain;
        pExp->gain        = rEnd.gain;
        pExp->time = isNear ? pExp->time : exposurearithmetic::TimeOfExposure(pExp->exposure, pExp->gain, pExp->corr);
    }

    if (pExp->time < rStart.time)
    {
        const bool isNear = rStart.time - pExp->time <= 1;
        pExp->time        = rStart.time;
        if (!isNear)
        {
            pExp->gain = exposurearithmetic::GainOfExposure(pExp->exposure, pExp->time, pExp->corr);
            if (pExp->gain < rStart.gain && rStart.gain - SnapMargin < pExp->gain)
            {
                pExp->gain = rStart.gain;
            }
        }
    }
    else if (pExp->time > rEnd.time)
    {
        const bool isNear = pExp->time - rEnd.time <= 1;
        pExp->time        = rEnd.time;
        if (!isNear)
        {
            pExp->gain = exposurearithmetic::GainOfExposure(pExp->exposure, pExp->time, pExp->corr);
            if (pExp->gain > rEnd.gain && rEnd.gain + SnapMargin > pExp->gain)
            {
                pExp->gain = rEnd.gain;
            }
        }
    }

    if (pExp->gain > rEnd.gain + Epsilon)
    {
        // Counts as fitted, with a gain above the end of the current range.
        STATS_LOG_WARNING("warning desired exposure %llu time %llu gain %.3f exceeds max gain %.3f", pExp->exposure,
                          pExp->time, pExp->gain, rEnd.gain);
        return 0;
    }
    if (IsTimeOutside(pExp->time, rStart.time, rEnd.time) || pExp->gain < rStart.gain - Epsilon)
    {
        STATS_LOG_WARNING("could not fit desired exposure %llu time %llu gain %.1f within current range %llu %llu %.1f "
                          "%.1f",
                          pExp->exposure, pExp->time, pExp->gain, rStart.time, rEnd.time, rStart.gain, rEnd.gain);
        return ResultFailed;
    }
    return 0;
}

KiroResult UtilMatchEV(INT32 ev, kiroarbitration::EVOffsetType evType)
{
    switch (evType)
    {
    case kiroarbitration::EVPlus:
        if (ev > 0)
        {
            return 0;
        }
        STATS_LOG_TRACE("not applying: bracketing type plus current value %d", ev);
        return ResultNotApplicable;
    case kiroarbitration::EVMinus:
        if (ev < 0)
        {
            return 0;
        }
        STATS_LOG_TRACE("not applying: bracketing type minus current value %d", ev);
        return ResultNotApplicable;
    case kiroarbitration::EVZero:
        if (ev == 0)
        {
            return 0;
        }
        STATS_LOG_TRACE("not applying: bracketing type zero current value %d", ev);
        return ResultNotApplicable;
    default:
        STATS_LOG_ERROR("error: unknown EV type %d", evType);
        return ResultFailed;
    }
}

KiroResult UtilSyncUpExposureTime(AECAlgoExposureType expType, StatsTuningData* pTuningData,
                                  const AECMultiCamInfo* pPeerInfo, FLOAT* pOutTime)
{
    const auto* pTuning = tuningaccess::Get_kirosync(*pTuningData);
    if (pTuning == nullptr || pPeerInfo == nullptr)
    {
        return ResultFailed;
    }
    *pOutTime = static_cast<FLOAT>(pPeerInfo->exposureInfo.exposureTime[expType]);
    return (pTuning->expSyncConfig.enableExposureTimeMatch == TRUE && *pOutTime > 0.0f) ? 0 : ResultFailed;
}

bool IsSoundExposure(const KIROExposureSetType& rSet)
{
    return std::isfinite(rSet.gain) && std::isfinite(rSet.corr) && std::isfinite(rSet.indx);
}

const CHAR* TextOrEmpty(const CHAR* pText)
{
    return (pText != nullptr) ? pText : "";
}
