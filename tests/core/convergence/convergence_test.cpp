// The speed law of Safe, what holds a frame back, and how exposures are capped.

#include "tests/core/convergence/convergencefixture.h"

using namespace kirodbconvbase;

TEST_F(ConvergenceTest, SafeMovesByASpeedUnderACap)
{
    const struct
    {
        AECConvCappingType type;
        FLOAT              speed;
        FLOAT              capping;
        DOUBLE             matched;
        DOUBLE             target;
        DOUBLE             expected;
    } cases[] = {
        {CappingTypeAbsolute, 0.1f, 1000.0f, 500.0, 540.0, 504.0},
        {CappingTypeAbsolute, 0.1f, 1000.0f, 500.0, 460.0, 496.0},
        {CappingTypeAbsolute, 0.5f, 3.0f, 520.0, 540.0, 503.0},
        {CappingTypeAbsolute, 0.5f, 3.0f, 480.0, 460.0, 497.0},
        {CappingTypeRatio, 0.5f, 0.1f, 520.0, 540.0, 502.0},
        {CappingTypeRatio, 0.5f, 0.1f, 480.0, 460.0, 498.0},
        {CappingTypeSystemDelay, 0.5f, 0.1f, 526.0, 540.0, 507.0},  // 14 steps over two frames of delay
        {CappingTypeMax, 0.5f, 0.1f, 474.0, 460.0, 493.0},
        {CappingTypeSystemDelay, 0.05f, 0.1f, 526.0, 540.0, 502.0},
    };
    for (const auto& rCase : cases)
    {
        m_base.value.cappingType = rCase.type;
        m_speeds.Data()          = {rCase.speed, rCase.capping, 0.0f};
        SaveHistory(Same(rCase.matched), Same(500.0));
        EXPECT_EQ(Run(Same(rCase.target)), 0);
        EXPECT_EQ(m_output.bIfConvProcRun, TRUE);
        ExpectSteps(Same(rCase.expected), "capping " + std::to_string(rCase.type));
    }
}

TEST_F(ConvergenceTest, OnlyAToleranceOfOneLandsOnTheTarget)
{
    const struct
    {
        UINT32 tolerance;
        FLOAT  speed;
        DOUBLE expected;
    } cases[] = {{1, 0.8f, 504.0}, {1, 0.7f, 502.8}, {0, 0.8f, 503.2}, {2, 0.8f, 503.2}};
    SaveHistory(Same(500.0), Same(500.0));
    for (const auto& rCase : cases)
    {
        m_base.value.tolerance    = rCase.tolerance;
        m_speeds.Data().baseSpeed = rCase.speed;
        Run(Same(504.0));
        ExpectSteps(Same(rCase.expected), "tolerance " + std::to_string(rCase.tolerance));
    }
}

TEST_F(ConvergenceTest, AMoveIsAtLeastOneUnitAndNoDistanceGoesDown)
{
    // Short and Long follow Safe although the overshoot leads away from their own targets.
    SaveHistory(Same(500.0), Same(500.0));
    Run(Same(500.4));
    ExpectSteps(Same(500.5));
    Run(Same(499.6));
    ExpectSteps(Same(499.5));
    Run(Same(500.0));
    ExpectSteps(Same(499.5));
}

TEST_F(ConvergenceTest, SettledExposureWithinToleranceStaysUnlessAStretchIsOn)
{
    m_base.value.tolerance = 2;
    SaveHistory(Same(500.0), Same(500.0));
    Run(Same(501.5));
    ExpectSteps(Same(500.5), "not settled");
    Settle(Same(500.0));
    Run(Same(501.5));
    ExpectSteps(Same(500.0), "settled");
    EXPECT_TRUE(m_log.HasPart(LevelTrace, "Skip safe convergence. willBeIntolerance:1, prevDelta:1.5"));
    Run(Same(502.5));
    ExpectSteps(Same(500.5), "out of tolerance");

    AECFrameHistory stretched    = FrameAt(Same(500.0));
    stretched.shortStretchOffset = -4.0f;
    SaveFrame(stretched);
    Run(Same(501.5));
    EXPECT_NEAR(Step(AECAlgoExposureSafe), 496.5, 0.01) << "with what the filter keeps of the stretch";
}

