// The whole loop: example scenes through the shared library with the example tuning, judged as a person would.

#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/kirosim/simulationrun.h"
#include "tools/kirosim/runreport.h"
#include "tools/tuningfile/files.h"

using namespace kirosim;

namespace
{

/// Frames to settle that a step may take, and what the scene kinds share.
struct ControlBar
{
    const CHAR* pScene;
    const CHAR* pVariant;
    UINT32      framesMax;
};

VOID PrintTo(const ControlBar& rBar, std::ostream* pStream)
{
    *pStream << rBar.pScene << " " << rBar.pVariant << " in " << rBar.framesMax;
}

class StepControl : public testing::TestWithParam<ControlBar>
{
};

TEST_P(StepControl, SettlesInTimeWithoutOvershootAndStaysPut)
{
    const SimulationRun run(GetParam().pScene, GetParam().pVariant, "phone.yaml");
    const RunSummary    summary = run.Summary();
    ASSERT_FALSE(summary.steps.empty());
    const StepResult& rStep = summary.steps.back();
    ASSERT_TRUE(rStep.framesToSettle.has_value());
    EXPECT_LE(*rStep.framesToSettle, GetParam().framesMax);
    EXPECT_LE(rStep.overshootEV, 0.02);
    EXPECT_EQ(summary.rippleEV, 0.0);
    EXPECT_LE(std::abs(summary.finalErrorEV), 0.02);
    EXPECT_TRUE(summary.isLegal);
}

INSTANTIATE_TEST_SUITE_P(
    Bars, StepControl,
    testing::Values(ControlBar{"uniform", "step+1", 8}, ControlBar{"uniform", "step+2", 10},
                    ControlBar{"uniform", "step+4", 14}, ControlBar{"uniform", "step-1", 8},
                    ControlBar{"uniform", "step-2", 9}, ControlBar{"uniform", "step-4", 10},
                    ControlBar{"natural", "step+1", 8}, ControlBar{"natural", "step+2", 10},
                    ControlBar{"natural", "step+4", 14}, ControlBar{"natural", "step-1", 8},
                    ControlBar{"natural", "step-2", 9}, ControlBar{"natural", "step-4", 10},
                    ControlBar{"highcontrast", "step+1", 12}, ControlBar{"highcontrast", "step+2", 16},
                    ControlBar{"highcontrast", "step+4", 20}, ControlBar{"highcontrast", "step-1", 8},
                    ControlBar{"highcontrast", "step-2", 9}, ControlBar{"highcontrast", "step-4", 10},
                    ControlBar{"uniform", "cold-bright", 6}, ControlBar{"uniform", "cold-dark", 6},
                    ControlBar{"natural", "cold-bright", 6}, ControlBar{"natural", "cold-dark", 6},
                    ControlBar{"highcontrast", "cold-bright", 6}, ControlBar{"highcontrast", "cold-dark", 6}),
    [](const testing::TestParamInfo<ControlBar>& rInfo)
    {
        std::string name = std::string(rInfo.param.pScene) + "_" + rInfo.param.pVariant;
        for (CHAR& rChar : name)
        {
            rChar = (rChar == '+') ? 'p' : (rChar == '-') ? 'm' : rChar;
        }
        return name;
    });

TEST(Control, FollowsARampCloselyAndIgnoresAQuickRipple)
{
    for (const auto& [pScene, lagMax] :
         {std::pair("uniform", 0.05), std::pair("natural", 0.05), std::pair("highcontrast", 0.1)})
    {
        SCOPED_TRACE(pScene);
        for (const CHAR* pVariant : {"ramp", "ramp-down"})
        {
            const RunSummary ramp = SimulationRun(pScene, pVariant, "phone.yaml").Summary();
            ASSERT_TRUE(ramp.rampLagEV.has_value());
            EXPECT_LE(*ramp.rampLagEV, lagMax) << pVariant;
        }
        const RunSummary ripple = SimulationRun(pScene, "ripple", "phone.yaml").Summary();
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
            const SimulationRun run(pScene, pVariant, "phone.yaml");
            EXPECT_LE(run.Summary().bandingLast, 0.001);
            const UINT64 time     = run.Last().decided.arbitration[AECAlgoExposureSafe].exposureSet.time;
            const UINT64 periods  = (time + period / 2) / period;
            const UINT64 distance = (time > periods * period) ? time - periods * period : periods * period - time;
            EXPECT_GE(periods, 1U);
            EXPECT_LE(distance, 1000U) << time;
        }
    }
    // The lamp does flicker: without protection the bands are there.
    EXPECT_GT(SimulationRun("flicker50", "unprotected", "phone.yaml").Summary().bandingLast, 0.05);
}

