// What follows convergence: constraints, settle, publishing, events.

#include "tests/core/convergence/convergencefixture.h"

namespace
{

class SettleTest : public ConvergenceTest
{
protected:
    /// The frame looked at stands at 480, 520 and 500. The limits are read by the frame before.
    SettleTest()
    {
        const Steps steps{480.0, 520.0, 500.0};
        SaveHistory(steps, steps);
        Run(steps);
    }

    VOID ExpectSettle(const Steps& rSteps, BOOL bBrightness, BOOL bSettle)
    {
        m_output.bBrightnessSettle               = FALSE;
        m_output.bSettle                         = FALSE;
        m_output.exposures[AECAlgoExposureShort] = AtStep(rSteps.shortStep);
        m_output.exposures[AECAlgoExposureLong]  = AtStep(rSteps.longStep);
        m_output.exposures[AECAlgoExposureSafe]  = AtStep(rSteps.safeStep);
        Module().RunConvSettle(m_output);
        EXPECT_EQ(m_output.bBrightnessSettle, bBrightness) << "Safe " << rSteps.safeStep;
        EXPECT_EQ(m_output.bSettle, bSettle) << "Safe " << rSteps.safeStep;
    }
};

} // namespace

TEST_F(SettleTest, CountsFramesOfSafeAndAsksAllThreeAtTheEnd)
{
    ExpectSettle({480.0, 520.0, 501.9}, FALSE, FALSE);
    ExpectSettle({480.0, 520.0, 498.1}, TRUE, TRUE);
    ExpectSettle({482.1, 520.0, 500.0}, TRUE, FALSE);
    ExpectSettle({480.0, 517.9, 500.0}, TRUE, FALSE);
    ExpectSettle({481.9, 518.1, 500.0}, TRUE, TRUE);
    ExpectSettle({480.0, 520.0, 502.1}, FALSE, FALSE);
    ExpectSettle({480.0, 520.0, 500.0}, FALSE, FALSE);
    m_settleLeaf.triggerData.settleCountTh = 0;
    ExpectSettle({480.0, 520.0, 502.1}, FALSE, FALSE);
    ExpectSettle({480.0, 520.0, 500.0}, TRUE, TRUE);
}

TEST_F(SettleTest, PredictiveGainOfTheFrameLookedAtCountsToShort)
{
    AECFrameHistory predictive = FrameAt({475.0, 520.0, 500.0});
    predictive.predictiveGain  = static_cast<FLOAT>(std::pow(1.03, 5.0));
    SaveFrame(predictive);
    SaveFrame(predictive);
    m_settleLeaf.triggerData.settleCountTh = 0;
    ExpectSettle({480.0, 520.0, 500.0}, TRUE, TRUE);
    ExpectSettle({475.0, 520.0, 500.0}, TRUE, FALSE);
}

TEST_F(SettleTest, AdvancedRulesJoinTheBaseRule)
{
    kirodbconvsettle::AdvnSettleType rule{{BankIDTriggers, 101}, 99, {10.0f, 20.0f}};
    m_settle.value.advnSettleCount         = 1;
    m_settle.value.advnSettle              = &rule;
    m_settleLeaf.triggerData.settleCountTh = 0;
    const Steps inside{480.0, 520.0, 500.0};
    const Steps outside{470.0, 530.0, 510.0};
    for (const auto& [value, inRange] : {std::pair{10.0f, TRUE}, {20.0f, TRUE}, {9.9f, FALSE}, {20.1f, FALSE}})
    {
        m_context.SetTrigger(101, value);
        m_settle.value.settleAgg = kirodbconvsettle::SettleAggAND;
        ExpectSettle(inside, inRange, inRange);
        ExpectSettle(outside, FALSE, FALSE);
        m_settle.value.settleAgg = kirodbconvsettle::SettleAggOR;
        ExpectSettle(inside, TRUE, TRUE);
        ExpectSettle(outside, inRange, inRange);
    }
}

