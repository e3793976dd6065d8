// The events that a host's settings raise.

#include <utility>

#include "tests/core/contextmanagerfixture.h"

namespace
{

TEST_F(ContextManager, OperationModesReplaceOneAnother)
{
    const std::pair<AECAlgoOperationModeType, KIROTunaraEventType> modes[] = {
        {AECAlgoOperationModeStreaming, AECOpStreaming},
        {AECAlgoOperationModePreflash, AECOpPreflash},
        {AECAlgoOperationModeFastAEC, AECOpFastAEC},
        {AECAlgoOperationModeAggressiveAEC, AECOpAggressiveAEC},
        {AECAlgoOperationModeFlashMeasurement, AECOpFlashTuning},
        {AECAlgoOperationModeInit, AECOpInit}};
    for (const auto& [mode, event] : modes)
    {
        EXPECT_EQ(StatusAfter(AECAlgoSetParamOperationMode, mode), Bit(event));
    }
    EXPECT_TRUE(m_log.Has(LevelWarning, "flash measurement op mode set but kind is 0"));
    EXPECT_EQ(Set(AECAlgoSetParamOperationMode, 9), 0) << "the failure is dropped";
    EXPECT_TRUE(m_log.Has(LevelError, "Error: Invalid Mode 9 \n"));
    EXPECT_EQ(m_rInput.opMode, AECAlgoOperationModeInit);

    EXPECT_EQ(StatusAfter(AECAlgoSetParamFlashMeasurement, AECAlgoFlashMeasKindCalib),
              Bit(AECOpInit) | Bit(AECOpFlashCalibration));
    EXPECT_EQ(StatusAfter(AECAlgoSetParamOperationMode, AECAlgoOperationModeFlashMeasurement),
              Bit(AECOpFlashCalibration));
    EXPECT_EQ(StatusAfter(AECAlgoSetParamFlashMeasurement, AECAlgoFlashMeasKindTuning), Bit(AECOpFlashTuning));
    EXPECT_EQ(StatusAfter(AECAlgoSetParamFlashMeasurement, AECAlgoFlashMeasKindOff), 0u);
}

TEST_F(ContextManager, EventsFollowTheSettings)
{
    // A lock is refused outside streaming; the event follows the stored value, an unlock clears another bit.
    m_context.SetContextEvent(AECLock, TRUE);
    EXPECT_EQ(StatusAfter(AECAlgoSetParamAECLock, AECAlgoLockOn), 0u);
    EXPECT_EQ(m_rInput.lockType, AECAlgoLockOFF);
    EXPECT_TRUE(m_log.Has(LevelWarning, "Warning: Cannot Lock AEC during OpMode 0"));
    const UINT64 streaming = Bit(AECOpStreaming);
    EXPECT_EQ(StatusAfter(AECAlgoSetParamOperationMode, AECAlgoOperationModeStreaming), streaming);
    EXPECT_EQ(StatusAfter(AECAlgoSetParamAECLock, AECAlgoLockOn), streaming | Bit(AECManualISO));
    EXPECT_EQ(StatusAfter(AECAlgoSetParamAECLock, AECAlgoLockOFF), streaming | Bit(AECManualISO));

    const std::pair<AECAlgoModeType, UINT64> manuals[] = {{AECAlgoModeManualFull, Bit(AECManualFull)},
                                                          {AECAlgoModeManualGain, Bit(AECManualISO)},
                                                          {AECAlgoModeManualExpTime, Bit(AECManualTime)},
                                                          {AECAlgoModeManualAperture, 0}};
    for (const auto& [mode, events] : manuals)
    {
        const AECAlgoManualSetting manual{mode, 0, 0, 0.0f, 0.0f};
        EXPECT_EQ(StatusAfter(AECAlgoSetParamManualSetting, manual), streaming | events) << mode;
    }

    EXPECT_EQ(StatusAfter(AECAlgoSetParamMultiExpSensorMode, ISPHDR), streaming | Bit(AECHDRTypeISPHDR));
    EXPECT_EQ(StatusAfter(AECAlgoSetParamMultiExpSensorMode, StaggeredHDR), streaming | Bit(AECHDRTypeSHDR2));
    EXPECT_EQ(StatusAfter(AECAlgoSetParamMultiExpSensorMode, MultiframeHDR), streaming | Bit(AECHDRTypeMFHDR));
    m_context.SetContextEvent(AECHDRTypeSHDR3, TRUE);
    EXPECT_EQ(StatusAfter(AECAlgoSetParamMultiExpSensorMode, HDRDisabled),
              streaming | Bit(AECHDRTypeDisabled) | Bit(AECHDRTypeMFHDR))
        << "stays once set";
    m_context.SetContextEvent(AECHDRTypeMFHDR, 2);
    EXPECT_EQ(StatusAfter(AECAlgoSetParamMultiExpSensorMode, 7), streaming);
    EXPECT_TRUE(m_log.Has(LevelWarning, "core context not handling sensor mode 7"));

    Set(AECAlgoSetParamTouchROI, AECAlgoROIList{nullptr, 2});
    Set(AECAlgoSetParamExposureCompensation, -1);
    EXPECT_EQ(StatusAfter(AECAlgoSetParamSaliencyMapData, AECAlgoSaliencyInfo{1, 8, 8}),
              streaming | Bit(AECTouch) | Bit(AECEV) | Bit(AECSaliency));
    Set(AECAlgoSetParamTouchROI, AECAlgoROIList{nullptr, 0});
    Set(AECAlgoSetParamExposureCompensation, 0);
    EXPECT_EQ(StatusAfter(AECAlgoSetParamSaliencyMapData, AECAlgoSaliencyInfo{1, 8, 0}), streaming);
}

TEST_F(ContextManager, SnapshotsRaiseOneEventAndMarkTheFrame)
{
    AECFrameHistory start = {.isStartConfig = TRUE};
    AECFrameHistory frame = {.frameID = 5};
    ASSERT_EQ(m_context.m_pHistory->SaveFrameToHistory(&start), 0);
    ASSERT_EQ(m_context.m_pHistory->SaveCurrentFrameID(5), 0);
    EXPECT_EQ(StatusAfterSnapshot(KIROCoreSnapshotType::Normal), Bit(AECCoreSnapshotNormal));
    EXPECT_EQ(StatusAfterSnapshot(KIROCoreSnapshotType::AdvancedSnapshot), Bit(AECCoreSnapshotAdvanced));
    ASSERT_EQ(m_context.m_pHistory->SaveFrameToHistory(&frame), 0);
    EXPECT_EQ(frame.bIsSnapshot, TRUE);

    EXPECT_EQ(StatusAfterSnapshot(KIROCoreSnapshotType::SnapshotMax), 0u);
    EXPECT_TRUE(m_log.Has(LevelError, "snapshotMode 65535 unknown to context"));
    EXPECT_NE(StatusAfterSnapshot(KIROCoreSnapshotType::Flash), 0u);
    EXPECT_EQ(StatusAfterSnapshot(KIROCoreSnapshotType::None), 0u);
}

}  // namespace
