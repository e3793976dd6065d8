// The speed law of Safe, what holds a frame back, and how exposures are capped.

#include "tests/core/convergence/convergencefixture.h"

using namespace kirodbconvbase;

TEST_F(ConvergenceTest, SafeMovesByASpeedUnderACap)
{
    const auto expect =
        [this](AECConvCappingType type, FLOAT speed, FLOAT cap, DOUBLE matched, DOUBLE target, DOUBLE end)
    {
        SetSpeeds(speed, 0.0f, cap, type);
        SaveHistory(FrameAt(Same(matched)), FrameAt(Same(500.0)));
        Run(Same(target));
        EXPECT_EQ(m_output.bIfConvProcRun, TRUE);
        ExpectSteps(Same(end), "capping " + std::to_string(type));
    };
    expect(CappingTypeAbsolute, 0.1f, 9.0f, 500.0, 540.0, 504.0);
    expect(CappingTypeAbsolute, 0.5f, 3.0f, 520.0, 540.0, 503.0);
    expect(CappingTypeAbsolute, 0.5f, 3.0f, 480.0, 460.0, 497.0);
    expect(CappingTypeRatio, 0.5f, 0.1f, 520.0, 540.0, 502.0);
    expect(CappingTypeRatio, 0.5f, 0.1f, 480.0, 460.0, 498.0);
    expect(CappingTypeSystemDelay, 0.5f, 0.1f, 526.0, 540.0, 507.0);  // 14 steps over two frames of delay
    expect(CappingTypeMax, 0.5f, 0.1f, 474.0, 460.0, 493.0);
}

TEST_F(ConvergenceTest, TriggersThatCannotBeReadCountAsZero)
{
    const std::pair<DataBankType, const CHAR*> references[] = {
        {{BankIDTriggers, 1000}, "KIROCONVRG Trigger bank dataID 1000 is not valid \n"},
        {{BankIDStatsCalculator, -1}, "KIROCONVRG Stats cal bank dataID -1 is not valid \n"},
        {{BankIDSceneAnalyzer, 1000}, "KIROCONVRG SA bank dataID 1000 is not valid \n"},
        {{BankIDConvBase, 1}, "KIROCONVRG Invalid bankID 11 \n"}};
    // The whole way for triggers above 2, a tenth of it below.
    ConvBaseLevel3DataType whole{{0.0f, 1.0f}, {1.0f, 1000.0f, 0.0f}};
    ConvBaseLevel2DataType middle{{0.0f, 1.0f}, 1, 0, &whole};
    ConvBaseLevel1DataType zones[] = {m_speedTop, {{2.0f, 3.0f}, 1, 0, &middle}};
    m_base.value.trigger1DataCount = 2;
    m_base.value.trigger1Data      = zones;
    m_context.SetTrigger(100, 2.5f);
    SaveHistory(FrameAt(Same(500.0)));
    ExpectRun(Same(520.0), Same(520.0), "a trigger of 2.5");
    for (const auto& [reference, pLine] : references)
    {
        m_base.value.trigger1DataBank = reference;
        ExpectRun(Same(520.0), Same(502.0), pLine);
        EXPECT_TRUE(m_log.Has(2, pLine)) << pLine;
    }
}

TEST_F(ConvergenceTest, AMoveLandsOrIsAtLeastOneUnit)
{
    const auto expect = [this](UINT32 tolerance, FLOAT speed, DOUBLE target, DOUBLE end)
    {
        m_base.value.tolerance = tolerance;
        SetSpeeds(speed, 0.0f);
        ExpectRun(Same(target), Same(end), "tolerance " + std::to_string(tolerance));
    };
    SaveHistory(FrameAt(Same(500.0)));
    expect(1, 0.8f, 504.0, 504.0);
    expect(1, 0.7f, 504.0, 502.8);
    expect(0, 0.8f, 504.0, 503.2);
    expect(2, 0.8f, 504.0, 503.2);
    expect(0, 0.1f, 500.4, 500.5);  // Short and Long follow although they overshoot
    expect(0, 0.1f, 499.6, 499.5);
    expect(0, 0.1f, 500.0, 499.5);  // no distance goes down
}

TEST_F(ConvergenceTest, SettledExposureWithinToleranceStaysUnlessAStretchIsOn)
{
    m_base.value.tolerance                 = 2;
    m_settleLeaf.triggerData.settleCountTh = 0;
    SaveHistory(FrameAt(Same(500.0)));
    ExpectRun(Same(501.5), Same(500.5), "not settled");
    RunSettle(Same(500.0));
    ExpectRun(Same(501.5), Same(500.0), "settled");
    ExpectRun(Same(502.5), Same(500.5), "out of tolerance");
    AECFrameHistory stretched    = FrameAt(Same(500.0));
    stretched.shortStretchOffset = -4.0f;
    SaveHistory(stretched);
    Run(Same(501.5));
    EXPECT_NEAR(StepOf(static_cast<DOUBLE>(m_output.exposures[AECAlgoExposureSafe])), 496.5, 0.01) << "stretch of -4";
}

TEST_F(ConvergenceTest, TargetBetweenTheFramesInFlightIsWaitedFor)
{
    SaveHistory(FrameAt(Same(540.0)), FrameAt(Same(500.0)));
    Run(Same(520.0));
    EXPECT_EQ(m_output.bIfConvProcRun, TRUE) << "the stages run, but do not move";
    ExpectSteps(Same(500.0));
    m_base.value.convSameDirection = TRUE;
    Run(Same(520.0));
    EXPECT_EQ(m_output.bIfConvProcRun, FALSE);
    ExpectSteps(Same(500.0));
    SaveHistory(FrameAt(Same(540.0)), FrameAt(Same(500.0), 2.0));
    Run(Same(520.0));
    EXPECT_EQ(m_output.bIfConvProcRun, TRUE) << "a predictive gain must be undone";
    EXPECT_EQ(m_output.predictiveGain, 1.0f);
}

