#include "core/extension/ckiromodextension.h"

#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"

KiroResult CKIROExtension::RunExtension(KIROExtensionInput& rInput, KIROExtensionOutput& rOutput)
{
    m_pTuningData = m_rContextManager.GetTuningData();
    (VOID) m_flagsMonitor.Process(rInput, rOutput);
    CalculateSeamlessSwitchFlag(rInput, rOutput);
    return 0;
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
