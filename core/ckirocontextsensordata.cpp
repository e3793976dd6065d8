// What the host knows: of sensor, flash and frame, and of the other cameras.

#include <algorithm>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/ckirocontextmanager.h"
#include "core/extension/cficmanager.h"
#include "core/extension/ckirocamsync.h"
#include "interface/ckiroctrlcorecommon.h"

namespace
{

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

}  // namespace

KiroResult CKIROContextManager::SetAWBState(const AECAlgoWhiteBalanceState& rNew, const CHAR* pName)
{
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

KiroResult CKIROContextManager::SetGyroInfo(const StatsGyroInfo& rNew, const CHAR* pName)
{
    if (IsCountRefused(pName, rNew.sampleCount, StatsGyroSampleCountMax))
    {
        return 1;
    }
    m_setInputData.gyro = rNew;
    STATS_LOG_TRACE("%s - %d", pName, m_setInputData.gyro.sampleCount);
    return 0;
}

KiroResult CKIROContextManager::SetFlashCalibrationData(const AECAlgoFlashCalibrationData& rNew, const CHAR* pName)
{
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

/// The blob of an earlier session.
KiroResult CKIROContextManager::SetFlashInlineCalibrationData(const KIROFICBlobHead& rNew, const CHAR*)
{
    if (m_pFICManager != nullptr)
    {
        (VOID) m_pFICManager->SetFICData(&rNew);
    }
    return 0;
}

KiroResult CKIROContextManager::SetSensorInfo(const StatsSensorInfo& rNew, const CHAR* pName)
{
    constexpr DOUBLE   nsPerSecond = 1e9;
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

KiroResult CKIROContextManager::SetCameraInfo(const StatsCameraInfo& rNew, const CHAR* pName)
{
    m_bResetFrameSkip         = (rNew.algoRole != m_setInputData.cameraInfo.algoRole) ? TRUE : FALSE;
    m_setInputData.cameraInfo = rNew;
    STATS_LOG_TRACE("%s - Role:%d CamID:%d", pName, rNew.algoRole, rNew.cameraId);
    // A role without tuning is a setting all the same.
    (VOID) m_pCamSync->SetStatsCameraInfo(&m_setInputData.cameraInfo);
    return 0;
}

KiroResult CKIROContextManager::SetPipelineDelay(const UINT8& rNew, const CHAR* pName)
{
    m_setInputData.systemLatency = rNew;
    STATS_LOG_TRACE("%s - %d", pName, m_setInputData.systemLatency);
    return 0;
}

KiroResult CKIROContextManager::SetPeerInfo(const StatsPeerInfoCombo& rNew, const CHAR*)
{
    STATS_LOG_TRACE("AEC need sync: %d", rNew.needSync);
    for (UINT32 index = 0; index < StatsPeerCountMax; ++index)
    {
        STATS_LOG_TRACE("PeerPipeline:%d CamID:%d Active:%d Role:%d PeerInfo:%p", index, rNew.cameraId[index],
                        rNew.isActive[index], rNew.algoRole[index], rNew.peerInfo[index]);
    }
    VOID* pPeerInfo = nullptr;
    if (CKIROCtrlCoreCommon::MapMultiCamPeerInfo(&rNew, m_setInputData.cameraInfo, m_tuningData, pPeerInfo) == TRUE)
    {
        m_setInputData.pPeerInfo = pPeerInfo;
        m_pCamSync->setPeerInfo(pPeerInfo);
    }
    return 0;
}

KiroResult CKIROContextManager::SetDualcamCalibrationInfo(const AECAlgoDCCalibrationInfo& rNew, const CHAR* pName)
{
    m_setInputData.DCCalibrationInfo = rNew;
    STATS_LOG_TRACE("%s - %d", pName, m_setInputData.DCCalibrationInfo.version);
    (VOID) m_pCamSync->UpdateDCCalibrationInfo(&m_setInputData.DCCalibrationInfo);
    return 0;
}

KiroResult CKIROContextManager::SetUnstabilizedFaceROI(const UnstabilizedROIInformation& rNew, const CHAR* pName)
{
    if (IsCountRefused(pName, rNew.roiCount, UnstabilizedROICountMax))
    {
        return 1;
    }
    m_bResetFrameSkip      = (rNew.roiCount != m_setInputData.faceROI.roiCount) ? TRUE : FALSE;
    m_setInputData.faceROI = rNew;
    STATS_LOG_TRACE("%s - %d", pName, rNew.roiCount);
    return 0;
}

KiroResult CKIROContextManager::SetTrackerROI(const UnstabilizedROIInformation& rNew, const CHAR* pName)
{
    if (IsCountRefused(pName, rNew.roiCount, UnstabilizedROICountMax))
    {
        return 1;
    }
    m_bResetFrameSkip         = (rNew.roiCount != m_setInputData.trackerROI.roiCount) ? TRUE : FALSE;
    m_setInputData.trackerROI = rNew;
    STATS_LOG_TRACE("%s - %d", pName, rNew.roiCount);
    return 0;
}

KiroResult CKIROContextManager::SetSaliencyMapData(const AECAlgoSaliencyInfo& rNew, const CHAR* pName)
{
    m_setInputData.bIsSaliencyInfoValid = (rNew.mapWidth != 0 && rNew.mapHeight != 0) ? TRUE : FALSE;
    STATS_LOG_TRACE("%s - %d", pName, m_setInputData.bIsSaliencyInfoValid);
    return 0;
}

KiroResult CKIROContextManager::SetLightInfo(const StatsLightInfo& rNew, const CHAR*)
{
    m_setInputData.lightInfo = rNew;
    STATS_LOG_TRACE("External sensor light info: %s, lux %f",
                    (m_setInputData.lightInfo.enabled == TRUE) ? "enabled" : "disabled", m_setInputData.lightInfo.lux);
    return 0;
}
