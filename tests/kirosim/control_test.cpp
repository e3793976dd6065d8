// The whole loop: example scenes through the shared library with the example tuning, judged as a person would.

#include <cmath>
#include <gtest/gtest.h>

#include "tests/kirosim/simulationrun.h"
#include "tests/support/temporaryfile.h"
#include "tools/kirosim/runreport.h"
#include "tools/tuningfile/files.h"

using namespace kirosim;

namespace
{

/// A scene, its variant, and the frames that it may take to settle.
using ControlBar = std::tuple<std::string, std::string, UINT32>;

class StepControl : public testing::TestWithParam<ControlBar>
{
};

TEST_P(StepControl, SettlesInTimeWithoutOvershootAndStaysPut)
{
    const auto& [scene, variant, framesMax] = GetParam();
    const RunSummary summary                = SimulationRun(scene, variant).Summary();
    ASSERT_FALSE(summary.steps.empty());
    const StepResult& rStep = summary.steps.back();
    ASSERT_TRUE(rStep.framesToSettle.has_value());
    EXPECT_LE(*rStep.framesToSettle, framesMax);
    EXPECT_LE(rStep.overshootEV, 0.02);
    EXPECT_EQ(summary.rippleEV, 0.0);
    EXPECT_LE(std::abs(summary.finalErrorEV), 0.01);
    EXPECT_TRUE(summary.isLegal);
}

INSTANTIATE_TEST_SUITE_P(
    Bars, StepControl,
    testing::Values(ControlBar{"uniform", "step+1", 4}, ControlBar{"uniform", "step+2", 4},
                    ControlBar{"uniform", "step+4", 5}, ControlBar{"uniform", "step-1", 3},
                    ControlBar{"uniform", "step-2", 4}, ControlBar{"uniform", "step-4", 4},
                    ControlBar{"natural", "step+1", 4}, ControlBar{"natural", "step+2", 6},
                    ControlBar{"natural", "step+4", 7}, ControlBar{"natural", "step-1", 3},
                    ControlBar{"natural", "step-2", 4}, ControlBar{"natural", "step-4", 4},
                    ControlBar{"highcontrast", "step+1", 4}, ControlBar{"highcontrast", "step+2", 7},
                    ControlBar{"highcontrast", "step+4", 12}, ControlBar{"highcontrast", "step-1", 3},
                    ControlBar{"highcontrast", "step-2", 3}, ControlBar{"highcontrast", "step-4", 4},
                    ControlBar{"uniform", "cold-bright", 6}, ControlBar{"uniform", "cold-dark", 6},
                    ControlBar{"natural", "cold-bright", 6}, ControlBar{"natural", "cold-dark", 6},
                    ControlBar{"highcontrast", "cold-bright", 6}, ControlBar{"highcontrast", "cold-dark", 6}),
    [](const testing::TestParamInfo<ControlBar>& rInfo)
    {
        std::string name = std::get<0>(rInfo.param) + "_" + std::get<1>(rInfo.param);
        for (CHAR& rChar : name)
        {
            rChar = (rChar == '+') ? 'p' : (rChar == '-') ? 'm' : rChar;
        }
        return name;
    });

TEST(Control, FollowsARampCloselyAndIgnoresAQuickRipple)
{
    for (const CHAR* pScene : {"uniform", "natural", "highcontrast"})
    {
        SCOPED_TRACE(pScene);
        for (const CHAR* pVariant : {"ramp", "ramp-down"})
        {
            const RunSummary ramp = SimulationRun(pScene, pVariant).Summary();
            ASSERT_TRUE(ramp.rampLagEV.has_value());
            EXPECT_LE(*ramp.rampLagEV, 0.04) << pVariant;
        }
        const RunSummary ripple = SimulationRun(pScene, "ripple").Summary();
        EXPECT_LE(ripple.pictureSwingEV, 0.29);
    }
}

TEST(Control, LampsShowNoBandsAndTimesStandOnThePeriodsGrid)
{
    for (const auto& [pScene, period] :
         {std::pair("flicker50", FlickerPeriod50Hz), std::pair("flicker60", FlickerPeriod60Hz)})
    {
        SCOPED_TRACE(pScene);
        for (const CHAR* pVariant : {"", "dimmer"})
        {
            const SimulationRun run(pScene, pVariant);
            EXPECT_LE(run.Summary().bandingLast, 0.001);
            const UINT64 time     = run.Last().decided.arbitration[AECAlgoExposureSafe].exposureSet.time;
            const UINT64 periods  = (time + period / 2) / period;
            const UINT64 distance = (time > periods * period) ? time - periods * period : periods * period - time;
            EXPECT_GE(periods, 1U);
            EXPECT_LE(distance, 1000U) << time;
        }
    }
    // The lamp does flicker: without protection the bands are there.
    EXPECT_GT(SimulationRun("flicker50", "unprotected").Summary().bandingLast, 0.05);
}

TEST(Control, AWindowPullsShortDownAndLiftsLong)
{
    const SimulationRun          run("window");
    const KIROConvergenceOutput& rConv = run.Last().decided.convergence;
    EXPECT_GT(rConv.compensationADRC, 1.3f);
    EXPECT_LT(rConv.exposures[AECAlgoExposureShort], rConv.exposures[AECAlgoExposureSafe]);
    EXPECT_EQ(rConv.bSettle, TRUE);
    // Until ADRC has brought safe up, long lifts the room; then there is nothing left to lift.
    const KIROConvergenceOutput& rEarly = run.Records().at(15).decided.convergence;
    EXPECT_GT(rEarly.compensationDarkBoost, 1.05f);
    EXPECT_GT(rEarly.exposures[AECAlgoExposureLong], rEarly.exposures[AECAlgoExposureSafe]);
    EXPECT_NEAR(rConv.compensationDarkBoost, 1.0f, 1e-3f);
}

TEST(Control, TheUsersExposureValueAndLockHold)
{
    const SimulationRun run("ev-and-lock");
    const DOUBLE        plain   = run.SafeLog2At(1.9);
    const DOUBLE        plusOne = run.SafeLog2At(3.9);
    // A little more than a stop: more of the texture clips, and counts for less.
    EXPECT_GT(plusOne - plain, 0.98);
    EXPECT_LT(plusOne - plain, 1.15);
    EXPECT_NEAR(run.SafeLog2At(5.9), plain, 0.05);
    // Locked from 6 s to 8 s; the light rises by two stops at 7 s.
    EXPECT_EQ(run.SafeLog2At(6.9), run.SafeLog2At(7.9));
    EXPECT_NEAR(run.SafeLog2At(9.9), plain - 2.0, 0.1);
}

TEST(Control, ATouchBrightensTheTouchedSubject)
{
    const SimulationRun run("touch");
    const DOUBLE        before = run.SafeLog2At(2.9);
    EXPECT_GT(run.SafeLog2At(5.9) - before, 1.0);
    EXPECT_NEAR(run.SafeLog2At(7.9), before, 0.1);
}

TEST(Control, EveryExampleStaysWithinTheSensorsLimits)
{
    for (const CHAR* pTuning : {"phone.yaml", "minimal.yaml", "calm.yaml"})
    {
        for (const CHAR* pScene : {"tunnel", "window", "candle", "dusk", "touch", "ev-and-lock", "flicker60"})
        {
            EXPECT_TRUE(SimulationRun(pScene, "", pTuning).Summary().isLegal) << pScene << " with " << pTuning;
        }
    }
}

TEST(Control, ACameraThatDoesNotWorkOrCannotDoesNotLookWell)
{
    const std::string whole = tuningfile::ReadText(EXAMPLES_DIR "/tunings/minimal.yaml");
    const std::string grey  = "rangeStart: 46.0, rangeEnd: 46.0";
    // A part of the minimal tuning, by what it is replaced, the scene, and what is said of it at the end.
    const std::tuple<std::string, const CHAR*, const CHAR*, const CHAR*, bool> cases[] = {
        {whole, "modes: {Default: {}}\n", "tunnel", "no control: no analyzer ran in any frame\n", false},
        {"channel1: SafeLuma", "channel1: None", "tunnel", "no control: metering yielded nothing in any frame\n",
         false},
        {grey, "rangeStart: 0, rangeEnd: 0", "tunnel", "at the end the picture is black, its mean -11.69 EV", false},
        {grey, "rangeStart: 9e9, rangeEnd: 9e9", "tunnel", "at the end the picture is white, its mean 0.00 EV", true},
        {grey, grey.c_str(), "candle",
         "not settled, the target is 0.50 EV above the exposure, which is at the sensor's longest "
         "time and highest gain,",
         true}};
    const TemporaryFile tuning("control_test.yaml");
    for (const auto& [part, pBy, pScene, pLine, hasControlled] : cases)
    {
        const SimulationRun run(pScene, "", tuning.Write(ChangedTuning("minimal.yaml", part, pBy)));
        const RunReport     report  = run.ReportOf<RunReport>();
        const std::string   summary = report.Format();
        EXPECT_EQ(report.HasControlled(), hasControlled) << summary;
        EXPECT_NE(summary.find(pLine), std::string::npos) << pLine << summary;
        EXPECT_NE(summary.find("not settled"), std::string::npos) << summary;
    }
}

TEST(Control, InAPanoramaAStartIsJudgedWhileTheCameraStandsStill)
{
    for (const CHAR* pVariant : {"", "nod", "cut"})
    {
        SCOPED_TRACE(pVariant);
        const RunSummary summary = SimulationRun("room", pVariant).Summary();
        ASSERT_EQ(summary.steps.size(), 1U);
        EXPECT_LE(summary.steps[0].framesToSettle.value_or(99), 8U);
        EXPECT_LE(summary.rippleEV, 0.005) << "the last smallest move, in the second behind a turn, and no more";
    }
}

TEST(Control, AnotherSeedGivesAnotherTrace)
{
    const std::string first = SimulationRun("dusk", "", "phone.yaml", 5).Trace();
    EXPECT_FALSE(first == SimulationRun("dusk", "", "phone.yaml", 6).Trace());
}

}  // namespace
