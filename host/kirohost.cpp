#include "host/kirohost.h"

#include <stdexcept>

#include "interface/ckiroctrlcorecommon.h"
#include "schema/kirodbactiveanalyzers.h"
#include "schema/kirodbsceneanalyzer.h"
#include "schema/kirodbstatscalculator.h"

namespace
{

IKIROCoreAlgo* CreateOrThrow(const KiroCoreLibrary& rLibrary, StatsTuningData tuning, IKIRODebugData& rDebugData,
                             StatsLogger logger)
{
    IKIROCoreAlgo* pAlgo = rLibrary.Create(tuning, rDebugData, logger);
    if (pAlgo == nullptr)
    {
        throw std::runtime_error("the exposure core could not be created");
    }
    return pAlgo;
}

}  // namespace

KiroHost::KiroHost(const KiroCoreLibrary& rLibrary, const KiroHostConfig& rConfig, StatsLogger logger)
    : m_config(rConfig), m_pAlgo(CreateOrThrow(rLibrary, rConfig.tuning, m_debugData, logger)),
      m_settings{StatisticsAntibanding60Hz, rConfig.FPSRange, {}, HDRDisabled, StatsAlgoRoleDefault, {}}, m_touchROI{},
      m_touchRegion{}, m_externalData(m_pAlgo),
      m_walk(m_pAlgo, rConfig.sensorRange, rConfig.indexZeroExposure), m_frame{}, m_start{}, m_framesRun(0),
      m_statisticsAge(rConfig.systemLatency), m_opMode(AECAlgoOperationModeInit), m_isLightSensed(false),
      m_hasPreviousMode(false), m_evSteps(0), m_isMetered(true), m_unmeteredFrames(0), m_extensionInput{},
      m_snapshot(KIROCoreSnapshotType::Normal)
{
    m_extensionInput.pConvergenceOuts = &m_frame.convergence;
    m_extensionInput.pArbitrationOuts = m_frame.arbitration;
    SetOperationMode(AECAlgoOperationModeFastAEC);
    SetHDRType(HDRDisabled);
    (VOID) SetParam(AECAlgoSetParamPipelineDelay, m_config.systemLatency);
    SetFPSRange(m_config.FPSRange);
    if (m_config.lightLux.has_value())
    {
        SetLightSensor(*m_config.lightLux);
    }
    RunStartup(m_config.startSources);
}

KiroHost::~KiroHost()
{
    m_pAlgo->DestroyInstance(m_pAlgo);
}

/// The start configuration: what the sensor does until the first decision reaches it.
VOID KiroHost::RunStartup(const std::vector<KIROAlgoStartExpType>& rSources)
{
    KiroStartRequest request{};
    request.sources = rSources;
    std::copy(std::begin(m_frame.convergence.exposures), std::end(m_frame.convergence.exposures),
              request.warmExposures);
    std::copy(std::begin(m_frame.metering.exposures), std::end(m_frame.metering.exposures), request.warmTargets);
    request.evFactor      = CKIROCtrlCoreCommon::UtilGetEVMultiplier(&m_config.tuning, m_evSteps, KIROEVPreview);
    request.fixedExposure = m_config.startExposure;

    m_start = KiroAskStartExposure(m_pAlgo, request);
    m_frame = {};
    KiroApplyStartExposure(m_start, m_frame.metering, m_frame.convergence);
    if (m_start.luxIndex.has_value())
    {
        // The first frame's filter goes on from where the last session was.
        SetTrigger(TriggerCtrlLux, *m_start.luxIndex);
    }
    m_walk.SplitExposures(m_settings, m_frame.convergence.exposures, m_frame.arbitration);
    RunStartFrame();
}

VOID KiroHost::RunStartFrame()
{
    KIROFrameInfo           info = {0, TRUE};
    KIROPostProcessingInput unused{};
    (VOID) m_pAlgo->runEndOfFrame(m_pAlgo, info, unused, m_frame.metering, m_frame.convergence, m_frame.arbitration);
}

VOID KiroHost::StartMode(AECAlgoOperationModeType mode, const KiroHostFrame& rStart)
{
    m_frame = rStart;
    SetOperationMode(mode);
    RunStartFrame();
    m_unmeteredFrames = m_config.systemLatency;
}

VOID KiroHost::ApplySnapshot()
{
    if (!m_nextSnapshot.has_value())
    {
        return;
    }
    m_snapshot = *m_nextSnapshot;
    m_nextSnapshot.reset();
    KIROSetInput input{};
    input.source         = KIROCoreSnapshot;
    input.u.snapshotMode = m_snapshot;
    (VOID) m_pAlgo->setInput(m_pAlgo, &input);
}

