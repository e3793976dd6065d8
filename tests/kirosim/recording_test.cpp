// Recordings of runs, and replays of them: the same where nothing has changed, the right place where something has, and
// no harm from a file that can hold anything.

#include <algorithm>
#include <array>
#include <gtest/gtest.h>

#include "host/kirodebugdata.h"
#include "tests/kirosim/simulationrun.h"
#include "tests/support/refusal.h"
#include "tests/support/temporaryfile.h"
#include "tools/recording/calls.h"
#include "tools/recording/recorder.h"
#include "tools/recording/replayer.h"
#include "tools/recording/slots.h"
#include "tools/tuningfile/bytes.h"
#include "tools/tuningfile/files.h"

using namespace kirosim;
using namespace recording;

namespace
{

LoadedTuning& Phone()
{
    static LoadedTuning tuning(EXAMPLES_DIR "/tunings/phone.yaml");
    return tuning;
}

/// A recording that is gone with the test.
class RecordingFile : public TemporaryFile
{
public:
    RecordingFile() : TemporaryFile("recording.rec")
    {
    }

    const TemporaryFile part{"recording.rec" + std::string(ChunkWriter::PartSuffix)};  ///< until it has come to its end
};

/// Runs the beginning of a scene. @param pPath of the recording, null for none
SimulationRun RunScene(const std::string& rScene, UINT32 frames, LoadedTuning& rTuning, const CHAR* pPath)
{
    Scene scene  = SimulationRun::Example(rScene);
    scene.frames = frames;
    if (pPath == nullptr)
    {
        return SimulationRun(scene, rTuning);
    }
    Recorder recorder(pPath);
    recorder.AddTuning(&rTuning.Manager(), rTuning.Reference());
    SimulationRun run(scene, rTuning,
                      [&](IKIROCoreAlgo* pAlgo, const StatsTuningData& rData) { return recorder.Wrap(pAlgo, rData); });
    recorder.Finish();
    return run;
}

ReplayResult ReplayOf(const std::string& rPath, LoadedTuning& rTuning = Phone(), size_t differenceMax = 1)
{
    ReplayPlan plan;
    plan.tuning        = [&](const TuningReference&) -> VOID* { return &rTuning.Manager(); };
    plan.differenceMax = differenceMax;
    plan.logger        = DiscardLog;
    return Replayer(rPath, plan).Run();
}

std::vector<Chunk> ChunksOf(const std::string& rPath)
{
    std::vector<Chunk> chunks;
    ChunkReader        reader(rPath);
    for (std::optional<Chunk> chunk = reader.Next(); chunk.has_value(); chunk = reader.Next())
    {
        chunks.push_back(std::move(*chunk));
    }
    return chunks;
}

/// The same with checksums that fit.
VOID WriteChunks(const std::string& rPath, const std::vector<Chunk>& rChunks)
{
    ChunkWriter writer(rPath);
    for (const Chunk& rChunk : rChunks)
    {
        writer.Write(rChunk.type, rChunk.payload);
    }
    writer.Commit();
}

/// @return the position of the nth call of a function, from 1
size_t FindCall(const std::vector<Chunk>& rChunks, Slot slot, UINT32 nth)
{
    const auto isCall = [&](const Chunk& rChunk)
    {
        return rChunk.type == ChunkType::Call && tuningfile::LoadInteger<UINT16>(rChunk.payload, 4) == UINT16(slot) &&
               --nth == 0;
    };
    return static_cast<size_t>(std::find_if(rChunks.begin(), rChunks.end(), isCall) - rChunks.begin());
}

/// A few frames without much statistics, for damage.
class Damage : public testing::Test
{
protected:
    Damage()
    {
        (VOID) RunScene("touch", 2, Phone(), m_file.path.c_str());
        m_chunks = ChunksOf(m_file.path);
        m_bytes  = tuningfile::ReadBytes(m_file.path);
    }

    /// @return the damage of a replay; what refuses the file from its beginning counts as such
    std::string DamageOf()
    {
        m_result                  = {};
        const std::string refusal = RefusalOf([this] { m_result = ReplayOf(m_file.path, Phone(), 100); });
        return refusal.empty() ? m_result.damage : refusal;
    }

