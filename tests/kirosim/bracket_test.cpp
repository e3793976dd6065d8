// Brackets in the loop: what the pictures become, what the lock holds, and what the preview does not notice.

#include <gtest/gtest.h>

#include "host/kirocorelibrary.h"
#include "host/kirodebugdata.h"
#include "host/snapshotgains.h"
#include "platform/tavodesk.h"
#include "tests/kirosim/simulationrun.h"
#include "tools/kirosim/bracketreport.h"

using namespace kirosim;

namespace
{

std::vector<BracketResult> ResultsOf(const SimulationRun& rRun)
{
    return rRun.Show(BracketReport(rRun.GetScene().sensor.latency)).Results();
}

TEST(BracketCapture, PicturesLieTwoStopsApartWithTheGainsOfTheirSignAndLeaveThePreviewAlone)
{
    const SimulationRun run("bracket");
    const auto          results = ResultsOf(run);
    ASSERT_EQ(results.size(), 3U);
    for (const BracketResult& rResult : results)
    {
        ASSERT_EQ(rResult.frames.size(), 3U);
        for (size_t index = 0; index < 3; ++index)
        {
            const BracketFrameResult& rFrame = rResult.frames[index];
            const DOUBLE              ev     = 2.0 * static_cast<DOUBLE>(index) - 2.0;
            EXPECT_EQ(rFrame.evSteps, static_cast<INT32>(ev * 6.0));
            EXPECT_NEAR(rFrame.exposureEV, ev, 0.01);
            EXPECT_NEAR(static_cast<DOUBLE>(rFrame.timeNs), static_cast<DOUBLE>(rResult.before.time), 2.0);
            EXPECT_NEAR(rFrame.ADRCOfSensor, rFrame.ADRC, 0.01);
            EXPECT_NEAR(rFrame.darkBoostOfSensor, rFrame.darkBoost, 0.01);
        }
        const auto& [rDark, rMiddle, rBright] = std::tie(rResult.frames[0], rResult.frames[1], rResult.frames[2]);
        ASSERT_TRUE(rDark.pictureEV.has_value() && rMiddle.pictureEV.has_value());
        EXPECT_NEAR(*rDark.pictureEV - *rMiddle.pictureEV, -2.0, 0.02);
        EXPECT_GT(*rBright.pictureEV - *rMiddle.pictureEV, 1.5) << "the brightest of the texture clip";
        EXPECT_EQ(rDark.ADRC, 1.0f);
        EXPECT_GT(rDark.darkBoost, 1.5f);
        EXPECT_GT(rMiddle.ADRC, 1.4f);
        EXPECT_GT(rMiddle.darkBoost, 1.2f);
        EXPECT_GT(rBright.ADRC, 1.8f);
        EXPECT_EQ(rBright.darkBoost, 1.0f);
        EXPECT_EQ(rResult.previewChangeEV, 0.0);
        ASSERT_TRUE(rResult.pictureChangeEV.has_value());
        EXPECT_NEAR(*rResult.pictureChangeEV, 0.0, 0.005);
    }
    // The table alone would have raised the gain of the last dark picture to 2 and halved its time.
    EXPECT_LT(results[2].frames[0].gain, 1.5f);
    EXPECT_EQ(run.Summary().rippleEV, 0.0);
    EXPECT_TRUE(run.Summary().isLegal);

    // The lock holds the exposures while the light stays, and lets go when it does not.
    for (size_t index = 0; index < 3; ++index)
    {
        EXPECT_FALSE(results[0].frames[index].isLocked);
        EXPECT_TRUE(results[1].frames[index].isLocked);
        EXPECT_FALSE(results[2].frames[index].isLocked);
        EXPECT_EQ(results[1].frames[index].exposureLog2, results[0].frames[index].exposureLog2);
        EXPECT_NEAR(results[2].frames[index].exposureLog2 - results[0].frames[index].exposureLog2, -1.1, 0.05);
    }
}

TEST(BracketCapture, PicturesThatArePartOfTheStatisticsAlreadyAreNotMetered)
{
    const auto results = ResultsOf(SimulationRun("bracket", "short-pipeline"));
    ASSERT_EQ(results.size(), 3U);
    for (const BracketResult& rResult : results)
    {
        EXPECT_NEAR(rResult.frames[0].exposureEV, -2.0, 0.01);
        EXPECT_NEAR(rResult.frames[2].exposureEV, 2.0, 0.01);
        EXPECT_EQ(rResult.previewChangeEV, 0.0);
    }
    EXPECT_NEAR(results[1].frames[1].exposureLog2, results[0].frames[1].exposureLog2, 0.01);
}

TEST(BracketCapture, ATuningWithoutSettingsOfSnapshotsTakesThePreviewsExposureTimesTheEV)
{
    // The small tuning has neither settings of snapshots, nor a lock, nor references.
    const auto results = ResultsOf(SimulationRun("bracket", "", "minimal.yaml"));
    ASSERT_EQ(results.size(), 3U);
    EXPECT_NEAR(results[0].frames[0].exposureEV, -2.0, 0.01);
    EXPECT_EQ(results[0].frames[1].ADRCOfSensor, 1.0);
    EXPECT_EQ(results[0].previewChangeEV, 0.0);
}

TEST(BracketCapture, GainsFollowTheTunedMethodOfTheSign)
{
    LoadedTuning    tuning(EXAMPLES_DIR "/tunings/phone.yaml");
    StatsTuningData data = tuning.Data(DefaultSelectors());
    KiroCoreLibrary library;
    KiroDebugData   debugData;
    IKIROCoreAlgo*  pAlgo = library.Create(data, debugData, DiscardLog);
    {
        SnapshotGains gains(pAlgo);
        const auto    set = [&](const std::string& rName, const std::string& rValue)
        {
            EXPECT_TRUE(
                tuning.Manager().SetValue(0, "0", "kirodbsnapshot.data[0].value", rName.c_str(), rValue.c_str()))
                << rName;
        };
        const auto expect = [&](INT32 evSteps, const DRCGains& rPreview, FLOAT ADRC, FLOAT darkBoost)
        {
            const DRCGains result = gains.ForBracket(evSteps, 100.0f, rPreview);
            EXPECT_EQ(result.ADRC, ADRC) << evSteps;
            EXPECT_EQ(result.darkBoost, darkBoost) << evSteps;
        };
        // 1: the preview's within limits. 0: none. 2: the tuning's.
        set("bracketingConfig.zeroEVDRCConfig.method", "1");
        set("bracketingConfig.zeroEVDRCConfig.baseExposureConstraints.maxADRCGain", "3");
        set("bracketingConfig.zeroEVDRCConfig.baseExposureConstraints.maxDarkBoostGain", "0.5");
        set("bracketingConfig.positiveEVDRCConfig.method", "0");
        expect(0, {4.0f, 4.0f}, 3.0f, 1.0f);
        expect(0, {2.0f, 4.0f}, 2.0f, 1.0f);
        expect(12, {4.0f, 4.0f}, 1.0f, 1.0f);
        // What answers from the tuning does not stay behind.
        const TavoDesk::AllocationCounters before = TavoDesk::GetAllocationCounters();
        expect(-12, {4.0f, 4.0f}, 1.0f, 1.5f);
        const TavoDesk::AllocationCounters after = TavoDesk::GetAllocationCounters();
        EXPECT_EQ(after.allocations - before.allocations, after.releases - before.releases);
        set("bApplyDRCWhenBracketing", "0");
        expect(0, {4.0f, 4.0f}, 1.0f, 1.0f);
        expect(-12, {4.0f, 4.0f}, 1.0f, 1.0f);
    }
    pAlgo->DestroyInstance(pAlgo);
}

}  // namespace