bool KiroHost::TakeIsMetered()
{
    const bool isKnown = m_unmeteredFrames == 0;
    m_unmeteredFrames -= isKnown ? 0 : 1;
    return isKnown && m_isMetered;
}

VOID KiroHost::BeginSession(AECAlgoOperationModeType mode, const std::vector<KIROAlgoStartExpType>& rSources)
{
    SetOperationMode(mode);
    m_framesRun = 0;
    RunStartup(rSources);
}

KiroStartSituation KiroHost::StartSituation(AECAlgoOperationModeType mode) const
{
    return {mode == AECAlgoOperationModePreflash, m_settings.algoRole == StatsAlgoRoleSlave, m_hasPreviousMode,
            m_isLightSensed};
}

/// From the second frame on until the first decision has reached the sensor, the statistics still show the start
/// exposure, but the core takes the oldest decision that it knows for theirs: they are delivered, but not metered.
StatisticsStartUp KiroHost::CountFrame()
{
    ++m_framesRun;
    const bool isUnknown = m_framesRun > 1 && m_framesRun <= m_config.systemLatency;
    return isUnknown ? StatisticsStartUpInvalid : StatisticsStartUpValid;
}

const KiroHostFrame& KiroHost::RunFrame(UINT64 frameID, KIROStatsList& rStats)
{
    const StatisticsStartUp startup = CountFrame();
    rStats.startup                  = StatisticsStartUpValid;
    m_hasPreviousMode               = true;
    if (m_framesRun == m_config.systemLatency + 1U && m_opMode == AECAlgoOperationModeFastAEC)
    {
        SetOperationMode(AECAlgoOperationModeStreaming);
    }
    (VOID) m_pAlgo->runStartOfFrame(m_pAlgo, frameID);
    ApplySnapshot();
    const bool isStatsValid = m_pAlgo->setStats(m_pAlgo, rStats) == 0;
    const bool isMetered    = TakeIsMetered() && startup == StatisticsStartUpValid;
    RunMetering(isStatsValid && isMetered);
    (VOID) m_pAlgo->mixMetering(m_pAlgo, m_frame.metering);
    RunConvergence(frameID);
    m_walk.SplitExposures(m_settings, m_frame.convergence.exposures, m_frame.arbitration);
    RunExtension(startup);

    KIROFrameInfo           info = {frameID, FALSE};
    KIROPostProcessingInput unused{};
    (VOID) m_pAlgo->runEndOfFrame(m_pAlgo, info, unused, m_frame.metering, m_frame.convergence, m_frame.arbitration);
    return m_frame;
}

KiroHostFrame KiroHost::RunSnapshotFrame(UINT64 frameID, KIROStatsList& rStats, KIROCoreSnapshotType type,
                                         bool isMetered, const std::function<VOID(KiroHostFrame&)>& choose)
{
    const KiroHostFrame preview = m_frame;
    rStats.startup              = StatisticsStartUpValid;
    (VOID) m_pAlgo->runStartOfFrame(m_pAlgo, frameID);
    // Between frames it would mark the preview frame before it as a snapshot.
    SetSnapshot(type);
    ApplySnapshot();
    if (m_pAlgo->setStats(m_pAlgo, rStats) == 0 && isMetered)
    {
        RunMetering(true);
    }
    choose(m_frame);
    m_walk.SplitExposures(m_settings, m_frame.convergence.exposures, m_frame.arbitration);

    KIROFrameInfo           info = {frameID, FALSE};
    KIROPostProcessingInput unused{};
    (VOID) m_pAlgo->runEndOfFrame(m_pAlgo, info, unused, m_frame.metering, m_frame.convergence, m_frame.arbitration);
    SetSnapshot(KIROCoreSnapshotType::None);
    ApplySnapshot();

    const KiroHostFrame snapshot = m_frame;
    m_frame                      = preview;
    return snapshot;
}

