// A camera that works has nothing to complain of: whoever looks for a fault must not search for it among warnings.

#include <algorithm>
#include <cstdarg>
#include <gtest/gtest.h>

#include "tests/kirosim/examplescenes.h"
#include "tools/kirosim/simulation.h"
#include "tools/tuningfile/storelog.h"

using namespace kirosim;

namespace
{

std::string g_complaints;

VOID KeepComplaint(const CHAR* pFile, INT32 line, const CHAR*, UINT32, UINT32 level, const CHAR* pFormat, ...)
{
    constexpr UINT32 levelWarning = 4;
    if (level <= levelWarning)
    {
        CHAR    text[512];
        va_list arguments;
        va_start(arguments, pFormat);
        (VOID) std::vsnprintf(text, sizeof(text), pFormat, arguments);
        va_end(arguments);
        g_complaints.append(pFile).append(":" + std::to_string(line) + ": ").append(text).append("\n");
    }
}

using Run = std::pair<std::string, std::string>;

/// Every example scene, and variants that begin or go where others do not.
std::vector<Run> Runs()
{
    std::vector<Run> runs = {{"starts", "covered"}, {"starts", "master"}, {"natural", "cold-dark"}};
    for (const std::string& rScene : ExampleScenes())
    {
        runs.emplace_back(rScene, "");
    }
    std::ranges::sort(runs);
    return runs;
}

class Silence : public testing::TestWithParam<Run>
{
};

TEST_P(Silence, NoErrorAndNoWarningIsLogged)
{
    g_complaints.clear();
    const Scene                scene = ReadScene(ExampleScenePath(GetParam().first), GetParam().second);
    const tuningfile::StoreLog storeLog;
    LoadedTuning               tuning(EXAMPLES_DIR "/tunings/phone.yaml");
    Simulation                 simulation(scene, tuning, KeepComplaint);
    simulation.Run([](const FrameRecord&) {});
    for (const std::string& rLine : storeLog.Lines())
    {
        g_complaints += (rLine.starts_with("E:") || rLine.starts_with("W:")) ? rLine + "\n" : "";
    }
    EXPECT_EQ(g_complaints, "");
}

INSTANTIATE_TEST_SUITE_P(Scenes, Silence, testing::ValuesIn(Runs()),
                         [](const auto& rInfo) { return TestNameOf(rInfo.param.first + rInfo.param.second); });

}  // namespace