    RecordingFile      m_file;
    std::vector<Chunk> m_chunks;
    std::vector<BYTE>  m_bytes;
    ReplayResult       m_result;
};

using RecordedScene = std::pair<const CHAR*, UINT32>;  ///< and the frames of it

class Recording : public testing::TestWithParam<RecordedScene>
{
};

TEST_P(Recording, IsReplayedWithoutADifferenceAndDoesNotChangeTheRun)
{
    const RecordingFile file;
    const auto [pName, frames] = GetParam();
    const std::string trace    = RunScene(pName, frames, Phone(), file.path.c_str()).Trace();
    EXPECT_TRUE(trace == RunScene(pName, frames, Phone(), nullptr).Trace());
    const ReplayResult result = ReplayOf(file.path);
    EXPECT_EQ(result.differences, std::vector<std::string>{});
    EXPECT_EQ(result.damage, "");
    EXPECT_GT(result.calls, frames * 15);
}

INSTANTIATE_TEST_SUITE_P(Scenes, Recording,
                         testing::Values(RecordedScene{"touch", 70}, RecordedScene{"bracket", 60},
                                         RecordedScene{"flash-calibration", 90}, RecordedScene{"flash-precision", 60},
                                         RecordedScene{"two-cameras-follow", 60}, RecordedScene{"hdr-staggered", 60},
                                         RecordedScene{"moving-subject", 30}, RecordedScene{"shake", 30},
                                         RecordedScene{"starts", 100}, RecordedScene{"scene-change", 40}),
                         [](const auto& rInfo)
                         {
                             std::string name = rInfo.param.first;
                             std::erase(name, '-');
                             return name;
                         });

TEST(RecordingDifference, IsFoundInTheFrameInWhichAnotherTuningDecidesOtherwise)
{
    const RecordingFile file;
    const TemporaryFile tuning("recording.yaml");
    LoadedTuning        other(tuning.Write(ChangedTuning("phone.yaml", "baseSpeed: 0.75", "baseSpeed: 0.76")));
    EXPECT_FALSE(other.Reference().HasSameContent(Phone().Reference()));

    const std::string trace   = RunScene("step-loop", 160, Phone(), file.path.c_str()).Trace();
    const std::string changed = RunScene("step-loop", 160, other, nullptr).Trace();
    const auto        first   = std::ranges::mismatch(trace, changed).in1;
    const auto        frame   = std::count(trace.begin(), first, '\n');  // the first line names the columns
    ASSERT_LT(frame, 160);
    const ReplayResult result = ReplayOf(file.path, other);
    ASSERT_EQ(result.differences.size(), 1u);
    EXPECT_EQ(result.frames, static_cast<UINT64>(frame));
    const std::string start =
        "frame " + std::to_string(frame) + ", RunConvProcess of camera 1: output.exposures[short]: recorded ";
    EXPECT_EQ(result.differences[0].substr(0, start.size()), start);
    EXPECT_GT(ReplayOf(file.path, other, 100).differences.size(), 10u);
}

TEST_F(Damage, OfARecordedAnswerIsNamedByFrameFunctionAndField)
{
    const size_t call = FindCall(m_chunks, Slot::RunConvProcess, 2) + 1;
    ASSERT_EQ(m_chunks[call].type, ChunkType::Done);
    // Instance and result; the input without its address; three ranges and their presence; short and long exposure.
    constexpr size_t position = 8 + 44 + (1 + 6 * 52 + 8) + 2 * 8;
    const auto       safe     = tuningfile::LoadInteger<UINT64>(m_chunks[call].payload, position);
    tuningfile::StoreInteger(m_chunks[call].payload, position, safe - 1);
    WriteChunks(m_file.path, m_chunks);
    EXPECT_EQ(DamageOf(), "");
    ASSERT_EQ(m_result.differences.size(), 1u);
    EXPECT_EQ(m_result.differences[0], "frame 2, RunConvProcess of camera 1: output.exposures[safe]: recorded " +
                                           std::to_string(safe - 1) + ", now " + std::to_string(safe));
}

TEST_F(Damage, ByACutIsSaidAndWhatIsWholeIsReplayed)
{
    std::vector<std::pair<size_t, UINT64>> cuts  = {{0, 0}, {7, 0}, {15, 0}, {16, 0}};  // bytes, calls before them
    UINT64                                 calls = 0;
    for (size_t index = 0; index < m_chunks.size(); ++index)
    {
        if (index % 11 == 0 || index + 2 > m_chunks.size())
        {
            const size_t start = m_chunks[index].offset;
            const size_t end   = start + m_chunks[index].payload.size() + 12;
            for (const size_t cut : {start, start + 5, start + 8, end - 1})
            {
                cuts.emplace_back(cut, calls);
            }
        }
        calls += (m_chunks[index].type == ChunkType::Done) ? 1 : 0;
    }
    for (const auto& [size, whole] : cuts)
    {
        m_file.Write(std::span(m_bytes).first(size));
        EXPECT_NE(DamageOf(), "") << size;
        EXPECT_EQ(size >= 8 && DamageOf().find("cut") == std::string::npos, false) << DamageOf();
        EXPECT_EQ(m_result.calls, whole) << size;
        EXPECT_EQ(m_result.differences, std::vector<std::string>{}) << size;
    }
}

TEST_F(Damage, OfAnyBitIsSaid)
{
    UINT64 random = 1;
    for (INT round = 0; round < 60; ++round)
    {
        random                = random * 6364136223846793005ULL + 1442695040888963407ULL;
        const size_t position = (random >> 24) % m_bytes.size();
        // The large chunks of statistics would take most of it: every other one goes into the first kilobytes.
        const size_t target = (round % 2 == 0) ? position : position % 4000;
        m_bytes[target] ^= static_cast<BYTE>(1U << (random >> 61));
        m_file.Write(m_bytes);
        EXPECT_NE(DamageOf(), "") << target;
        m_bytes[target] ^= static_cast<BYTE>(1U << (random >> 61));
    }
}

TEST_F(Damage, ByCountsThatTheFileCannotHoldIsRefused)
{
    const auto refuses = [&](size_t chunk, size_t position, auto value, const CHAR* pReason)
    {
        std::vector<Chunk> chunks = m_chunks;
        tuningfile::StoreInteger(chunks.at(chunk).payload, position, value);
        WriteChunks(m_file.path, chunks);
        EXPECT_NE(DamageOf().find(pReason), std::string::npos) << DamageOf();
    };
    const auto find = [&](ChunkType type)
    {
        return static_cast<size_t>(std::find_if(m_chunks.begin(), m_chunks.end(),
                                                [type](const Chunk& rChunk) { return rChunk.type == type; }) -
                                   m_chunks.begin());
    };
    refuses(find(ChunkType::Head), 9, 0xFFFFFFF0, " of name in ");
    refuses(find(ChunkType::Head), 13, UINT32{0xFFFFFF}, " of name in ");
    refuses(find(ChunkType::Tuning), 0, 0xFFFFFFF0, " of path in ");
    refuses(find(ChunkType::Instance), 0, UINT32{7}, "cameras out of order");
    refuses(find(ChunkType::Instance), 4, UINT32{3}, "a tuning that is not in the recording");
    refuses(find(ChunkType::Instance), 8, 0xFFFFFFFF, " of selectors in ");
    const size_t statistics = FindCall(m_chunks, Slot::setStats, 1);
    refuses(statistics, 0, UINT32{1}, "of no camera");
    refuses(statistics, 4, UINT16{36}, "a call of no function");
    refuses(statistics, 46, UINT32{9}, "a call of setStats with");  // fewer channels than follow
    // Width of the first.
    refuses(
        statistics, 46 + 4 + 12, 0xFFFFFFFF,
        "channel ShortLuma of statistics has an impossible shape: 4294967295 x 48 regions, 0 bins; at most 1048576");
    m_chunks.erase(m_chunks.begin() + static_cast<INT64>(statistics) + 1);
    refuses(statistics, 0, UINT32{0}, "a call of setStats without its answer");
}

TEST_F(Damage, ByARecordThatHasChangedIsNamed)
{
    // The byte to change, from the name.
    for (const auto& [at, pText] : {std::pair(17, "recorded with another KIROMeteringInput, by version 1.0.0"),
                                    std::pair(0, "recorded with another XIROMeteringInput, by version 1.0.0")})
    {
        std::vector<Chunk> chunks = m_chunks;
        std::vector<BYTE>& rHead  = chunks[0].payload;
        const std::string  record = "KIROMeteringInput";
        const auto         place  = std::search(rHead.begin(), rHead.end(), record.begin(), record.end());
        ASSERT_LT(place, rHead.end());
        place[at] = 'X';
        rHead.back() ^= 1;  // the sum over all
        WriteChunks(m_file.path, chunks);
        EXPECT_NE(DamageOf().find(pText), std::string::npos) << DamageOf();
    }
}

TEST(RecordingDifference, InTheRecordForPeersIsFoundWithoutAFollower)
{
    const RecordingFile file;
    (VOID) RunScene("two-cameras-follow", 2, Phone(), file.path.c_str());
    std::vector<Chunk> chunks = ChunksOf(file.path);
    // The slave's, in the last frame: nobody reads it. Its last field is the role.
    std::vector<BYTE>& rDone = chunks.at(FindCall(chunks, Slot::runEndOfFrame, 4) + 1).payload;
    rDone[rDone.size() - 4] ^= 3;
    WriteChunks(file.path, chunks);
    const ReplayResult result = ReplayOf(file.path);
    ASSERT_EQ(result.differences.size(), 1u);
    EXPECT_NE(result.differences[0].find("runEndOfFrame of camera 2: record for peers.algoRole: recorded "),
              std::string::npos)
        << result.differences[0];
}

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

TEST(RecordingChecksum, IsThePublishedOneInPiecesToo)
{
    const std::string           text = "123456789";
    const std::span<const BYTE> bytes(reinterpret_cast<const BYTE*>(text.data()), text.size());
    EXPECT_EQ(ChecksumOf(bytes), 0xCBF43926u);
    EXPECT_EQ(ChecksumOf(bytes.subspan(4), ChecksumOf(bytes.first(4))), 0xCBF43926u);
}

}  // namespace
