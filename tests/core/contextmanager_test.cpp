// What a host's settings become: stored values, and whether the host restarts its frame skipping.

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/extension/ckirocamsync.h"
#include "interface/ckiroctrlcorecommon.h"
#include "schema/kiroev.h"
#include "schema/kirohdrsensor.h"
#include "schema/kiroparamextension.h"
#include "tests/core/contextmanagerfixture.h"

namespace
{

TEST_F(ContextManager, PayloadsThatAreTooSmallChangeNothing)
{
    const std::pair<AECAlgoSetParamType, UINT32> sizes[] = {{AECAlgoSetParamOperationMode, 4},
                                                            {AECAlgoSetParamTunaraData, sizeof(StatsTuningData)},
                                                            {AECAlgoSetParamGyroInfo, sizeof(StatsGyroInfo)},
                                                            {AECAlgoSetParamSetDiagTestConfig, 28},
                                                            {AECAlgoSetParamPipelineDelay, 1},
                                                            {AECAlgoSetParamPeerInfo, sizeof(StatsPeerInfoCombo)}};
    const std::vector<UINT64> ones(sizeof(StatsGyroInfo) / sizeof(UINT64) + 1, 0x0101010101010101ULL);
    for (const auto& [type, size] : sizes)
    {
        m_log.Clear();
        EXPECT_EQ(SetBytes(type, ones.data(), size - 1), 1) << type;
        EXPECT_TRUE(m_log.Has(LevelError, "set param type " + std::to_string(type) + " input size " +
                                              std::to_string(size - 1) + " expected at least " + std::to_string(size)));
    }
    EXPECT_EQ(m_rInput.opMode, AECAlgoOperationModeInit);
    EXPECT_EQ(m_rInput.systemLatency, 4);
    EXPECT_EQ(m_rInput.gyro.sampleCount, 0u);
    // The events move all the same, from what is stored.
    EXPECT_EQ(Status(), Bit(AECOpInit));

    const BOOL disable = TRUE;
    EXPECT_EQ(SetBytes(AECAlgoSetParamDisableADRC, &disable, 0), 0) << "needs no size";
    EXPECT_EQ(m_rInput.bDisableADRC, TRUE);
    EXPECT_EQ(Set(static_cast<AECAlgoSetParamType>(60), disable), 0) << "unknown";
    EXPECT_EQ(SetBytes(AECAlgoSetParamGyroInfo, nullptr, 100000), 0);
    EXPECT_EQ(m_context.SetInput(nullptr), 1);
}

TEST_F(ContextManager, OnlyChangesAskForANewStartOfFrameSkipping)
{
    const BOOL yes = TRUE;
    Set(AECAlgoSetParamOperationMode, AECAlgoOperationModeStreaming);
    EXPECT_EQ(m_context.m_bResetFrameSkip, FALSE);
    UnstabilizedROIInformation faces{};
    faces.roiCount                     = 2;
    const AECAlgoManualSetting manual  = {AECAlgoModeManualISO, 200, 0, 0.0f, 0.0f};
    AECAlgoROI                 touch   = {};
    const AECAlgoROIList       touches = {&touch, 1};
    for (BOOL changed : {TRUE, FALSE})
    {
        EXPECT_EQ(SetResets(AECAlgoSetParamMeteringMode, AECAlgoMeteringModeSpot), changed);
        EXPECT_EQ(SetResets(AECAlgoSetParamExposureCompensation, 3), changed);
        EXPECT_EQ(SetResets(AECAlgoSetParamFlickerCompensation, StatisticsAntibanding50Hz), changed);
        EXPECT_EQ(SetResets(AECAlgoSetParamManualSetting, manual), changed);
        EXPECT_EQ(SetResets(AECAlgoSetParamAECLock, AECAlgoLockOn), changed);
        EXPECT_EQ(SetResets(AECAlgoSetParamFPSRange, AECAlgoFPSRange{30.0f, 15.0f}), changed);
        EXPECT_EQ(SetResets(AECAlgoSetParamTouchROI, touches), changed);
        EXPECT_EQ(SetResets(AECAlgoSetParamCameraInfo, StatsCameraInfo{StatsAlgoRoleSlave, 2}), changed);
        EXPECT_EQ(SetResets(AECAlgoSetParamMultiExpSensorMode, SensorHDR), changed);
        EXPECT_EQ(SetResets(AECAlgoSetParamUnstabilizedFaceROI, faces), changed);
        EXPECT_EQ(SetResets(AECAlgoSetParamTrackerROI, faces), changed);
        EXPECT_EQ(SetResets(AECAlgoSetParamControlPostRawSensitivityBoost, 200), changed);
        EXPECT_EQ(SetResets(AECAlgoSetParamDisableADRC, yes), changed);
        EXPECT_EQ(SetResets(AECAlgoSetParamLEDMode, AECAlgoLEDModeOn), FALSE);
        EXPECT_EQ(SetResets(AECAlgoSetParamCropWindow, StatsRectangle{1, 2, 3, 4}), FALSE);
    }
    EXPECT_EQ(m_rInput.b3HDRMode, TRUE);
    EXPECT_EQ(m_rInput.touchROI.ROIs, &touch) << "the host's list";
}

TEST_F(ContextManager, SomeFieldsAloneAreNoChange)
{
    Set(AECAlgoSetParamManualSetting, AECAlgoManualSetting{AECAlgoModeAuto, 0, 0, 0.0f, 2.8f});
    EXPECT_EQ(m_rInput.manualSetting.FNumber, 0.0f);
    AECAlgoWhiteBalanceState balance   = m_rInput.AWBState;
    balance.faceSAAdjustedROI.bIsValid = TRUE;
    Set(AECAlgoSetParamAWBState, balance);
    EXPECT_EQ(m_rInput.AWBState.faceSAAdjustedROI.bIsValid, FALSE);
    balance.CCT = 3000;
    Set(AECAlgoSetParamAWBState, balance);
    EXPECT_EQ(m_rInput.AWBState.faceSAAdjustedROI.bIsValid, TRUE);
    AECAlgoOverrideSettingParam settings{};
    settings.overrideLuma = 50.0f;
    Set(AECAlgoSetParamOverrideSetting, settings);
    EXPECT_EQ(m_rInput.overrideSetting.overrideLuma, 0.0f);
    settings.disableTouch = TRUE;
    Set(AECAlgoSetParamOverrideSetting, settings);
    EXPECT_EQ(m_rInput.overrideSetting.overrideLuma, 50.0f);
    Set(AECAlgoSetParamFlickerCompensation, StatisticsAntibandingAuto);
    EXPECT_EQ(m_rInput.flickerComp, StatisticsAntibanding60Hz) << "the last definite value";
}

TEST_F(ContextManager, SettingsOfLaterFramesAreKept)
{
    EXPECT_EQ(Set(AECAlgoSetParamDebugDataEnable, TRUE), 0);
    EXPECT_EQ(m_rInput.bIsDebugDataEnabled, TRUE);
    EXPECT_EQ(Set(AECAlgoSetParamFlashMaximumCurrent, 750), 0);
    EXPECT_EQ(m_rInput.maxLEDCurrent, 750);
    EXPECT_EQ(Set(AECAlgoSetParamStartUpExpSensitivity, AECAlgoStartupIndices{.startUpLuxIndex = 250.0f}), 0);
    EXPECT_EQ(m_rInput.startUpExpInfo.startUpLuxIndex, 250.0f);
    const INT32 diagnosis[7] = {};
    EXPECT_EQ(Set(AECAlgoSetParamSetDiagTestConfig, diagnosis), 0);
}

TEST_F(ContextManager, EVValuesAreClampedForTheFactorOnly)
{
    kiroev::KIROEVType tuning{};
    tuning.EVCoreData.stepsPerEV   = 6;
    tuning.EVCoreData.minEVValue   = -2;
    tuning.EVCoreData.maxEVValue   = 2;
    tuning.EVCoreData.bracketingEV = {0.5f, 2.0f};
    for (UINT32 step = 0; step < 49; ++step)
    {
        tuning.EVCoreData.EVCompTable.EVCompTableElements[step] = static_cast<FLOAT>(step);
    }
    SetTuning(TestTuning().Add(tuning));
    EXPECT_EQ(m_rInput.evContext.evFactor, 1.0f);
    for (const auto& [value, factor] : {std::pair<INT32, FLOAT>{20, 24.0f}, {-40, 0.0f}, {5, 17.0f}, {0, 12.0f}})
    {
        EXPECT_EQ(Set(AECAlgoSetParamExposureCompensation, value), 0);
        EXPECT_EQ(m_rInput.evContext.evUIVal, value);
        EXPECT_EQ(m_rInput.evContext.evFactor, factor);
    }
    EXPECT_TRUE(m_log.Has(LevelError, "EV (20) exceed max range (-12, 12)! Limit it to range. Steps:6"));
    EXPECT_EQ(m_log.CountLevel(LevelError), 2u);

    // Stops take the adjustment in full at 2, half of it at 1, nothing of it at 0.
    const std::pair<INT32, FLOAT> factors[] = {{0, 1.0f},      {12, 2.0f},      {60, 2.0f},
                                               {6, 1.681793f}, {-6, 0.353553f}, {-12, 0.0625f}};
    for (const auto& [value, factor] : factors)
    {
        const FLOAT result =
            CKIROCtrlCoreCommon::UtilGetEVMultiplier(m_context.GetTuningData(), value, KIROEVBracketing);
        EXPECT_NEAR(result, factor, 1e-5f) << value;
    }
}

TEST_F(ContextManager, PostRawCounterIsLoadedByChangesAndCountsDown)
{
    Set(AECAlgoSetParamPipelineDelay, static_cast<UINT8>(2));
    Set(AECAlgoSetParamControlPostRawSensitivityBoost, 200);
    for (INT32 counter : {2, 1, 0, 0})
    {
        EXPECT_EQ(m_rInput.postRawCounter, counter);
        Set(AECAlgoSetParamControlPostRawSensitivityBoost, 200);
        m_context.UpdateFrameCounters();
    }
}

TEST_F(ContextManager, SensorTimesComeFromTheLine)
{
    // 2^12 clocks at 2^28 Hz: 2^-16 s a line, 15258.789 ns.
    const StatsSensorInfo info = {4096, 268435456.0, 2048, 1.5f, 16.0f, 1.8f, 4000, 2000, 77};
    EXPECT_EQ(Set(AECAlgoSetParamSensorInfo, info), 0);
    const AECAlgoSensorInfo& rSensor = m_rInput.sensorInfo;
    EXPECT_EQ(rSensor.minimumStreamExpTime, 15258u);
    EXPECT_EQ(rSensor.minimumStillExpTime, 15258u);
    EXPECT_EQ(rSensor.maximumStreamExpTime, 31250000u);
    EXPECT_EQ(rSensor.maximumStillExpTime, 31250000u);
    EXPECT_EQ(rSensor.minimumStillGain, 1.5f);
    EXPECT_EQ(rSensor.maximumStreamGain, 16.0f);
    EXPECT_EQ(rSensor.statsWindowAspectRatio, 2.0f);
    EXPECT_EQ(rSensor.rollingShutterSkew, 77u);
}

TEST_F(ContextManager, RecordsBeyondTheirLimitsAreRefused)
{
    std::vector<FLOAT>          ratios(97, 0.5f);
    AECAlgoFlashCalibrationData data = {96, ratios.data(), ratios.data()};
    EXPECT_EQ(Set(AECAlgoSetParamFlashCalibrationData, data), 0);
    ratios.assign(97, 0.25f);
    data.count = 97;
    EXPECT_EQ(Set(AECAlgoSetParamFlashCalibrationData, data), 1);
    EXPECT_EQ(m_rInput.flashCalibData.count, 96u);
    EXPECT_EQ(m_rInput.flashCalibData.pBGRatios[95], 0.5f) << "copied";
    data.count = 1;
    EXPECT_EQ(Set(AECAlgoSetParamFlashCalibrationData, data), 0);
    EXPECT_EQ(m_rInput.flashCalibData.pRGRatios[0], 0.25f);
    EXPECT_EQ(m_rInput.flashCalibData.pRGRatios[1], 0.0f);

    auto pGyro                                           = std::make_unique<StatsGyroInfo>();
    pGyro->sampleCount                                   = StatsGyroSampleCountMax;
    pGyro->angularVelocityZ[StatsGyroSampleCountMax - 1] = 0.5f;
    EXPECT_EQ(Set(AECAlgoSetParamGyroInfo, *pGyro), 0);
    EXPECT_EQ(m_rInput.gyro.angularVelocityZ[StatsGyroSampleCountMax - 1], 0.5f);
    ++pGyro->sampleCount;
    EXPECT_EQ(Set(AECAlgoSetParamGyroInfo, *pGyro), 1);
    EXPECT_EQ(m_rInput.gyro.sampleCount, StatsGyroSampleCountMax);
    UnstabilizedROIInformation regions{};
    regions.roiCount = UnstabilizedROICountMax + 1;
    EXPECT_EQ(Set(AECAlgoSetParamUnstabilizedFaceROI, regions), 1);
    EXPECT_EQ(Set(AECAlgoSetParamTrackerROI, regions), 1);
    EXPECT_EQ(m_rInput.faceROI.roiCount + m_rInput.trackerROI.roiCount, 0u);
}

TEST_F(ContextManager, HybridHDRFollowsTheTuning)
{
    kirohdrsensor::KIROHDRSensorType tuning{};
    tuning.hybridHDR.enableHybridHDR = TRUE;
    SetTuning(TestTuning().Add(tuning));
    EXPECT_EQ(m_context.GetContextEvent(AECHybridHDR), TRUE);
    EXPECT_EQ(m_context.m_bIsHybridHDR, TRUE);
    SetTuning(TestTuning());
    EXPECT_EQ(m_context.GetContextEvent(AECHybridHDR), FALSE);
}

TEST_F(ContextManager, AChangeOfAnySelectorIsToldOnce)
{
    EXPECT_EQ(m_context.IsTuningModeChange(nullptr), FALSE);
    TuningMode      path[7] = {};
    StatsTuningData data    = {m_stores.back().get(), path, 7};
    path[0].mode            = ModeType::Effect;
    for (UINT32 selector = 0; selector < 7; ++selector)
    {
        EXPECT_EQ(m_context.IsTuningModeChange(&data), (selector != 1) ? TRUE : FALSE) << selector;
        EXPECT_EQ(m_context.IsTuningModeChange(&data), FALSE);
        path[selector].subMode.value = 5;  // not looked at in the first
    }
    EXPECT_EQ(m_context.IsTuningModeChange(&data), TRUE);
    data.numSelectors     = 6;
    path[1].subMode.value = 6;
    EXPECT_EQ(m_context.IsTuningModeChange(&data), FALSE) << "too short to compare";
}

TEST_F(ContextManager, EachExtensionParameterIsFoundByItsName)
{
    using Common = CKIROCtrlCoreCommon;
    kiroparamextension::statsExtensionParamType                                found;
    const std::pair<const CHAR*, decltype(&Common::GetTrackerProcessExtParam)> lookups[] = {
        {"AECExtParamUnstableFaceProcess", &Common::GetUnstableFaceProcessExtParam},
        {"AECExtParamTrackerProcess", &Common::GetTrackerProcessExtParam},
        {"AECExtParamMFHDRFPSControl", &Common::GetMFHDRFPSControlExtParam},
        {"AECExtParamSnapshotExposureControl", &Common::GetSnapshotExposureExtParam}};
    for (const auto& rTuned : lookups)
    {
        FLOAT                                       data  = 5.0f;
        kiroparamextension::statsExtensionParamType entry = {
            const_cast<CHAR*>(rTuned.first), 0, TRUE, 1, 0, &data, 0, 0, nullptr};
        kiroparamextension::KIROParamExtensionType tuning = {.extensionParamCount = 1, .extensionParam = &entry};
        SetTuning(TestTuning().Add(tuning));
        for (const auto& rLookup : lookups)
        {
            EXPECT_EQ(rLookup.second(*m_context.GetTuningData(), found) == 0, &rLookup == &rTuned) << rLookup.first;
        }
        EXPECT_EQ(found.data[0], 5.0f);
    }
}

TEST_F(ContextManager, MasterServesTheMappedSlaveAndSlavesFollowTheMaster)
{
    INT32              infos[4] = {};
    StatsPeerInfoCombo peers    = {TRUE,
                                   {FALSE, TRUE, TRUE, TRUE},
                                   {4, 1, 2, 3},
                                   {StatsAlgoRoleMaster, StatsAlgoRoleSlave, StatsAlgoRoleSlave, StatsAlgoRoleMaster},
                                   {&infos[0], &infos[1], &infos[2], &infos[3]}};
    // The peer of a camera, null for none.
    const auto map = [&](StatsAlgoRole role, UINT32 cameraId)
    {
        VOID*                 pInfo = nullptr;
        const StatsCameraInfo info  = {role, cameraId};
        const BOOL found = CKIROCtrlCoreCommon::MapMultiCamPeerInfo(&peers, info, *m_context.GetTuningData(), pInfo);
        EXPECT_EQ(found == TRUE, pInfo != nullptr);
        return pInfo;
    };
    EXPECT_EQ(map(StatsAlgoRoleMaster, 1), &infos[2]) << "the first active one that is not this camera";
    EXPECT_EQ(map(StatsAlgoRoleSlave, 1), &infos[3]) << "an inactive master is none";
    EXPECT_EQ(map(StatsAlgoRoleDefault, 1), nullptr);

    FLOAT                                       order[] = {1.0f, 4.0f, 3.0f};
    kiroparamextension::statsExtensionParamType entry   = {
          const_cast<CHAR*>("AECMulticamPriorityMap"), 0, TRUE, 3, 0, order, 0, 0, nullptr};
    kiroparamextension::KIROParamExtensionType tuning = {.extensionParamCount = 1, .extensionParam = &entry};
    SetTuning(TestTuning().Add(tuning));
    EXPECT_EQ(map(StatsAlgoRoleMaster, 1), &infos[3]) << "neither this camera nor an inactive one";
    peers.isActive[3] = FALSE;
    EXPECT_EQ(map(StatsAlgoRoleMaster, 1), nullptr);
    EXPECT_TRUE(m_log.Has(LevelWarning, "CID:1, Slave Info is not found"));
    EXPECT_EQ(map(StatsAlgoRoleSlave, 2), nullptr);
    EXPECT_TRUE(m_log.Has(LevelWarning, "CID:2, Master Info is not found"));
    for (const auto& [id, enable] : {std::pair<INT32, BOOL>{0, FALSE}, {1, TRUE}})
    {
        entry.ID         = id;
        entry.enableFlag = enable;
        SetTuning(TestTuning().Add(tuning));
        EXPECT_EQ(map(StatsAlgoRoleMaster, 1), &infos[2]) << "a map that is off, or of another ID";
    }
    EXPECT_EQ(Set(AECAlgoSetParamCameraInfo, StatsCameraInfo{StatsAlgoRoleSlave, 1}), 0) << "without sync tuning";
    EXPECT_EQ(m_context.GetContextEvent(AECSlaveRole), TRUE);
    const AECAlgoDCCalibrationInfo calibration = {.version = 1, .u = {.absolute = {1.0f, 60, 30, 5000}}};
    EXPECT_EQ(Set(AECAlgoSetParamDualcamCalibrationInfo, calibration), 0);
    EXPECT_FLOAT_EQ(m_context.m_pCamSync->getDCCalibrationInfo().OTPExpCompMultiplier, 0.5f);

    // A peer that is not found leaves the one before.
    Set(AECAlgoSetParamCameraInfo, StatsCameraInfo{StatsAlgoRoleMaster, 1});
    EXPECT_EQ(m_context.GetContextEvent(AECSlaveRole), FALSE);
    for (BOOL needSync : {TRUE, FALSE})
    {
        peers.needSync = needSync;
        EXPECT_EQ(Set(AECAlgoSetParamPeerInfo, peers), 0);
        EXPECT_EQ(m_rInput.pPeerInfo, &infos[2]);
    }
    EXPECT_EQ(static_cast<const VOID*>(m_context.m_pCamSync->getPeerInfo()), &infos[2]);
    EXPECT_EQ(map(StatsAlgoRoleMaster, 1), nullptr);
}

}  // namespace