TEST_F(SettleTest, SettledFrameEndsEventsAndRebasesTheDetectorAfterItsHold)
{
    const auto isSet = [this](KIROTunaraEventType event) { return m_context.GetContextEvent(event); };
    m_context.SetContextEvent(AECEVChange, TRUE);
    m_context.SetContextEvent(AECTorchChange, TRUE);
    m_context.SetSCDOutput(7, {nullptr, KIROSCDStateMonitor, KIROHoldTimeEnd});
    m_output.bSettle           = FALSE;
    m_output.bBrightnessSettle = TRUE;
    Module().RunConvPostProcess(m_output);
    EXPECT_EQ(isSet(AECSettled), FALSE);
    EXPECT_EQ(isSet(AECEVChange), TRUE);
    EXPECT_TRUE(m_context.m_rebasedSCDs.empty());

    m_output.bSettle = TRUE;
    Module().RunConvPostProcess(m_output);
    EXPECT_EQ(isSet(AECSettled), TRUE);
    EXPECT_EQ(isSet(AECEVChange), FALSE);
    EXPECT_EQ(isSet(AECTorchChange), FALSE);
    EXPECT_EQ(m_context.m_rebasedSCDs, std::vector<UINT32>{7});
    EXPECT_EQ(m_log.Count(LevelTrace, "AECEVChange status is reset."), 1u);
    EXPECT_EQ(m_log.Count(LevelTrace, "AECTorchChange status is reset."), 1u);

    m_context.SetSCDOutput(7, {nullptr, KIROSCDStateMonitor, KIROHoldTimeOn});
    Module().RunConvPostProcess(m_output);
    EXPECT_EQ(m_context.m_rebasedSCDs.size(), 1u);
}

TEST_F(SettleTest, PublishesTheRatiosOfTheExposures)
{
    m_output.exposures[AECAlgoExposureShort] = 1000;
    m_output.exposures[AECAlgoExposureLong]  = 12000;
    m_output.exposures[AECAlgoExposureSafe]  = 4000;
    m_output.predictiveGain                  = 2.0f;
    Module().RunConvPostProcess(m_output);
    EXPECT_EQ(m_context.Trigger(TriggerCtrlHDRDRCGain), 6.0f);
    EXPECT_EQ(m_context.Trigger(TriggerCtrlHDRADRCGain), 2.0f);
    EXPECT_EQ(m_context.Trigger(TriggerCtrlHDRDarkBoostGain), 3.0f);
    EXPECT_STREQ(m_context.m_pBankManager->GetDataTriggers(TriggerCtrlHDRDarkBoostGain)->description, "DarkBoostGain");

    m_output.exposures[AECAlgoExposureShort] = 0;
    m_output.exposures[AECAlgoExposureSafe]  = 0;
    Module().RunConvPostProcess(m_output);
    EXPECT_EQ(m_context.Trigger(TriggerCtrlHDRDRCGain), 12000.0f);
    EXPECT_EQ(m_context.Trigger(TriggerCtrlHDRDarkBoostGain), 12000.0f);
}

TEST_F(SettleTest, ThreeExposureSensorTiesSafeBetweenShortAndLong)
{
    const auto safeOf = [this]
    {
        m_output.exposures[AECAlgoExposureShort] = AtStep(400.0);
        m_output.exposures[AECAlgoExposureLong]  = AtStep(480.0);
        m_output.exposures[AECAlgoExposureSafe]  = AtStep(470.0);
        Module().HandleExposureConstraints(m_output);
        return Step(AECAlgoExposureSafe);
    };
    EXPECT_NEAR(safeOf(), 470.0, 0.01);
    m_context.m_input.b3HDRMode = TRUE;
    EXPECT_NEAR(safeOf(), 440.0, 0.01) << "half way without a tuning";
    m_hasHDRSensor      = true;
    m_hdrSensor.esRatio = 3.0f;
    Restart();
    EXPECT_NEAR(safeOf(), 420.0, 0.01) << "a quarter of the way";
}

TEST_F(ConvergenceTest, SettleWithoutAFrameBeforeIsRefused)
{
    m_output.bSettle = FALSE;
    Module().RunConvSettle(m_output);
    EXPECT_EQ(m_output.bSettle, FALSE);
    EXPECT_TRUE(m_log.Has(LevelError, "KIROCONVRG Settle: get trigger data failed"));
}
