// What gives way where gain and time do not fit their ranges together.

#include <algorithm>
#include <limits>

#include "core/arbitration/arbitrationutils.h"
#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "interface/kiroresults.h"

using exposurearithmetic::Epsilon;
using exposurearithmetic::SaturateToUINT64;

namespace
{

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

/// Clamps or refuses what leaves the current range, where the LUT is tuned to look.
KiroResult EnforceCurrentRange(const KIROExposureRange&                         rRange,
                               const kirodbarbitrationlut::LUTConflictHandling& rHandling, KIROExposureSetType* pOut)
{
    const KIROExposureSetType& rStart = rRange.start;
    const KIROExposureSetType& rEnd   = rRange.end;
    if (rHandling.enforceGain.bCheckAgainstCurrRange == TRUE &&
        (pOut->gain < rStart.gain - Epsilon || pOut->gain > rEnd.gain + Epsilon))
    {
        if (rHandling.enforceGain.modifyBeforeDiscard != TRUE)
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
    if (rHandling.enforceTime.bCheckAgainstCurrRange == TRUE && IsTimeOutside(pOut->time, rStart.time, rEnd.time))
    {
        if (rHandling.enforceTime.modifyBeforeDiscard != TRUE)
        {
            return FailTimeOfLUT(pOut->time, rStart.time, rEnd.time);
        }
        ClampTimeOfLUT(pOut, rStart.time, rEnd.time);
    }
    return 0;
}

}  // namespace

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
    const KiroResult result = EnforceCurrentRange(*pRange, *pHandling, pOut);
    if (result != 0)
    {
        return result;
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
