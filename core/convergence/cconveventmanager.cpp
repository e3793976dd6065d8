#include "core/convergence/cconveventmanager.h"

#include <cmath>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"
#include "schema/kiroflash.h"
#include "schema/kirosync.h"

using exposurearithmetic::Epsilon;
using exposurearithmetic::SensiLog103;

namespace
{

DOUBLE LogOfExposure(UINT64 exposure)
{
    return SensiLog103(static_cast<FLOAT>(exposure));
}

}  // namespace

CConvEventManager::CConvEventManager(IKIROContextManager& rContextManager)
    : m_rContextManager(rContextManager), m_context{}, m_camSyncLock{}
{
}

BOOL CConvEventManager::IsTargetFixed(KIROConvTempInput& rConvTempIn)
{
    const SetInputData*    pInput = m_rContextManager.GetInput();
    const ConvEventContext old    = m_context;
    m_context.evAppVal            = pInput->evContext.evUIVal;
    m_context.postRawSIBoost      = pInput->postRawGain;
    m_context.postRawCounter      = pInput->postRawCounter;
    m_context.lock                = pInput->lockType;
    m_context.previewEVMult       = pInput->evContext.evFactor;
    m_context.bIsSlave            = m_rContextManager.GetContextEvent(AECSlaveRole);

    // An EV offset applies on top of a locked or synced exposure, and a post-raw boost replaces all of them.
    BOOL bIsFixed = FALSE;
    HandleCamSync(old, bIsFixed, rConvTempIn.sensiLog103);
    ApplyLock(old, bIsFixed, rConvTempIn.sensiLog103);
    ApplyEV(old, bIsFixed, rConvTempIn.sensiLog103);
    ApplyPostRawSensitivityBoost(bIsFixed, rConvTempIn.sensiLog103);

    if (m_rContextManager.GetContextEvent(AECManualFull) == TRUE ||
        m_rContextManager.GetContextEvent(AECCoreSnapshotHDR3) == TRUE ||
        m_rContextManager.GetContextEvent(AECOpFlashCalibration) == TRUE || rConvTempIn.bIsMeteringSkipped == TRUE)
    {
        bIsFixed = TRUE;
    }

    const UINT64 status = m_rContextManager.GetContextStatus();
    if (m_rContextManager.m_pBankManager->GetContext() != status)
    {
        m_rContextManager.m_pBankManager->RunBankStartOfFrame(status);
    }
    return bIsFixed;
}

VOID CConvEventManager::GetLockedEV0(UINT64* pLockedExposure) const
{
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        pLockedExposure[type] = (m_context.lock == AECAlgoLockOn) ? m_context.lockedConvergedExposure[type] : 0;
    }
}

VOID CConvEventManager::HandleCamSync(const ConvEventContext& rOld, BOOL& rIsFixed, DOUBLE* pTargetExposuresLog103)
{
    const auto* pTuning = tuningaccess::Get_kirosync(*m_rContextManager.GetTuningData());
    if (pTuning == nullptr || pTuning->expSyncConfig.bLockExpWhenSwitch != TRUE ||
        pTuning->masterAndSlaveConfig.slave.exposureType != kirosync::AECAlgoExposureFollow)
    {
        return;
    }
    const UINT32  scdID = pTuning->expSyncConfig.SCDID;
    KIROSCDOutput scdOutput{};
    if (m_rContextManager.GetSCDOutput(scdID, scdOutput) != TRUE)
    {
        STATS_LOG_TRACE("SCDID:%d is not aded in the SCD tuning.", scdID);
        return;
    }
    if (rOld.bIsSlave == TRUE && m_context.bIsSlave != TRUE)
    {
        m_rContextManager.RebaseSCD(scdID);
        m_camSyncLock.applyLock        = TRUE;
        m_camSyncLock.lockFrameCounter = static_cast<INT32>(pTuning->expSyncConfig.minFrameNumToLock);
        STATS_LOG_TRACE("CamSync has locked convergence for at least %d frames", m_camSyncLock.lockFrameCounter);
    }
    if (m_camSyncLock.applyLock != TRUE)
    {
        return;
    }
    if (scdOutput.scState == KIROSCDStateSceneChange || m_camSyncLock.lockFrameCounter <= 0)
    {
        m_camSyncLock.applyLock = FALSE;
        STATS_LOG_TRACE("CamSync has unlocked convergence due to scene changed.");
        return;
    }
    const AECFrameHistory* pPrevious = m_rContextManager.m_pHistory->GetFrameHistory(1);
    for (UINT32 type = 0; pPrevious != nullptr && type < AECAlgoExposureCount; ++type)
    {
        // Without the EV factor, which ApplyEV puts back if it applies.
        pTargetExposuresLog103[type] = LogOfExposure(pPrevious->exposureSets[type].exposure) -
                                       static_cast<DOUBLE>(SensiLog103(rOld.previewEVMult));
    }
    rIsFixed = TRUE;
    --m_camSyncLock.lockFrameCounter;
}

