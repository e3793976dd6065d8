// What the host wants: settings of the user and of the application.

#include "core/base/kirolog.h"
#include "core/ckirocontextmanager.h"
#include "core/extension/cficmanager.h"
#include "interface/ckiroctrlcorecommon.h"

namespace
{

const CHAR* TrueOrFalse(BOOL value)
{
    return (value == TRUE) ? "TRUE" : "FALSE";
}

}  // namespace

KiroResult CKIROContextManager::SetOperationMode(const AECAlgoOperationModeType& rNew, const CHAR* pName)
{
    // An invalid mode leaves the mode as it is and does not fail the call.
    (VOID) SetAlgoOpMode(rNew);
    STATS_LOG_TRACE("%s - %d", pName, m_setInputData.opMode);
    return 0;
}

KiroResult CKIROContextManager::SetTunaraData(const StatsTuningData& rNew, const CHAR*)
{
    StatsTuningData tuningData = rNew;
    return SetTunara(tuningData);
}

KiroResult CKIROContextManager::SetMeteringMode(const AECAlgoMeteringModeType& rNew, const CHAR* pName)
{
    if (m_setInputData.mtrMode != rNew)
    {
        m_setInputData.mtrMode = rNew;
        m_bResetFrameSkip      = TRUE;
        STATS_LOG_TRACE("%s - %d", pName, rNew);
    }
    return 0;
}

KiroResult CKIROContextManager::SetExposureCompensation(const INT32& rNew, const CHAR*)
{
    if (m_setInputData.evContext.evUIVal == rNew)
    {
        return 0;
    }
    m_bResetFrameSkip = TRUE;
    return SetEVVal(rNew);
}

KiroResult CKIROContextManager::SetFlickerCompensation(const StatisticsAntibanding& rNew, const CHAR* pName)
{
    if (rNew != StatisticsAntibandingAuto && rNew != m_setInputData.flickerComp)
    {
        m_setInputData.flickerComp = rNew;
        m_bResetFrameSkip          = TRUE;
        STATS_LOG_TRACE("%s - %d", pName, rNew);
    }
    return 0;
}

KiroResult CKIROContextManager::SetManualSetting(const AECAlgoManualSetting& rNew, const CHAR* pName)
{
    AECAlgoManualSetting& rOld = m_setInputData.manualSetting;
    if (rNew.manualMode != rOld.manualMode || rNew.ISOValue != rOld.ISOValue || rNew.gain != rOld.gain ||
        rNew.exposureTime != rOld.exposureTime)
    {
        rOld              = rNew;
        m_bResetFrameSkip = TRUE;
        STATS_LOG_TRACE("%s - Mode:%d ISOValue:%d Gain:%f ET:%llu", pName, rNew.manualMode, rNew.ISOValue, rNew.gain,
                        rNew.exposureTime);
    }
    return 0;
}

KiroResult CKIROContextManager::SetAECLock(const AECAlgoLockType& rNew, const CHAR* pName)
{
    const auto lockType = rNew;
    if (m_setInputData.opMode != AECAlgoOperationModeStreaming)
    {
        STATS_LOG_WARNING("Warning: Cannot Lock AEC during OpMode %d", m_setInputData.opMode);
    }
    else if (m_setInputData.lockType != lockType)
    {
        m_setInputData.lockType = lockType;
        m_bResetFrameSkip       = TRUE;
        STATS_LOG_TRACE("%s - %d", pName, lockType);
    }
    return 0;
}

KiroResult CKIROContextManager::SetFPSRange(const AECAlgoFPSRange& rNew, const CHAR* pName)
{
    AECAlgoFPSRange& rOld = m_setInputData.FPSRange;
    if (rNew.minimumFPS != rOld.minimumFPS || rNew.maximumFPS != rOld.maximumFPS)
    {
        rOld              = rNew;
        m_bResetFrameSkip = TRUE;
        STATS_LOG_TRACE("%s - Min %.3f Max %.3f", pName, rNew.minimumFPS, rNew.maximumFPS);
    }
    return 0;
}

KiroResult CKIROContextManager::SetLEDMode(const AECAlgoLEDModeType& rNew, const CHAR* pName)
{
    if (m_setInputData.LEDMode != rNew)
    {
        m_setInputData.LEDMode = rNew;
        STATS_LOG_TRACE("%s - %d", pName, rNew);
    }
    return 0;
}

KiroResult CKIROContextManager::SetTouchROI(const AECAlgoROIList& rNew, const CHAR* pName)
{
    m_bResetFrameSkip       = (rNew.ROICount != m_setInputData.touchROI.ROICount) ? TRUE : FALSE;
    m_setInputData.touchROI = rNew;
    STATS_LOG_TRACE("%s - %d", pName, rNew.ROICount);
    return 0;
}

KiroResult CKIROContextManager::SetOverrideSetting(const AECAlgoOverrideSettingParam& rNew, const CHAR* pName)
{
    AECAlgoOverrideSettingParam& rOld = m_setInputData.overrideSetting;
    if (rNew.disableFPS != rOld.disableFPS || rNew.disableFlicker != rOld.disableFlicker ||
        rNew.disableFace != rOld.disableFace || rNew.disableTouch != rOld.disableTouch ||
        rNew.profile3A != rOld.profile3A)
    {
        rOld = rNew;
        STATS_LOG_TRACE("%s - FPS:%d Flicker:%d Face:%d Touch:%d Profile:%d", pName, rNew.disableFPS,
                        rNew.disableFlicker, rNew.disableFace, rNew.disableTouch, rNew.profile3A);
    }
    return 0;
}