TEST_F(ConvergenceTest, TargetBetweenTheFramesInFlightIsWaitedFor)
{
    SaveHistory(Same(540.0), Same(500.0));
    Run(Same(520.0));
    EXPECT_EQ(m_output.bIfConvProcRun, TRUE);
    ExpectSteps(Same(500.0), "no move, but the stages ran");

    m_base.value.convSameDirection = TRUE;
    Run(Same(520.0));
    EXPECT_EQ(m_output.bIfConvProcRun, FALSE);
    ExpectSteps(Same(500.0));
    EXPECT_TRUE(m_log.Has(LevelTrace, "Convergence is skipped"));

    AECFrameHistory predictive = FrameAt(Same(500.0));
    predictive.predictiveGain  = 1.05f;
    SaveFrame(FrameAt(Same(540.0)));
    SaveFrame(predictive);
    Run(Same(520.0));
    EXPECT_EQ(m_output.bIfConvProcRun, TRUE) << "a predictive gain must be undone";
    EXPECT_NEAR(Step(AECAlgoExposureSafe), 500.0, 0.01);
    EXPECT_EQ(m_output.predictiveGain, 1.0f);
}

TEST_F(ConvergenceTest, DetectorInHoldTimeHoldsAnOrdinaryFrame)
{
    SaveHistory(Same(500.0), Same(500.0));
    Run(Same(540.0));
    EXPECT_EQ(m_output.bIfConvProcRun, TRUE) << "nobody knows the detector";
    m_context.SetSCDOutput(7, {nullptr, KIROSCDStateSceneChange, KIROHoldTimeOn});
    Run(Same(540.0));
    EXPECT_EQ(m_output.bIfConvProcRun, FALSE);
    ExpectSteps(Same(500.0));

    m_context.m_input.opMode = AECAlgoOperationModePreflash;
    Run(Same(540.0));
    EXPECT_EQ(m_output.bIfConvProcRun, TRUE) << "preflash does not wait";

    m_context.m_input.opMode   = AECAlgoOperationModeStreaming;
    AECFrameHistory predictive = FrameAt(Same(500.0));
    predictive.predictiveGain  = 1.5f;
    SaveFrame(predictive);
    Run(Same(540.0));
    EXPECT_EQ(m_output.bIfConvProcRun, TRUE) << "nor does a predictive gain";

    SaveFrame(FrameAt(Same(500.0)));
    m_context.SetSCDOutput(7, {nullptr, KIROSCDStateMonitor, KIROHoldTimeEnd});
    Run(Same(540.0));
    EXPECT_EQ(m_output.bIfConvProcRun, TRUE);
}

TEST_F(ConvergenceTest, WithoutHistoryTheOutputIsNotTouched)
{
    KIROConvergenceInput input{};
    input.pRange          = &m_limits;
    m_output.exposures[0] = 123;
    EXPECT_EQ(Module().RunConvProcesss(input, m_output), 1);
    EXPECT_EQ(m_output.exposures[0], 123u);
    EXPECT_TRUE(m_log.Has(LevelError, "KIROCONVRG no previous frame in history! Abort convergence"));
}

TEST_F(ConvergenceTest, WithoutTuningInTheBanksThePreviousExposuresStay)
{
    SaveHistory(Same(500.0), {480.0, 520.0, 500.0});
    Module();
    m_context.m_pBankManager->SetBankTuning(BankIDConvBase, nullptr, nullptr, 0);
    EXPECT_EQ(Run(Same(540.0)), 0);
    EXPECT_EQ(m_output.bIfConvProcRun, FALSE);
    ExpectSteps({480.0, 520.0, 500.0});
    EXPECT_TRUE(m_log.HasPart(LevelError, "KIROCONVRG Conv DB data invalid. m_pConvBase:"));
}

