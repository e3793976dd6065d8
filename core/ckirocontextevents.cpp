// How settings move the bits of the context status, by which tuned priority maps choose.

#include "core/base/kirolog.h"
#include "core/ckirocontextmanager.h"

namespace
{

constexpr UINT64 Bit(KIROTunaraEventType event)
{
    return 1ULL << event;
}

constexpr UINT64 Bits(KIROTunaraEventType first, KIROTunaraEventType last)
{
    return (Bit(last) - Bit(first)) | Bit(last);
}

}  // namespace

VOID CKIROContextManager::UpdateContext(const KIROSetInput* pSetInput)
{
    if (pSetInput->source == AECPEKSetParam && pSetInput->u.pPEKInput != nullptr)
    {
        UpdateContextOfParam(pSetInput->u.pPEKInput->setParamType);
    }
    else if (pSetInput->source == KIROCoreSnapshot)
    {
        UpdateContextOfSnapshot();
    }
}

VOID CKIROContextManager::UpdateContextOfParam(AECAlgoSetParamType type)
{
    switch (type)
    {
    case AECAlgoSetParamOperationMode:
        UpdateOpModeEvents();
        break;
    case AECAlgoSetParamExposureCompensation:
        SetContextEvent(AECEV, (m_setInputData.evContext.evUIVal != 0) ? TRUE : FALSE);
        break;
    case AECAlgoSetParamManualSetting:
        UpdateManualEvents();
        break;
    case AECAlgoSetParamAECLock:
        // A lock raises AECManualISO and an unlock clears AECLock, not a pair: an entry for AECManualISO is chosen
        // after a lock, and one for AECLock only while the host itself has raised that. Raising it here would swap the
        // two.
        if (m_setInputData.lockType == AECAlgoLockOn)
        {
            SetContextEvent(AECManualISO, TRUE);
        }
        else
        {
            SetContextEvent(AECLock, FALSE);
        }
        break;
    case AECAlgoSetParamTouchROI:
        SetContextEvent(AECTouch, (m_setInputData.touchROI.ROICount > 0) ? TRUE : FALSE);
        break;
    case AECAlgoSetParamFlashMeasurement:
        UpdateFlashMeasurementEvents();
        break;
    case AECAlgoSetParamMultiExpSensorMode:
        UpdateHDREvents();
        break;
    case AECAlgoSetParamSaliencyMapData:
        SetContextEvent(AECSaliency, m_setInputData.bIsSaliencyInfoValid);
        break;
    default:
        break;
    }
}

VOID CKIROContextManager::UpdateContextOfSnapshot()
{
    const INT32 mode = static_cast<INT32>(m_setInputData.snapshotMode);
    ReplaceEvents(Bits(AECCoreSnapshotNormal, AECCoreSnapshotAdvanced), 0);
    if (m_setInputData.snapshotMode == KIROCoreSnapshotType::None)
    {
        return;
    }
    if (mode >= static_cast<INT32>(KIROCoreSnapshotType::Normal) &&
        mode <= static_cast<INT32>(KIROCoreSnapshotType::AdvancedSnapshot))
    {
        const INT32 offset = mode - static_cast<INT32>(KIROCoreSnapshotType::Normal);
        SetContextEvent(static_cast<KIROTunaraEventType>(AECCoreSnapshotNormal + offset), TRUE);
    }
    else
    {
        STATS_LOG_ERROR("snapshotMode %d unknown to context", mode);
    }
    m_pHistory->SetSnapshot();
}

VOID CKIROContextManager::UpdateOpModeEvents()
{
    UINT64 events = 0;
    switch (m_setInputData.opMode)
    {
    case AECAlgoOperationModeInit:
        events = Bit(AECOpInit);
        break;
    case AECAlgoOperationModeStreaming:
        events = Bit(AECOpStreaming);
        break;
    case AECAlgoOperationModePreflash:
        events = Bit(AECOpPreflash);
        break;
    case AECAlgoOperationModeFastAEC:
        events = Bit(AECOpFastAEC);
        break;
    case AECAlgoOperationModeAggressiveAEC:
        events = Bit(AECOpAggressiveAEC);
        break;
    case AECAlgoOperationModeFlashMeasurement:
        if (m_setInputData.flashMeasurementType == AECAlgoFlashMeasKindCalib)
        {
            events = Bit(AECOpFlashCalibration);
            break;
        }
        events = Bit(AECOpFlashTuning);
        if (m_setInputData.flashMeasurementType != AECAlgoFlashMeasKindTuning)
        {
            STATS_LOG_WARNING("flash measurement op mode set but kind is %d", m_setInputData.flashMeasurementType);
        }
        break;
    default:
        STATS_LOG_ERROR("op mode %d unknown to context", m_setInputData.opMode);
        break;
    }
    ReplaceEvents(Bits(AECOpInit, AECOpFlashCalibration), events);
}

VOID CKIROContextManager::UpdateFlashMeasurementEvents()
{
    UINT64 events = 0;
    if (m_setInputData.flashMeasurementType == AECAlgoFlashMeasKindCalib)
    {
        events = Bit(AECOpFlashCalibration);
    }
    else if (m_setInputData.flashMeasurementType == AECAlgoFlashMeasKindTuning)
    {
        events = Bit(AECOpFlashTuning);
    }
    ReplaceEvents(Bits(AECOpFlashTuning, AECOpFlashCalibration), events);
}

VOID CKIROContextManager::UpdateManualEvents()
{
    UINT64 events = 0;
    switch (m_setInputData.manualSetting.manualMode)
    {
    case AECAlgoModeManualISO:
    case AECAlgoModeManualGain:
        events = Bit(AECManualISO);
        break;
    case AECAlgoModeManualExpTime:
        events = Bit(AECManualTime);
        break;
    case AECAlgoModeManualFull:
        events = Bit(AECManualFull);
        break;
    default:
        break;
    }
    ReplaceEvents(Bits(AECManualISO, AECManualFull), events);
}

VOID CKIROContextManager::UpdateHDREvents()
{
    UINT64 events = 0;
    switch (m_setInputData.HDRType)
    {
    case HDRDisabled:
        events = Bit(AECHDRTypeDisabled);
        break;
    case ISPHDR:
        events = Bit(AECHDRTypeISPHDR);
        break;
    case SensorHDR:
        events = Bit(AECHDRTypeSensorHDR);
        break;
    case StaggeredHDR:
        events = Bit(AECHDRTypeSHDR2);
        break;
    case MultiframeHDR:
        events = Bit(AECHDRTypeMFHDR);
        break;
    default:
        STATS_LOG_WARNING("core context not handling sensor mode %d", m_setInputData.HDRType);
        break;
    }
    // AECHDRTypeMFHDR is outside the cleared range and stays once set: what is tuned for it stays chosen in later types
    // of HDR too, and clearing it would choose anew.
    ReplaceEvents(Bits(AECHDRTypeDisabled, AECHDRTypeSHDR3), events);
}

VOID CKIROContextManager::ReplaceEvents(UINT64 mask, UINT64 events)
{
    m_contextStatus = (m_contextStatus & ~mask) | events;
}
