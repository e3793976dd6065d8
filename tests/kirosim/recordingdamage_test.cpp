// No harm from a recording that can hold anything: what is wrong is said, and what stands before it is replayed.

#include <algorithm>
#include <gtest/gtest.h>
#include <span>

#include "tests/kirosim/recordingrun.h"
#include "tests/support/refusal.h"
#include "tools/tuningfile/files.h"

using namespace recordingtest;

namespace
{

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

}  // namespace