TEST_F(ConvergenceTest, TriggerOfAnotherBankCountsAsZero)
{
    // Two zones of speed: below 10 and from 10.
    SaveHistory(Same(500.0), Same(500.0));
    Module();
    ConvBaseLevel3DataType leaves[]  = {{{0.0f, 1.0f}, {0.1f, 1000.0f, 0.0f}}, {{0.0f, 1.0f}, {0.5f, 1000.0f, 0.0f}}};
    ConvBaseLevel2DataType middles[] = {{{0.0f, 1.0f}, 1, 0, &leaves[0]}, {{0.0f, 1.0f}, 1, 0, &leaves[1]}};
    ConvBaseLevel1DataType zones[]   = {{{0.0f, 10.0f}, 1, 0, &middles[0]}, {{10.0f, 100.0f}, 1, 0, &middles[1]}};
    m_base.value.trigger1DataCount   = 2;
    m_base.value.trigger1Data        = zones;
    m_context.SetTrigger(100, 50.0f);
    m_context.SetCalculatorResult(100, 50.0f);
    m_context.SetAnalyzerResult(100, {50.0f, 0.0f});
    const struct
    {
        DataBankType bank;
        DOUBLE       expected;
        const CHAR*  pError;
    } cases[] = {
        {{BankIDTriggers, 100}, 520.0, nullptr},
        {{BankIDStatsCalculator, 100}, 520.0, nullptr},
        {{BankIDSceneAnalyzer, 100}, 520.0, nullptr},
        {{BankIDTriggers, 1000}, 504.0, "KIROCONVRG Trigger bank dataID 1000 is not valid \n"},
        {{BankIDStatsCalculator, -1}, 504.0, "KIROCONVRG Stats cal bank dataID -1 is not valid \n"},
        {{BankIDSceneAnalyzer, 1000}, 504.0, "KIROCONVRG SA bank dataID 1000 is not valid \n"},
        {{BankIDROITable, 100}, 504.0, "KIROCONVRG Invalid bankID 0 \n"},
    };
    for (const auto& rCase : cases)
    {
        m_base.value.trigger1DataBank = rCase.bank;
        Run(Same(540.0));
        EXPECT_NEAR(Step(AECAlgoExposureSafe), rCase.expected, 0.01) << rCase.bank.bankID << " " << rCase.bank.dataID;
        EXPECT_TRUE(rCase.pError == nullptr || m_log.Has(LevelError, rCase.pError)) << rCase.pError;
    }
}

TEST_F(ConvergenceTest, OutputLiesOnTheGridExceptAtTheEdgesOfTheRange)
{
    m_speeds.Data().baseSpeed = 0.106f;  // 504.24
    for (KIROExposureRange& rRange : m_limits.ranges)
    {
        rRange.end.indx = 300.0f;  // 1000 is step 233.7, so the output has index 270.5
    }
    SaveHistory(Same(500.0), Same(500.0));
    Run(Same(540.0));
    EXPECT_EQ(m_output.exposures[AECAlgoExposureSafe], 2950904u) << "single-precision 1.03 to the power 504, truncated";
    EXPECT_EQ(m_output.exposures[AECAlgoExposureShort], 2950904u);

    m_limits.ranges[AECAlgoExposureSafe].end.indx   = 270.0f;
    m_limits.ranges[AECAlgoExposureLong].start.indx = 271.0f;
    Run(Same(540.0));
    ExpectSteps({504.0, 504.24, 504.24});

    m_limits.ranges[AECAlgoExposureLong].start.indx = 600.0f;
    m_limits.ranges[AECAlgoExposureSafe].end.indx   = 600.0f;
    m_limits.indexZeroExposure                      = 0;  // counts as index 504 for step 504
    Run(Same(540.0));
    ExpectSteps({504.0, 504.24, 504.0}, "Short is off the grid, but not above Safe");
}

