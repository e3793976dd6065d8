// Pictures with flash, from the request to the read-out picture, judged by the numbers of the summary.

#include <fstream>
#include <gtest/gtest.h>

#include "host/flashcalibration.h"
#include "tests/kirosim/simulationrun.h"
#include "tools/kirosim/flashreport.h"
#include "tools/tuningfile/inputerror.h"

using namespace kirosim;

namespace
{

/// A run of a scene and what its report says.
class FlashRun
{
public:
    explicit FlashRun(const Scene& rScene) : m_scene(rScene), m_report(*m_scene.flash)
    {
        LoadedTuning tuning(EXAMPLES_DIR "/tunings/phone.yaml");
        Simulation   simulation(m_scene, tuning, DiscardLog);
        simulation.Run(
            [this](const FrameRecord& rRecord)
            {
                m_report.Add(rRecord);
                // The frame of the picture itself carries the preview to which the camera goes back.
                if (rRecord.flash.phase == FlashCapturePhase::Readout && !rRecord.flash.shot.has_value())
                {
                    ++m_readoutFrames;
                    m_readoutFramesMetered += (rRecord.decided.metering.bIsMeteringSkipped == FALSE) ? 1 : 0;
                }
                m_safe.push_back(rRecord.decided.arbitration[AECAlgoExposureSafe].exposureSet.exposure);
            });
    }

    const FlashReport& Report() const
    {
        return m_report;
    }

    /// Frames until the picture is read out.
    UINT32 ReadoutFrames() const
    {
        return m_readoutFrames;
    }

    UINT32 ReadoutFramesMetered() const
    {
        return m_readoutFramesMetered;
    }

