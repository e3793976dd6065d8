// Mixing the metered targets with the peer's.

#include <cmath>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/extension/ckirocamsync.h"

using exposurearithmetic::SaturateToUINT64;
using namespace kirosync;

VOID CKIROCamsync::CalculateMixedTargetExposure(KIROMeteringOutput& rMtrOut)
{
    switch (m_meteringType)
    {
    case AECAlgoMeteringMixStatic:
        CalculateStaticMixedTargetExposure(rMtrOut);
        break;
    case AECAlgoMeteringMixDynamic:
        CalculateDynamicMixedTargetExposure(rMtrOut);
        break;
    default:
        break;
    }
}

VOID CKIROCamsync::CalculateStaticMixedTargetExposure(KIROMeteringOutput& rMtrOut) const
{
    const KIROSyncType* pTuning = GetTuning();
    if (pTuning == nullptr || m_pPeerInfo == nullptr)
    {
        return;
    }
    if (m_cameraInfo.algoRole != StatsAlgoRoleMaster)
    {
        STATS_LOG_ERROR("Static metering mix can only be used for master mode. Current mode: %d",
                        m_cameraInfo.algoRole);
        return;
    }
    const FLOAT weight = pTuning->mtrMixConfig.staticMixingConfig.staticWeight;
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        const FLOAT own         = static_cast<FLOAT>(rMtrOut.exposures[type]);
        const FLOAT peer        = static_cast<FLOAT>(m_pPeerInfo->meteringInfo.targetExposure[type]);
        rMtrOut.exposures[type] = SaturateToUINT64((1.0f - weight) * own + weight * peer);
    }
}

VOID CKIROCamsync::CalculateDynamicMixedTargetExposure(KIROMeteringOutput& rMtrOut)
{
    const KIROSyncType* pTuning = GetTuning();
    if (pTuning == nullptr || m_pPeerInfo == nullptr)
    {
        return;
    }
    if (m_cameraInfo.algoRole != StatsAlgoRoleSlave)
    {
        STATS_LOG_ERROR("Dynamic metering mix can only be used for slave mode. Current mode: %d",
                        m_cameraInfo.algoRole);
        return;
    }
    const DynamicMixingConfigType& rConfig   = pTuning->mtrMixConfig.dynamicMixingConfig;
    const UINT64*                  pPeer     = m_pPeerInfo->meteringInfo.targetExposure;
    UINT64*                        pExposure = rMtrOut.exposures;

    const FLOAT expComp =
        Interpolate(rConfig.postExpCompTrigger, rConfig.postExpCompTriggerCount, UtilGetLuxIndex(*pTuning));
    const FLOAT own      = static_cast<FLOAT>(pExposure[AECAlgoExposureSafe]);
    const FLOAT peerSafe = static_cast<FLOAT>(pPeer[AECAlgoExposureSafe]) * expComp;
    // The added ones keep a peer without a target from dividing by zero.
    const FLOAT delta  = std::abs((own + 1.0f) / (peerSafe + 1.0f) - 1.0f);
    const FLOAT weight = Interpolate(rConfig.dynamicWeightTrigger, rConfig.dynamicWeightTriggerCount, delta);
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        pExposure[type] = SaturateToUINT64((1.0f - weight) * static_cast<FLOAT>(pExposure[type]) +
                                           static_cast<FLOAT>(pPeer[type]) * expComp * weight);
    }
    STATS_LOG_TRACE("CID:%d, Role:%d, SafeExp:%f, CompPeerSafeExp:%f, ExpComp:%f, MixWeight:%f, "
                    "MixedExp:[%lld,%lld,%lld]",
                    m_cameraInfo.cameraId, m_cameraInfo.algoRole, own, peerSafe, expComp, weight,
                    static_cast<INT64>(pExposure[0]), static_cast<INT64>(pExposure[1]),
                    static_cast<INT64>(pExposure[2]));
}
