// Recordings of a host of its own, which calls the library as no scene does.

#include <algorithm>
#include <array>
#include <gtest/gtest.h>

#include "host/kirodebugdata.h"
#include "tests/kirosim/recordingrun.h"
#include "tests/support/refusal.h"
#include "tools/recording/calls.h"

using namespace recordingtest;

namespace
{

/// A host of its own, with the library as hosts have it.
class RecordingOfAHost : public testing::Test
{
protected:
    IKIROCoreAlgo* Create(LoadedTuning& rTuning)
    {
        StatsTuningData tuning = rTuning.Data(DefaultSelectors());
        return m_recorder.Wrap(m_library.Create(tuning, m_debugData, DiscardLog), tuning);
    }

    static VOID Destroy(IKIROCoreAlgo* pAlgo)
    {
        pAlgo->DestroyInstance(pAlgo);
    }

    /// @return what the recorder has to say at the end
    std::string Finish()
    {
        return RefusalOf([this] { m_recorder.Finish(); });
    }

    RecordingFile   m_file;
    Recorder        m_recorder{m_file.path};
    KiroCoreLibrary m_library;
    KiroDebugData   m_debugData;
};

TEST_F(RecordingOfAHost, OfManyCamerasAndTwoTuningsIsReplayed)
{
    LoadedTuning other(EXAMPLES_DIR "/tunings/minimal.yaml");
    m_recorder.AddTuning(&Phone().Manager(), Phone().Reference());
    m_recorder.AddTuning(&other.Manager(), other.Reference());
    for (INT camera = 0; camera < 40; ++camera)
    {
        IKIROCoreAlgo* pAlgo = Create((camera % 2 == 0) ? Phone() : other);
        EXPECT_EQ(pAlgo->runStartOfFrame(pAlgo, 1), 0);
        Destroy(pAlgo);
    }
    EXPECT_EQ(Finish(), "");

    std::vector<std::string> paths;
    ReplayPlan               plan;
    plan.logger = DiscardLog;
    plan.tuning = [&](const TuningReference& rTuning) -> VOID*
    {
        paths.push_back(rTuning.path);
        return (paths.size() == 1) ? &Phone().Manager() : &other.Manager();
    };
    const ReplayResult result = Replayer(m_file.path, plan).Run();
    EXPECT_EQ(paths, (std::vector<std::string>{Phone().Reference().path, other.Reference().path}));
    EXPECT_EQ(result.differences, std::vector<std::string>{});
    EXPECT_EQ(result.damage, "");
    EXPECT_EQ(result.calls, 80u);
}

TEST_F(RecordingOfAHost, EndsAtTheSeventeenthCameraAtATime)
{
    m_recorder.AddTuning(&Phone().Manager(), Phone().Reference());
    std::vector<IKIROCoreAlgo*> cameras;
    for (INT camera = 0; camera < 17; ++camera)
    {
        cameras.push_back(Create(Phone()));
    }
    EXPECT_EQ(cameras.back()->runStartOfFrame(cameras.back(), 1), 0);
    std::for_each(cameras.begin(), cameras.end(), Destroy);
    EXPECT_EQ(Finish(), m_file.path + ": ends after 0 calls: more than 16 cameras at a time");
    EXPECT_EQ(ReplayOf(m_file.part.path).damage, "cut: its end is missing");
}

TEST_F(RecordingOfAHost, EndsAtTheSeventeenthTuning)
{
    for (INT tuning = 0; tuning < 16; ++tuning)
    {
        m_recorder.AddTuning(&Phone().Manager(), Phone().Reference());
    }
    std::vector<Chunk> chunks = ChunksOf(m_file.part.path);
    m_recorder.AddTuning(&Phone().Manager(), Phone().Reference());
    Destroy(Create(Phone()));
    EXPECT_EQ(Finish(), m_file.path + ": ends after 0 calls: more than 16 tunings");
    EXPECT_EQ(ReplayOf(m_file.part.path).damage, "cut: its end is missing") << "16 are taken";

    ASSERT_EQ(chunks.back().type, ChunkType::Tuning);
    chunks.push_back(chunks.back());
    WriteChunks(m_file.path, chunks);
    EXPECT_NE(ReplayOf(m_file.path).damage.find("more than 16 tunings"), std::string::npos);
}

TEST_F(RecordingOfAHost, EndsAtAStoreThatItDoesNotKnow)
{
    Destroy(Create(Phone()));
    EXPECT_EQ(Finish(), m_file.path + ": ends after 0 calls: a camera uses a tuning store that the recorder was not "
                                      "told of");
}

TEST_F(RecordingOfAHost, EndsAtStatisticsThatAReplayWouldRefuse)
{
    m_recorder.AddTuning(&Phone().Manager(), Phone().Reference());
    IKIROCoreAlgo* pAlgo = Create(Phone());
    INT            bins[4]{};
    CHAR           name[] = "SafeHist";
    KIROStatsList  statistics{};
    statistics.count                             = 1;
    statistics.pList[0].type                     = kiroglobalelements::KIROStatsHist;
    statistics.pList[0].resolution               = {3, 2, 4, 8};
    statistics.pList[0].channelData.pChannelName = name;
    statistics.pList[0].channelData.Data.pIData  = bins;
    (VOID) pAlgo->setStats(pAlgo, statistics);  // off: not read
    statistics.pList[0].channelData.bChannelEnabled = TRUE;
    (VOID) pAlgo->setStats(pAlgo, statistics);
    Destroy(pAlgo);
    EXPECT_EQ(Finish(), m_file.path + ": ends after 1 calls: setStats of camera 1: channel SafeHist of statistics has "
                                      "an impossible shape: 3 x 2 regions, 4 bins; a histogram has no more regions "
                                      "than bins");
}

/// Addresses that the core does not look at: neither does the recorder.
TEST_F(RecordingOfAHost, FollowsRecordsThatTheHostChangesWithoutACallAndNoOthers)
{
    auto* const               pNowhere = reinterpret_cast<FLOAT*>(8);
    KIROPrecisionFlashHistory history{};
    AECMultiCamInfo           peer{};
    m_recorder.AddTuning(&Phone().Manager(), Phone().Reference());
    IKIROCoreAlgo* pAlgo = Create(Phone());

    KIROCoreSetParam param = {KIROCorePrecisionFlashHistory, sizeof(history), &history};
    KIROSetInput     input = {.source = KIROCoreInternalParam, .u = {.pKirocoreParam = &param}};
    EXPECT_EQ(pAlgo->setInput(pAlgo, &input), 0);
    StatsPeerInfoCombo peers{};
    peers.needSync            = TRUE;
    peers.isActive[1]         = TRUE;
    peers.peerInfo[1]         = &peer;
    peers.peerInfo[2]         = pNowhere;
    AECAlgoSetParam peerParam = {&peers, sizeof(peers), AECAlgoSetParamPeerInfo};
    input.source              = AECPEKSetParam;
    input.u.pPEKInput         = &peerParam;
    EXPECT_EQ(pAlgo->setInput(pAlgo, &input), 0);
    EXPECT_EQ(pAlgo->runStartOfFrame(pAlgo, 1), 0);
    history.curReqID = 5;
    peer.CCT         = 4000;
    EXPECT_EQ(pAlgo->runStartOfFrame(pAlgo, 2), 0);
    EXPECT_EQ(pAlgo->setInput(pAlgo, nullptr), 1);

    std::array<FLOAT, 256>         cells{};
    std::array<KIROCntStatsOut, 3> channels{};
    CHAR                           names[3][12] = {"unread", "luma16Off", "sat16Off"};
    for (size_t index = 0; index < channels.size(); ++index)
    {
        channels[index].resolution               = {16, 16, 0, 8};
        channels[index].channelData.pChannelName = names[index];
        channels[index].channelData.Data.pFData  = (index == 0) ? pNowhere : cells.data();
    }
    EXPECT_EQ(pAlgo->isPreflashMeteringNeeded(pAlgo, channels.data(), 3, channels.data(), 1), TRUE);
    CKIROTriggerDataXML* pData = pAlgo->createDataXml(pAlgo, KIROMLBaseDataType);
    pData->DestoryInstance(pData);
    EXPECT_EQ(pAlgo->runStartOfFrame(nullptr, 1), 4) << "unrecorded, as the core answers it";
    Destroy(pAlgo);
    EXPECT_EQ(Finish(), "");

    const std::vector<Chunk> chunks = ChunksOf(m_file.path);
    EXPECT_EQ(
        std::count_if(chunks.begin(), chunks.end(), [](const Chunk& rChunk) { return rChunk.type == ChunkType::Host; }),
        4);
    const ReplayResult result = ReplayOf(m_file.path);
    EXPECT_EQ(result.differences, std::vector<std::string>{});
    EXPECT_EQ(result.damage, "");
    EXPECT_EQ(result.calls, 8u);
    EXPECT_EQ(result.frames, 2u);
}

TEST(RecordingOfAHistogram, HasTheEntryBehindTheBinsIfTheSizeCoversIt)
{
    INT            bins[] = {1, 2, 3, 4, 5};
    FLOAT          values[4]{};
    CHAR           name[] = "SafeHist";
    KIROStatsList  statistics{};
    KIROStatsList* pRead = nullptr;
    statistics.count     = 1;
    statistics.pList[0]  = {1, kiroglobalelements::KIROStatsHist, {0, 0, 4, 8}, {TRUE, name, {bins}, 0, values}};
    for (const auto& [size, last] : {std::pair<UINT32, INT>{20, 5}, {16, 0}})
    {
        statistics.pList[0].channelData.dataSize = size;
        std::vector<BYTE>  bytes;
        RecordedIdentities recorded;
        InstanceState      instance;
        SetStatsCall       written{{{&statistics}, 0}};
        InputWriter        writer(bytes, recorded, instance);
        written.Inputs(writer);

        Arena            arena;
        ReplayIdentities replayed;
        ReplayInstance   replayedInstance;
        InputReader      reader(bytes, arena, replayed, replayedInstance);
        StatisticsList(reader, pRead);
        EXPECT_EQ(pRead->pList[0].channelData.Data.pIData[3], 4);
        EXPECT_EQ(pRead->pList[0].channelData.Data.pIData[4], last);
    }
}

}  // namespace
