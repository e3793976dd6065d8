// First tunings in the loop, held to what the example tuning is held to.

#include <algorithm>

#include <gtest/gtest.h>

#include "tests/kirosim/simulationrun.h"
#include "tests/support/temporaryfile.h"
#include "tools/kirosim/hdrreport.h"
#include "tools/newtuning/firsttuning.h"

using namespace kirosim;
using newtuning::Answers;
using newtuning::Mains;
using newtuning::Metering;

namespace
{

/// The simulated sensor.
constexpr Answers Plain = {.gainMin  = 1,
                           .gainMax  = 64,
                           .lineTime = 20000,
                           .timeMax  = 100000000,
                           .FPS      = 30,
                           .mains    = Mains::Hz50,
                           .topGain  = 32,
                           .metering = Metering::Average,
                           .isHDR    = false};

Answers ForHDR()
{
    Answers answers  = Plain;
    answers.mains    = Mains::Hz60;
    answers.metering = Metering::Centre;
    answers.isHDR    = true;
    return answers;
}

Answers WithTopGainOf8()
{
    Answers answers = Plain;
    answers.topGain = 8;
    return answers;
}

FLOAT MostGain(const SimulationRun& rRun)
{
    FLOAT most = 0;
    for (const FrameRecord& rRecord : rRun.Records())
    {
        for (const KIROArbitrationOutput& rOutput : rRecord.decided.arbitration)
        {
            most = std::max(most, rOutput.exposureSet.gain);
        }
    }
    return most;
}

class FirstTuning : public testing::TestWithParam<Answers>
{
protected:
    SimulationRun Run(const std::string& rScene, const std::string& rVariant = "")
    {
        return SimulationRun(rScene, rVariant, m_tuning.Write(newtuning::FirstTuning(GetParam())));
    }

private:
    const TemporaryFile m_tuning{"firsttuning_test.yaml"};
};

TEST_P(FirstTuning, SettlesAfterStepsWithoutOvershoot)
{
    for (const auto& [pScene, pVariant, framesMax] :
         {std::tuple("uniform", "step-4", 10U), std::tuple("natural", "step+4", 14U),
          std::tuple("highcontrast", "step+4", 20U), std::tuple("natural", "cold-bright", 6U)})
    {
        SCOPED_TRACE(std::string(pScene) + " " + pVariant);
        const RunSummary summary = Run(pScene, pVariant).Summary();
        ASSERT_FALSE(summary.steps.empty());
        EXPECT_LE(summary.steps.back().framesToSettle.value_or(1000), framesMax);
        EXPECT_LE(summary.steps.back().overshootEV, 0.02);
        EXPECT_EQ(summary.rippleEV, 0.0);
        EXPECT_LE(std::abs(summary.finalErrorEV), 0.02);
        EXPECT_TRUE(summary.isLegal);
    }
}

TEST_P(FirstTuning, ShowsNoBandsUnderLampsOfItsMains)
{
    const bool is50Hz = GetParam().mains == Mains::Hz50;
    EXPECT_LE(Run(is50Hz ? "flicker50" : "flicker60", "dimmer").Summary().bandingLast, 0.001);
}

TEST_P(FirstTuning, HeedsTheUser)
{
    const SimulationRun run   = Run("ev-and-lock");
    const DOUBLE        plain = run.SafeLog2At(1.9);
    EXPECT_NEAR(run.SafeLog2At(3.9), plain + 1.0, 0.15);
    EXPECT_NEAR(run.SafeLog2At(5.9), plain, 0.05);
    EXPECT_EQ(run.SafeLog2At(6.9), run.SafeLog2At(7.9)) << "locked while the light rises";
    EXPECT_NEAR(run.SafeLog2At(9.9), plain - 2.0, 0.1);
}

INSTANTIATE_TEST_SUITE_P(Answers, FirstTuning, testing::Values(Plain, ForHDR()));

using OneFirstTuning = FirstTuning;

TEST_P(OneFirstTuning, NeverExceedsTheTopGain)
{
    const SimulationRun run = Run("candle");
    EXPECT_LE(MostGain(run), 32.001F);
    EXPECT_EQ(run.Last().decided.arbitration[AECAlgoExposureSafe].exposureSet.time, Plain.timeMax);
}

TEST_P(OneFirstTuning, PullsShortDownAndLiftsLongAtAWindow)
{
    const SimulationRun          run          = Run("window");
    const KIROConvergenceOutput& rConvergence = run.Last().decided.convergence;
    EXPECT_GT(rConvergence.compensationADRC, 1.3F);
    EXPECT_GT(rConvergence.compensationDarkBoost, 1.05F);
}

INSTANTIATE_TEST_SUITE_P(Answers, OneFirstTuning, testing::Values(Plain));

using CappedFirstTuning = FirstTuning;

TEST_P(CappedFirstTuning, LeavesRoomForWhatTheGridOfFlickerMakesUpForWithGain)
{
    EXPECT_NEAR(MostGain(Run("flicker50", "dimmer")), 8.0F, 0.001F);
}

INSTANTIATE_TEST_SUITE_P(Answers, CappedFirstTuning, testing::Values(WithTopGainOf8()));

using HDRFirstTuning = FirstTuning;

TEST_P(HDRFirstTuning, BlendsShortInOnlyWhileLongAloneIsNotEnough)
{
    const SimulationRun run    = Run("hdr-staggered");
    const HDRReport     report = run.ReportOf<HDRReport>();
    EXPECT_EQ(report.BlendRests(), (std::vector<DOUBLE>{0.0, 1.0, 0.0})) << report.Format();
    const std::vector<HDRReport::Moment> moments = report.Moments();
    ASSERT_EQ(moments.size(), 3U);
    EXPECT_GT(moments[0].longADRC, 1.1);
    EXPECT_NEAR(moments[1].longADRC, 2.0, 0.02);
    EXPECT_LT(moments[1].clippedShort, 0.003);
    EXPECT_LE(moments[1].shortTimeMs + moments[1].longTimeMs, 33.01);
}

INSTANTIATE_TEST_SUITE_P(Answers, HDRFirstTuning, testing::Values(ForHDR()));

}  // namespace
