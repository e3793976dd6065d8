// What follows convergence: constraints, settle, publishing, events.

#include "schema/kirohdrsensor.h"
#include "tests/core/convergence/convergencefixture.h"

namespace
{

class SettleTest : public ConvergenceTest
{
protected:
    /// The frame looked at stands at 480, 520 and 500.
    SettleTest()
    {
        const Steps steps{480.0, 520.0, 500.0};
        SaveHistory(FrameAt(steps));
        Run(steps);
    }

    VOID ExpectSettle(const Steps& rSteps, BOOL bBrightness, BOOL bSettle)
    {
        RunSettle(rSteps);
        EXPECT_EQ(m_output.bBrightnessSettle, bBrightness) << "Short " << rSteps[0] << " Safe " << rSteps[2];
        EXPECT_EQ(m_output.bSettle, bSettle) << "Short " << rSteps[0] << " Safe " << rSteps[2];
    }
};

} // namespace

TEST_F(SettleTest, CountsFramesOfSafeAndAsksAllThreeAtTheEnd)
{
    ExpectSettle({480.0, 520.0, 501.9}, FALSE, FALSE);
    ExpectSettle({480.0, 520.0, 498.1}, TRUE, TRUE);
    ExpectSettle({482.1, 520.0, 500.0}, TRUE, FALSE);
    ExpectSettle({481.9, 517.9, 500.0}, TRUE, FALSE);
    ExpectSettle({481.9, 518.1, 502.1}, FALSE, FALSE);
    ExpectSettle({480.0, 520.0, 500.0}, FALSE, FALSE);
    m_settleLeaf.triggerData.settleCountTh = 0;
    ExpectSettle({480.0, 520.0, 502.1}, FALSE, FALSE);
    ExpectSettle({480.0, 520.0, 500.0}, TRUE, TRUE);

    SaveHistory(FrameAt({475.0, 520.0, 500.0}, 5.0), FrameAt(Same(500.0)));
    ExpectSettle({480.0, 520.0, 500.0}, TRUE, TRUE);  // the predictive gain counts to Short
    ExpectSettle({475.0, 520.0, 500.0}, TRUE, FALSE);
}

TEST_F(SettleTest, AdvancedRulesJoinTheBaseRule)
{
    kirodbconvsettle::AdvnSettleType rule{{BankIDTriggers, 101}, 99, {10.0f, 20.0f}};
    m_settle.value.advnSettleCount         = 1;
    m_settle.value.advnSettle              = &rule;
    m_settleLeaf.triggerData.settleCountTh = 0;
    for (const auto& [value, inRange] : {std::pair{10.0f, TRUE}, {20.0f, TRUE}, {9.9f, FALSE}, {20.1f, FALSE}})
    {
        m_context.SetTrigger(101, value);
        m_settle.value.settleAgg = kirodbconvsettle::SettleAggAND;
        ExpectSettle({480.0, 520.0, 500.0}, inRange, inRange);
        m_settle.value.settleAgg = kirodbconvsettle::SettleAggOR;
        ExpectSettle({470.0, 530.0, 510.0}, inRange, inRange);
    }
}

TEST_F(SettleTest, SettledFrameEndsEventsAndRebasesTheDetectorAfterItsHold)
{
    m_context.SetContextEvent(AECEVChange, TRUE);
    m_context.SetContextEvent(AECTorchChange, TRUE);
    for (const auto& [bSettle, holdTime, rebased] :
         {std::tuple{FALSE, KIROHoldTimeEnd, 0u}, {TRUE, KIROHoldTimeOn, 0u}, {TRUE, KIROHoldTimeEnd, 1u}})
    {
        m_context.SetSCDOutput(7, {nullptr, KIROSCDStateMonitor, holdTime});
        m_output.bBrightnessSettle = TRUE;
        m_output.bSettle           = bSettle;
        Module().RunConvPostProcess(m_output);
        EXPECT_EQ(m_context.GetContextEvent(AECSettled), bSettle);
        EXPECT_NE(m_context.GetContextEvent(AECEVChange), bSettle);
        EXPECT_NE(m_context.GetContextEvent(AECTorchChange), bSettle);
        EXPECT_EQ(m_context.m_rebasedSCDs, std::vector<UINT32>(rebased, 7));
    }
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
    m_output.exposures[AECAlgoExposureShort] = 0;
    m_output.exposures[AECAlgoExposureSafe]  = 0;
    Module().RunConvPostProcess(m_output);
    EXPECT_EQ(m_context.Trigger(TriggerCtrlHDRDRCGain), 12000.0f);
    EXPECT_EQ(m_context.Trigger(TriggerCtrlHDRDarkBoostGain), 12000.0f);
}

TEST_F(SettleTest, ThreeExposureSensorTiesSafeBetweenShortAndLong)
{
    const auto expectSafe = [this](DOUBLE step)
    {
        const Steps steps{400.0, 480.0, 470.0};
        std::transform(steps.begin(), steps.end(), m_output.exposures, AtStep);
        Module().HandleExposureConstraints(m_output);
        ExpectSteps({400.0, 480.0, step});
    };
    expectSafe(470.0);
    m_context.m_input.b3HDRMode = TRUE;
    expectSafe(440.0);  // half way without a tuning
    kirohdrsensor::KIROHDRSensorType sensor{};
    sensor.esRatio = 3.0f;
    m_context.SetTuning(TestTuning().Add(m_module).Add(sensor));
    expectSafe(420.0);
}
