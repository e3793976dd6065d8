// Whole frames through the function table: what the sensor did comes back as statistics of the next frame.

#include <cmath>

#include "tests/core/framefixture.h"

namespace
{

TEST_F(Frames, WithoutAStartConfigurationTheDefaultTargetStands)
{
    BeginFrame(50.0f);
    Meter();
    EXPECT_EQ(m_result, 1);
    EXPECT_EQ(m_metering.bIsMeteringSkipped, TRUE);
    for (UINT64 exposure : m_metering.exposures)
    {
        EXPECT_EQ(exposure, 10000000u);
    }
    EXPECT_EQ(Converge(), 1);

    RunStartup();
    RunFrame(50.0f);
    EXPECT_EQ(m_metering.bIsMeteringSkipped, FALSE);
    EXPECT_EQ(m_metering.exposures[AECAlgoExposureSafe], StartExposure);
    EXPECT_EQ(m_metering.exposures[AECAlgoExposureShort], StartExposure);
    EXPECT_EQ(m_metering.exposures[AECAlgoExposureLong], StartExposure);
    // Unsettled on the target: one step of a quarter of 3 percent down.
    ExpectSafe(static_cast<DOUBLE>(StartExposure) * std::pow(1.03, -0.25), 0.0001);
}

TEST_F(Frames, GoHalfOfTheWayToTheTarget)
{
    RunStartup();
    RunFrame(25.0f);
    EXPECT_EQ(m_metering.exposures[AECAlgoExposureSafe], 2 * StartExposure);
    ExpectSafe(std::sqrt(2.0) * static_cast<DOUBLE>(StartExposure));
    EXPECT_EQ(m_convergence.convergedShortBlend, 1.0f);

    // Indices to the base 1.03: 77.8985 for a decade.
    EXPECT_NEAR(Trigger(TriggerCtrlPrev), 467.3912f, 1e-3f);
    EXPECT_NEAR(Trigger(TriggerCtrlTarget), 490.8410f, 1e-3f);
    EXPECT_NEAR(Trigger(TriggerCtrlTgtMatchDelta), 23.4498f, 1e-3f);
    EXPECT_NEAR(Trigger(TriggerCtrlTgtPrevDelta), 23.4498f, 1e-3f);
    EXPECT_EQ(Trigger(TriggerCtrlDirection), 1.0f);
    EXPECT_EQ(Trigger(TriggerCtrlSafeTgt), 2.0f * StartExposure);
    EXPECT_EQ(Trigger(TriggerCtrlSafeExp), StartExposure);
    EXPECT_EQ(Trigger(TriggerCtrlFPS), 30.0f);
    EXPECT_EQ(Trigger(TriggerCtrlGain), 1.0f);
    EXPECT_EQ(Trigger(TriggerCtrlExpTime), static_cast<FLOAT>(Safe()));
    EXPECT_EQ(Trigger(100), 1.0f) << "short blend";

    RunFrame(250.0f);
    EXPECT_EQ(Trigger(TriggerCtrlDirection), 0.0f);
    EXPECT_LT(Trigger(TriggerCtrlTgtMatchDelta), 0.0f);
    EXPECT_GT(Trigger(TriggerCtrlTgtPrevDelta), 0.0f);

    // A target of 0 has no index: what was published before stands.
    const FLOAT target = Trigger(TriggerCtrlTarget);
    const FLOAT delta  = Trigger(TriggerCtrlTgtMatchDelta);
    std::fill(std::begin(m_metering.exposures), std::end(m_metering.exposures), UINT64{0});
    (VOID) Converge();
    EXPECT_EQ(Trigger(TriggerCtrlTarget), target);
    EXPECT_EQ(Trigger(TriggerCtrlTgtMatchDelta), delta);
}

TEST_F(Frames, SettleOnTheSceneAndFollowEVAndLock)
{
    constexpr UINT64 right = 4 * StartExposure;
    RunStartup();
    UINT64 last = Safe();
    for (UINT32 frame = 0; frame < 12; ++frame)
    {
        RunScene(right, 1);
        EXPECT_LE(Safe(), right) << "overshoot in frame " << frame;
        if (frame < 4)
        {
            EXPECT_GT(Safe(), last) << frame;
            EXPECT_EQ(m_convergence.bSettle, FALSE);
        }
        last = Safe();
    }
    ExpectSafe(right, 0.07);
    EXPECT_EQ(m_convergence.bSettle, TRUE);

    ASSERT_EQ(Set(AECAlgoSetParamExposureCompensation, 1), 0);
    EXPECT_EQ(m_pAlgo->GetContextEvent(m_pAlgo, AECEV), TRUE);
    RunScene(right, 12);
    ExpectSafe(2 * right, 0.07);
    EXPECT_EQ(m_convergence.evMultiplier, 2.0f);
    ASSERT_EQ(Set(AECAlgoSetParamExposureCompensation, 0), 0);
    RunScene(right, 12);

    ASSERT_EQ(Set(AECAlgoSetParamAECLock, AECAlgoLockOn), 0);
    const UINT64 locked = Safe();
    RunScene(right / 4, 4);
    ExpectSafe(static_cast<DOUBLE>(locked));
    ASSERT_EQ(Set(AECAlgoSetParamAECLock, AECAlgoLockOFF), 0);
    RunScene(right / 4, 12);
    ExpectSafe(right / 4, 0.07);

    m_pAlgo->SetMeteringLock(m_pAlgo, TRUE);
    const UINT64 target = m_metering.exposures[AECAlgoExposureSafe];
    RunFrame(5.0f);
    EXPECT_EQ(m_metering.exposures[AECAlgoExposureSafe], target);
    EXPECT_EQ(m_metering.mtrExposures[AECAlgoExposureSafe], target);
}

TEST_F(Frames, SnapshotsDoNotDisturbThePreview)
{
    RunStartup();
    RunFrame(50.0f);
    const UINT64 preview = Safe();
    BeginFrame(50.0f);
    SetSnapshot(KIROCoreSnapshotType::LLS);
    Meter();
    EXPECT_EQ(Converge(), 0);
    std::fill(std::begin(m_convergence.exposures), std::end(m_convergence.exposures), 8 * StartExposure);
    Split();
    EndFrame();
    SetSnapshot(KIROCoreSnapshotType::None);
    RunFrame(50.0f);
    EXPECT_EQ(m_metering.bIsMeteringSkipped, FALSE);
    EXPECT_EQ(Trigger(TriggerCtrlSafeExp), static_cast<FLOAT>(preview));

    // A start configuration is stored as such whatever the events.
    (VOID) Set(AECAlgoSetParamOperationMode, AECAlgoOperationModeFastAEC);
    SetSnapshot(KIROCoreSnapshotType::LLS);
    RunStartup();
    SetSnapshot(KIROCoreSnapshotType::None);
    RunFrame(50.0f);
    EXPECT_EQ(m_result, 0);
    EXPECT_EQ(Trigger(TriggerCtrlSafeExp), static_cast<FLOAT>(StartExposure));
}

TEST_F(Frames, EventsOfAFrameActAtTheNextStage)
{
    KIROGetBankData query   = {BankIDROITable, 0, nullptr, sizeof(DBROIPayload)};
    const auto      applied = [&]
    {
        EXPECT_EQ(m_pAlgo->getBankData(m_pAlgo, &query), 0);
        return static_cast<const DBROIPayload*>(query.pData)->dataID;
    };
    RunStartup();
    BeginFrame(50.0f);
    EXPECT_EQ(applied(), 1);
    m_pAlgo->SetContextEvent(m_pAlgo, AECTouch, TRUE);
    EXPECT_EQ(applied(), 1);
    Meter();
    EXPECT_EQ(applied(), 2);
    constexpr UINT64 touch = 1ULL << AECTouch;
    EXPECT_EQ(m_pAlgo->GetContextStatus(m_pAlgo) & touch, touch);
    m_pAlgo->SetContextEvent(m_pAlgo, AECTouch, 2);
    EXPECT_EQ(m_pAlgo->GetContextEvent(m_pAlgo, AECTouch), FALSE) << "only 1 sets";
    EXPECT_EQ(m_pAlgo->GetContextStatus(m_pAlgo) & touch, 0u);
    EXPECT_EQ(Converge(), 0);
    EXPECT_EQ(applied(), 1);
    EXPECT_EQ(m_pAlgo->setDynamicBankData(m_pAlgo, DynamicDataOverride, BankIDROITable, 2), 0);
    EXPECT_EQ(applied(), 2) << "at once";
    EXPECT_EQ(m_pAlgo->setDynamicBankData(m_pAlgo, DynamicDataReset, BankIDROITable, 2), 0);
    EXPECT_EQ(applied(), 1);

    m_pStats->bIsTorchAEC = TRUE;
    m_pStats->bIsDepthAEC = TRUE;
    BeginFrame(50.0f);
    for (KIROTunaraEventType event : {AECTorch, AECTorchChange, AECDepth})
    {
        EXPECT_EQ(m_pAlgo->GetContextEvent(m_pAlgo, event), TRUE);
    }
    m_pAlgo->SetContextEvent(m_pAlgo, AECTorchChange, FALSE);
    m_pStats->bIsDepthAEC = FALSE;
    BeginFrame(50.0f);
    EXPECT_EQ(m_pAlgo->GetContextEvent(m_pAlgo, AECTorchChange), FALSE) << "the torch has not changed";
    EXPECT_EQ(m_pAlgo->GetContextEvent(m_pAlgo, AECDepth), FALSE);
    m_pStats->count = 0;
    EXPECT_EQ(m_pAlgo->setStats(m_pAlgo, *m_pStats), 11);
    EXPECT_TRUE(m_log.Has(2, "Did not receive any grid stats!"));
    KIROAnalyzerOutput analyzer{};
    EXPECT_EQ(m_pAlgo->runAnalyzer(m_pAlgo, 7, analyzer), 1);
    EXPECT_EQ(m_pAlgo->isPreflashMeteringNeeded(m_pAlgo, nullptr, 0, nullptr, 0), TRUE) << "no tuning";
}

TEST_F(Frames, AmendedResultsOfAnAnalyzerDecide)
{
    RunStartup();
    BeginFrame(50.0f);
    KIROMeteringInput  input = {TRUE, 0};
    KIROAnalyzerOutput amended{};
    EXPECT_EQ(m_pAlgo->runMeteringPreprocess(m_pAlgo, input, m_metering), 0);
    EXPECT_EQ(m_pAlgo->runAnalyzer(m_pAlgo, 0, amended), 0);
    EXPECT_EQ(amended.sensitivity, StartExposure);
    amended.luma = 12.5f;
    EXPECT_EQ(m_pAlgo->updateAnalyzerMgrOut(m_pAlgo, 0, &amended), 0);
    EXPECT_EQ(m_pAlgo->runMeteringPostprocess(m_pAlgo, input, m_metering), 0);
    EXPECT_EQ(m_metering.exposures[AECAlgoExposureSafe], 4 * StartExposure);
}

TEST_F(Frames, VectorProcessorsRunWithTheFrameAndAtTheHostsCall)
{
    constexpr auto usage = kiroglobalelements::VectorProcessorUsageType::Default;
    RunStartup();
    RunFrame(50.0f);
    RunFrame(30.0f);
    EXPECT_EQ(Trigger(80), 40.0f);
    m_pAlgo->run1DVectorProcess(m_pAlgo, usage, 1);
    EXPECT_FLOAT_EQ(Trigger(80), 110.0f / 3.0f);
    m_pAlgo->reset1DVectorProcessors(m_pAlgo, usage);
    m_pAlgo->run1DVectorProcess(m_pAlgo, usage, 1);
    EXPECT_EQ(Trigger(80), 30.0f);
}

TEST_F(Frames, StretchEntriesAreClearedInValueBanksOnly)
{
    DBStartEndPayload     stretch = {30, {3.0f, 4.0f}, nullptr};
    const KIROSetBankData set     = {BankIDSceneAnalyzer, &stretch, sizeof(stretch)};
    ASSERT_EQ(m_pAlgo->setBankData(m_pAlgo, &set), 0);
    RunStartup();
    RunFrame(50.0f);
    KIROGetBankData query = {BankIDSceneAnalyzer, 30, nullptr, sizeof(stretch)};
    ASSERT_EQ(m_pAlgo->getBankData(m_pAlgo, &query), 0);
    EXPECT_EQ(static_cast<const DBStartEndPayload*>(query.pData)->value.end, 0.0f);
    query = {BankIDConvActiveSCD, 5, nullptr, sizeof(kirodbconvactivescd::DBConvActiveSCDPayload)};
    EXPECT_EQ(m_pAlgo->getBankData(m_pAlgo, &query), 6);
    EXPECT_TRUE(m_log.Has(4, "Issue in setting YHist scale value to DB"));
}

}  // namespace
