// Pictures with flash, from the request to the read-out picture, judged by the numbers of the summary.

#include <gtest/gtest.h>

#include "host/flashcalibration.h"
#include "tests/kirosim/simulationrun.h"
#include "tools/kirosim/flashreport.h"

using namespace kirosim;

namespace
{

/// What the report of a run says; it must not outlive the run.
FlashReport FlashReportOf(const SimulationRun& rRun)
{
    return rRun.Show(FlashReport(*rRun.GetScene().flash));
}

Colour WantedOf(const FlashShot& rShot)
{
    const AECAlgoWhiteBalanceState& rBalance = rShot.decided.whiteBalance;
    return {1.0 / static_cast<DOUBLE>(rBalance.redGain), 1.0 / static_cast<DOUBLE>(rBalance.blueGain)};
}

Colour ColourOf(const KIROAlgoFlashOutput& rCurrent)
{
    return {static_cast<DOUBLE>(rCurrent.RGRatio), static_cast<DOUBLE>(rCurrent.BGRatio)};
}

TEST(Flash, ExposesTheForegroundInTheWantedColourWithinTheAllowedCurrent)
{
    const std::tuple<const CHAR*, const CHAR*, UINT8, INT32> cases[] = {{"flash", "main", 3, 1000},
                                                                        {"flash", "weak-battery", 3, 450},
                                                                        {"flash", "derated", 3, 150},
                                                                        {"flash", "near", 3, 1000},
                                                                        {"flash", "main", 1, 1000},
                                                                        {"flash", "main", 5, 1000},
                                                                        {"flash-precision", "plain", 3, 1000},
                                                                        {"flash-precision", "precision", 2, 1000}};
    for (const auto& [pScene, pVariant, latency, current] : cases)
    {
        SCOPED_TRACE(testing::Message() << pScene << " " << pVariant << " latency " << UINT32{latency});
        Scene scene          = SimulationRun::Example(pScene, pVariant);
        scene.sensor.latency = latency;
        const SimulationRun run(scene);
        const FlashReport   report = FlashReportOf(run);
        ASSERT_EQ(report.Shots().size(), 1U);
        const FlashShot& rShot = report.Shots().front();

        EXPECT_FLOAT_EQ(rShot.decided.target, 50.0f);
        EXPECT_NEAR(FlashReport::NearOverTarget(rShot), 1.0, 0.1);
        EXPECT_TRUE(rShot.decided.isStoppedByMeter);
        EXPECT_EQ(report.CurrentMax(), current);
        EXPECT_LE(report.CurrentMax(), scene.flash->maxCurrent);
        EXPECT_LE(MatchOf(rShot.decided.low, WantedOf(rShot)).steps, 1.0);
        EXPECT_LE(MatchOf(rShot.decided.high, ColourOf(rShot.decided.low)).steps, 1.0);
        EXPECT_NEAR(rShot.lamp.rg, WantedOf(rShot).rg, 0.01);
        EXPECT_NEAR(rShot.lamp.bg, WantedOf(rShot).bg, 0.01);
    }
}

TEST(Flash, PreflashIsMeteredUntilNothingIsTooBright)
{
    const FlashShot dim    = FlashReportOf(SimulationRun("flash", "main")).Shots().at(0);
    const FlashShot bright = FlashReportOf(SimulationRun("flash", "near")).Shots().at(0);
    EXPECT_EQ(dim.decided.preflashFrames, 1U);
    EXPECT_EQ(dim.decided.lowExposure, dim.decided.offExposure);
    EXPECT_GT(bright.decided.preflashFrames, 1U);
    EXPECT_LT(bright.decided.lowExposure, bright.decided.offExposure);
}

TEST(Flash, PreviewGoesOnAsBeforeThePicture)
{
    Scene scene  = SimulationRun::Example("flash", "main");
    scene.frames = 80;
    const SimulationRun run(scene);
    UINT32              readoutFrames = 0;
    const DOUBLE        before        = static_cast<DOUBLE>(FlashReportOf(run).Shots().at(0).decided.offExposure);
    for (const FrameRecord& rRecord : run.Records())
    {
        // The frame of the picture itself carries the preview to which the camera goes back.
        if (rRecord.flash.phase == FlashCapturePhase::Readout && !rRecord.flash.shot.has_value())
        {
            ++readoutFrames;
            EXPECT_EQ(rRecord.decided.metering.bIsMeteringSkipped, TRUE) << rRecord.frame;
        }
        const auto& rSafe = rRecord.decided.arbitration[AECAlgoExposureSafe].exposureSet;
        if (rRecord.frame > 60)
        {
            EXPECT_NEAR(static_cast<DOUBLE>(rSafe.exposure) / before, 1.0, 0.05) << rRecord.frame;
        }
    }
    EXPECT_EQ(readoutFrames, scene.sensor.latency - 1U);
}

TEST(PrecisionFlash, KeepsTheBackgroundOfThePreviewWhereAPlainFlashLosesIt)
{
    const FlashShot split = FlashReportOf(SimulationRun("flash-precision", "precision")).Shots().at(0);
    const FlashShot plain = FlashReportOf(SimulationRun("flash-precision", "plain")).Shots().at(0);
    EXPECT_TRUE(split.decided.isPrecision);
    EXPECT_FALSE(plain.decided.isPrecision);
    EXPECT_GT(split.decided.e1, 0.0f);
    EXPECT_NEAR(static_cast<DOUBLE>(split.decided.mainExposure),
                static_cast<DOUBLE>(split.decided.e1 + split.decided.e2),
                0.02 * static_cast<DOUBLE>(split.decided.mainExposure));
    EXPECT_NEAR(FlashReport::NearOverTarget(split), 1.0, 0.1);
    EXPECT_GT(split.farLuma, 0.7 * split.farLumaOff);
    EXPECT_LT(plain.farLuma, 0.3 * plain.farLumaOff);
}

TEST(FlashCalibration, LearnsTheColourOfTheLEDsAndKeepsItFromRunToRun)
{
    Scene scene  = SimulationRun::Example("flash-calibration");
    scene.frames = 330;
    const SimulationRun learning(scene);
    const FlashReport   report = FlashReportOf(learning);
    const auto&         rShots = report.Shots();
    ASSERT_GE(rShots.size(), 12U);
    ASSERT_LE(rShots.size(), 30U);
    EXPECT_GT(rShots.front().kneeError, 0.05);
    EXPECT_LT(report.KneeErrorLeft(rShots.size() - 1), 0.25);

    Scene again          = scene;
    again.frames         = 40;
    again.flash->learned = rShots.back().learned;
    EXPECT_TRUE(flashcalibration::IsComplete(again.flash->learned));
    EXPECT_NEAR(FlashReportOf(SimulationRun(again)).Shots().at(0).kneeError, rShots.back().kneeError, 0.002);

    again.flash->learned.pop_back();
    EXPECT_THROW(SimulationRun{again}, std::runtime_error) << "shorter than it says";
}

}  // namespace
