// A tuning that is reloaded or replaced under a camera. What the camera has built from the records of before must go,
// and its answers must be those of a camera that is made on the new tuning. Addresses and IDs of records come back at
// every second reload and with a store in the place of another, so that in plain builds, too, stale objects show.

#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/core/reloadtuning.h"
#include "tests/support/statslogcapture.h"

using namespace reloadtuning;

namespace
{

/// A camera whose exposures stay at the start's, so that what it answers in a frame follows from its tuning alone.
class Camera : public Frames
{
public:
    explicit Camera(const StatsTuningData& rTuning) : Frames(rTuning), m_fine(256, 25.0f)
    {
        m_record.Host().SetEnabled(true);
        AddChannel("fine", KIROStatsGrid, {16, 16, 0, 8}).channelData.Data.pFData = m_fine.data();
        ReturnToStart();
        EndFrame(TRUE);
    }

    VOID SetTuning(const StatsTuningData& rTuning)
    {
        EXPECT_EQ(Set(AECAlgoSetParamTunaraData, rTuning), 0);
    }

    VOID Run()
    {
        BeginFrame(25.0f);
        KIROMeteringInput input = {TRUE, 0};
        m_result                = m_pAlgo->runMeteringPreprocess(m_pAlgo, input, m_metering);
        m_analyzed              = {};
        (VOID) m_pAlgo->runAnalyzer(m_pAlgo, 0, m_analyzed);
        (VOID) m_pAlgo->runMeteringPostprocess(m_pAlgo, input, m_metering);
        (VOID) Converge();
        m_converged = m_convergence.exposures[AECAlgoExposureSafe];
        ReturnToStart();
        EndFrame();
    }

    /// What three frames come to, as text, of the outputs of a version. Values that no module writes any more stay in
    /// their banks, so they are taken away before.
    std::vector<std::string> Answers(UINT32 version)
    {
        const INT32 offset = static_cast<INT32>(version);
        for (const INT32 dataID : {1, 3, TargetID + offset})
        {
            SetValue(BankIDSceneAnalyzer, DBStartEndPayload{dataID, {}, nullptr});
        }
        SetValue(BankIDStatsCalculator, DBFloatPayload{1, 0.0f, nullptr});
        SetValue(BankIDStatsCalculator, DBFloatPayload{CalculatorID + offset, 0.0f, nullptr});
        SetValue(BankIDTriggers, DBFloatPayload{FilterID + offset, 0.0f, nullptr});

        std::vector<std::string> answers;
        const auto               add = [&answers](const CHAR* pName, DOUBLE value)
        {
            CHAR text[64];
            std::snprintf(text, sizeof(text), "%s %g", pName, value);
            answers.emplace_back(text);
        };
        for (UINT32 frame = 0; frame < 3; ++frame)
        {
            Run();
            add("result", m_result);
            add("luma", m_analyzed.luma);
            add("target", m_analyzed.target.start);
            add("sensitivity", static_cast<DOUBLE>(m_analyzed.sensitivity));
            add("metered", static_cast<DOUBLE>(m_metering.exposures[AECAlgoExposureSafe]));
            add("converged", static_cast<DOUBLE>(m_converged));
            add("target bank", Value<DBStartEndPayload>(BankIDSceneAnalyzer, TargetID + offset).value.start);
            add("calculator", Value<DBFloatPayload>(BankIDStatsCalculator, CalculatorID + offset).value);
            add("filter", Value<DBFloatPayload>(BankIDTriggers, FilterID + offset).value);
            add("generator", Weight(GeneratorID + offset));
            add("map", Weight(MapID + offset));
            KIROSCDOutput detected{};
            add("detector", m_pAlgo->GetSCDOutput(m_pAlgo, DetectorID + version, detected));
            add("change", detected.scState);
        }
        return answers;
    }

    KIROAnalyzerOutput m_analyzed{};

    using Frames::m_convergence;
    using Frames::m_pAlgo;
    using Frames::Value;

private:
    VOID TestBody() override
    {
    }

    VOID ReturnToStart()
    {
        SetStartExposures();
        for (KIROArbitrationOutput& rOutput : m_arbitration)
        {
            rOutput.exposureSet.exposure = StartExposure;
        }
    }

    DOUBLE Weight(INT32 dataID)
    {
        const auto table = Value<DBMeter2DWeightPayload>(BankIDMetering2D, dataID);
        return (table.dataID == dataID) ? table.weights[5] : -1.0;
    }