VOID CConvEventManager::ApplyLock(const ConvEventContext& rOld, BOOL& rIsFixed, DOUBLE* pTargetExposuresLog103)
{
    if (m_context.lock != AECAlgoLockOn)
    {
        return;
    }
    rIsFixed = TRUE;
    if (rOld.lock != AECAlgoLockOn)
    {
        CaptureLockedExposures(pTargetExposuresLog103);
    }
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        pTargetExposuresLog103[type] = m_context.lockedConvergedExposureLog103[type];
        STATS_LOG_TRACE("KIROCONVRG Apply locked exposure. ExpType:%d exposure:%f", type, pTargetExposuresLog103[type]);
    }
}

VOID CConvEventManager::CaptureLockedExposures(const DOUBLE* pTargetExposuresLog103)
{
    const AECFrameHistory* pPrevious = m_rContextManager.m_pHistory->GetFrameHistory(1);
    if (pPrevious == nullptr)
    {
        STATS_LOG_WARNING("KIROCONVRG no history at lock");
    }
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        if (pPrevious == nullptr)
        {
            m_context.lockedConvergedExposureLog103[type] = pTargetExposuresLog103[type];
            continue;
        }
        DOUBLE      exposure = static_cast<DOUBLE>(pPrevious->exposureSets[type].exposure);
        const FLOAT evFactor = pPrevious->evFactor;
        if (std::abs(evFactor - 1.0f) >= Epsilon && evFactor > 0.0f)
        {
            exposure /= static_cast<DOUBLE>(evFactor);
        }
        m_context.lockedConvergedExposure[type]       = exposurearithmetic::SaturateToUINT64(exposure);
        m_context.lockedConvergedExposureLog103[type] = LogOfExposure(m_context.lockedConvergedExposure[type]);
        STATS_LOG_TRACE("KIROCONVRG %d saving exposure of previous frame %llu log %f", type,
                        m_context.lockedConvergedExposure[type], m_context.lockedConvergedExposureLog103[type]);
    }
}

VOID CConvEventManager::ApplyEV(const ConvEventContext& rOld, BOOL& rIsFixed, DOUBLE* pTargetExposuresLog103)
{
    if (m_context.evAppVal != rOld.evAppVal)
    {
        rIsFixed = TRUE;
        m_rContextManager.SetContextEvent(AECEVChange, TRUE);
        STATS_LOG_TRACE("KIROCONVRG EV changed. new:%d old:%d. AECEVChange status is set.", m_context.evAppVal,
                        rOld.evAppVal);
    }
    if (m_context.evAppVal == 0)
    {
        return;
    }
    const FLOAT multiplier  = m_context.previewEVMult;
    const bool  isPreflash  = m_rContextManager.GetInput()->opMode == AECAlgoOperationModePreflash;
    const auto& rFlash      = tuningaccess::Require_kiroflash(*m_rContextManager.GetTuningData());
    const bool  isEVApplied = !isPreflash || rFlash.preflashEvControl.enable == TRUE;
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        if (!isEVApplied)
        {
            STATS_LOG_TRACE("KIROCONVRG Skip EV in preflash");
            continue;
        }
        pTargetExposuresLog103[type] += static_cast<DOUBLE>(SensiLog103(multiplier));
        if (isPreflash)
        {
            STATS_LOG_TRACE("KIROCONVRG Apply EV at Preflash ExpType:%d New target exposure:%f EVMulti:%f", type,
                            pTargetExposuresLog103[type], multiplier);
        }
        else
        {
            STATS_LOG_TRACE("KIROCONVRG Apply EV. ExpType:%d New target exposure:%f EVMulti:%f", type,
                            pTargetExposuresLog103[type], multiplier);
        }
    }
}

VOID CConvEventManager::ApplyPostRawSensitivityBoost(BOOL& rIsFixed, DOUBLE* pTargetExposuresLog103)
{
    const SetInputData* pInput = m_rContextManager.GetInput();
    if (m_context.postRawCounter == 0 || pInput->manualSetting.manualMode == AECAlgoModeManualFull)
    {
        return;
    }
    const INT32            indexPostRaw = pInput->systemLatency - m_context.postRawCounter + 1;
    const INT32            newBoost     = m_context.postRawSIBoost;
    const AECFrameHistory* pFrame = m_rContextManager.m_pHistory->GetFrameHistory(static_cast<UINT8>(indexPostRaw));
    if (pFrame == nullptr || newBoost <= 0)
    {
        return;
    }
    const FLOAT postRawFactor = static_cast<FLOAT>(pFrame->postRawSensitivityBoost) / static_cast<FLOAT>(newBoost);
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        pTargetExposuresLog103[type] =
            LogOfExposure(pFrame->exposureSets[type].exposure) + static_cast<DOUBLE>(SensiLog103(postRawFactor));
        STATS_LOG_TRACE("KIROCONVRG exposure %d apply new post raw %d old %d factor %.1f new exp %f counter %d", type,
                        newBoost, pFrame->postRawSensitivityBoost, postRawFactor, pTargetExposuresLog103[type],
                        m_context.postRawCounter);
    }
    rIsFixed = TRUE;
}