TEST(Control, AWindowPullsShortDownAndLiftsLong)
{
    const SimulationRun          run("window", "", "phone.yaml");
    const KIROConvergenceOutput& rConv = run.Last().decided.convergence;
    EXPECT_GT(rConv.compensationADRC, 1.3f);
    EXPECT_GT(rConv.compensationDarkBoost, 1.05f);
    EXPECT_LT(rConv.exposures[AECAlgoExposureShort], rConv.exposures[AECAlgoExposureSafe]);
    EXPECT_GT(rConv.exposures[AECAlgoExposureLong], rConv.exposures[AECAlgoExposureSafe]);
    EXPECT_EQ(rConv.bSettle, TRUE);
}

TEST(Control, TheUsersExposureValueAndLockHold)
{
    const SimulationRun run("ev-and-lock", "", "phone.yaml");
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
    const SimulationRun run("touch", "", "phone.yaml");
    const DOUBLE        before = run.SafeLog2At(2.9);
    EXPECT_GT(run.SafeLog2At(5.9) - before, 1.0);
    EXPECT_NEAR(run.SafeLog2At(7.9), before, 0.1);
}

TEST(Control, EveryExampleStaysWithinTheSensorsLimits)
{
    for (const CHAR* pTuning : {"phone.yaml", "minimal.yaml"})
    {
        for (const CHAR* pScene : {"tunnel", "window", "candle", "dusk", "touch", "ev-and-lock", "flicker60"})
        {
            EXPECT_TRUE(SimulationRun(pScene, "", pTuning).Summary().isLegal) << pScene << " with " << pTuning;
        }
    }
}

/// What a camera says of itself at the end of a scene.
struct Outcome
{
    const CHAR* pPart;  ///< of the minimal tuning, which is replaced; empty for the whole
    const CHAR* pBy;
    const CHAR* pScene;
    const CHAR* pLine;  ///< that must be there
    bool        hasControlled;
};

TEST(Control, ACameraThatDoesNotWorkOrCannotDoesNotLookWell)
{
    constexpr const CHAR* grey    = "rangeStart: 46.0, rangeEnd: 46.0";
    const Outcome         cases[] = {
                {"", "modes: {Default: {}}\n", "tunnel", "no control: no analyzer ran in any frame\n", false},
                {"channel1: SafeLuma", "channel1: None", "tunnel", "no control: metering yielded nothing in any frame\n",
                 false},
                {grey, "rangeStart: 0, rangeEnd: 0", "tunnel", "at the end the picture is black, its mean -11.69 EV", false},
                {grey, "rangeStart: 9e9, rangeEnd: 9e9", "tunnel", "at the end the picture is white, its mean 0.00 EV", true},
                {grey, grey, "candle",
                 "not settled, the target is 0.50 EV above the exposure, which is at the sensor's longest "
                         "time and highest gain,",
                 true}};
    const std::string path = testing::TempDir() + std::to_string(getpid()) + ".control_test.yaml";
    for (const Outcome& rCase : cases)
    {
        std::string text = tuningfile::ReadText(EXAMPLES_DIR "/tunings/minimal.yaml");
        text.replace(text.find(rCase.pPart), (rCase.pPart[0] != 0) ? std::strlen(rCase.pPart) : text.size(), rCase.pBy);
        std::ofstream(path) << text;
        const SimulationRun run(rCase.pScene, "", path);
        const RunReport     report  = run.ReportOf<RunReport>();
        const std::string   summary = report.Format();
        EXPECT_EQ(report.HasControlled(), rCase.hasControlled) << summary;
        EXPECT_NE(summary.find(rCase.pLine), std::string::npos) << rCase.pLine << summary;
        EXPECT_NE(summary.find("not settled"), std::string::npos) << summary;
    }
    std::filesystem::remove(path);
}

TEST(Control, TheSameSeedGivesTheSameTraceAndAnotherDoesNot)
{
    const std::string first  = SimulationRun("dusk", "", "phone.yaml", 5).Trace();
    const std::string second = SimulationRun("dusk", "", "phone.yaml", 5).Trace();
    const std::string other  = SimulationRun("dusk", "", "phone.yaml", 6).Trace();
    EXPECT_TRUE(first == second);
    EXPECT_FALSE(first == other);
}

}  // namespace
