// What follows convergence: settle, events, publishing, the constraint of a three-exposure sensor.

#include "tests/core/convergence/convergencefixture.h"

namespace
{

class SettleTest : public ConvergenceTest
{
protected:
    /// The frame looked at stands at 480, 520 and 500.
    SettleTest()
    {
        SaveHistory(FrameAt({480.0, 520.0, 500.0}));
        m_hdrSensor.esRatio = 3.0f;
        Run({480.0, 520.0, 500.0});
    }

    VOID ExpectSettle(const Steps& rSteps, BOOL bBrightness, BOOL bSettle)
    {
        RunSettle(rSteps);
        EXPECT_EQ(m_output.bBrightnessSettle, bBrightness) << "Short " << rSteps[0] << " Safe " << rSteps[2];
        EXPECT_EQ(m_output.bSettle, bSettle) << "Short " << rSteps[0] << " Safe " << rSteps[2];
    }

    kirodbconvsettle::AdvnSettleType m_rule{{BankIDTriggers, 101}, 99, {10.0f, 20.0f}};  ///< lent to the tuning
};

}  // namespace

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

    m_settle.value.advnSettleCount = 1;
    m_settle.value.advnSettle      = &m_rule;
    for (const auto& [value, inRange] : {std::pair{10.0f, TRUE}, {20.0f, TRUE}, {9.9f, FALSE}, {20.1f, FALSE}})
    {
        m_context.SetTrigger(101, value);
        m_settle.value.settleAgg = kirodbconvsettle::SettleAggAND;
        ExpectSettle({480.0, 520.0, 500.0}, inRange, inRange);
        m_settle.value.settleAgg = kirodbconvsettle::SettleAggOR;
        ExpectSettle({460.0, 530.0, 510.0}, inRange, inRange);
    }
}

TEST_F(SettleTest, AFrameWithoutAPreviousOneIsNotSettled)
{
    const Steps same{480.0, 520.0, 500.0};
    ExpectSettle(same, FALSE, FALSE);
    ExpectSettle(same, TRUE, TRUE);
    Module().RunConvPostProcess(m_output);
    EXPECT_EQ(m_context.GetContextEvent(AECSettled), TRUE);

    m_context.m_pHistory = TavoNew<CKIROHistory>();
    KIROConvergenceInput input{};
    input.pRange = &m_limits;
    EXPECT_EQ(Module().RunConvProcesss(input, m_output), 1);
    m_output.bSettle = TRUE;  // the host's record of the frame before
    Module().RunConvSettle(m_output);
    EXPECT_EQ(m_output.bSettle, FALSE);
    EXPECT_EQ(m_output.bBrightnessSettle, FALSE);
    Module().RunConvPostProcess(m_output);
    EXPECT_EQ(m_context.GetContextEvent(AECSettled), FALSE);

    SaveHistory(FrameAt(same));
    Run(same);
    ExpectSettle(same, FALSE, FALSE);  // the count begins anew
    ExpectSettle(same, TRUE, TRUE);
}

TEST_F(SettleTest, SettledFrameEndsEventsAndRebasesTheDetectorAfterItsHold)
{
    m_context.SetContextEvent(AECEVChange, TRUE);
    m_context.SetContextEvent(AECTorchChange, TRUE);
    for (const auto& [bSettle, holdTime, rebased] :
         {std::tuple{FALSE, KIROHoldTimeEnd, 0u}, {TRUE, KIROHoldTimeOn, 0u}, {TRUE, KIROHoldTimeEnd, 1u}})
    {
        m_context.SetSCDOutput(7, {nullptr, KIROSCDStateMonitor, holdTime});
        m_output.bSettle = bSettle;
        Module().RunConvPostProcess(m_output);
        EXPECT_EQ(m_context.GetContextEvent(AECSettled), bSettle);
        EXPECT_NE(m_context.GetContextEvent(AECEVChange), bSettle);
        EXPECT_NE(m_context.GetContextEvent(AECTorchChange), bSettle);
        EXPECT_EQ(m_context.m_rebasedSCDs, std::vector<UINT32>(rebased, 7));
    }
}

TEST_F(SettleTest, RatiosArePublishedAndThreeExposuresTied)
{
    m_output.exposures[AECAlgoExposureShort] = 1000;
    m_output.exposures[AECAlgoExposureLong]  = 12000;
    m_output.exposures[AECAlgoExposureSafe]  = 4000;
    m_output.predictiveGain                  = 2.0f;
    Module().RunConvPostProcess(m_output);
    EXPECT_EQ(m_context.Trigger(TriggerCtrlHDRDRCGain), 6.0f);
    EXPECT_EQ(m_context.Trigger(TriggerCtrlHDRADRCGain), 2.0f);
    EXPECT_EQ(m_context.Trigger(TriggerCtrlHDRDarkBoostGain), 3.0f);

    // A sensor of three exposures ties Safe between Short and Long.
    Run({480.0, 520.0, 500.0}, TRUE);
    Module().HandleExposureConstraints(m_output);
    ExpectSteps({480.0, 520.0, 500.0}, "any other sensor");
    m_context.m_input.b3HDRMode = TRUE;
    Module().HandleExposureConstraints(m_output);
    ExpectSteps({480.0, 520.0, 490.0}, "a quarter of the way");
}
