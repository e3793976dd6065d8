// What runs a command line asks for, and where their files go.

#include <gtest/gtest.h>

#include "tests/support/refusal.h"
#include "tools/kirosim/runlist.h"
#include "tools/kirosim/scene.h"

using namespace kirosim;

namespace
{

const std::string Scenes = EXAMPLES_DIR "/scenes/";

TEST(RunList, TakesEachSceneInEachVariantWithEachSeed)
{
    RunOptions common;
    common.csv    = "{scene}/{variant}-{seed}.csv";
    common.report = "{scene}{scene}-{variant}-{seed}.html";
    const std::vector<RunOptions> runs =
        RunsOf(common, {{Scenes + "natural.yaml", Scenes + "uniform.yaml"}, {"plain", "step+2"}, {"7", "9..10"}});
    ASSERT_EQ(runs.size(), 12U);
    EXPECT_EQ(runs[0].csv, "natural/plain-7.csv");
    EXPECT_EQ(runs[0].variant, "");
    EXPECT_EQ(runs[5].csv, "natural/step+2-10.csv");
    EXPECT_EQ(runs[5].report, "naturalnatural-step+2-10.html");
    EXPECT_EQ(runs[5].seed, 10U);
    EXPECT_EQ(RunName(runs[11]), "uniform step+2, seed 10");
    EXPECT_TRUE(runs[0].isJsonLine);

    const std::vector<RunOptions> all = RunsOf({}, {{Scenes + "natural.yaml"}, {"all"}, {}});
    EXPECT_EQ(all.size(), ReadVariants(Scenes + "natural.yaml").size() + 1);
    EXPECT_EQ(RunName(all[0]), "natural");
    EXPECT_FALSE(RunsOf({}, {{Scenes + "natural.yaml"}, {}, {}})[0].isJsonLine);
}

TEST(RunList, RefusesSeedsThatAreNoneAndOneFileForSeveralRuns)
{
    for (const char* pSeeds : {"", "x", "1.5", "-1", "3..2", "1..", "..2", "0..10000", "18446744073709551616"})
    {
        EXPECT_NE(FaultOfSeeds(pSeeds), "") << pSeeds;
    }
    for (const char* pSeeds : {"0", "1..1", "18446744073709551615", "18446744073709551614..18446744073709551615"})
    {
        EXPECT_EQ(FaultOfSeeds(pSeeds), "") << pSeeds;
    }
    for (const char* pPath : {"-", "out.csv", "{scene}.csv", "{scene}-{seed}.csv"})
    {
        RunOptions common;
        common.csv                = pPath;
        const std::string refusal = RefusalOf(
            [&] {
                (VOID) RunsOf(common, {{Scenes + "natural.yaml"}, {"plain", "step+2"}, {"1"}});
            });
        EXPECT_NE(refusal.find("--csv of several runs"), std::string::npos) << pPath;
    }
}

}  // namespace
