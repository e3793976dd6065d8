#include "core/extension/ckirocamsync.h"

#include <algorithm>

#include "core/base/kirolog.h"
#include "core/base/soundvalue.h"
#include "core/base/tuningaccess.h"
#include "core/ikirocontextmanager.h"
#include "interface/kiroresults.h"

using namespace kirosync;

CKIROCamsync::CKIROCamsync(IKIROContextManager& rContManager)
    : m_rContManager(rContManager), m_meteringType(AECAlgoMeteringIndependent),
      m_exposureType(AECAlgoExposureIndependent), m_myOwnInfo{}, m_pMyOwnInfo(&m_myOwnInfo), m_otpInfo{},
      m_pPeerInfo(nullptr), m_cameraInfo{}, m_interpolator(KIROMLBaseDataType)
{
}

const KIROSyncType* CKIROCamsync::GetTuning() const
{
    return tuningaccess::Get_kirosync(*m_rContManager.GetTuningData());
}

KiroResult CKIROCamsync::SetStatsCameraInfo(StatsCameraInfo* pCamInfo)
{
    if (pCamInfo == nullptr)
    {
        STATS_LOG_ERROR("invalid input argument. pCamInfo %p", static_cast<VOID*>(pCamInfo));
        return ResultInvalidArgument;
    }
    KiroResult result = 0;
    if (pCamInfo->algoRole != m_cameraInfo.algoRole)
    {
        result = MapTuningToMtrExpConfig(pCamInfo->algoRole);
        STATS_LOG_TRACE("CID: %d, Role changed to %d, from %d", pCamInfo->cameraId, pCamInfo->algoRole,
                        m_cameraInfo.algoRole);
    }
    m_cameraInfo = *pCamInfo;
    m_rContManager.SetContextEvent(AECSlaveRole, (m_cameraInfo.algoRole == StatsAlgoRoleSlave) ? TRUE : FALSE);
    return result;
}

KiroResult CKIROCamsync::MapTuningToMtrExpConfig(StatsAlgoRole role)
{
    const KIROSyncType* pTuning = GetTuning();
    if (pTuning == nullptr)
    {
        return ResultFailed;
    }
    MtrExpType config{AECAlgoMeteringIndependent, AECAlgoExposureIndependent};
    if (role == StatsAlgoRoleMaster)
    {
        config = pTuning->masterAndSlaveConfig.master;
    }
    else if (role == StatsAlgoRoleSlave)
    {
        config = pTuning->masterAndSlaveConfig.slave;
    }
    m_meteringType = config.meteirngType;
    m_exposureType = config.exposureType;
    STATS_LOG_TRACE("Metering type set to %d, and exposure type set to %d", m_meteringType, m_exposureType);
    return 0;
}

KiroResult CKIROCamsync::UpdateDCCalibrationInfo(const AECAlgoDCCalibrationInfo* pInfo)
{
    if (m_otpInfo.OTPStatus == AECAlgoDualcamOTPSet)
    {
        STATS_LOG_TRACE("OTP data already set, skip update");
        return 0;
    }
    if (pInfo == nullptr)
    {
        STATS_LOG_ERROR("invalid input argument. pInfo %p", static_cast<const VOID*>(pInfo));
        return 0;
    }
    const bool isAbsolute = pInfo->version != 0;
    if (isAbsolute ? SetAbsoluteCalibration(*pInfo) : SetRelativeCalibration(*pInfo))
    {
        m_otpInfo.bAbsoluteOTPFormat = isAbsolute ? TRUE : FALSE;
        m_otpInfo.OTPStatus          = AECAlgoDualcamOTPSet;
    }
    return 0;
}

bool CKIROCamsync::SetAbsoluteCalibration(const AECAlgoDCCalibrationInfo& rInfo)
{
    const auto& rData = rInfo.u.absolute;
    if (!(rData.averageLuma > 0 && rData.exposureTime > 0 && rData.gain > 0.0f))
    {
        STATS_LOG_ERROR("Incorrect absolute OTP data");
        return false;
    }
    m_otpInfo.OTPExpCompMultiplier =
        rData.gain * static_cast<FLOAT>(rData.exposureTime) / static_cast<FLOAT>(rData.averageLuma);
    STATS_LOG_TRACE("CID:%d, AEC-OTP (absolute) Version:%d, AvgLuma:%d, Gain:%f, ET:%d, CCT:%d, Factor:%f",
                    m_cameraInfo.cameraId, rInfo.version, rData.averageLuma, rData.gain, rData.exposureTime, rData.CCT,
                    m_otpInfo.OTPExpCompMultiplier);
    return true;
}

bool CKIROCamsync::SetRelativeCalibration(const AECAlgoDCCalibrationInfo& rInfo)
{
    const auto& rData = rInfo.u.relative;
    if (!(rData.brightnessRatio > 0.0f && rData.slaveGain > 0.0f && rData.slaveExposureTime > 0.0f &&
          rData.masterGain > 0.0f && rData.masterExposureTime > 0.0f))
    {
        STATS_LOG_ERROR("Incorrect relative OTP data");
        return false;
    }
    m_otpInfo.OTPExpCompMultiplier = (rData.slaveGain * rData.slaveExposureTime) /
                                     (rData.masterGain * rData.masterExposureTime * rData.brightnessRatio);
    STATS_LOG_TRACE("CID:%d, AEC-OTP (relative) Version:%d, BrigtRatio:%f, Slave, G:%f ET:%f,Master, G:%f ET:%f, "
                    "CCT:%d, Factor:%f",
                    m_cameraInfo.cameraId, rInfo.version, rData.brightnessRatio, rData.slaveGain,
                    rData.slaveExposureTime, rData.masterGain, rData.masterExposureTime, rData.CCT,
                    m_otpInfo.OTPExpCompMultiplier);
    return true;
}