VOID KiroHost::RunMetering(bool isStatsValid)
{
    KIROMeteringInput input = {isStatsValid ? TRUE : FALSE, MinAntibandingExposure()};
    (VOID) m_pAlgo->runMeteringPreprocess(m_pAlgo, input, m_frame.metering);

    m_frame.analyzersRun  = 0;
    KIROGetBankData query = {BankIDActiveAnalyzers, 0, nullptr,
                             sizeof(kirodbactiveanalyzers::DBActiveAnalyzersPayload)};
    if (m_frame.metering.bIsMeteringSkipped == FALSE && m_pAlgo->getBankData(m_pAlgo, &query) == 0 &&
        query.pData != nullptr)
    {
        const auto* pActive = static_cast<const kirodbactiveanalyzers::DBActiveAnalyzersPayload*>(query.pData);
        for (UINT32 index = 0; index < pActive->analyzerIDCount; ++index)
        {
            KIROAnalyzerOutput output{};
            m_frame.analyzersRun += (m_pAlgo->runAnalyzer(m_pAlgo, pActive->analyzerID[index], output) == 0) ? 1 : 0;
        }
    }
    (VOID) m_pAlgo->runMeteringPostprocess(m_pAlgo, input, m_frame.metering);
    m_frame.luxIndex = Trigger(TriggerCtrlLux);
    m_frame.luma     = Trigger(TriggerCtrlLuma);
}

VOID KiroHost::RunConvergence(UINT64 frameID)
{
    KIROArbitratedLimits limits = m_walk.ComputeLimits(m_settings, m_frame.metering.exposures);
    KIROConvergenceInput input{};
    input.frameID            = frameID;
    input.pRange             = &limits;
    input.luxIndex           = m_frame.luxIndex;
    input.bIsMeteringSkipped = m_frame.metering.bIsMeteringSkipped;
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        input.sensitivities[type] = m_frame.metering.exposures[type];
    }

    // When convergence cannot run, the last frame's exposures stand.
    const KIROConvergenceOutput last   = m_frame.convergence;
    m_frame.convergence.bIfConvProcRun = FALSE;
    if (m_pAlgo->RunConvProcess(m_pAlgo, input, m_frame.convergence) != 0)
    {
        m_frame.convergence = last;
    }
    (VOID) m_pAlgo->followMasterConvExposure(m_pAlgo, m_frame.convergence);
    m_pAlgo->HandleExposureConstraints(m_pAlgo, m_frame.convergence);
    m_pAlgo->RunConvSettle(m_pAlgo, m_frame.convergence);
    m_pAlgo->RunConvPostProcess(m_pAlgo, m_frame.convergence);
}

VOID KiroHost::RunExtension(StatisticsStartUp startup)
{
    m_extensionInput.statisticsStartup = startup;
    m_frame.extension                  = {};
    (VOID) m_pAlgo->runExtension(m_pAlgo, m_extensionInput, m_frame.extension);
}

/// The smallest exposure at which banding does not show: one period of the lamp at the lowest gain.
UINT64 KiroHost::MinAntibandingExposure() const
{
    // What the flash lights has no bands.
    if (m_snapshot == KIROCoreSnapshotType::Flash || m_snapshot == KIROCoreSnapshotType::PrecisionFlash)
    {
        return 0;
    }
    switch (m_settings.flickerComp)
    {
    case StatisticsAntibanding50Hz:
        return static_cast<UINT64>(static_cast<FLOAT>(FlickerPeriod50Hz) * m_config.sensorRange.minGain);
    case StatisticsAntibanding60Hz:
        return static_cast<UINT64>(static_cast<FLOAT>(FlickerPeriod60Hz) * m_config.sensorRange.minGain);
    default:
        return 0;
    }
}

FLOAT KiroHost::Trigger(KIROTriggerType id)
{
    KIROGetBankData query = {BankIDTriggers, id, nullptr, sizeof(kirodbstatscalculator::DBFloatPayload)};
    return (m_pAlgo->getBankData(m_pAlgo, &query) == 0)
               ? static_cast<const kirodbstatscalculator::DBFloatPayload*>(query.pData)->value
               : 0.0f;
}

VOID KiroHost::SetTrigger(KIROTriggerType id, FLOAT value)
{
    kirodbstatscalculator::DBFloatPayload payload = {id, value, nullptr};
    const KIROSetBankData                 trigger = {BankIDTriggers, &payload, sizeof(payload)};
    (VOID) m_pAlgo->setBankData(m_pAlgo, &trigger);
}

FLOAT KiroHost::AnalyzerValue(INT32 dataID)
{
    KIROGetBankData query = {BankIDSceneAnalyzer, dataID, nullptr, sizeof(kirodbsceneanalyzer::DBStartEndPayload)};
    return (m_pAlgo->getBankData(m_pAlgo, &query) == 0 && query.pData != nullptr)
               ? static_cast<const kirodbsceneanalyzer::DBStartEndPayload*>(query.pData)->value.start
               : 0.0f;
}

