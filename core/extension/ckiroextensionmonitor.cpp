#include "core/extension/ckiroextensionmonitor.h"

#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"

using namespace kiroextension;

namespace
{

/// @return the status after a frame: on above the end, off below the start, between them as it was
BOOL ApplyLuxHysteresis(BOOL status, FLOAT luxIndex, const StartEndType& rTrigger)
{
    if (status == TRUE)
    {
        return (luxIndex < rTrigger.start) ? FALSE : TRUE;
    }
    return (luxIndex > rTrigger.end) ? TRUE : FALSE;
}

}  // namespace

CKIROExtensionMonitor::CKIROExtensionMonitor(IKIROContextManager& rContext)
    : m_rContext(rContext), m_luxIndex(0.0f), m_LEDMode(AECAlgoLEDModeOff),
      m_opMode(AECAlgoOperationModeInit), m_flagOutput{}, m_bFlashNeededTriggerStatus(FALSE),
      m_bDelayNeededForFDTriggerStatus(FALSE), m_histStrechData{FALSE, 0.0f, 1.0f}, m_3HDRFrameCount(0), m_3HDROut{},
      m_3HDRMonitor(rContext), m_brktEVLockMonitor(rContext), m_brktEVExp{}, m_brktEVVal{},
      m_brktCriteriaState(CriteriaNotChecked), m_prevBrktFrameID(0)
{
}

KiroResult CKIROExtensionMonitor::Process(const KIROExtensionInput& rExtIn, KIROExtensionOutput& rExtOut)
{
    const Tuning* pTuning = RefreshTuning();
    if (rExtIn.statisticsStartup == StatisticsStartUpInvalid)
    {
        m_3HDRMonitor.RebaseData();
        m_brktEVLockMonitor.RebaseData();
        m_brktCriteriaState = CriteriaNotChecked;
        m_prevBrktFrameID   = 0;
    }
    m_luxIndex = TriggerValue(TriggerCtrlLux);
    m_opMode   = m_rContext.GetInput()->opMode;
    m_LEDMode  = m_rContext.GetInput()->LEDMode;

    if (pTuning != nullptr)
    {
        const ExtensionFlagsMonitor& rFlags = pTuning->flagMonitor;
        ProcessFlashFlags(rFlags.flashFlag);
        ProcessLLSFlags(rFlags.LLSFlag);
        ProcessYHistStretch(rExtIn, rFlags.YHistStretch);
        m_flagOutput.bZLLEnabled  = rFlags.ZLLFlag.enableZLLSnapshot;
        m_flagOutput.bZLLEnforced = rFlags.ZLLFlag.enforceZLLSetting;
    }
    Get3HDRSnapshotInfo(&rExtIn, pTuning);

    rExtOut.monitoredFlags       = m_flagOutput;
    rExtOut.histStretchData      = m_histStrechData;
    rExtOut.snapshot3HDRTriggers = m_3HDROut;
    return 0;
}

VOID CKIROExtensionMonitor::GetHistStretchData(AECYHistStretchData* pHistStretchData) const
{
    if (pHistStretchData != nullptr)
    {
        *pHistStretchData = m_histStrechData;
    }
}

/// Also at the bracket lock, which comes before Process in a frame: the records of a tuning that a setting has replaced
/// since then may be gone.
CKIROExtensionMonitor::Tuning* CKIROExtensionMonitor::RefreshTuning()
{
    return m_tuning.Refresh(tuningaccess::Get_kiroextension(*m_rContext.GetTuningData()),
                            [this](const Tuning*) { ForgetMonitors(); });
}

VOID CKIROExtensionMonitor::ForgetMonitors()
{
    for (CKIROGeneralizedMonitor* pMonitor : {&m_3HDRMonitor, &m_brktEVLockMonitor})
    {
        if (pMonitor->IsTuningSet())
        {
            pMonitor->FreeDataMemory();
            pMonitor->SetTuning(nullptr);
        }
    }
}

FLOAT CKIROExtensionMonitor::TriggerValue(KIROTriggerType id) const
{
    return m_rContext.m_pBankManager->GetDataTriggers(id)->value;
}

VOID CKIROExtensionMonitor::ProcessFlashFlags(const ExtensionFlagFlash& rTuning)
{
    if (m_opMode != AECAlgoOperationModePreflash)
    {
        m_bFlashNeededTriggerStatus =
            ApplyLuxHysteresis(m_bFlashNeededTriggerStatus, m_luxIndex, rTuning.flashLuxTrigger);
        m_bDelayNeededForFDTriggerStatus =
            ApplyLuxHysteresis(m_bDelayNeededForFDTriggerStatus, m_luxIndex, rTuning.flashFDReqestDelayLuxTrigger);
    }
    const bool isAFForced            = rTuning.enableForceAFInLEDOnMode == TRUE;
    m_flagOutput.bFDFlashDelayNeeded = m_bDelayNeededForFDTriggerStatus;
    switch (m_LEDMode)
    {
    case AECAlgoLEDModeOff:
        m_flagOutput.bFlashNeeded = FALSE;
        m_flagOutput.bLEDAFNeeded = FALSE;
        break;
    case AECAlgoLEDModeAuto:
    case AECAlgoLEDModeOn:
        m_flagOutput.bFlashNeeded = (m_LEDMode == AECAlgoLEDModeOn) ? TRUE : m_bFlashNeededTriggerStatus;
        m_flagOutput.bLEDAFNeeded = isAFForced ? m_flagOutput.bFlashNeeded : m_bFlashNeededTriggerStatus;
        break;
    default:
        STATS_LOG_WARNING("WARNING: Invalid/Bad LED Mode(%d)!", m_LEDMode);
        m_flagOutput.bLEDAFNeeded = isAFForced ? m_flagOutput.bFlashNeeded : FALSE;
        break;
    }
    STATS_LOG_TRACE("Lux index %f LED mode %d Op Mode %d isFlashNeeded %d isLEDAFNeeded %d isFDFlashDelayNeeded %d",
                    m_luxIndex, m_LEDMode, m_opMode, m_flagOutput.bFlashNeeded, m_flagOutput.bLEDAFNeeded,
                    m_flagOutput.bFDFlashDelayNeeded);
}

VOID CKIROExtensionMonitor::ProcessLLSFlags(const ExtensionFlagLLS& rTuning)
{
    const bool isPossible = m_rContext.GetInput()->manualSetting.manualMode == AECAlgoModeAuto &&
                            rTuning.enableLLS == TRUE && m_opMode != AECAlgoOperationModePreflash;
    m_flagOutput.bLLSNeeded =
        isPossible ? ApplyLuxHysteresis(m_flagOutput.bLLSNeeded, m_luxIndex, rTuning.LLSLuxHysteresis) : FALSE;
    SYSTEM_LOG_CONFIG("isLLSEnforced:%d, isLLSNeeded:%d", rTuning.enableLLS, m_flagOutput.bLLSNeeded);
}