    const std::vector<UINT64>& SafeExposures() const
    {
        return m_safe;
    }

private:
    Scene               m_scene;
    FlashReport         m_report;
    std::vector<UINT64> m_safe;
    UINT32              m_readoutFrames        = 0;
    UINT32              m_readoutFramesMetered = 0;
};

Scene ReadExample(const std::string& rName, const std::string& rVariant = "")
{
    return ReadScene(EXAMPLES_DIR "/scenes/" + rName + ".yaml", rVariant);
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

struct FlashBar
{
    const CHAR* pScene;
    const CHAR* pVariant;
    UINT8       latency;
    INT32       current;  ///< of the picture, mA
};

VOID PrintTo(const FlashBar& rBar, std::ostream* pStream)
{
    *pStream << rBar.pScene << " " << rBar.pVariant << " latency " << static_cast<UINT32>(rBar.latency);
}

class MainFlash : public testing::TestWithParam<FlashBar>
{
};

TEST_P(MainFlash, ExposesTheForegroundInTheWantedColourWithinTheAllowedCurrent)
{
    Scene scene          = ReadExample(GetParam().pScene, GetParam().pVariant);
    scene.sensor.latency = GetParam().latency;
    const FlashRun run(scene);
    ASSERT_EQ(run.Report().Shots().size(), 1U);
    const FlashShot& rShot = run.Report().Shots().front();

    EXPECT_FLOAT_EQ(rShot.decided.target, 50.0f);
    EXPECT_NEAR(FlashReport::NearOverTarget(rShot), 1.0, 0.1);
    EXPECT_TRUE(rShot.decided.isStoppedByMeter);
    EXPECT_EQ(run.Report().CurrentMax(), GetParam().current);
    EXPECT_LE(run.Report().CurrentMax(), scene.flash->maxCurrent);
    EXPECT_LE(MatchOf(rShot.decided.low, WantedOf(rShot)).steps, 1.0);
    EXPECT_LE(MatchOf(rShot.decided.high, ColourOf(rShot.decided.low)).steps, 1.0);
    EXPECT_NEAR(rShot.lamp.rg, WantedOf(rShot).rg, 0.01);
    EXPECT_NEAR(rShot.lamp.bg, WantedOf(rShot).bg, 0.01);
}

INSTANTIATE_TEST_SUITE_P(Scenes, MainFlash,
                         testing::Values(FlashBar{"flash", "main", 3, 1000}, FlashBar{"flash", "weak-battery", 3, 450},
                                         FlashBar{"flash", "derated", 3, 150}, FlashBar{"flash", "near", 3, 1000},
                                         FlashBar{"flash", "main", 1, 1000}, FlashBar{"flash", "main", 5, 1000},
                                         FlashBar{"flash-precision", "plain", 3, 1000},
                                         FlashBar{"flash-precision", "precision", 2, 1000}));

TEST(Flash, PreflashIsMeteredUntilNothingIsTooBright)
{
    const FlashRun   dim(ReadExample("flash", "main"));
    const FlashRun   bright(ReadExample("flash", "near"));
    const FlashShot& rDim    = dim.Report().Shots().at(0);
    const FlashShot& rBright = bright.Report().Shots().at(0);
    EXPECT_EQ(rDim.decided.preflashFrames, 1U);
    EXPECT_EQ(rDim.decided.lowExposure, rDim.decided.offExposure);
    EXPECT_GT(rBright.decided.preflashFrames, 1U);
    EXPECT_LT(rBright.decided.lowExposure, rBright.decided.offExposure);
}

TEST(Flash, PreviewGoesOnAsBeforeThePicture)
{
    Scene scene  = ReadExample("flash", "main");
    scene.frames = 80;
    const FlashRun run(scene);
    EXPECT_EQ(run.ReadoutFrames(), scene.sensor.latency - 1U);
    EXPECT_EQ(run.ReadoutFramesMetered(), 0U);
    const std::vector<UINT64>& rSafe  = run.SafeExposures();
    const DOUBLE               before = static_cast<DOUBLE>(run.Report().Shots().at(0).decided.offExposure);
    for (size_t frame = rSafe.size() - 20; frame < rSafe.size(); ++frame)
    {
        EXPECT_NEAR(static_cast<DOUBLE>(rSafe[frame]) / before, 1.0, 0.05) << frame;
    }
}

TEST(PrecisionFlash, KeepsTheBackgroundOfThePreviewWhereAPlainFlashLosesIt)
{
    const FlashRun   precision(ReadExample("flash-precision", "precision"));
    const FlashRun   plain(ReadExample("flash-precision", "plain"));
    const FlashShot& rSplit = precision.Report().Shots().at(0);
    const FlashShot& rPlain = plain.Report().Shots().at(0);
    EXPECT_TRUE(rSplit.decided.isPrecision);
    EXPECT_FALSE(rPlain.decided.isPrecision);
    EXPECT_GT(rSplit.decided.e1, 0.0f);
    EXPECT_NEAR(static_cast<DOUBLE>(rSplit.decided.mainExposure),
                static_cast<DOUBLE>(rSplit.decided.e1 + rSplit.decided.e2),
                0.02 * static_cast<DOUBLE>(rSplit.decided.mainExposure));
    EXPECT_NEAR(FlashReport::NearOverTarget(rSplit), 1.0, 0.1);
    EXPECT_GT(rSplit.farLuma, 0.7 * rSplit.farLumaOff);
    EXPECT_LT(rPlain.farLuma, 0.3 * rPlain.farLumaOff);
}

TEST(FlashCalibration, LearnsTheColourOfTheLEDsAndKeepsItFromRunToRun)
{
    Scene scene  = ReadExample("flash-calibration");
    scene.frames = 330;
    const FlashRun learning(scene);
    const auto&    rShots = learning.Report().Shots();
    ASSERT_GE(rShots.size(), 12U);
    ASSERT_LE(rShots.size(), 30U);
    EXPECT_GT(rShots.front().kneeError, 0.05);
    EXPECT_LT(learning.Report().KneeErrorLeft(rShots.size() - 1), 0.25);

    Scene again          = scene;
    again.frames         = 40;
    again.flash->learned = rShots.back().learned;
    EXPECT_TRUE(flashcalibration::IsComplete(again.flash->learned));
    const FlashRun next(again);
    EXPECT_NEAR(next.Report().Shots().at(0).kneeError, rShots.back().kneeError, 0.002);

    again.flash->learned.pop_back();
    EXPECT_THROW(FlashRun run(again), std::runtime_error) << "shorter than it says";
}

TEST(FlashScene, ASlipInTheTextIsNamedWithItsPlace)
{
    const std::string path    = testing::TempDir() + "flash_test.yaml";
    const auto        errorOf = [&path](const std::string& rText)
    {
        std::ofstream(path) << rText;
        try
        {
            (VOID) ReadScene(path, "");
        }
        catch (const tuningfile::InputError& rError)
        {
            return std::string(rError.what());
        }
        return std::string();
    };
    EXPECT_NE(errorOf("flash: {led: 1}\n").find(":1:9:"), std::string::npos) << errorOf("flash: {led: 1}\n");
    EXPECT_NE(errorOf("flash: {leds: [{rg: 1}]}\n").find("two LEDs"), std::string::npos);
    EXPECT_NE(errorOf("flash: {pictures: {light: [[0.5]]}}\n").find("2 numbers"), std::string::npos);
}

}  // namespace
