// The long run in small: what it counts, and that it sees what it is there to see.

#include <filesystem>
#include <gtest/gtest.h>
#include <unistd.h>

#include "platform/tavodesk.h"
#include "tests/kirosim/simulationrun.h"
#include "tools/heapwatch/heapwatch.h"
#include "tools/kirosoak/hostsequences.h"
#include "tools/kirosoak/soak.h"
#include "tools/tuningfile/files.h"

using namespace kirosoak;

namespace
{

class SoakTest : public testing::Test
{
protected:
    SoakTest() : m_folder(testing::TempDir() + "soak-" + std::to_string(getpid()))
    {
        TavoDesk::SetSystemLogSink([](VOID*, UINT64, const CHAR*, UINT32, const CHAR*) {}, nullptr);
        std::filesystem::create_directories(m_folder);
        Compile("phone");
    }

    ~SoakTest() override
    {
        std::filesystem::remove_all(m_folder);
        TavoDesk::SetSystemLogSink(nullptr, nullptr);
    }

    VOID Compile(const std::string& rTuning) const
    {
        tuningfile::ReplaceFile(m_tuning, tuningfile::CompileFile(EXAMPLES_DIR "/tunings/" + rTuning + ".yaml"));
    }

    /// Three laps of a scene of one step, or as many as come to a fault.
    /// @param lapEnded sees the number of each
    SoakResult Run(const std::function<VOID(UINT32)>& lapEnded, UINT32 frames = 60) const
    {
        const std::string scene = "name: step\nframes: " + std::to_string(frames) +
                                  "\nstartOffsetEV: 0\nlight: [{time: 0.8, ev: 2}]\n"
                                  "events: [{time: 0, antibanding: off}]\n";
        tuningfile::ReplaceFile(m_scene, {reinterpret_cast<const BYTE*>(scene.data()), scene.size()});
        UINT32 lap = 0;
        return Soak({1, {m_scene}, m_tuning, [&](const std::string&) { lapEnded(++lap); }, {}}, DiscardLog);
    }

    const std::string& TuningFile() const
    {
        return m_tuning;
    }

private:
    const std::string m_folder;
    const std::string m_scene  = m_folder + "/scene.yaml";
    const std::string m_tuning = m_folder + "/tuning.bin";
};

TEST_F(SoakTest, DoesAllItSaysInEachLap)
{
    const SoakResult result = Run([](UINT32) {});
    EXPECT_TRUE(result.faults.empty()) << result.faults.front();
    EXPECT_LT(std::abs(result.heapGrowth), 1024);
    EXPECT_EQ(result.frames, 3U * 10U * 60U);
    EXPECT_EQ(result.cameras, 3U);
    EXPECT_EQ(result.reloads, 3U);
    EXPECT_EQ(result.modeChanges, 6U);
    EXPECT_EQ(result.snapshots, 9U);
    EXPECT_GE(result.edits, 6U);
    // Up in each round, and down where the next one begins: the first round of a camera has nothing before it.
    EXPECT_EQ(result.settles, 3U * (10U + 9U));
    EXPECT_THROW((VOID)Run([](UINT32) {}, 30), std::runtime_error);
}

TEST_F(SoakTest, SeesAReloadThatBringsAnotherTuning)
{
    const SoakResult result = Run([&](UINT32) { Compile("minimal"); });
    ASSERT_FALSE(result.faults.empty());
    EXPECT_EQ(result.laps, 2U);
    EXPECT_NE(result.faults.front().find("in round 10"), std::string::npos) << result.faults.front();
}

TEST_F(SoakTest, SeesMemoryGrow)
{
    // Sixteen kilobytes do not show in the pages of a process, by which memory is judged where bytes are not counted.
    const size_t                   size = heapwatch::IsCounting() ? size_t{16} << 10 : size_t{128} << 20;
    std::vector<std::vector<BYTE>> kept;
    const SoakResult               result = Run(
        [&](UINT32 lap)
        {
            if (lap == 2)
            {
                kept.emplace_back(size, BYTE{1});
            }
        });
    ASSERT_FALSE(result.faults.empty());
    EXPECT_EQ(result.laps, 3U);
    const CHAR* const pExpected =
        heapwatch::IsCounting() ? "the heap has grown by 16" : "resident memory has grown by ";
    EXPECT_NE(result.faults.front().find(pExpected), std::string::npos) << result.faults.front();
}

TEST_F(SoakTest, CamerasAreAsGoodAsNewAfterReloadsAndAnyCalls)
{
    const SequencePlan plans[] = {{EXAMPLES_DIR "/tunings/phone.yaml", TuningFile(), 24},
                                  {EXAMPLES_DIR "/tunings/phone.yaml", TuningFile(), 0, 4, 2}};
    for (const SequencePlan& rPlan : plans)
    {
        const SequenceResult result = RunSequences(rPlan, DiscardLog);
        EXPECT_TRUE(result.faults.empty()) << result.faults.front();
        EXPECT_EQ(result.sequences, rPlan.sequences);
        EXPECT_EQ(result.reloadCases, rPlan.reloadCases);
    }
}

}  // namespace
