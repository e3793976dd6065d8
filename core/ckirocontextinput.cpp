// The settings that a host gives through setInput: one function per parameter type.

#include "core/ckirocontextmanager.h"

#include <algorithm>
#include <cstring>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"
#include "core/extension/cficmanager.h"
#include "core/extension/ckirocamsync.h"
#include "interface/ckiroctrlcorecommon.h"

namespace
{

constexpr UINT32 SetParamNameLast = AECAlgoSetParamMax;

/// Names of AECAlgoSetParamType, in order.
const CHAR* const g_pAECSetParamStringArray[SetParamNameLast + 1] = {
    "AECAlgoSetParamExpTableRange",
    "AECAlgoSetParamOperationMode",
    "AECAlgoSetParamTunaraData",
    "AECAlgoSetParamMeteringMode",
    "AECAlgoSetParamExposureCompensation",
    "AECAlgoSetParamFlickerCompensation",
    "AECAlgoSetParamManualSetting",
    "AECAlgoSetParamAECLock",
    "AECAlgoSetParamFPSRange",
    "AECAlgoSetParamLEDMode",
    "AECAlgoSetParamTouchROI",
    "AECAlgoSetParamFaceROI",
    "AECAlgoSetParamAWBState",
    "AECAlgoSetParamGyroInfo",
    "AECAlgoSetParamOverrideSetting",
    "AECAlgoSetParamFlashMeasurement",
    "AECAlgoSetParamFlashCalibrationData",
    "AECAlgoSetParamDebugDataEnable",
    "AECAlgoSetParamSensorInfo",
    "AECAlgoSetParamCameraInfo",
    "AECAlgoSetParamFlashMaximumCurrent",
    "AECAlgoSetParamSetDiagTestConfig",
    "AECAlgoSetParamStartUpExpSensitivity",
    "AECAlgoSetParamStatsCapability",
    "AECAlgoSetParamCropWindow",
    "AECAlgoSetParamPipelineDelay",
    "AECAlgoSetParamPeerInfo",
    "AECAlgoSetParamDualcamCalibrationInfo",
    "AECAlgoSetParamMultiExpSensorMode",
    "AECAlgoSetParamIsDualCamera",
    "AECAlgoSetParamUnstabilizedFaceROI",
    "AECAlgoSetParamControlPostRawSensitivityBoost",
    "AECAlgoSetParamCustomExposureTable",
    "AECAlgoSetParamCustomMeteringTable",
    "AECAlgoSetParamDisableADRC",
    "AECAlgoSetParamConvergenceSpeed",
    "AECAlgoSetParamFlashInlineCalibrationData",
    "AECAlgoSetParamIsFlashInfluencedStats",
    "AECAlgoSetParamFlashInlineCalibrationMode",
    "AECAlgoSetParamTrackerROI",
    "AECAlgoSetParamframeID",
    "AECAlgoSetParamApertureCalibrationInfo",
    "AECAlgoSetParamAmbientRaw",
    "AECAlgoSetParamSaliencyMapData",
    "AECAlgoSetParamZLLData",
    "AECAlgoSetParamMagnetometerInfo",
    "AECAlgoSetParamLightInfo",
    "AECAlgoSetParamAFDFrameInfo",
    "AECAlgoSetParamBPSCamera",
    "AECAlgoSetParamDCGMode",
    "AECAlgoSetParamCount",
    "AECAlgoSetParamMax",
};

constexpr UINT32 DiagTestConfigSize = 28;

const CHAR* SetParamName(AECAlgoSetParamType type)
{
    return g_pAECSetParamStringArray[std::min(static_cast<UINT32>(type), SetParamNameLast)];
}

template <typename T> const T& As(const VOID* pParam)
{
    return *static_cast<const T*>(pParam);
}

/// Refuses, with a log, a count beyond what the record holds.
bool IsCountRefused(const CHAR* pName, UINT32 count, UINT32 maximum)
{
    if (count > maximum)
    {
        STATS_LOG_ERROR("%s - %d entries refused, at most %d", pName, count, maximum);
        return true;
    }
    return false;
}

const CHAR* TrueOrFalse(BOOL value)
{
    return (value == TRUE) ? "TRUE" : "FALSE";
}

}  // namespace

