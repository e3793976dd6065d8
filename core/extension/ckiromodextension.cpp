#include "core/extension/ckiromodextension.h"

#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"
#include "core/contextdebugdata.h"

KiroResult CKIROExtension::RunExtension(KIROExtensionInput& rInput, KIROExtensionOutput& rOutput)
{
    m_pTuningData = m_rContextManager.GetTuningData();
    (VOID) m_flagsMonitor.Process(rInput, rOutput);
    CalculateSeamlessSwitchFlag(rInput, rOutput);
    PopulateDebugData(rOutput);
    return 0;
}

VOID CKIROExtension::PopulateDebugData(const KIROExtensionOutput& rOutput) const
{
    AECDebugData* pDebug = debugdata::Enabled(m_rContextManager);
    if (pDebug == nullptr)
    {
        return;
    }
    const SetInputData*               pInput  = m_rContextManager.GetInput();
    const KIROExtFlagsMonitorOutput&  rFlags  = rOutput.monitoredFlags;
    const InSensorHDR3ExpTriggerInfo& r3HDR   = rOutput.snapshot3HDRTriggers.IHDRTriggers;
    AECDebugDataExtensionType&        rRecord = pDebug->extensionInfo;

    rRecord.luxIndex            = m_rContextManager.m_pBankManager->GetDataTriggers(TriggerCtrlLux)->value;
    rRecord.LEDMode             = static_cast<UINT8>(pInput->LEDMode);
    rRecord.opMode              = static_cast<UINT8>(pInput->opMode);
    rRecord.bFlashNeeded        = static_cast<UINT8>(rFlags.bFlashNeeded);
    rRecord.bFDFlashDelayNeeded = static_cast<UINT8>(rFlags.bFDFlashDelayNeeded);
    rRecord.bLEDAFNeeded        = static_cast<UINT8>(rFlags.bLEDAFNeeded);
    rRecord.bLLSNeeded          = static_cast<UINT8>(rFlags.bLLSNeeded);
    rRecord.bZLLEnabled         = static_cast<UINT8>(rFlags.bZLLEnabled);
    rRecord.bZLLEnforced        = static_cast<UINT8>(rFlags.bZLLEnforced);
    rRecord.bHistStretchEnabled = static_cast<UINT8>(rOutput.histStretchData.enable);
    rRecord.histStretchClamp    = rOutput.histStretchData.clamp;
    rRecord.histStretchScaling  = rOutput.histStretchData.scaling;
    rRecord.bIs3HDRTriggerValid = static_cast<UINT8>(r3HDR.isTriggerInfoValid);
    for (UINT32 scene = 0; scene < InSensorHDR3ExpFlagCount; ++scene)
    {
        rRecord.trigger3HDRResult[scene] = static_cast<UINT8>(r3HDR.finalTriggerResult.flags[scene]);
    }
    rRecord.resultCDF0         = r3HDR.calculatedCDF.resultCDF0;
    rRecord.resultCDF5         = r3HDR.calculatedCDF.resultCDF5;
    rRecord.realDRCGain        = r3HDR.realDRCGain;
    rRecord.ambientRaw         = r3HDR.ambientRaw;
    rRecord.faceLuma           = r3HDR.faceLuma;
    rRecord.bIs3HDRSnapshot    = static_cast<UINT8>(rOutput.snapshot3HDRTriggers.bIs3HDRSnapshot);
    rRecord.bIsSeamlessBinning = static_cast<UINT8>(rOutput.bIsSeamlessBinning);
}

VOID CKIROExtension::CalculateSeamlessSwitchFlag(KIROExtensionInput& rInput, KIROExtensionOutput& rOutput)
{
    SwitchState state{};
    rOutput.bIsSeamlessBinning = m_bPreviousSeamlessBinning;
    if (m_rContextManager.GetInput()->b3HDRMode == TRUE && m_rContextManager.m_bIsHybridHDR == TRUE &&
        rInput.pConvergenceOuts != nullptr)
    {
        const AECFrameHistory* pPrevious = m_rContextManager.m_pHistory->GetFrameHistory(1);
        if (pPrevious != nullptr)
        {
            DecideSeamlessSwitch(rInput, pPrevious->bIsSeamless, rOutput, state);
        }
    }
    STATS_LOG_TRACE("current ADRC %.3f threshold %.3f is seamless %d current RID %llu last RID %llu count %llu",
                    state.ratio, state.threshold, rOutput.bIsSeamlessBinning, state.frameID,
                    m_rContextManager.m_seamlessRID, state.stable);

    m_bPreviousSeamlessBinning = rOutput.bIsSeamlessBinning;
    (VOID) m_rContextManager.m_pBankManager->PublishTrigger(
        TriggerCtrl3HDRBinning, static_cast<FLOAT>(rOutput.bIsSeamlessBinning), nullptr, SourceModuleExtension);
}

/// Hysteresis in frames: the flag may move only when it has been stable long enough.
VOID CKIROExtension::DecideSeamlessSwitch(const KIROExtensionInput& rInput, BOOL bWasSeamless,
                                          KIROExtensionOutput& rOutput, SwitchState& rState)
{
    const auto&   rTuning    = tuningaccess::Require_kirohdrsensor(*m_pTuningData).hybridHDR;
    const UINT64* pExposures = rInput.pConvergenceOuts->exposures;
    UINT64&       rSwitchID  = m_rContextManager.m_seamlessRID;

    rState.frameID   = m_rContextManager.m_pHistory->GetCurrentFrameID();
    rState.threshold = GetSwitchThreshold(rTuning);
    rState.ratio =
        static_cast<FLOAT>(pExposures[AECAlgoExposureSafe]) / static_cast<FLOAT>(pExposures[AECAlgoExposureShort]);
    if (rSwitchID < rState.frameID)
    {
        rState.stable = rState.frameID - rSwitchID;
        if (rState.stable > rTuning.switchStableCountThreshold)
        {
            rOutput.bIsSeamlessBinning = (rState.threshold > rState.ratio) ? TRUE : FALSE;
        }
    }
    if (rOutput.bIsSeamlessBinning != bWasSeamless)
    {
        rSwitchID = rState.frameID;
    }
}

/// The tuned tree has a single zone at its first level, which decides nothing: the second runs over the lux index.
FLOAT CKIROExtension::GetSwitchThreshold(const kirohdrsensor::HybridHDRType& rTuning)
{
    constexpr INT32   levels = 1;
    const auto&       rZones = rTuning.drcGainSwitchThresholdTrigger;
    AECTriggerXMLData tree{rZones.trigger2Data, {levels, sizeof(FLOAT)}, static_cast<INT32>(rZones.trigger2DataCount)};
    m_thresholdTrigger.SetData(&tree, KIROMLBaseDataType);

    constexpr DataBankType lux{BankIDTriggers, TriggerCtrlLux};
    FLOAT                  luxIndex;
    (VOID) m_rContextManager.m_pBankManager->UtilGetFloatFromBank(&lux, luxIndex, TRUE, nullptr);
    return *static_cast<const FLOAT*>(m_thresholdTrigger.GetData(luxIndex, 0.0f, 0.0f));
}
