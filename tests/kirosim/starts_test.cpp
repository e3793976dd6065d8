// How near sessions begin to where they settle, through the shared library.

#include <cmath>
#include <gtest/gtest.h>

#include "host/queries.h"
#include "tests/kirosim/simulationrun.h"
#include "tools/kirosim/queryanswers.h"
#include "tools/kirosim/startreport.h"

using namespace kirosim;

namespace
{

using Source = std::optional<KIROAlgoStartExpType>;

std::vector<StartResult> ResultsOf(const std::string& rVariant = "")
{
    return SimulationRun("starts", rVariant).ReportOf<StartReport>().Results();
}

TEST(Starts, EverySourceBeginsNearerThanTheFixedStart)
{
    const std::vector<StartResult> results = ResultsOf();
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

    // A slave begins with its master's exposure.
    const std::vector<StartResult> pair = ResultsOf("master");
    ASSERT_EQ(pair.size(), 3u);
    EXPECT_TRUE(pair[2].isSecond);
    EXPECT_EQ(pair[2].source, Source(KIROStartExpDCFollow));
    EXPECT_LE(std::abs(pair[2].errorEV), 0.02);
}

TEST(Starts, AWrongReadingAndAFixedStartShowInTheFirstFrame)
{
    const StartResult covered = ResultsOf("covered").at(0);
    EXPECT_EQ(covered.source, Source(KIROStartExpExtLightData));
    EXPECT_NEAR(covered.errorEV, std::log2(25.0 / 3.0), 0.6);
    const StartResult fixed = ResultsOf("fixed").at(0);
    EXPECT_EQ(fixed.source, Source());
    EXPECT_EQ(fixed.errorEV, fixed.fixedEV);
    EXPECT_NEAR(fixed.errorEV, -4.0, 0.2);
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
