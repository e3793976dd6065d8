// HDR sessions in the loop, judged by what their report says.

#include <gtest/gtest.h>

#include "tests/kirosim/simulationrun.h"
#include "tools/kirosim/hdrreport.h"

using namespace kirosim;

namespace
{

/// Frames that must lie between two switches of the sensor, by the tuning.
constexpr UINT64 StableFrames = 15;

TEST(HDR, AWindowSwitchesTheHybridSensorToFullAndBack)
{
    const SimulationRun run("hdr-hybrid");
    const HDRReport     report    = run.ReportOf<HDRReport>();
    const auto&         rSwitches = report.Switches();
    ASSERT_EQ(rSwitches.size(), 2u) << report.Format();
    EXPECT_FALSE(rSwitches[0].isBinned);
    EXPECT_GT(rSwitches[0].time, 2.0);
    EXPECT_LT(rSwitches[0].time, 3.5);
    EXPECT_GE(rSwitches[0].ADRC, 2.0);
    EXPECT_TRUE(rSwitches[1].isBinned);
    EXPECT_GT(rSwitches[1].time, 5.0);
    EXPECT_LT(rSwitches[1].ADRC, 2.0);

    // Open, the window is held by short and burnt out in safe. Binned, ADRC would end at its cap of 3.
    const std::vector<HDRReport::Moment> moments = report.Moments();
    ASSERT_EQ(moments.size(), 3u);
    EXPECT_NEAR(moments[0].safeOverShort, 1.0, 0.05);
    EXPECT_GT(moments[1].safeOverShort, 3.0);
    EXPECT_GT(moments[1].longOverSafe, 1.2);
    EXPECT_LT(moments[1].clippedShort, 0.002);
    EXPECT_GT(moments[1].clippedSafe, 0.03);
    EXPECT_NEAR(moments[2].safeOverShort, 1.0, 0.05);
    EXPECT_EQ(moments[1].longADRC, 1.0) << "for staggered exposures only";
    EXPECT_TRUE(run.Summary().isLegal);
}

TEST(HDR, AWindowThatClosesAtOnceLeavesTheModeUntilTheFramesAreCounted)
{
    const SimulationRun run("hdr-hybrid", "blink");
    const HDRReport     report    = run.ReportOf<HDRReport>();
    const auto&         rSwitches = report.Switches();
    ASSERT_EQ(rSwitches.size(), 2u) << report.Format();
    EXPECT_EQ(rSwitches[1].frame - rSwitches[0].frame, StableFrames + 1);
}

TEST(HDR, ShortIsBlendedInOnlyWhileLongAloneIsNotEnough)
{
    for (const CHAR* pVariant : {"", "multiframe"})
    {
        SCOPED_TRACE(pVariant);
        // A little darker than the example, where short asks for less than its 6 ms.
        Scene scene = SimulationRun::Example("hdr-staggered", pVariant);
        scene.lux *= 0.9;
        const SimulationRun run(scene);
        const HDRReport     report = run.ReportOf<HDRReport>();
        EXPECT_EQ(run.First().decided.convergence.convergedShortBlend, 0.9f) << "a step from 1";
        EXPECT_EQ(report.BlendRests(), (std::vector<DOUBLE>{0.0, 1.0, 0.0})) << report.Format();
        const std::vector<HDRReport::Moment> moments = report.Moments();
        ASSERT_EQ(moments.size(), 3u);
        // Without the window long lies as low as short; with it, no lower than half of safe.
        EXPECT_GT(moments[0].longADRC, 1.1);
        EXPECT_NEAR(moments[0].longADRC, moments[0].safeOverShort, 0.02);
        EXPECT_NEAR(moments[1].longADRC, 2.0, 0.02);
        EXPECT_NEAR(moments[1].longOverSafe, 0.5, 0.01);
        EXPECT_GT(moments[1].safeOverShort, 6.0);
        EXPECT_LT(moments[1].clippedShort, 0.003);
        EXPECT_GT(moments[1].clippedSafe, 0.05);
        // Short and long share 33 ms: what long leaves of its 27 ms short may take beyond its 6 ms.
        EXPECT_NEAR(moments[0].shortTimeMs, 6.0, 0.02);
        EXPECT_GT(moments[1].shortTimeMs, 6.05);
        EXPECT_LE(moments[1].shortTimeMs + moments[1].longTimeMs, 33.01);
    }
}

}  // namespace
