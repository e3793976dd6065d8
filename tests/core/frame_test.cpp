// Whole frames through the function table: what the sensor did comes back as statistics of the next frame.

#include <cmath>

#include "tests/core/framefixture.h"

namespace
{

TEST_F(Frames, GoHalfOfTheWayToTheTarget)
{
    RunStartup();
    RunFrame(25.0f);
    EXPECT_EQ(m_metering.exposures[AECAlgoExposureSafe], 2 * StartExposure);
    EXPECT_NEAR(static_cast<DOUBLE>(Safe()), std::sqrt(2.0) * StartExposure, 100.0);
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

TEST_F(Frames, AMeteringLockHoldsTheTarget)
{
    RunStartup();
    RunFrame(25.0f);
    m_pAlgo->SetMeteringLock(m_pAlgo, TRUE);
    RunFrame(5.0f);
    EXPECT_EQ(m_metering.exposures[AECAlgoExposureSafe], 2 * StartExposure);
    EXPECT_EQ(m_metering.mtrExposures[AECAlgoExposureSafe], 2 * StartExposure);
}

TEST_F(Frames, AStartConfigurationIsStoredAsSuchInASnapshotToo)
{
    RunStartup();
    RunFrame(50.0f);
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
    const auto applied = [&] { return Value<DBROIPayload>(BankIDROITable, 0).dataID; };
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
    SetValue(BankIDSceneAnalyzer, DBStartEndPayload{30, {3.0f, 4.0f}, nullptr});
    RunStartup();
    RunFrame(50.0f);
    EXPECT_EQ(Value<DBStartEndPayload>(BankIDSceneAnalyzer, 30).value.end, 0.0f);
    KIROGetBankData query = {BankIDConvActiveSCD, 5, nullptr, sizeof(kirodbconvactivescd::DBConvActiveSCDPayload)};
    EXPECT_EQ(m_pAlgo->getBankData(m_pAlgo, &query), 6);
    EXPECT_TRUE(m_log.Has(4, "Issue in setting YHist scale value to DB"));
}

}  // namespace