struct CKIROContextManager::ParamHandler
{
    AECAlgoSetParamType type;
    UINT32              leastSize;
    KiroResult (CKIROContextManager::*pSet)(const VOID* pParam, const CHAR* pName);
};

const CKIROContextManager::ParamHandler* CKIROContextManager::FindHandler(AECAlgoSetParamType type)
{
    using Self                               = CKIROContextManager;
    static constexpr ParamHandler handlers[] = {
        {AECAlgoSetParamOperationMode, sizeof(UINT32), &Self::SetOperationMode},
        {AECAlgoSetParamTunaraData, sizeof(StatsTuningData), &Self::SetTunaraData},
        {AECAlgoSetParamMeteringMode, sizeof(UINT32), &Self::SetMeteringMode},
        {AECAlgoSetParamExposureCompensation, sizeof(INT32), &Self::SetExposureCompensation},
        {AECAlgoSetParamFlickerCompensation, sizeof(UINT32), &Self::SetFlickerCompensation},
        {AECAlgoSetParamManualSetting, sizeof(AECAlgoManualSetting), &Self::SetManualSetting},
        {AECAlgoSetParamAECLock, sizeof(UINT32), &Self::SetAECLock},
        {AECAlgoSetParamFPSRange, sizeof(AECAlgoFPSRange), &Self::SetFPSRange},
        {AECAlgoSetParamLEDMode, sizeof(UINT32), &Self::SetLEDMode},
        {AECAlgoSetParamTouchROI, sizeof(AECAlgoROIList), &Self::SetTouchROI},
        {AECAlgoSetParamAWBState, sizeof(AECAlgoWhiteBalanceState), &Self::SetAWBState},
        {AECAlgoSetParamGyroInfo, sizeof(StatsGyroInfo), &Self::SetGyroInfo},
        {AECAlgoSetParamOverrideSetting, sizeof(AECAlgoOverrideSettingParam), &Self::SetOverrideSetting},
        {AECAlgoSetParamFlashMeasurement, sizeof(UINT32), &Self::SetFlashMeasurement},
        {AECAlgoSetParamFlashCalibrationData, sizeof(AECAlgoFlashCalibrationData), &Self::SetFlashCalibrationData},
        {AECAlgoSetParamDebugDataEnable, sizeof(UINT32), &Self::SetDebugDataEnable},
        {AECAlgoSetParamSensorInfo, sizeof(StatsSensorInfo), &Self::SetSensorInfo},
        {AECAlgoSetParamCameraInfo, sizeof(StatsCameraInfo), &Self::SetCameraInfo},
        {AECAlgoSetParamFlashMaximumCurrent, sizeof(INT32), &Self::SetFlashMaximumCurrent},
        {AECAlgoSetParamSetDiagTestConfig, DiagTestConfigSize, &Self::CheckSizeOnly},
        {AECAlgoSetParamStartUpExpSensitivity, sizeof(AECAlgoStartupIndices), &Self::SetStartUpExpSensitivity},
        {AECAlgoSetParamCropWindow, sizeof(StatsRectangle), &Self::SetCropWindow},
        {AECAlgoSetParamPipelineDelay, sizeof(UINT8), &Self::SetPipelineDelay},
        {AECAlgoSetParamPeerInfo, sizeof(StatsPeerInfoCombo), &Self::SetPeerInfo},
        {AECAlgoSetParamDualcamCalibrationInfo, sizeof(AECAlgoDCCalibrationInfo), &Self::SetDualcamCalibrationInfo},
        {AECAlgoSetParamMultiExpSensorMode, sizeof(UINT32), &Self::SetMultiExpSensorMode},
        {AECAlgoSetParamUnstabilizedFaceROI, sizeof(UnstabilizedROIInformation), &Self::SetUnstabilizedFaceROI},
        {AECAlgoSetParamControlPostRawSensitivityBoost, sizeof(INT32), &Self::SetPostRawSensitivityBoost},
        {AECAlgoSetParamDisableADRC, 0, &Self::SetDisableADRC},
        {AECAlgoSetParamFlashInlineCalibrationData, 0, &Self::SetFlashInlineCalibrationData},
        {AECAlgoSetParamIsFlashInfluencedStats, sizeof(UINT32), &Self::SetIsFlashInfluencedStats},
        {AECAlgoSetParamFlashInlineCalibrationMode, sizeof(UINT32), &Self::SetFlashInlineCalibrationMode},
        {AECAlgoSetParamTrackerROI, sizeof(UnstabilizedROIInformation), &Self::SetTrackerROI},
        {AECAlgoSetParamSaliencyMapData, sizeof(AECAlgoSaliencyInfo), &Self::SetSaliencyMapData},
        {AECAlgoSetParamLightInfo, sizeof(StatsLightInfo), &Self::SetLightInfo},
    };
    const auto* pFound = std::find_if(std::begin(handlers), std::end(handlers),
                                      [type](const ParamHandler& rHandler) { return rHandler.type == type; });
    return (pFound == std::end(handlers)) ? nullptr : pFound;
}

