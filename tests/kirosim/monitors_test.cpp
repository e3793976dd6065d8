// Monitors in the loop: flags over a fall and a rise of the light, and the stretch of a picture without contrast.

#include <gtest/gtest.h>

#include "tests/kirosim/simulationrun.h"
#include "tools/kirosim/monitorreport.h"

using namespace kirosim;

namespace
{

TEST(Monitors, FlagsFollowTheLuxIndexAndTheContrastOfThePicture)
{
    const SimulationRun run("monitors");
    const MonitorReport report = run.Show(MonitorReport());
    // The tuned ranges; a ramp of 2.25 EV per second moves the index by less than 2 in a frame.
    const std::tuple<MonitoredFlag, FLOAT, FLOAT> ranges[] = {{MonitoredFlag::Flash, 330.0f, 350.0f},
                                                              {MonitoredFlag::FaceDelay, 310.0f, 325.0f},
                                                              {MonitoredFlag::LEDAssist, 330.0f, 350.0f},
                                                              {MonitoredFlag::LowLight, 370.0f, 390.0f}};
    for (const auto& [flag, start, end] : ranges)
    {
        SCOPED_TRACE(static_cast<INT32>(flag));
        const std::vector<FlagChange>& rChanges = report.Changes(flag);
        ASSERT_EQ(rChanges.size(), 2U);
        EXPECT_TRUE(rChanges[0].isRise);
        EXPECT_GT(rChanges[0].luxIndex, end);
        EXPECT_LT(rChanges[0].luxIndex, end + 2.0f);
        EXPECT_LT(rChanges[1].luxIndex, start);
        EXPECT_GT(rChanges[1].luxIndex, start - 2.0f);
    }
    EXPECT_EQ(report.Changes(MonitoredFlag::ZLL).size(), 1U);
    EXPECT_TRUE(report.Changes(MonitoredFlag::ZLLEnforced).empty());

    // Three exposures are asked for where the range is wide, and not in the dark.
    ASSERT_TRUE(report.HDR3Frame().has_value());
    // Five passing frames come before the first that says so.
    const size_t frame = *report.HDR3Frame() - 1;
    for (size_t index = frame - 5; index <= frame; ++index)
    {
        const auto& rTriggers = run.Records()[index].decided.extension.snapshot3HDRTriggers;
        EXPECT_EQ(rTriggers.IHDRTriggers.finalTriggerResult.flags[0], TRUE) << index;
        EXPECT_GT(rTriggers.IHDRTriggers.realDRCGain, 2.2f);
    }
    EXPECT_EQ(run.Records()[frame - 6].decided.extension.snapshot3HDRTriggers.IHDRTriggers.finalTriggerResult.flags[0],
              FALSE);
    EXPECT_GT(report.Changes(MonitoredFlag::HDR3)[1].luxIndex, 330.0f);

    // A picture without contrast is stretched once settled.
    const MonitorReport haze = SimulationRun("monitors", "haze").Show(MonitorReport());
    ASSERT_TRUE(haze.Stretch().has_value());
    EXPECT_GT(haze.Stretch()->clamp, 15.0f);
    EXPECT_NEAR(haze.Stretch()->scaling, 1.33f, 0.005f);
    EXPECT_FALSE(haze.HDR3Frame().has_value());
    EXPECT_LT(report.Stretch()->scaling, 1.1f) << "the window's picture is full already";
}

}  // namespace
