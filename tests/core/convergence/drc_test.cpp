// The distances of Short and Long from Safe.

#include "tests/core/convergence/convergencefixture.h"

namespace
{

class DRCConvergence : public ConvergenceTest
{
protected:
    /// What a frame yields when the frame looked at and the previous one are alike.
    VOID ExpectFrame(const Steps& rPrevious, const Steps& rTarget, const Steps& rExpected)
    {
        SaveHistory(rPrevious, rPrevious);
        Run(rTarget);
        ExpectSteps(rExpected);
    }

    VOID SetSpeeds(FLOAT baseSpeed, FLOAT drcSpeed)
    {
        m_speeds.Data() = {baseSpeed, 1000.0f, drcSpeed};
    }
};

} // namespace

TEST_F(DRCConvergence, DistancesMoveByTheirOwnSpeed)
{
    // Safe 500 to 504. Short: distance 20 to 30, so 22 next. Long: distance 0 to -10, so -2 next.
    SetSpeeds(0.1f, 0.2f);
    ExpectFrame({480.0, 500.0, 500.0}, {510.0, 550.0, 540.0}, {482.0, 506.0, 504.0});
    EXPECT_EQ(m_output.predictiveGain, 1.0f);
    SetSpeeds(0.1f, 0.01f);  // at least a unit of 0.5
    ExpectFrame({480.0, 500.0, 500.0}, {510.0, 550.0, 540.0}, {483.5, 504.5, 504.0});
}

TEST_F(DRCConvergence, NeverAwayFromTheTargetAndNeverPastIt)
{
    SetSpeeds(0.1f, 0.01f);
    ExpectFrame({480.0, 500.0, 500.0}, {470.0, 540.0, 540.0}, {480.0, 504.0, 504.0});  // 483.5 leads away
    ExpectFrame({480.0, 500.0, 500.0}, {482.0, 540.0, 540.0}, {482.0, 504.0, 504.0});  // 483.5 is past
}

TEST_F(DRCConvergence, OnlyAToleranceOfOneLands)
{
    // Safe goes from 500 to 501. Short is at a distance of 10, towards 8: at speed 0.7 it would stop 0.6 short.
    m_speeds.Data()        = {1.0f, 1000.0f, 0.7f};
    m_base.value.tolerance = 1;
    ExpectFrame({490.0, 500.0, 500.0}, {493.0, 501.0, 501.0}, {493.0, 501.0, 501.0});
    m_base.value.tolerance = 2;
    ExpectFrame({490.0, 500.0, 500.0}, {493.0, 501.0, 501.0}, {492.4, 501.0, 501.0});
}

TEST_F(DRCConvergence, SettledExposureWithinToleranceKeepsItsDistance)
{
    m_base.value.tolerance = 2;
    m_speeds.Data()        = {0.5f, 0.5f, 0.1f};  // Safe goes down by the cap of 0.5
    const Steps previous{480.0, 500.0, 500.0};
    ExpectFrame(previous, {478.5, 480.0, 480.0}, {480.0, 499.5, 499.5});
    Settle(previous);
    Run({478.5, 480.0, 480.0});
    ExpectSteps({479.5, 499.5, 499.5});
}

TEST_F(DRCConvergence, DistanceIsNeverWiderThanWantedOrHeld)
{
    // A stretch lifts Safe to 511; Short's target of 491 would be 20 steps away where 10 are wanted and held.
    SetSpeeds(1.0f, 0.0f);
    SetStretches({{1.0f, 10.0f, 0.0f, 1.0f}});
    SaveHistory({490.0, 500.0, 500.0}, {490.0, 500.0, 500.0});
    Run({491.0, 501.0, 501.0});
    EXPECT_NEAR(Step(AECAlgoExposureSafe), 511.0, 0.01);
    EXPECT_NEAR(Step(AECAlgoExposureShort), 501.0, 0.01);
}

TEST_F(DRCConvergence, PredictiveGainOfThePreviousFrameCountsToShort)
{
    // Short stood at 480, shown as 490 by a predictive gain of 10 steps: a distance of 10 towards one of 30.
    SetSpeeds(0.1f, 0.5f);
    AECFrameHistory previous = FrameAt({480.0, 500.0, 500.0});
    previous.predictiveGain  = static_cast<FLOAT>(std::pow(1.03, 10.0));
    SaveFrame(previous);
    SaveFrame(previous);
    Run({470.0, 500.0, 500.0});
    ExpectSteps({479.5, 499.5, 499.5});
}

