// Recordings of runs, and replays of them: the same where nothing has changed, the right place where something has.

#include <algorithm>
#include <gtest/gtest.h>
#include <span>

#include "tests/kirosim/recordingrun.h"

using namespace recordingtest;

namespace
{

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
    LoadedTuning        other(tuning.Write(ChangedTuning("phone.yaml", "baseCapping: 0.286", "baseCapping: 0.1")));
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
    EXPECT_GT(ReplayOf(file.path, other, 100).differences.size(), 3u);
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

TEST(RecordingChecksum, IsThePublishedOneInPiecesToo)
{
    const std::string           text = "123456789";
    const std::span<const BYTE> bytes(reinterpret_cast<const BYTE*>(text.data()), text.size());
    EXPECT_EQ(ChecksumOf(bytes), 0xCBF43926u);
    EXPECT_EQ(ChecksumOf(bytes.subspan(4), ChecksumOf(bytes.first(4))), 0xCBF43926u);
}

}  // namespace
