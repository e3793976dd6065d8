// How near sessions begin to where they settle, through the shared library.

#include <cmath>
#include <gtest/gtest.h>

#include "host/queries.h"
#include "tests/kirosim/reportrun.h"
#include "tools/kirosim/queryanswers.h"
#include "tools/kirosim/startreport.h"

using namespace kirosim;

namespace
{

using StartRun = ReportRun<StartReport>;
using Source   = std::optional<KIROAlgoStartExpType>;

TEST(Starts, EverySourceBeginsNearerThanTheFixedStart)
{
    const std::vector<StartResult> results = StartRun("starts")->Results();
    // Light sensor, previous mode, preflash and back; the light sensor after a change of light, and its warm start.
    const std::pair<Source, DOUBLE> expected[] = {{KIROStartExpExtLightData, 0.6}, {KIROStartExpPrevMode, 0.1},
                                                  {KIROStartExpPreflash, 0.1},     {KIROStartExpPrevMode, 0.1},
                                                  {KIROStartExpExtLightData, 0.6}, {KIROStartExpExtLightData, 0.1}};
    ASSERT_EQ(results.size(), std::size(expected));
    for (size_t index = 0; index < results.size(); ++index)
    {
        const auto& [source, errorMax] = expected[index];
        EXPECT_EQ(results[index].source, source) << index;
        EXPECT_LE(std::abs(results[index].errorEV), errorMax) << index;
        EXPECT_GT(std::abs(results[index].fixedEV), 1.5) << index;
    }
}

TEST(Starts, AWrongReadingAndAFixedStartShowInTheFirstFrame)
{
    const StartResult covered = StartRun("starts", "covered")->Results().at(0);
    EXPECT_EQ(covered.source, Source(KIROStartExpExtLightData));
    EXPECT_NEAR(covered.errorEV, std::log2(25.0 / 3.0), 0.6);
    const StartResult fixed = StartRun("starts", "fixed")->Results().at(0);
    EXPECT_EQ(fixed.source, Source());
    EXPECT_EQ(fixed.errorEV, fixed.fixedEV);
    EXPECT_NEAR(fixed.errorEV, -4.0, 0.2);
}

TEST(Starts, ASlaveBeginsWithItsMastersExposure)
{
    const std::vector<StartResult> results = StartRun("starts", "master")->Results();
    ASSERT_EQ(results.size(), 3u);
    EXPECT_TRUE(results[2].isSecond);
    EXPECT_EQ(results[2].source, Source(KIROStartExpDCFollow));
    EXPECT_LE(std::abs(results[2].errorEV), 0.02);
}

TEST(Queries, AHostIsAnsweredThroughTheSharedLibrary)
{
    Scene scene  = ReadScene(EXAMPLES_DIR "/scenes/uniform.yaml", "");
    scene.frames = 20;
    LoadedTuning tuning(EXAMPLES_DIR "/tunings/phone.yaml");
    Simulation   simulation(scene, tuning, DiscardLog);
    UINT64       safe = 0;
    simulation.Run([&](const FrameRecord& rRecord)
                   { safe = rRecord.decided.arbitration[AECAlgoExposureSafe].exposureSet.exposure; });
    IKIROCoreAlgo* pAlgo        = simulation.MainCamera().Host().Algo();
    const auto     capabilities = QueryEVCapabilities(pAlgo);
    ASSERT_TRUE(capabilities.has_value());
    EXPECT_EQ(capabilities->stepsPerEV, 6);
    EXPECT_EQ(QueryPeerInfo(pAlgo)->statsFrameId, 20u);
    EXPECT_EQ(QueryPeerInfo(pAlgo)->exposureInfo.origExp[AECAlgoExposureSafe], static_cast<FLOAT>(safe));
    EXPECT_EQ(QuerySnapshotExposure(pAlgo, KIROCoreSnapshotType::Normal).frameControl.ISOValue, 100u);
    EXPECT_EQ(QueryUnanswered(pAlgo, AECAlgoGetParamSWVersion), 2);
    EXPECT_NE(QueryAnswers(pAlgo).find("-4 to 4 EV, 6 steps per EV"), std::string::npos);
}

}  // namespace
