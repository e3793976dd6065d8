// The exposures that a new mode begins with.

#include <algorithm>
#include <cmath>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"
#include "core/ckirocore.h"
#include "core/extension/ckirocamsync.h"
#include "interface/kiroresults.h"
#include "interface/kirostartexposure.h"
#include "schema/kirostartup.h"

using exposurearithmetic::SaturateToUINT64;

namespace
{

/// The largest ADRC gain with which a camera comes out of HDR.
constexpr FLOAT ADRCGainOutOfHDRMax = 4.0f;

VOID TakeFrame(const AECFrameHistory& rFrame, KIROAlgoStartExposureInfo& rInfo)
{
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        rInfo.convergedExposures[type] = rFrame.exposureSets[type].exposure;
        rInfo.targetExposures[type]    = rFrame.exposureTargets[type];
    }
    rInfo.luxIndex          = rFrame.luxIndex;
    rInfo.bIsLuxInitialized = TRUE;
}

/// Safe over Short.
FLOAT ADRCGainOf(const KIROAlgoStartExposureInfo& rInfo)
{
    const FLOAT safe     = static_cast<FLOAT>(rInfo.convergedExposures[AECAlgoExposureSafe]);
    const FLOAT shortExp = static_cast<FLOAT>(rInfo.convergedExposures[AECAlgoExposureShort]);
    return safe / std::max(1.0f, shortExp);
}

/// One exposure must show what three did: Short comes nearer to Safe, Long takes the dark boost. The divisor of Short
/// and the factor of Long are whole numbers: a ratio of 1.5 acts as 1.
VOID LeaveHDR(FLOAT ratio, FLOAT darkBoost, KIROAlgoStartExposureInfo& rInfo)
{
    UINT64*      pExposures          = rInfo.convergedExposures;
    const UINT64 safe                = pExposures[AECAlgoExposureSafe];
    const FLOAT  gain                = (ratio >= 1.0f) ? std::min(ratio, ADRCGainOutOfHDRMax) : 1.0f;
    const UINT64 divisor             = SaturateToUINT64(static_cast<DOUBLE>(gain));
    pExposures[AECAlgoExposureShort] = (divisor != 0) ? safe / divisor : 0;
    pExposures[AECAlgoExposureLong]  = SaturateToUINT64(static_cast<DOUBLE>(darkBoost)) * safe;
    rInfo.compenADRCGain             = gain;
    rInfo.compensationDarkBoostGain  = darkBoost;
}

}  // namespace

KiroResult CKIROCore::GetStartUpExposure(KIROAlgoStartExposureInfo* pStartInfo)
{
    if (pStartInfo == nullptr)
    {
        return ResultFailed;
    }
    switch (pStartInfo->type)
    {
    case KIROStartExpPreflash:
        return PreflashStartUpExposure(*pStartInfo);
    case KIROStartExpPrevMode:
        return PreviousModeStartUpExposure(*pStartInfo);
    case KIROStartExpDCFollow:
        return FollowStartUpExposure(*pStartInfo);
    case KIROStartExpExtLightData:
        return LightSensorStartUpExposure(pStartInfo);
    case KIROStartExpFlashMeasurement:
        STATS_LOG_TRACE("not yet supported");
        return ResultFailed;
    default:
        STATS_LOG_TRACE("case not supported");
        return ResultFailed;
    }
}

KiroResult CKIROCore::PreflashStartUpExposure(KIROAlgoStartExposureInfo& rStartInfo)
{
    if (m_contManager.GetInput()->opMode != AECAlgoOperationModePreflash)
    {
        STATS_LOG_ERROR("Current mode is not preflash");
        return ResultFailed;
    }
    const AECFrameHistory* pOff = m_contManager.m_pHistory->GetFlashFrame(KIROExtFlashCurrentType::Off);
    if (pOff == nullptr)
    {
        STATS_LOG_ERROR("no frame was saved before the preflash");
        return ResultFailed;
    }
    TakeFrame(*pOff, rStartInfo);
    return 0;
}

/// @return the last frame that showed the preview, in the mode before or else in this one; null if there is none
const AECFrameHistory* CKIROCore::FindLastPreviewFrame(AECFrameHistory& rPrevMode) const
{
    CKIROHistory& rHistory = *m_contManager.m_pHistory;
    if (rHistory.GetPrevModeLastFrame(rPrevMode) == TRUE)
    {
        return &rPrevMode;
    }
    return rHistory.FindPreviewFrame(rHistory.GetMaxFrameHistorySize());
}