    std::vector<FLOAT> m_fine;
    UINT64             m_converged = 0;
};

/// The camera's frames against those of a camera that is made now.
VOID ExpectLikeNew(Camera& rCamera, StoredTuning& rTuning, const Content& rContent)
{
    const std::vector<std::string> answers = rCamera.Answers(rContent.version);
    EXPECT_EQ(answers, Camera(rTuning.Handle()).Answers(rContent.version));
}

/// A camera that has run, then all reloads between two of its frames, or with frames behind each.
VOID RunReloads(const std::vector<Content>& rReloads, bool hasFramesBetween)
{
    SCOPED_TRACE(hasFramesBetween ? "with frames between" : "without frames between");
    StoredTuning tuning({1});
    Camera       camera(tuning.Handle());
    camera.Run();
    for (const Content& rContent : rReloads)
    {
        tuning.Reload(rContent);
        camera.SetTuning(tuning.Handle());
        if (hasFramesBetween || &rContent == &rReloads.back())
        {
            ExpectLikeNew(camera, tuning, rContent);
        }
    }
}

TEST(Reload, CamerasGoOnLikeNewOnes)
{
    const Content refused{2, "", true};
    for (const auto& [pName, reloads] :
         std::vector<std::pair<const CHAR*, std::vector<Content>>>{{"one", {{2}}},
                                                                   {"two", {{2}, {3}}},
                                                                   {"three", {{2}, {3}, {4}}},
                                                                   {"four", {{2}, {3}, {4}, {5}}},
                                                                   {"the same again", {{1}, {1}}},
                                                                   {"refused", {refused}},
                                                                   {"refused, good", {refused, {3}}},
                                                                   {"refused twice", {refused, refused}},
                                                                   {"refused twice, good", {refused, refused, {3}}},
                                                                   {"good, refused, good", {{2}, refused, {3}}}})
    {
        SCOPED_TRACE(pName);
        RunReloads(reloads, false);
        RunReloads(reloads, true);
    }
}

TEST(Reload, ModulesMayGoAndComeBack)
{
    for (const auto& rModule : ModulesOf(TextOfTuning(1)))
    {
        SCOPED_TRACE(rModule.second);
        RunReloads({{2, rModule.second}, {3}}, true);
        RunReloads({{2, rModule.second}, {3, rModule.second}, {4}}, false);
    }
}

/// A store in the place of another has its addresses and its IDs.
TEST(Reload, AStoreMayTakeThePlaceOfAnother)
{
    StoredTuning between({2});
    auto         pFirst = std::make_unique<StoredTuning>(Content{1});
    Camera       camera(pFirst->Handle());
    ExpectLikeNew(camera, *pFirst, {1});
    for (UINT32 version = 3; version < 7; ++version)
    {
        camera.SetTuning(between.Handle());
        pFirst.reset();
        pFirst = std::make_unique<StoredTuning>(Content{version});
        camera.SetTuning(pFirst->Handle());
        ExpectLikeNew(camera, *pFirst, {version});
    }
}

/// The host may go on in the middle of a frame: each stage by itself finds the new tuning.
TEST(Reload, StagesBeforeTheNextFrameSeeTheNewTuning)
{
    const std::pair<const CHAR*, std::function<VOID(Camera&)>> stages[] = {
        {"runAnalyzer",
         [](Camera& rCamera)
         {
             EXPECT_EQ(rCamera.m_pAlgo->runAnalyzer(rCamera.m_pAlgo, 0, rCamera.m_analyzed), 0);
             EXPECT_EQ(rCamera.m_analyzed.target.start, 50.0f + QuickVersion);
         }},
        {"updateAnalyzerMgrOut",
         [](Camera& rCamera)
         {
             rCamera.m_analyzed.target = {7.0f, 8.0f};
             EXPECT_EQ(rCamera.m_pAlgo->updateAnalyzerMgrOut(rCamera.m_pAlgo, 0, &rCamera.m_analyzed), 0);
             EXPECT_EQ(rCamera.Value<DBStartEndPayload>(BankIDSceneAnalyzer, TargetID + QuickVersion).value.end, 8.0f);
         }},
        {"RunConvSettle",
         [](Camera& rCamera)
         {
             rCamera.m_pAlgo->RunConvSettle(rCamera.m_pAlgo, rCamera.m_convergence);
             EXPECT_EQ(rCamera.m_convergence.bSettle, TRUE);
         }},
        {"getBankData",
         [](Camera& rCamera)
         {
             const auto spot = rCamera.Value<DBFloatPayload>(BankIDStatsCalculator, CalculatorID + 1);
             EXPECT_EQ(spot.value, 25.0f) << "values stay";
             EXPECT_EQ(spot.description, nullptr) << "texts of the tuning do not";
         }},
        {"RunConvPostProcess",
         [](Camera& rCamera) { rCamera.m_pAlgo->RunConvPostProcess(rCamera.m_pAlgo, rCamera.m_convergence); }},
    };
    for (const auto& [pName, stage] : stages)
    {
        SCOPED_TRACE(pName);
        StoredTuning tuning({1});
        Camera       camera(tuning.Handle());
        camera.Run();
        tuning.Reload({2});
        camera.SetTuning(tuning.Handle());
        tuning.Reload({QuickVersion});
        camera.SetTuning(tuning.Handle());
        stage(camera);
        ExpectLikeNew(camera, tuning, {QuickVersion});
    }
}

TEST(Reload, FramesCountTheirModulesOnceAndForGood)
{
    StoredTuning tuning({1});
    Camera       camera(tuning.Handle());
    camera.Run();
    const UINT32 references = tuning.References();
    EXPECT_GT(references, 0U);
    for (UINT32 frame = 0; frame < 1000; ++frame)
    {
        camera.Run();
    }
    EXPECT_EQ(tuning.References(), references);
}

/// The store reads a mode when its path is first asked for, which the file as it is now no longer allows.
TEST(Reload, ACameraStaysInItsModeIfTheFileChangedBeforeTheNextOneWasRead)
{
    StoredTuning tuning({1});
    TuningMode   video[2] = {};
    video[1]              = {ModeType::Usecase, {2}};
    const StatsTuningData inVideo{tuning.Handle().pTuningSetManager, video, 2};
    Camera                camera(tuning.Handle());
    const auto            filters = [&camera](UINT32 version)
    {
        const std::vector<std::string> answers = camera.Answers(version);
        return std::ranges::find(answers, "filter 25") != answers.end();
    };
    const StatsLogCapture log;
    tuning.Write({2});
    for (int request = 0; request < 2; ++request)
    {
        camera.SetTuning(inVideo);
        EXPECT_TRUE(filters(1)) << "as the mode before does, and the next one does not";
    }
    EXPECT_EQ(
        log.Count(LevelError, "a mode cannot be read, since the tuning file has changed or gone: the one before stays"),
        1u);
    tuning.Reload({2});
    camera.SetTuning(inVideo);
    EXPECT_FALSE(filters(2));
}

}  // namespace