TEST_F(DRCConvergence, SmoothNodesReplaceTheTargets)
{
    kiroconvergence::SmoothNodeType fixed{1.0f, 8.0f, 1.0f, 0.5f, 0.5f, 0.5f};
    kiroconvergence::SmoothNodeType following{1.0f, 8.0f, 0.0f, 0.1f, 0.1f, 0.1f};
    const Steps                     target{470.0, 540.0, 510.0};
    SetSpeeds(1.0f, 1.0f);
    ExpectFrame(Same(500.0), target, target);

    // A new node starts at a gain of 1, which ties the exposure to Safe.
    m_module.smoothADRC      = {TRUE, 1, 0, &fixed};
    m_module.smoothDarkBoost = {TRUE, 1, 0, &following};
    Restart();
    ExpectFrame(Same(500.0), target, {510.0, 540.0, 510.0});

    m_module.smoothADRC      = {TRUE, 1, 0, &following};
    m_module.smoothDarkBoost = {TRUE, 1, 0, &fixed};
    Restart();
    ExpectFrame(Same(500.0), target, {470.0, 510.0, 510.0});
}

TEST_F(DRCConvergence, BinnedHybridSensorCapsTheGain)
{
    kiroconvergence::SmoothNodeType following{1.0f, 8.0f, 0.0f, 0.1f, 0.1f, 0.1f};
    m_module.smoothADRC = {TRUE, 1, 0, &following};
    SetSpeeds(1.0f, 1.0f);
    const Steps target{470.0, 510.0, 510.0};
    m_context.m_bIsHybridHDR = TRUE;
    m_context.SetTrigger(TriggerCtrlADRCCap, 2.0f);
    m_context.SetTrigger(TriggerCtrl3HDRBinning, 0.9f);
    ExpectFrame(Same(500.0), target, target);
    m_context.SetTrigger(TriggerCtrl3HDRBinning, 1.9f);
    ExpectFrame(Same(500.0), target, {486.55, 510.0, 510.0});  // a gain of 2 is 23.45 steps
}

TEST_F(DRCConvergence, DarkCompensationConvergesOnAGrid)
{
    constexpr INT32 DarkCompensation = 207;
    const struct
    {
        AECAlgoHDRType type;
        DOUBLE         metered;   // steps
        DOUBLE         previous;  // steps
        UINT32         tolerance;
        DOUBLE         expected;  // steps
    } cases[] = {
        {StaggeredHDR, 20.0, 0.0, 0, 10.0},
        {MultiframeHDR, 20.3, 10.0, 0, 15.0},  // 10 and half of 10.3, to the grid of 0.5
        {StaggeredHDR, 0.6, 0.0, 0, 0.5},      // a unit at least
        {StaggeredHDR, 20.0, 0.0, 25, 0.0},    // within tolerance
        {StaggeredHDR, 0.0, 10.0, 25, 5.0},    // but the way back to none is always gone
        {StaggeredHDR, -30.0, 10.0, 0, 5.0},   // less than none counts as none
        {SensorHDR, 20.0, 10.0, 0, 0.0},
    };
    SetSpeeds(0.1f, 0.5f);
    for (const auto& rCase : cases)
    {
        m_context.m_input.HDRType = rCase.type;
        m_context.SetAnalyzerResult(DarkCompensation, {static_cast<FLOAT>(std::pow(1.03, rCase.metered)), 0.0f});
        m_base.value.tolerance         = rCase.tolerance;
        AECFrameHistory previous       = FrameAt(Same(500.0));
        previous.compensationDarkBoost = static_cast<FLOAT>(std::pow(1.03, rCase.previous));
        SaveFrame(previous);
        SaveFrame(previous);
        Run(Same(540.0));
        EXPECT_NEAR(StepOf(m_output.compensationDarkBoost), rCase.expected, 0.01) << "metered " << rCase.metered;
    }
}

TEST_F(DRCConvergence, DarkCompensationIsOnTopOfWhatTheExposuresGive)
{
    // Long stood 10 steps above Safe, of a dark boost of 16. It aims at 12, and metering asks for 32.
    SetSpeeds(0.1f, 0.5f);
    m_context.m_input.HDRType = StaggeredHDR;
    m_context.SetAnalyzerResult(207, {static_cast<FLOAT>(std::pow(1.03, 32.0)), 0.0f});
    AECFrameHistory previous       = FrameAt({500.0, 510.0, 500.0});
    previous.compensationDarkBoost = static_cast<FLOAT>(std::pow(1.03, 16.0));
    SaveFrame(previous);
    SaveFrame(previous);
    Run({540.0, 552.0, 540.0});
    ExpectSteps({504.0, 515.0, 504.0});
    // 6 of the 16 were on top; half way to 20 makes 13, and Long gives 11.
    EXPECT_NEAR(StepOf(m_output.compensationDarkBoost), 24.0, 0.01);
}