TEST_F(ConvergenceTest, DetectorInHoldTimeHoldsAnOrdinaryFrame)
{
    const auto isRun = [this](AECAlgoOperationModeType opMode, DOUBLE predictiveGainSteps)
    {
        m_context.m_input.opMode = opMode;
        SaveHistory(FrameAt(Same(500.0), predictiveGainSteps));
        Run(Same(540.0));
        return m_output.bIfConvProcRun;
    };
    EXPECT_EQ(isRun(AECAlgoOperationModeStreaming, 0.0), TRUE) << "nobody knows the detector";
    m_context.SetSCDOutput(7, {nullptr, KIROSCDStateSceneChange, KIROHoldTimeOn});
    EXPECT_EQ(isRun(AECAlgoOperationModeStreaming, 0.0), FALSE);
    ExpectSteps(Same(500.0));
    EXPECT_EQ(isRun(AECAlgoOperationModePreflash, 0.0), TRUE);
    EXPECT_EQ(isRun(AECAlgoOperationModeStreaming, 5.0), TRUE);
    m_context.SetSCDOutput(7, {nullptr, KIROSCDStateSceneChange, KIROHoldTimeEnd});
    EXPECT_EQ(isRun(AECAlgoOperationModeStreaming, 0.0), TRUE);
}

TEST_F(ConvergenceTest, WithoutHistoryOrTuningNothingMovesOrSettles)
{
    KIROConvergenceInput input{};
    input.pRange          = &m_limits;
    m_output.exposures[0] = 123;
    EXPECT_EQ(Module().RunConvProcesss(input, m_output), 1);
    EXPECT_EQ(m_output.exposures[0], 123u);
    m_settleLeaf.triggerData.settleCountTh = 0;
    SaveHistory(FrameAt({480.0, 520.0, 500.0}));
    SetBank(BankIDConvStretch, nullptr);
    ExpectRun(Same(540.0), {480.0, 520.0, 500.0});
    EXPECT_EQ(m_output.bIfConvProcRun, FALSE);
    RunSettle({480.0, 520.0, 500.0});
    EXPECT_EQ(m_output.bSettle, FALSE);
}

TEST_F(ConvergenceTest, OutputLiesOnTheGridExceptAtTheEdgesOfTheRange)
{
    SetSpeeds(0.11f, 0.0f);  // 504.4
    SaveHistory(FrameAt(Same(500.0)));
    for (KIROExposureRange& rRange : m_limits.ranges)
    {
        rRange.end.indx = 300.0f;  // 1000 is step 233.7, so the output has index 270.7
    }
    Run(Same(540.0));
    EXPECT_EQ(m_output.exposures[AECAlgoExposureSafe], 2994841u) << "single-precision 1.03 to 504.5, truncated";
    m_limits.ranges[AECAlgoExposureSafe].end.indx   = 270.0f;
    m_limits.ranges[AECAlgoExposureLong].start.indx = 271.0f;
    ExpectRun(Same(540.0), Same(504.4), "Short is on the grid, but not above the others");
}

TEST_F(ConvergenceTest, SkippedMeteringAdoptsTheTargetsCappedAndOrdered)
{
    SaveHistory(FrameAt(Same(500.0), 40.0));
    Run({490.0, 530.0, 510.0}, TRUE);
    EXPECT_EQ(m_output.bIsConvTargetFixed, TRUE);
    EXPECT_EQ(m_output.bIfConvProcRun, FALSE);
    ExpectSteps({490.0, 530.0, 510.0});
    EXPECT_NEAR(StepOf(m_output.predictiveGain), 20.0, 0.01) << "no more than the room between Short and Safe";
    EXPECT_NEAR(m_output.compensationADRC, 1.0, 1e-3) << "what the predictive gain leaves";
    EXPECT_NEAR(StepOf(m_output.compensationDarkBoost), 20.0, 0.01);

    Run({530.0, 490.0, 510.0}, TRUE);
    ExpectSteps({490.0, 510.0, 510.0}, "Short lowest, Long not below Safe");
    m_context.m_input.HDRType = MultiframeHDR;
    Run({480.0, 490.0, 510.0}, TRUE);
    ExpectSteps({480.0, 490.0, 510.0}, "a long compensation makes up for a low Long");
    EXPECT_NEAR(StepOf(m_output.mfhdrLongADRC), 20.0, 0.01);
    EXPECT_EQ(m_output.compensationDarkBoost, 1.0f) << "the previous one, while the target is fixed";
    m_context.m_input.manualSetting.manualMode = AECAlgoModeManualFull;
    Run({480.0, 540.0, 510.0}, TRUE);
    EXPECT_NEAR(StepOf(m_output.compensationDarkBoost), 30.0, 0.01) << "of the exposures";

    m_limits.ranges[AECAlgoExposureShort].start.exposure = 1000000;
    m_limits.ranges[AECAlgoExposureLong].end.exposure    = 3000000;
    Run({400.0, 540.0, 490.0}, TRUE);
    EXPECT_EQ(m_output.exposures[AECAlgoExposureShort], 1000000u);
    EXPECT_EQ(m_output.exposures[AECAlgoExposureLong], 3000000u);
}
