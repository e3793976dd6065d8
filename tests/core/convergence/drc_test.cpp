// The distances of Short and Long from Safe, and the nodes that hold them.

#include "core/convergence/smoothnode.h"
#include "tests/core/convergence/convergencefixture.h"

using kiroconvergence::SmoothNodeType;

namespace
{

class DRCConvergence : public ConvergenceTest
{
protected:
    /// What a frame yields when the frame looked at and the previous one are alike.
    VOID ExpectFrame(const Steps& rPrevious, const Steps& rTarget, const Steps& rExpected, const CHAR* pMessage = "")
    {
        SaveHistory(FrameAt(rPrevious));
        ExpectRun(rTarget, rExpected, pMessage);
    }

    /// The gains of successive frames of the node machine.
    VOID ExpectGains(FLOAT target, const std::vector<FLOAT>& rExpected, UINT nodeIndex)
    {
        const kiroconvergence::DRCSmoothType tuning{TRUE, static_cast<UINT32>(m_nodes.size()), 0, m_nodes.data()};
        for (FLOAT expected : rExpected)
        {
            StepSmoothNode(m_node, tuning, target);
            EXPECT_NEAR(m_node.gain, expected, 1e-5f) << "towards " << target;
        }
        EXPECT_EQ(m_node.nodeIndex, nodeIndex) << "towards " << target;
    }

    std::vector<SmoothNodeType>  m_nodes{{1.0f, 2.0f, 0.5f, 0.25f, 0.25f, 0.2f}, {2.0f, 4.0f, 1.0f, 0.5f, 0.5f, 0.4f}};
    SmoothNodeConvergenceContext m_node{};
};

TEST_F(DRCConvergence, RatiosOfNothingKeepTheValuesOfTheFrameBefore)
{
    m_context.m_input.HDRType    = StaggeredHDR;
    AECFrameHistory before       = FrameAt({500.0, 515.0, 510.0}, 3.0);
    before.compensationDarkBoost = FactorOf(5.0);
    before.mfhdrLongADRC         = FactorOf(2.0);
    SaveHistory(before);
    const auto expect = [&](FLOAT ADRC, FLOAT darkBoost, FLOAT longADRC, FLOAT predictiveGain, const CHAR* pName)
    {
        SCOPED_TRACE(pName);
        EXPECT_FLOAT_EQ(m_output.compensationADRC, ADRC);
        EXPECT_FLOAT_EQ(m_output.compensationDarkBoost, darkBoost);
        EXPECT_FLOAT_EQ(m_output.mfhdrLongADRC, longADRC);
        EXPECT_FLOAT_EQ(m_output.predictiveGain, predictiveGain);
    };
    // Analyzers without a target.
    Run(Same(-INFINITY));
    expect(1.0f, FactorOf(5.0), FactorOf(2.0), 1.0f, "no targets");
    // A held long compensation decides about Long, too: here there was none.
    before.mfhdrLongADRC = 1.0f;
    SaveHistory(before);
    m_limits.ranges[AECAlgoExposureSafe].start.exposure = 100;
    Run(Same(-INFINITY));
    EXPECT_EQ(m_output.exposures[AECAlgoExposureLong], 100U);
    // Arbitration without a range.
    for (KIROExposureRange& rRange : m_limits.ranges)
    {
        rRange.end.exposure = 0;
    }
    Run({500.0, 515.0, 510.0});
    EXPECT_NEAR(StepOf(m_output.compensationADRC), 7.0, 0.01) << "10 steps, 3 of them made up for";
    EXPECT_TRUE(m_log.HasPart(LevelError, "ADRC is "));
}

}  // namespace