TEST_F(ConvergenceTest, StepSizeOutOfRangeFallsBackOnTheGridOnly)
{
    m_module.unitStepSize = 2.0f;
    for (KIROExposureRange& rRange : m_limits.ranges)
    {
        rRange.end.indx = 1000.0f;
    }
    SaveHistory(Same(500.0), Same(500.0));
    Run(Same(504.3));  // a move of 0.43 becomes 2
    ExpectSteps(Same(502.0));
    m_speeds.Data().baseSpeed = 0.65f;  // 2.795 to the grid of 0.5
    Run(Same(504.3));
    ExpectSteps(Same(503.0));
}

TEST_F(ConvergenceTest, SkippedMeteringAdoptsTheTargetsAtOnce)
{
    SaveHistory(Same(500.0), Same(500.0));
    RunSkipped({300000, 1200000, 600000});
    EXPECT_EQ(m_output.bIsConvTargetFixed, TRUE);
    EXPECT_EQ(m_output.bIfConvProcRun, FALSE);
    EXPECT_EQ(m_output.evMultiplier, 1.0f);
    ExpectSteps({StepOf(300000.0), StepOf(1200000.0), StepOf(600000.0)});
    EXPECT_NEAR(m_output.compensationADRC, 2.0, 1e-3);
    EXPECT_NEAR(m_output.compensationDarkBoost, 2.0, 1e-3);
    EXPECT_EQ(m_output.mfhdrLongADRC, 1.0f);
}

TEST_F(ConvergenceTest, ExposuresAreCappedAndOrdered)
{
    AECFrameHistory predictive = FrameAt(Same(500.0));
    predictive.predictiveGain  = 3.0f;
    SaveFrame(predictive);
    RunSkipped({900000, 200000, 400000});
    ExpectSteps({StepOf(200000.0), StepOf(400000.0), StepOf(400000.0)}, "Short lowest, Long not below Safe");
    EXPECT_NEAR(m_output.predictiveGain, 2.0, 1e-3) << "no more than the room between Short and Safe";
    EXPECT_NEAR(m_output.compensationADRC, 1.0, 1e-3) << "what the predictive gain leaves";

    m_context.m_input.HDRType = MultiframeHDR;
    RunSkipped({100000, 200000, 400000});
    ExpectSteps({StepOf(100000.0), StepOf(200000.0), StepOf(400000.0)}, "a long compensation makes up for a low Long");
    EXPECT_NEAR(m_output.mfhdrLongADRC, 2.0, 1e-3);
    m_context.m_input.HDRType = HDRDisabled;

    m_limits.ranges[AECAlgoExposureShort].start.exposure = 150000;
    m_limits.ranges[AECAlgoExposureLong].end.exposure    = 800000;
    m_limits.ranges[AECAlgoExposureSafe].end.exposure    = 300000;
    RunSkipped({100000, 900000, 400000});
    EXPECT_EQ(m_output.exposures[AECAlgoExposureShort], 150000u);
    EXPECT_EQ(m_output.exposures[AECAlgoExposureLong], 800000u);
    EXPECT_EQ(m_output.exposures[AECAlgoExposureSafe], 300000u);
}

TEST_F(ConvergenceTest, FullManualControlTakesTheDarkBoostFromTheExposures)
{
    m_context.m_input.manualSetting.manualMode = AECAlgoModeManualFull;
    m_context.m_input.HDRType                  = MultiframeHDR;
    AECFrameHistory previous                   = FrameAt(Same(500.0));
    previous.compensationDarkBoost             = 5.0f;
    SaveFrame(previous);
    RunSkipped({100000, 600000, 400000});
    EXPECT_NEAR(m_output.compensationDarkBoost, 1.5, 1e-3);
    m_context.m_input.manualSetting.manualMode = AECAlgoModeAuto;
    RunSkipped({100000, 600000, 400000});
    EXPECT_EQ(m_output.compensationDarkBoost, 5.0f) << "the previous one is kept while the target is fixed";
}