KiroResult CKIROCore::PreviousModeStartUpExposure(KIROAlgoStartExposureInfo& rStartInfo)
{
    AECFrameHistory        prevMode;
    const AECFrameHistory* pFrame = FindLastPreviewFrame(prevMode);
    if (pFrame == nullptr || pFrame->modeType == AECAlgoModeManualFull)
    {
        STATS_LOG_TRACE("Previous mode exposure not available");
        return ResultFailed;
    }
    TakeFrame(*pFrame, rStartInfo);
    UINT64*     pExposures = rStartInfo.convergedExposures;
    const FLOAT ratio      = ADRCGainOf(rStartInfo);
    const FLOAT darkBoost  = pFrame->compensationDarkBoost;
    const bool  bHDRNow    = IsSHDROrMFHDR() == TRUE;
    const bool  bHDRThen   = pFrame->bSHDR_MFHDR == TRUE;
    STATS_LOG_TRACE("Previous frame ADRC %f, dark boost %f, (short, safe, long) exposure %llu %llu %llu", ratio,
                    darkBoost, pExposures[AECAlgoExposureShort], pExposures[AECAlgoExposureSafe],
                    pExposures[AECAlgoExposureLong]);

    if (bHDRThen && !bHDRNow)
    {
        LeaveHDR(ratio, darkBoost, rStartInfo);
    }
    else
    {
        rStartInfo.compenADRCGain            = ratio;
        rStartInfo.compensationDarkBoostGain = darkBoost;
        if (!bHDRThen && bHDRNow)
        {
            pExposures[AECAlgoExposureLong] = pExposures[AECAlgoExposureSafe];
        }
    }
    STATS_LOG_TRACE("SHDR/MFHDR mode (previous %d, current %d), final frame ADRC %f, final frame dark boost %f, final "
                    "frame exposure (short, safe, long) %llu %llu %llu",
                    bHDRThen, bHDRNow, rStartInfo.compenADRCGain, rStartInfo.compensationDarkBoostGain,
                    pExposures[AECAlgoExposureShort], pExposures[AECAlgoExposureSafe], pExposures[AECAlgoExposureLong]);

    // A changed EV starts from the targets, whatever the HDR modes are.
    const FLOAT evFactor = m_contManager.GetInput()->evContext.evFactor;
    if (std::abs(pFrame->evFactor - evFactor) >= exposurearithmetic::Epsilon)
    {
        for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
        {
            const FLOAT exposure = static_cast<FLOAT>(pFrame->exposureTargets[type]) * evFactor;
            pExposures[type]     = SaturateToUINT64(static_cast<DOUBLE>(exposure));
        }
    }
    return 0;
}

/// The result is 1 also with the exposures filled: hosts read them all the same.
KiroResult CKIROCore::FollowStartUpExposure(KIROAlgoStartExposureInfo& rStartInfo)
{
    if (IsFollowing() == TRUE)
    {
        KIROConvergenceOutput output{};
        m_contManager.m_pCamSync->ComputeTargetExposureInFollowMode(output);
        std::copy(std::begin(output.exposures), std::end(output.exposures), rStartInfo.targetExposures);
        std::copy(std::begin(output.exposures), std::end(output.exposures), rStartInfo.convergedExposures);
        return ResultFailed;
    }
    STATS_LOG_ERROR("Peer info not available");
    return ResultFailed;
}

KiroResult CKIROCore::LightSensorStartUpExposure(KIROAlgoStartExposureInfo* pStartInfo)
{
    const auto* pTuning = tuningaccess::Get_kirostartup(*m_contManager.GetTuningData());
    if (pTuning == nullptr)
    {
        return ResultFailed;
    }
    const StatsLightInfo& rLight = m_contManager.GetInput()->lightInfo;
    if (rLight.enabled == FALSE)
    {
        STATS_LOG_TRACE("Light sensor assist start is not enabled");
        return ResultFailed;
    }
    const auto&         rTables = pTuning->extSensorAssitStart;
    CKIROStartUpExtSens tables;
    AECTriggerXMLData   tree{
        rTables.tables, {1, sizeof(kirostartup::LightDataTriggerDataType)}, static_cast<INT32>(rTables.tablesCount)};
    tables.SetData(&tree, KIROMLStartUpExtSensType);
    const auto& rStart =
        *static_cast<const kirostartup::LightDataTriggerDataType*>(tables.GetData(rLight.lux, 0.0f, 0.0f));

    const FLOAT warmSafe = static_cast<FLOAT>(pStartInfo->convergedExposures[AECAlgoExposureSafe]);
    if (warmSafe >= rStart.exposureZone.start && warmSafe <= rStart.exposureZone.end)
    {
        STATS_LOG_TRACE("Apply Warm Start based startup exposure: %llu",
                        pStartInfo->convergedExposures[AECAlgoExposureSafe]);
        return 0;
    }
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        const FLOAT target                   = static_cast<FLOAT>(rStart.initialExposure[type]) / pStartInfo->evFactor;
        pStartInfo->convergedExposures[type] = rStart.initialExposure[type];
        pStartInfo->targetExposures[type]    = SaturateToUINT64(static_cast<DOUBLE>(target));
    }
    STATS_LOG_TRACE("Apply Light assists AEC initial exposure: %llu",
                    pStartInfo->convergedExposures[AECAlgoExposureSafe]);
    return 0;
}
