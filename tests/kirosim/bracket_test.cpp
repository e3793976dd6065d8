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

class Brackets : public testing::Test
{
protected:
    static VOID SetUpTestSuite()
    {
        const SimulationRun run("bracket", "", "phone.yaml");
        s_results = run.Show(BracketReport(run.GetScene().sensor.latency)).Results();
        s_summary = run.Summary();
    }

    VOID SetUp() override
    {
        ASSERT_EQ(s_results.size(), 3U);
        for (const BracketResult& rResult : s_results)
        {
            ASSERT_EQ(rResult.frames.size(), 3U);
        }
    }

    static inline std::vector<BracketResult> s_results;
    static inline RunSummary                 s_summary;
};

TEST_F(Brackets, PicturesLieTwoStopsApartAtThePreviewsTime)
{
    for (const BracketResult& rResult : s_results)
    {
        for (size_t index = 0; index < 3; ++index)
        {
            const BracketFrameResult& rFrame = rResult.frames[index];
            const DOUBLE              ev     = 2.0 * static_cast<DOUBLE>(index) - 2.0;
            EXPECT_EQ(rFrame.evSteps, static_cast<INT32>(ev * 6.0));
            EXPECT_NEAR(rFrame.exposureEV, ev, 0.01);
            EXPECT_NEAR(static_cast<DOUBLE>(rFrame.timeNs), static_cast<DOUBLE>(rResult.before.time), 2.0);
        }
        ASSERT_TRUE(rResult.frames[0].pictureEV.has_value() && rResult.frames[1].pictureEV.has_value());
        EXPECT_NEAR(*rResult.frames[0].pictureEV - *rResult.frames[1].pictureEV, -2.0, 0.02);
        // Two stops above, the brightest of the texture clip.
        EXPECT_GT(*rResult.frames[2].pictureEV - *rResult.frames[1].pictureEV, 1.5);
    }
    // The table alone would have raised the gain of the last dark picture to 2 and halved its time.
    EXPECT_LT(s_results[2].frames[0].gain, 1.5f);
}

TEST_F(Brackets, EachSignHasItsTunedGains)
{
    for (const BracketResult& rResult : s_results)
    {
        for (const BracketFrameResult& rFrame : rResult.frames)
        {
            EXPECT_NEAR(rFrame.ADRCOfSensor, rFrame.ADRC, 0.01);
            EXPECT_NEAR(rFrame.darkBoostOfSensor, rFrame.darkBoost, 0.01);
        }
        EXPECT_EQ(rResult.frames[0].ADRC, 1.0f);
        EXPECT_GT(rResult.frames[0].darkBoost, 1.5f);
        EXPECT_GT(rResult.frames[1].ADRC, 1.4f);
        EXPECT_GT(rResult.frames[1].darkBoost, 1.2f);
        EXPECT_GT(rResult.frames[2].ADRC, 1.8f);
        EXPECT_EQ(rResult.frames[2].darkBoost, 1.0f);
    }
}

TEST_F(Brackets, TheLockHoldsTheExposuresWhileTheLightStaysAndLetsGoWhenItDoesNot)
{
    for (size_t index = 0; index < 3; ++index)
    {
        EXPECT_FALSE(s_results[0].frames[index].isLocked);
        EXPECT_TRUE(s_results[1].frames[index].isLocked);
        EXPECT_FALSE(s_results[2].frames[index].isLocked);
        EXPECT_EQ(s_results[1].frames[index].exposureLog2, s_results[0].frames[index].exposureLog2);
        EXPECT_NEAR(s_results[2].frames[index].exposureLog2 - s_results[0].frames[index].exposureLog2, -1.1, 0.05);
    }
}

TEST_F(Brackets, ThePreviewGoesOnWhereItWas)
{
    for (const BracketResult& rResult : s_results)
    {
        EXPECT_EQ(rResult.previewChangeEV, 0.0);
        ASSERT_TRUE(rResult.pictureChangeEV.has_value());
        EXPECT_NEAR(*rResult.pictureChangeEV, 0.0, 0.005);
    }
    EXPECT_EQ(s_summary.rippleEV, 0.0);
    EXPECT_TRUE(s_summary.isLegal);
}

TEST(BracketCapture, PicturesThatArePartOfTheStatisticsAlreadyAreNotMetered)
{
    const SimulationRun run("bracket", "short-pipeline", "phone.yaml");
    const auto          results = run.Show(BracketReport(run.GetScene().sensor.latency)).Results();
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
    const SimulationRun run("bracket", "", "minimal.yaml");
    const auto          results = run.Show(BracketReport(run.GetScene().sensor.latency)).Results();
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