KiroResult CKIROContextManager::SetPEKInput(const AECAlgoSetParam* pParam)
{
    m_bResetFrameSkip = FALSE;
    if (pParam == nullptr)
    {
        return 1;
    }
    const ParamHandler* pHandler = FindHandler(pParam->setParamType);
    if (pHandler == nullptr)
    {
        return 0;
    }
    if (pParam->sizeOfAECSetParam < pHandler->leastSize)
    {
        STATS_LOG_ERROR("set param type %d input size %d expected at least %d", pParam->setParamType,
                        pParam->sizeOfAECSetParam, pHandler->leastSize);
        return 1;
    }
    if (pParam->pAECSetParam == nullptr)
    {
        return 0;
    }
    return (this->*pHandler->pSet)(pParam->pAECSetParam, SetParamName(pParam->setParamType));
}

KiroResult CKIROContextManager::SetOperationMode(const VOID* pParam, const CHAR* pName)
{
    // An invalid mode leaves the mode as it is and does not fail the call.
    (VOID) SetAlgoOpMode(static_cast<AECAlgoOperationModeType>(As<INT32>(pParam)));
    STATS_LOG_TRACE("%s - %d", pName, m_setInputData.opMode);
    return 0;
}

KiroResult CKIROContextManager::SetTunaraData(const VOID* pParam, const CHAR*)
{
    StatsTuningData tuningData = As<StatsTuningData>(pParam);
    return SetTunara(tuningData);
}

KiroResult CKIROContextManager::SetMeteringMode(const VOID* pParam, const CHAR* pName)
{
    const auto mode = As<AECAlgoMeteringModeType>(pParam);
    if (m_setInputData.mtrMode != mode)
    {
        m_setInputData.mtrMode = mode;
        m_bResetFrameSkip      = TRUE;
        STATS_LOG_TRACE("%s - %d", pName, mode);
    }
    return 0;
}

KiroResult CKIROContextManager::SetExposureCompensation(const VOID* pParam, const CHAR*)
{
    const INT32 value = As<INT32>(pParam);
    if (m_setInputData.evContext.evUIVal == value)
    {
        return 0;
    }
    m_bResetFrameSkip = TRUE;
    return SetEVVal(value);
}

KiroResult CKIROContextManager::SetFlickerCompensation(const VOID* pParam, const CHAR* pName)
{
    const auto mode = As<StatisticsAntibanding>(pParam);
    if (mode != StatisticsAntibandingAuto && mode != m_setInputData.flickerComp)
    {
        m_setInputData.flickerComp = mode;
        m_bResetFrameSkip          = TRUE;
        STATS_LOG_TRACE("%s - %d", pName, mode);
    }
    return 0;
}