KiroResult CKIROContextManager::SetFlashMeasurement(const AECAlgoFlashMeasKindType& rNew, const CHAR* pName)
{
    m_setInputData.flashMeasurementType = rNew;
    STATS_LOG_TRACE("%s - %d", pName, m_setInputData.flashMeasurementType);
    return 0;
}

KiroResult CKIROContextManager::SetDebugDataEnable(const BOOL& rNew, const CHAR* pName)
{
    m_setInputData.bIsDebugDataEnabled = rNew;
    STATS_LOG_TRACE("%s - %d", pName, m_setInputData.bIsDebugDataEnabled);
    return 0;
}

KiroResult CKIROContextManager::SetFlashMaximumCurrent(const INT32& rNew, const CHAR* pName)
{
    SetMaxFlashCurrent(rNew);
    STATS_LOG_TRACE("%s - %d", pName, m_setInputData.maxLEDCurrent);
    return 0;
}

KiroResult CKIROContextManager::SetStartUpExpSensitivity(const AECAlgoStartupIndices& rNew, const CHAR* pName)
{
    m_setInputData.startUpExpInfo = rNew;
    STATS_LOG_TRACE("%s - %d", pName, m_setInputData.startUpExpInfo.startMode);
    return 0;
}

KiroResult CKIROContextManager::SetCropWindow(const StatsRectangle& rNew, const CHAR* pName)
{
    StatsRectangle& rOld = m_setInputData.cropWindow;
    if (rNew.left != rOld.left || rNew.top != rOld.top || rNew.width != rOld.width || rNew.height != rOld.height)
    {
        rOld = rNew;
        STATS_LOG_TRACE("%s - left:%d top:%d width:%d height:%d", pName, rNew.left, rNew.top, rNew.width, rNew.height);
    }
    return 0;
}

KiroResult CKIROContextManager::SetMultiExpSensorMode(const AECAlgoHDRType& rNew, const CHAR* pName)
{
    if (m_setInputData.HDRType != rNew)
    {
        m_setInputData.HDRType   = rNew;
        m_setInputData.b3HDRMode = (rNew == SensorHDR) ? TRUE : FALSE;
        m_bResetFrameSkip        = TRUE;
        STATS_LOG_TRACE("%s - %d", pName, rNew);
    }
    return 0;
}

KiroResult CKIROContextManager::SetControlPostRawSensitivityBoost(const INT32& rNew, const CHAR* pName)
{
    if (m_setInputData.postRawGain != rNew)
    {
        m_setInputData.postRawGain    = rNew;
        m_setInputData.postRawCounter = m_setInputData.systemLatency;
        m_bResetFrameSkip             = TRUE;
        STATS_LOG_TRACE("%s - %d", pName, rNew);
    }
    return 0;
}

KiroResult CKIROContextManager::SetDisableADRC(const BOOL& rNew, const CHAR* pName)
{
    if (m_setInputData.bDisableADRC != rNew)
    {
        m_setInputData.bDisableADRC = rNew;
        m_bResetFrameSkip           = TRUE;
        STATS_LOG_TRACE("%s - %d", pName, rNew);
    }
    return 0;
}

KiroResult CKIROContextManager::SetIsFlashInfluencedStats(const BOOL& rNew, const CHAR*)
{
    m_setInputData.bIsFullFlash = rNew;
    STATS_LOG_TRACE("AECCoreInline: Is full flash influenced stats : %s", TrueOrFalse(m_setInputData.bIsFullFlash));
    return 0;
}

KiroResult CKIROContextManager::SetFlashInlineCalibrationMode(const BOOL& rNew, const CHAR*)
{
    m_setInputData.bIsFICMode = rNew;
    STATS_LOG_TRACE("AECCoreInline: Is flash inline calibration mode : %s", TrueOrFalse(m_setInputData.bIsFICMode));
    if (m_pFICManager != nullptr)
    {
        (VOID) m_pFICManager->SetFICMode();
    }
    return 0;
}

KiroResult CKIROContextManager::SetAlgoOpMode(AECAlgoOperationModeType mode)
{
    const AECAlgoOperationModeType oldMode = m_setInputData.opMode;
    switch (mode)
    {
    case AECAlgoOperationModeInit:
        m_pHistory->InitializeHistory();
        break;
    case AECAlgoOperationModePreflash:
        m_pHistory->SaveFlashFrame(KIROExtFlashCurrentType::Off);
        m_pHistory->FinishCurrentModeHistory(oldMode);
        break;
    case AECAlgoOperationModeStreaming:
    case AECAlgoOperationModeFastAEC:
    case AECAlgoOperationModeAggressiveAEC:
    case AECAlgoOperationModeFlashMeasurement:
        m_pHistory->FinishCurrentModeHistory(oldMode);
        break;
    default:
        STATS_LOG_ERROR("Error: Invalid Mode %d \n", mode);
        return 1;
    }
    m_setInputData.opMode = mode;
    return 0;
}

KiroResult CKIROContextManager::SetEVVal(INT32 value)
{
    EVContext& rContext = m_setInputData.evContext;
    if (value == rContext.evUIVal)
    {
        return 0;
    }
    rContext.evUIVal  = value;
    rContext.evFactor = CKIROCtrlCoreCommon::UtilGetEVMultiplier(&m_tuningData, value, KIROEVPreview);
    STATS_LOG_TRACE("EV: UI Value:%d Factor:%f", rContext.evUIVal, rContext.evFactor);
    return 0;
}