TEST_F(DRCConvergence, DistancesMoveByTheirOwnSpeedTowardsTheirTargets)
{
    SetSpeeds(0.1f, 0.2f);
    ExpectFrame({480.0, 500.0, 500.0}, {510.0, 550.0, 540.0}, {482.0, 506.0, 504.0}, "distances 20 to 30 and 0 to -10");
    SetSpeeds(0.1f, 0.01f);
    ExpectFrame({480.0, 500.0, 500.0}, {510.0, 550.0, 540.0}, {483.5, 504.5, 504.0}, "a unit at least");
    ExpectFrame({480.0, 500.0, 500.0}, {470.0, 540.0, 540.0}, {480.0, 504.0, 504.0}, "483.5 leads away");
    ExpectFrame({480.0, 500.0, 500.0}, {482.0, 540.0, 540.0}, {482.0, 504.0, 504.0}, "483.5 is past the target");

    // Safe goes from 500 to 501. Short is at a distance of 10, towards 8: at speed 0.7 it stops 0.6 short.
    SetSpeeds(1.0f, 0.7f);
    m_base.value.tolerance = 2;
    ExpectFrame({490.0, 500.0, 500.0}, {493.0, 501.0, 501.0}, {492.4, 501.0, 501.0});
    m_base.value.tolerance = 1;
    ExpectFrame({490.0, 500.0, 500.0}, {493.0, 501.0, 501.0}, {493.0, 501.0, 501.0}, "lands");

    // Short stood at 480, shown as 490 by a predictive gain of 10 steps: half way from a distance of 10 to one of 30.
    SetSpeeds(0.1f, 0.5f);
    m_base.value.tolerance = 0;
    SaveHistory(FrameAt({480.0, 500.0, 500.0}, 10.0));
    ExpectRun({470.0, 500.0, 500.0}, {479.5, 499.5, 499.5});
    // Frames in flight reach Short's target unaided: its distance of 20 stays.
    SaveHistory(FrameAt({495.0, 500.0, 500.0}), FrameAt({480.0, 500.0, 500.0}));
    ExpectRun({490.0, 540.0, 540.0}, {484.0, 504.0, 504.0});

    // A stretch lifts Safe to 511; Short's target of 491 would be 20 steps away where 10 are wanted and held.
    SetSpeeds(1.0f, 0.0f);
    SetStretches({{1.0f, 10.0f, 0.0f, 1.0f}});
    ExpectFrame({490.0, 500.0, 500.0}, {491.0, 501.0, 501.0}, {501.0, 511.0, 511.0});
}

TEST_F(DRCConvergence, SettledExposureWithinToleranceKeepsItsDistance)
{
    m_base.value.tolerance                 = 2;
    m_settleLeaf.triggerData.settleCountTh = 0;
    SetSpeeds(0.5f, 0.1f, 0.5f);  // Safe goes down by the cap of 0.5
    const Steps previous{480.0, 500.0, 500.0};
    ExpectFrame(previous, {478.5, 480.0, 480.0}, {480.0, 499.5, 499.5});
    RunSettle(previous);
    ExpectFrame(previous, {478.5, 480.0, 480.0}, {479.5, 499.5, 499.5});
}

TEST_F(DRCConvergence, NodesRampUpAndDownWithHysteresis)
{
    // A frame that starts a ramp still shows the held gain; the last increment is cut at the end of the ramp.
    ExpectGains(1.24f, {1.0f, 1.0f}, 0);
    ExpectGains(5.0f, {1.0f, 1.2f}, 0);
    ExpectGains(1.0f, {1.4f, 1.5f}, 0);  // a ramp is finished whatever the target does
    ExpectGains(1.74f, {1.5f}, 0);
    ExpectGains(1.26f, {1.5f}, 0);
    ExpectGains(2.49f, {1.5f, 1.7f, 1.9f, 2.0f, 2.0f}, 0);  // the next node asks for more
    ExpectGains(5.0f, {2.0f, 2.4f, 2.8f, 3.0f, 3.0f, 3.4f, 3.8f, 4.0f, 4.0f, 4.0f}, 1);
    ExpectGains(1.0f, {4.0f, 3.6f, 3.2f, 3.0f, 3.0f, 2.6f, 2.2f, 2.0f}, 1);
    ExpectGains(1.8f, {2.0f}, 1);
    ExpectGains(1.0f, {2.0f, 1.8f, 1.6f, 1.5f, 1.5f, 1.3f, 1.1f, 1.0f, 1.0f}, 0);
    m_node.nodeIndex = 8;
    m_node.gainNode  = 4.0f;
    ExpectGains(1.0f, {4.0f, 3.6f}, 1);  // a tuning with fewer nodes

    m_nodes = {{1.0f, 4.0f, 0.0f, 0.3f, 0.3f, 0.1f}};
    m_node  = {};
    for (const auto& [target, gain] :
         {std::pair{2.0f, 2.0f}, {2.2f, 2.0f}, {2.4f, 2.4f}, {6.0f, 4.0f}, {3.8f, 4.0f}, {3.6f, 3.6f}, {0.5f, 1.0f}})
    {
        ExpectGains(target, {gain}, 0);  // without a size the gain follows the target at once
    }
    ExpectGains(3.0f, {3.0f}, 0);
    ExpectGains(NAN, {3.0f}, 0);
    ExpectGains(2.0f, {2.0f}, 0);

    // An increment that is no number: the ramp goes on once it is one.
    m_nodes = {{1.0f, 2.0f, 0.5f, 0.25f, 0.25f, NAN}};
    m_node  = {};
    ExpectGains(2.0f, {1.0f, 1.0f}, 0);
    m_nodes[0].multiplierIncrement = 0.2f;
    ExpectGains(2.0f, {1.2f, 1.4f, 1.5f}, 0);
}

