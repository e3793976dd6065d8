// Following the peer's exposures.

#include <algorithm>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/extension/ckirocamsync.h"

using namespace kirosync;

VOID CKIROCamsync::ComputeTargetExposureInFollowMode(KIROConvergenceOutput& rConvOut)
{
    const KIROSyncType* pTuning = GetTuning();
    if (pTuning == nullptr || m_pPeerInfo == nullptr)
    {
        return;
    }
    const FLOAT expComp = GetGlobalCompensationFactor(UtilGetLuxIndex(*pTuning), *pTuning);
    const FLOAT cctComp = GetCCTCompensationFactor(m_pPeerInfo->CCT, *pTuning);

    const AECExposureSyncConfigType& rConfig = pTuning->expSyncConfig;
    const AECMultiCamExpInfo&        rPeer   = m_pPeerInfo->exposureInfo;
    const FLOAT*                     pSource = rPeer.origExp;
    if (rConfig.globalExpComp.enable == TRUE)
    {
        pSource = (rConfig.cctBasedExpComp.enable == TRUE) ? rPeer.normExp_wCCT : rPeer.normExp;
    }
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        rConvOut.exposures[type] = exposurearithmetic::SaturateToUINT64(expComp * cctComp * pSource[type]);
    }

    const UINT64* pExposures       = rConvOut.exposures;
    const FLOAT   shortExp         = static_cast<FLOAT>(pExposures[AECAlgoExposureShort]);
    const FLOAT   longExp          = static_cast<FLOAT>(pExposures[AECAlgoExposureLong]);
    const FLOAT   safeExp          = static_cast<FLOAT>(pExposures[AECAlgoExposureSafe]);
    rConvOut.compensationADRC      = safeExp / std::max(shortExp, 1.0f);
    rConvOut.compensationDarkBoost = longExp / std::max(safeExp, 1.0f);
    rConvOut.bBrightnessSettle     = m_pPeerInfo->bBrightnessSettle;
    rConvOut.bSettle               = m_pPeerInfo->bSettle;
    STATS_LOG_TRACE("CamID:%d, OTPStatus:%d, useTuning:%d, expComp:%.3f, cctComp:%.3f, Short:%lld, Safe:%lld, "
                    "Long:%lld",
                    m_cameraInfo.cameraId, m_otpInfo.OTPStatus, rConfig.globalExpComp.useTuning, expComp, cctComp,
                    static_cast<INT64>(pExposures[AECAlgoExposureShort]),
                    static_cast<INT64>(pExposures[AECAlgoExposureSafe]),
                    static_cast<INT64>(pExposures[AECAlgoExposureLong]));
}
