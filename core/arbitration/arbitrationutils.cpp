#include "core/arbitration/arbitrationutils.h"

#include <cmath>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"
#include "interface/kiroresults.h"
#include "schema/kirosync.h"

using exposurearithmetic::Epsilon;
using exposurearithmetic::SnapMargin;

namespace
{

/// The exposure of gain, time and correction, or the one that they approximate.
UINT64 ExposureOfBound(const KIROExposureSetType& rBound)
{
    const UINT64 exposure = exposurearithmetic::UtilQuantities2Exposure(rBound.gain, rBound.time, rBound.corr);
    return exposurearithmetic::IsSameExposure(exposure, rBound.exposure) ? rBound.exposure : exposure;
}

/// A gain outside goes to the bound. If it missed by less than the margin, the time stays; otherwise the time makes up
/// for it.
VOID MoveTableGainIntoRange(KIROExposureSetType* pExp, FLOAT startGain, FLOAT endGain)
{
    bool isNear = true;
    if (pExp->gain < startGain)
    {
        isNear     = startGain - SnapMargin < pExp->gain;
        pExp->gain = startGain;
    }
    else if (pExp->gain > endGain)
    {
        isNear     = endGain + SnapMargin > pExp->gain;
        pExp->gain = endGain;
    }
    pExp->time = isNear ? pExp->time : exposurearithmetic::TimeOfExposure(pExp->exposure, pExp->gain, pExp->corr);
}

/// A time outside goes to the bound. If it missed by 1 ns at most, the gain stays; otherwise the gain makes up for it,
/// and goes to its own bound if it misses that by less than the margin.
VOID MoveTableTimeIntoRange(KIROExposureSetType* pExp, const KIROExposureSetType& rStart,
                            const KIROExposureSetType& rEnd)
{
    if (!IsTimeOutside(pExp->time, rStart.time, rEnd.time))
    {
        return;
    }
    const bool   isBelow = pExp->time < rStart.time;
    const UINT64 missing = isBelow ? rStart.time - pExp->time : pExp->time - rEnd.time;
    pExp->time           = isBelow ? rStart.time : rEnd.time;
    if (missing <= 1)
    {
        return;
    }
    const FLOAT gain = exposurearithmetic::GainOfExposure(pExp->exposure, pExp->time, pExp->corr);
    pExp->gain       = gain;
    if (isBelow && gain < rStart.gain && rStart.gain - SnapMargin < gain)
    {
        pExp->gain = rStart.gain;
    }
    else if (!isBelow && gain > rEnd.gain && rEnd.gain + SnapMargin > gain)
    {
        pExp->gain = rEnd.gain;
    }
}

}  // namespace

VOID UtilUpdateExposureAndIndexLimits(KIROExposureRange* pR, UINT64 indexZeroExposure)
{
    const UINT64 startExposure = ExposureOfBound(pR->start);
    UINT64       endExposure   = ExposureOfBound(pR->end);
    if (startExposure > endExposure)
    {
        STATS_LOG_WARNING("max exposure %llu smaller than min %llu forcing to min; start %.2f %llu %.2f end %.2f %llu "
                          "%.2f",
                          endExposure, startExposure, pR->start.gain, pR->start.time, pR->start.corr, pR->end.gain,
                          pR->end.time, pR->end.corr);
        endExposure = startExposure;
    }
    pR->start.exposure = startExposure;
    pR->start.indx     = exposurearithmetic::IndexOfExposure(startExposure, indexZeroExposure);
    pR->end.exposure   = endExposure;
    pR->end.indx       = exposurearithmetic::IndexOfExposure(endExposure, indexZeroExposure);
}

KiroResult UtilMakeTableExposureFit(KIROExposureSetType* pExp, const KIROExposureRange* pRange)
{
    const KIROExposureSetType& rStart = pRange->start;
    const KIROExposureSetType& rEnd   = pRange->end;

    MoveTableGainIntoRange(pExp, rStart.gain, rEnd.gain);
    MoveTableTimeIntoRange(pExp, rStart, rEnd);
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

KiroResult UtilSyncUpExposureTime(AECAlgoExposureType expType, InstanceTuning* pTuningData,
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

bool IsTimeOutside(UINT64 time, UINT64 startTime, UINT64 endTime)
{
    return time < startTime || time > endTime;
}

bool IsSoundExposure(const KIROExposureSetType& rSet)
{
    return std::isfinite(rSet.gain) && std::isfinite(rSet.corr) && std::isfinite(rSet.indx);
}

const CHAR* TextOrEmpty(const CHAR* pText)
{
    return (pText != nullptr) ? pText : "";
}
