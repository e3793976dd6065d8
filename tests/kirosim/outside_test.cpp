// Data from outside the camera in the loop: a map that follows a subject, and a gyro.

#include <gtest/gtest.h>

#include "tests/kirosim/simulationrun.h"
#include "tools/kirosim/outsidereport.h"

using namespace kirosim;

namespace
{

TEST(OutsideData, AMapKeepsAMovingSubjectExposed)
{
    for (const CHAR* pVariant : {"", "bright", "segmentation"})
    {
        SCOPED_TRACE(pVariant);
        const SimulationRun  run("moving-subject", pVariant);
        const TrackingReport report   = run.ReportOf<TrackingReport>();
        const auto&          rChanges = report.Changes();
        ASSERT_EQ(rChanges.size(), 2u) << report.Format();
        EXPECT_TRUE(rChanges[0].isTracking);
        EXPECT_EQ(rChanges[0].frame, 63u) << "the third frame of the map, which comes with frame 61";
        EXPECT_FALSE(rChanges[1].isTracking);
        EXPECT_EQ(rChanges[1].frame, 181u) << "the frame in which the map goes";
        ASSERT_TRUE(report.SubjectErrorEV(false).has_value());
        ASSERT_TRUE(report.SubjectErrorEV(true).has_value());
        EXPECT_GT(*report.SubjectErrorEV(false), 1.2);
        EXPECT_LT(*report.SubjectErrorEV(true), 0.9);
        ASSERT_TRUE(report.FramesToRecover().has_value());
        EXPECT_LE(*report.FramesToRecover(), 10u);
    }
}

TEST(OutsideData, AShakingHandTradesTimeForGain)
{
    const SimulationRun run("shake");
    const ShakeReport   report  = run.ReportOf<ShakeReport>();
    const auto          moments = report.Moments();
    ASSERT_EQ(moments.size(), 3u) << report.Format();
    EXPECT_NEAR(moments[0].timeMs, 33.33, 0.01) << "still";
    EXPECT_NEAR(moments[1].timeMs, 5.0, 0.5) << "shaking: 5 ms at 0.6 to 0.8 rad/s";
    EXPECT_NEAR(moments[2].timeMs, 12.0, 0.1) << "a little: 12 ms at 0.2 to 0.3 rad/s";
    for (const ShakeReport::Moment& rMoment : moments)
    {
        EXPECT_NEAR(rMoment.exposureLog2, moments[0].exposureLog2, 0.01);
        EXPECT_NEAR(rMoment.timeMs * rMoment.gain, moments[0].timeMs * moments[0].gain, 0.5);
    }
}

TEST(OutsideData, AnObjectMovesStraightBetweenThePointsOfItsPath)
{
    SceneObject object;
    object.size                                    = 0.2;
    object.path                                    = {{1.0, 0.2, 0.5}, {3.0, 0.8, 0.5}};
    object.appears                                 = 0.5;
    object.goes                                    = 4.0;
    const std::tuple<DOUBLE, DOUBLE, bool> cases[] = {{0.4, 0.2, false},  {0.5, 0.2, true},  {2.0, 0.5, true},
                                                      {2.0, 0.39, false}, {2.0, 0.59, true}, {3.5, 0.8, true},
                                                      {4.0, 0.8, false}};
    for (const auto& [time, x, isCovered] : cases)
    {
        EXPECT_EQ(object.Covers(time, x, 0.5), isCovered) << time << " s at " << x;
    }
    EXPECT_FALSE(object.Covers(2.0, 0.5, 0.61));
}

}  // namespace