KiroResult CKIROContextManager::SetManualSetting(const VOID* pParam, const CHAR* pName)
{
    const auto&           rNew = As<AECAlgoManualSetting>(pParam);
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

KiroResult CKIROContextManager::SetAECLock(const VOID* pParam, const CHAR* pName)
{
    const auto lockType = As<AECAlgoLockType>(pParam);
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

KiroResult CKIROContextManager::SetFPSRange(const VOID* pParam, const CHAR* pName)
{
    const auto&      rNew = As<AECAlgoFPSRange>(pParam);
    AECAlgoFPSRange& rOld = m_setInputData.FPSRange;
    if (rNew.minimumFPS != rOld.minimumFPS || rNew.maximumFPS != rOld.maximumFPS)
    {
        rOld              = rNew;
        m_bResetFrameSkip = TRUE;
        STATS_LOG_TRACE("%s - Min %.3f Max %.3f", pName, rNew.minimumFPS, rNew.maximumFPS);
    }
    return 0;
}

KiroResult CKIROContextManager::SetLEDMode(const VOID* pParam, const CHAR* pName)
{
    const auto mode = As<AECAlgoLEDModeType>(pParam);
    if (m_setInputData.LEDMode != mode)
    {
        m_setInputData.LEDMode = mode;
        STATS_LOG_TRACE("%s - %d", pName, mode);
    }
    return 0;
}

KiroResult CKIROContextManager::SetTouchROI(const VOID* pParam, const CHAR* pName)
{
    const auto& rNew        = As<AECAlgoROIList>(pParam);
    m_bResetFrameSkip       = (rNew.ROICount != m_setInputData.touchROI.ROICount) ? TRUE : FALSE;
    m_setInputData.touchROI = rNew;
    STATS_LOG_TRACE("%s - %d", pName, rNew.ROICount);
    return 0;
}

KiroResult CKIROContextManager::SetAWBState(const VOID* pParam, const CHAR* pName)
{
    const auto&               rNew = As<AECAlgoWhiteBalanceState>(pParam);
    AECAlgoWhiteBalanceState& rOld = m_setInputData.AWBState;
    if (rNew.isAuto != rOld.isAuto || rNew.redGain != rOld.redGain || rNew.greenGain != rOld.greenGain ||
        rNew.blueGain != rOld.blueGain || rNew.CCT != rOld.CCT)
    {
        rOld = rNew;
        STATS_LOG_TRACE("%s - Auto:%d RGB CCT(%f %f %f %d)", pName, rNew.isAuto, rNew.redGain, rNew.greenGain,
                        rNew.blueGain, rNew.CCT);
    }
    return 0;
}

KiroResult CKIROContextManager::SetGyroInfo(const VOID* pParam, const CHAR* pName)
{
    if (IsCountRefused(pName, As<StatsGyroInfo>(pParam).sampleCount, StatsGyroSampleCountMax))
    {
        return 1;
    }
    m_setInputData.gyro = As<StatsGyroInfo>(pParam);
    STATS_LOG_TRACE("%s - %d", pName, m_setInputData.gyro.sampleCount);
    return 0;
}

KiroResult CKIROContextManager::SetOverrideSetting(const VOID* pParam, const CHAR* pName)
{
    const auto&                  rNew = As<AECAlgoOverrideSettingParam>(pParam);
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

KiroResult CKIROContextManager::SetFlashMeasurement(const VOID* pParam, const CHAR* pName)
{
    m_setInputData.flashMeasurementType = As<AECAlgoFlashMeasKindType>(pParam);
    STATS_LOG_TRACE("%s - %d", pName, m_setInputData.flashMeasurementType);
    return 0;
}

KiroResult CKIROContextManager::SetFlashCalibrationData(const VOID* pParam, const CHAR* pName)
{
    const auto& rNew = As<AECAlgoFlashCalibrationData>(pParam);
    if (rNew.count > AECAlgoFlashCalibrationCountMax ||
        (rNew.count > 0 && (rNew.pRGRatios == nullptr || rNew.pBGRatios == nullptr)))
    {
        STATS_LOG_ERROR("%s - %d entries refused, at most %d with both ratios", pName, rNew.count,
                        AECAlgoFlashCalibrationCountMax);
        return 1;
    }
    std::fill(std::begin(m_calRGRatios), std::end(m_calRGRatios), 0.0f);
    std::fill(std::begin(m_calBGRatios), std::end(m_calBGRatios), 0.0f);
    m_setInputData.flashCalibData = {rNew.count, m_calRGRatios, m_calBGRatios};
    std::copy_n(rNew.pRGRatios, rNew.count, m_calRGRatios);
    std::copy_n(rNew.pBGRatios, rNew.count, m_calBGRatios);
    STATS_LOG_TRACE("%s - %d", pName, rNew.count);
    return 0;
}

KiroResult CKIROContextManager::SetDebugDataEnable(const VOID* pParam, const CHAR* pName)
{
    m_setInputData.bIsDebugDataEnabled = As<BOOL>(pParam);
    STATS_LOG_TRACE("%s - %d", pName, m_setInputData.bIsDebugDataEnabled);
    return 0;
}

KiroResult CKIROContextManager::SetSensorInfo(const VOID* pParam, const CHAR* pName)
{
    constexpr DOUBLE   nsPerSecond = 1e9;
    const auto&        rNew        = As<StatsSensorInfo>(pParam);
    AECAlgoSensorInfo& rInfo       = m_setInputData.sensorInfo;

    const DOUBLE lineTime = static_cast<DOUBLE>(rNew.pixelClockPerLine) / rNew.pixelClock;  // seconds
    const UINT64 minTime  = exposurearithmetic::SaturateToUINT64(lineTime * nsPerSecond);
    const UINT64 maxTime =
        exposurearithmetic::SaturateToUINT64(static_cast<DOUBLE>(rNew.currentMaxLineCount) * lineTime * nsPerSecond);

    rInfo.minimumStreamExpTime   = minTime;
    rInfo.minimumStillExpTime    = minTime;
    rInfo.maximumStreamExpTime   = maxTime;
    rInfo.maximumStillExpTime    = maxTime;
    rInfo.minimumStreamGain      = rNew.minGain;
    rInfo.minimumStillGain       = rNew.minGain;
    rInfo.maximumStreamGain      = rNew.maxGain;
    rInfo.maximumStillGain       = rNew.maxGain;
    rInfo.fNumber                = rNew.fNumber;
    rInfo.sensorResWidth         = rNew.sensorResWidth;
    rInfo.sensorResHeight        = rNew.sensorResHeight;
    rInfo.rollingShutterSkew     = rNew.rollingShutterSkew;
    rInfo.statsWindowAspectRatio = static_cast<FLOAT>(rNew.sensorResWidth) / static_cast<FLOAT>(rNew.sensorResHeight);
    STATS_LOG_TRACE("%s - ET:%llu to %llu Gain:%f to %f", pName, minTime, maxTime, rNew.minGain, rNew.maxGain);
    return 0;
}

KiroResult CKIROContextManager::SetCameraInfo(const VOID* pParam, const CHAR* pName)
{
    const auto& rNew          = As<StatsCameraInfo>(pParam);
    m_bResetFrameSkip         = (rNew.algoRole != m_setInputData.cameraInfo.algoRole) ? TRUE : FALSE;
    m_setInputData.cameraInfo = rNew;
    STATS_LOG_TRACE("%s - Role:%d CamID:%d", pName, rNew.algoRole, rNew.cameraId);
    // A role without tuning is a setting all the same.
    (VOID) m_pCamSync->SetStatsCameraInfo(&m_setInputData.cameraInfo);
    return 0;
}

KiroResult CKIROContextManager::SetFlashMaximumCurrent(const VOID* pParam, const CHAR* pName)
{
    SetMaxFlashCurrent(As<INT32>(pParam));
    STATS_LOG_TRACE("%s - %d", pName, m_setInputData.maxLEDCurrent);
    return 0;
}

KiroResult CKIROContextManager::CheckSizeOnly(const VOID*, const CHAR*)
{
    return 0;
}

KiroResult CKIROContextManager::SetStartUpExpSensitivity(const VOID* pParam, const CHAR* pName)
{
    m_setInputData.startUpExpInfo = As<AECAlgoStartupIndices>(pParam);
    STATS_LOG_TRACE("%s - %d", pName, m_setInputData.startUpExpInfo.startMode);
    return 0;
}

KiroResult CKIROContextManager::SetCropWindow(const VOID* pParam, const CHAR* pName)
{
    const auto&     rNew = As<StatsRectangle>(pParam);
    StatsRectangle& rOld = m_setInputData.cropWindow;
    if (rNew.left != rOld.left || rNew.top != rOld.top || rNew.width != rOld.width || rNew.height != rOld.height)
    {
        rOld = rNew;
        STATS_LOG_TRACE("%s - left:%d top:%d width:%d height:%d", pName, rNew.left, rNew.top, rNew.width, rNew.height);
    }
    return 0;
}

KiroResult CKIROContextManager::SetPipelineDelay(const VOID* pParam, const CHAR* pName)
{
    m_setInputData.systemLatency = As<UINT8>(pParam);
    STATS_LOG_TRACE("%s - %d", pName, m_setInputData.systemLatency);
    return 0;
}

KiroResult CKIROContextManager::SetPeerInfo(const VOID* pParam, const CHAR*)
{
    const auto& rPeers = As<StatsPeerInfoCombo>(pParam);
    STATS_LOG_TRACE("AEC need sync: %d", rPeers.needSync);
    for (UINT32 index = 0; index < StatsPeerCountMax; ++index)
    {
        STATS_LOG_TRACE("PeerPipeline:%d CamID:%d Active:%d Role:%d PeerInfo:%p", index, rPeers.cameraId[index],
                        rPeers.isActive[index], rPeers.algoRole[index], rPeers.peerInfo[index]);
    }
    VOID* pPeerInfo = nullptr;
    if (CKIROCtrlCoreCommon::MapMultiCamPeerInfo(&rPeers, m_setInputData.cameraInfo, m_tuningData, pPeerInfo) == TRUE)
    {
        m_setInputData.pPeerInfo = pPeerInfo;
        m_pCamSync->setPeerInfo(pPeerInfo);
    }
    return 0;
}

KiroResult CKIROContextManager::SetDualcamCalibrationInfo(const VOID* pParam, const CHAR* pName)
{
    m_setInputData.DCCalibrationInfo = As<AECAlgoDCCalibrationInfo>(pParam);
    STATS_LOG_TRACE("%s - %d", pName, m_setInputData.DCCalibrationInfo.version);
    (VOID) m_pCamSync->UpdateDCCalibrationInfo(&m_setInputData.DCCalibrationInfo);
    return 0;
}

KiroResult CKIROContextManager::SetMultiExpSensorMode(const VOID* pParam, const CHAR* pName)
{
    const auto type = As<AECAlgoHDRType>(pParam);
    if (m_setInputData.HDRType != type)
    {
        m_setInputData.HDRType   = type;
        m_setInputData.b3HDRMode = (type == SensorHDR) ? TRUE : FALSE;
        m_bResetFrameSkip        = TRUE;
        STATS_LOG_TRACE("%s - %d", pName, type);
    }
    return 0;
}

KiroResult CKIROContextManager::SetUnstabilizedFaceROI(const VOID* pParam, const CHAR* pName)
{
    const auto& rNew = As<UnstabilizedROIInformation>(pParam);
    if (IsCountRefused(pName, rNew.roiCount, UnstabilizedROICountMax))
    {
        return 1;
    }
    m_bResetFrameSkip      = (rNew.roiCount != m_setInputData.faceROI.roiCount) ? TRUE : FALSE;
    m_setInputData.faceROI = rNew;
    STATS_LOG_TRACE("%s - %d", pName, rNew.roiCount);
    return 0;
}

KiroResult CKIROContextManager::SetPostRawSensitivityBoost(const VOID* pParam, const CHAR* pName)
{
    const INT32 gain = As<INT32>(pParam);
    if (m_setInputData.postRawGain != gain)
    {
        m_setInputData.postRawGain    = gain;
        m_setInputData.postRawCounter = m_setInputData.systemLatency;
        m_bResetFrameSkip             = TRUE;
        STATS_LOG_TRACE("%s - %d", pName, gain);
    }
    return 0;
}

KiroResult CKIROContextManager::SetDisableADRC(const VOID* pParam, const CHAR* pName)
{
    const BOOL value = As<BOOL>(pParam);
    if (m_setInputData.bDisableADRC != value)
    {
        m_setInputData.bDisableADRC = value;
        m_bResetFrameSkip           = TRUE;
        STATS_LOG_TRACE("%s - %d", pName, value);
    }
    return 0;
}

KiroResult CKIROContextManager::SetIsFlashInfluencedStats(const VOID* pParam, const CHAR*)
{
    m_setInputData.bIsFullFlash = As<BOOL>(pParam);
    STATS_LOG_TRACE("AECCoreInline: Is full flash influenced stats : %s", TrueOrFalse(m_setInputData.bIsFullFlash));
    return 0;
}

KiroResult CKIROContextManager::SetFlashInlineCalibrationMode(const VOID* pParam, const CHAR*)
{
    m_setInputData.bIsFICMode = As<BOOL>(pParam);
    STATS_LOG_TRACE("AECCoreInline: Is flash inline calibration mode : %s", TrueOrFalse(m_setInputData.bIsFICMode));
    if (m_pFICManager != nullptr)
    {
        (VOID) m_pFICManager->SetFICMode();
    }
    return 0;
}

/// The blob of an earlier session.
KiroResult CKIROContextManager::SetFlashInlineCalibrationData(const VOID* pParam, const CHAR*)
{
    if (m_pFICManager != nullptr)
    {
        (VOID) m_pFICManager->SetFICData(pParam);
    }
    return 0;
}

KiroResult CKIROContextManager::SetTrackerROI(const VOID* pParam, const CHAR* pName)
{
    const auto& rNew = As<UnstabilizedROIInformation>(pParam);
    if (IsCountRefused(pName, rNew.roiCount, UnstabilizedROICountMax))
    {
        return 1;
    }
    m_bResetFrameSkip         = (rNew.roiCount != m_setInputData.trackerROI.roiCount) ? TRUE : FALSE;
    m_setInputData.trackerROI = rNew;
    STATS_LOG_TRACE("%s - %d", pName, rNew.roiCount);
    return 0;
}

KiroResult CKIROContextManager::SetSaliencyMapData(const VOID* pParam, const CHAR* pName)
{
    const auto& rNew                    = As<AECAlgoSaliencyInfo>(pParam);
    m_setInputData.bIsSaliencyInfoValid = (rNew.mapWidth != 0 && rNew.mapHeight != 0) ? TRUE : FALSE;
    STATS_LOG_TRACE("%s - %d", pName, m_setInputData.bIsSaliencyInfoValid);
    return 0;
}

KiroResult CKIROContextManager::SetLightInfo(const VOID* pParam, const CHAR*)
{
    m_setInputData.lightInfo = As<StatsLightInfo>(pParam);
    STATS_LOG_TRACE("External sensor light info: %s, lux %f",
                    (m_setInputData.lightInfo.enabled == TRUE) ? "enabled" : "disabled", m_setInputData.lightInfo.lux);
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
