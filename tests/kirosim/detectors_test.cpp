// Scene change detectors in the loop: a passing hand is waited for, a real change is followed.

#include <gtest/gtest.h>

#include "tests/kirosim/simulationrun.h"
#include "tools/kirosim/detectorreport.h"

using namespace kirosim;

namespace
{

constexpr size_t LightJump  = 0;
constexpr size_t NewPicture = 1;

/// Frames of the tuned hold time, 1.5 s, and those in which the end is noticed.
constexpr UINT32 HoldFrames = 47;

DetectorReport ReportOf(const SimulationRun& rRun)
{
    return rRun.Show(DetectorReport(rRun.GetScene().detectors));
}

TEST(Detectors, AHandThatPassesMovesTheFilmNotAtAllAndTheFinderAllTheWay)
{
    const SimulationRun   film("hand");
    const DetectorReport  held  = ReportOf(film);
    const DetectorResult& rJump = held.Results()[LightJump];
    EXPECT_EQ(rJump.name, "LightJump");
    EXPECT_LT(held.PassDepthEV(), -4.9);
    EXPECT_EQ(held.PassSwingEV(), 0.0);
    EXPECT_EQ(rJump.detections, 1U);
    EXPECT_EQ(rJump.rebases, 1U);
    EXPECT_NEAR(rJump.framesHeld, HoldFrames, 1);
    // In the very frame that shows the hand: convergence would have moved in it.
    EXPECT_NEAR(*rJump.heldFrom, 3.0, 1e-6);
    EXPECT_EQ(rJump.framesAtRest + rJump.framesChanged + rJump.framesStableAgain, film.GetScene().frames);

    // The host's own detector reports each change and returns to rest.
    const DetectorResult& rNew = held.Results()[NewPicture];
    EXPECT_EQ(rNew.detections, 2U);
    EXPECT_EQ(rNew.rebases, 2U);
    EXPECT_EQ(rNew.framesHeld, 0U);

    const DetectorReport followed = ReportOf(SimulationRun("hand", "followed"));
    EXPECT_GT(*followed.PassSwingEV(), 4.5);
    EXPECT_EQ(followed.Results()[LightJump].rebases, 0U);
}

TEST(Detectors, AHandThatComesSlowlyIsFollowedOnlyUntilItIsKnown)
{
    const DetectorReport report = ReportOf(SimulationRun("hand", "slowly"));
    EXPECT_LT(*report.PassSwingEV(), 0.2);
    EXPECT_EQ(report.Results()[LightJump].detections, 1U);
}

TEST(Detectors, ARealChangeIsFollowedAfterTheHoldTimeAndBecomesTheNewBaseline)
{
    const SimulationRun   run("scene-change");
    const DetectorReport  report = ReportOf(run);
    const DetectorResult& rJump  = report.Results()[LightJump];
    EXPECT_EQ(report.PassSwingEV(), 0.0);
    EXPECT_NEAR(rJump.framesHeld, HoldFrames, 1);
    EXPECT_NEAR(run.SafeLog2At(run.GetScene().frames / run.GetScene().fps - 0.1) - run.SafeLog2At(2.9), 2.5, 0.1);
    EXPECT_EQ(rJump.detections, 1U);
    EXPECT_EQ(rJump.rebases, 1U);
    EXPECT_EQ(run.Last().detectors[LightJump].scState, KIROSCDStateMonitor);
}

}  // namespace