TEST_F(DRCConvergence, NodesReplaceTheTargets)
{
    SmoothNodeType fixed{1.0f, 8.0f, 1.0f, 0.5f, 0.5f, 0.5f};      // starts at 1, tied to Safe
    SmoothNodeType following{1.0f, 8.0f, 0.0f, 0.1f, 0.1f, 0.1f};  // at the target at once
    const Steps    target{470.0, 540.0, 510.0};
    const auto     expect = [&](SmoothNodeType& rADRC, SmoothNodeType& rDarkBoost, const Steps& rExpected)
    {
        m_module.smoothADRC      = {TRUE, 1, 0, &rADRC};
        m_module.smoothDarkBoost = {TRUE, 1, 0, &rDarkBoost};
        Restart();
        m_context.SetTrigger(TriggerCtrlADRCCap, 2.0f);
        ExpectFrame(Same(500.0), target, rExpected);
    };
    SetSpeeds(1.0f, 1.0f);
    ExpectFrame(Same(500.0), target, target, "without nodes");
    expect(fixed, following, {510.0, 540.0, 510.0});
    expect(following, fixed, {470.0, 510.0, 510.0});

    // A binned hybrid sensor caps the gain, at 2 or 23.45 steps.
    m_context.SetTrigger(TriggerCtrl3HDRBinning, 1.9f);
    expect(following, following, target);
    m_context.m_bIsHybridHDR = TRUE;
    expect(following, following, {486.55, 540.0, 510.0});
    m_context.SetTrigger(TriggerCtrl3HDRBinning, 0.9f);
    expect(following, following, target);
}

TEST_F(DRCConvergence, DarkCompensationConvergesOnAGridOnTopOfTheExposures)
{
    // All in steps; Long is given by its distance from Safe in the previous frame and in the target.
    const auto expect = [this](const std::pair<DOUBLE, DOUBLE>& rLong, DOUBLE metered, DOUBLE previous,
                               UINT32 tolerance, DOUBLE expected, const CHAR* pMessage)
    {
        m_base.value.tolerance = tolerance;
        m_context.SetAnalyzerResult(207, {FactorOf(metered), 0.0f});
        AECFrameHistory frame       = FrameAt({500.0, 500.0 + rLong.first, 500.0});
        frame.compensationDarkBoost = FactorOf(previous);
        SaveHistory(frame);
        Run({540.0, 540.0 + rLong.second, 540.0});
        EXPECT_NEAR(StepOf(m_output.compensationDarkBoost), expected, 0.01) << pMessage;
    };
    SetSpeeds(0.1f, 0.5f);
    expect({0.0, 0.0}, 20.0, 10.0, 0, 0.0, "not for an ordinary sensor");
    m_context.m_input.HDRType = StaggeredHDR;
    expect({0.0, 0.0}, 20.3, 10.0, 0, 15.0, "10 and half of 10.3, to the grid of 0.5");
    expect({0.0, 0.0}, 0.4, 0.0, 0, 0.5, "a unit at least");
    expect({0.0, 0.0}, 20.0, 0.0, 25, 0.0, "within tolerance");
    expect({0.0, 0.0}, -30.0, 10.0, 25, 5.0, "less than none is none, and the way back to it is always gone");
    expect({10.0, 12.0}, 32.0, 16.0, 0, 24.0, "6 of 16 were on top, half way to 20 is 13, Long gives 11");
}