FLOAT CKIROCamsync::GetGlobalCompensationFactor(FLOAT lux, const Tuning& rTuning)
{
    const GlobalExpCompType& rConfig = rTuning.expSyncConfig.globalExpComp;
    if (rConfig.enable != TRUE)
    {
        return 1.0f;
    }
    if (rConfig.useTuning != TRUE && m_otpInfo.OTPStatus == AECAlgoDualcamOTPSet)
    {
        return m_otpInfo.OTPExpCompMultiplier;
    }
    return Interpolate(rConfig.trigger1Data, rConfig.trigger1DataCount, lux);
}

FLOAT CKIROCamsync::GetCCTCompensationFactor(INT32 CCT, const Tuning& rTuning)
{
    const CCTBasedExpCompType& rConfig = rTuning.expSyncConfig.cctBasedExpComp;
    if (rConfig.enable != TRUE)
    {
        return 1.0f;
    }
    return Interpolate(rConfig.cctCompTrigger, rConfig.cctCompTriggerCount, static_cast<FLOAT>(CCT));
}

FLOAT CKIROCamsync::Interpolate(Zone* pZones, UINT32 zoneCount, FLOAT trigger)
{
    constexpr INT32   levels = 1;
    AECTriggerXMLData tree{pZones, {levels, sizeof(FLOAT)}, static_cast<INT32>(zoneCount)};
    m_interpolator.SetData(&tree, KIROMLBaseDataType);
    return *static_cast<const FLOAT*>(m_interpolator.GetData(trigger, 0.0f, 0.0f));
}

FLOAT CKIROCamsync::GetOwnLuxIndex() const
{
    return m_rContManager.m_pBankManager->GetDataTriggers(TriggerCtrlLux)->value;
}

FLOAT CKIROCamsync::UtilGetLuxIndex(const Tuning& rTuning) const
{
    if (rTuning.luxSyncConfig == UseMaster)
    {
        if (m_pPeerInfo != nullptr)
        {
            return m_pPeerInfo->meteringInfo.luxIndex;
        }
        STATS_LOG_WARNING("Cannot get lux index form peer; peer is null. Use its own lux index.");
    }
    return GetOwnLuxIndex();
}

VOID CKIROCamsync::PopulateMultiCamInfo(const KIROMeteringOutput& rMtrOut, const KIROConvergenceOutput& rConvOut,
                                        const KIROArbitrationOutput* pArbOuts)
{
    const KIROSyncType* pTuning = GetTuning();
    if (pTuning == nullptr)
    {
        return;
    }
    if (pArbOuts == nullptr)
    {
        STATS_LOG_ERROR("invalid input argument. pArbOuts %p", static_cast<const VOID*>(pArbOuts));
        return;
    }
    m_myOwnInfo.bSettle               = rConvOut.bSettle;
    m_myOwnInfo.bBrightnessSettle     = rConvOut.bBrightnessSettle;
    m_myOwnInfo.statsFrameId          = m_rContManager.m_pHistory->GetCurrentFrameID();
    m_myOwnInfo.cameraID              = m_cameraInfo.cameraId;
    m_myOwnInfo.algoRole              = m_cameraInfo.algoRole;
    m_myOwnInfo.CCT                   = static_cast<INT32>(m_rContManager.GetInput()->AWBState.CCT);
    m_myOwnInfo.meteringInfo.luxIndex = GetOwnLuxIndex();
    std::copy(std::begin(rMtrOut.exposures), std::end(rMtrOut.exposures), m_myOwnInfo.meteringInfo.targetExposure);

    const FLOAT         expComp = GetGlobalCompensationFactor(m_myOwnInfo.meteringInfo.luxIndex, *pTuning);
    const FLOAT         cctComp = GetCCTCompensationFactor(m_myOwnInfo.CCT, *pTuning);
    AECMultiCamExpInfo& rExp    = m_myOwnInfo.exposureInfo;
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        rExp.exposureTime[type] = pArbOuts[type].exposureSet.time;
        rExp.origExp[type]      = static_cast<FLOAT>(pArbOuts[type].exposureSet.exposure);
        // A factor of 0, as from an empty table, divides nothing.
        rExp.normExp[type] = soundvalue::OrLast(rExp.origExp[type] / expComp, rExp.normExp[type], 0.0f, "normExp");
        rExp.normExp_wCCT[type] =
            soundvalue::OrLast(rExp.normExp[type] / cctComp, rExp.normExp_wCCT[type], 0.0f, "normExp_wCCT");
    }
    STATS_LOG_TRACE("camID:%d, role:%d, exposure:[%f,%f,%f], expComp:%f, ccp:%f", m_myOwnInfo.cameraID,
                    m_myOwnInfo.algoRole, rExp.origExp[0], rExp.origExp[1], rExp.origExp[2], expComp, cctComp);
}
