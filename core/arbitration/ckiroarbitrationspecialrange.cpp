// Time ranges that the frame decides on top of the tuning: precision flash, a master camera, the long exposure of SHDR.

#include <algorithm>

#include "core/arbitration/arbitrationutils.h"
#include "core/arbitration/ckiromodarbitration.h"
#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/extension/ckirocamsync.h"
#include "interface/kiroresults.h"

using exposurearithmetic::Epsilon;
using namespace kirodbarbitrationrange;

namespace
{

/// Data ID of the time range that precision flash rewrites.
constexpr INT32 PrecisionFlashRangeID = 17;

}  // namespace

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

    const UINT64 longMaxTime    = m_maxTimes[AECAlgoExposureLong];
    const FLOAT  budgetIncrease = std::max(static_cast<FLOAT>(longMaxTime) - static_cast<FLOAT>(longTime), 0.0f);
    const FLOAT  newMaxTime = std::min(pAdj->end.val, static_cast<FLOAT>(m_maxTimes[m_pIn->expType]) + budgetIncrease);
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