VOID KiroHost::SetPrecisionFlash(const KIROPrecisionFlashInfo* pInfo)
{
    m_settings.precisionFlash = (pInfo != nullptr) ? std::optional<KIROPrecisionFlashInfo>(*pInfo) : std::nullopt;
}

VOID KiroHost::SetPipelineDelay(UINT8 frames)
{
    m_config.systemLatency = frames;
    SetStatisticsAge(frames);
}

/// The core goes by one number for both: the frame in its history that the statistics belong to.
VOID KiroHost::SetStatisticsAge(UINT8 frames)
{
    if (frames != m_statisticsAge)
    {
        m_statisticsAge = frames;
        (VOID) SetParam(AECAlgoSetParamPipelineDelay, frames);
    }
}

VOID KiroHost::SetCameraInfo(const StatsCameraInfo& rInfo)
{
    m_settings.algoRole = rInfo.algoRole;
    (VOID) SetParam(AECAlgoSetParamCameraInfo, rInfo);
}

VOID KiroHost::SetCalibration(const AECAlgoDCCalibrationInfo& rCalibration)
{
    (VOID) SetParam(AECAlgoSetParamDualcamCalibrationInfo, rCalibration);
}

VOID KiroHost::SetLightSensor(FLOAT lux)
{
    m_isLightSensed = true;
    (VOID) SetParam(AECAlgoSetParamLightInfo, StatsLightInfo{TRUE, lux});
}

VOID KiroHost::SetCCT(UINT32 CCT)
{
    AECAlgoWhiteBalanceState state{};
    state.isAuto    = TRUE;
    state.redGain   = 1.0f;
    state.greenGain = 1.0f;
    state.blueGain  = 1.0f;
    state.CCT       = CCT;
    (VOID) SetParam(AECAlgoSetParamAWBState, state);
}

VOID KiroHost::SetOperationMode(AECAlgoOperationModeType mode)
{
    m_opMode = mode;
    (VOID) SetParam(AECAlgoSetParamOperationMode, mode);
}

VOID KiroHost::SetFlickerCompensation(StatisticsAntibanding mode)
{
    m_settings.flickerComp = mode;
    (VOID) SetParam(AECAlgoSetParamFlickerCompensation, mode);
}

VOID KiroHost::SetExposureCompensation(INT32 evSteps)
{
    m_evSteps = evSteps;
    (VOID) SetParam(AECAlgoSetParamExposureCompensation, evSteps);
}

VOID KiroHost::SetLock(bool isLocked)
{
    (VOID) SetParam(AECAlgoSetParamAECLock, isLocked ? AECAlgoLockOn : AECAlgoLockOFF);
}

VOID KiroHost::SetFPSRange(const AECAlgoFPSRange& rRange)
{
    m_settings.FPSRange = rRange;
    (VOID) SetParam(AECAlgoSetParamFPSRange, rRange);
}

VOID KiroHost::SetManual(const AECAlgoManualSetting& rManual)
{
    m_settings.manualSetting = rManual;
    (VOID) SetParam(AECAlgoSetParamManualSetting, rManual);
}

VOID KiroHost::SetTouch(const AECAlgoROI* pROI)
{
    if (pROI != nullptr)
    {
        m_touchROI                   = *pROI;
        m_touchRegion                = {TouchROIDataID, nullptr, {pROI->x, pROI->y, pROI->dx, pROI->dy}, pROI->weight};
        const KIROSetBankData region = {BankIDROITable, &m_touchRegion, sizeof(m_touchRegion)};
        (VOID) m_pAlgo->setBankData(m_pAlgo, &region);
    }
    const AECAlgoROIList list = {&m_touchROI, (pROI != nullptr) ? 1U : 0U};
    (VOID) SetParam(AECAlgoSetParamTouchROI, list);
}

VOID KiroHost::SetHDRType(AECAlgoHDRType type)
{
    m_settings.HDRType = type;
    (VOID) SetParam(AECAlgoSetParamMultiExpSensorMode, type);
}

VOID KiroHost::SetLEDMode(AECAlgoLEDModeType mode)
{
    (VOID) SetParam(AECAlgoSetParamLEDMode, mode);
}

VOID KiroHost::SetSnapshot(KIROCoreSnapshotType type)
{
    m_nextSnapshot = type;
}

VOID KiroHost::SetTuning(const StatsTuningData& rTuning)
{
    m_config.tuning = rTuning;
    (VOID) SetParam(AECAlgoSetParamTunaraData, rTuning);
}
