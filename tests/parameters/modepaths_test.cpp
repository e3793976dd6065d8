#include "parameters/modepaths.h"

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

TEST(ModePaths, NumericPathsAreRead)
{
    // The path, whether nothing is wrong with it, and the modes that it leads to.
    const std::tuple<const CHAR*, bool, const CHAR*> cases[] = {
        {"0.0|2.1", true, " 0.0 2.1"}, {"0|2|", true, " 0.0 2.0"},
        {"7.65535", true, " 7.65535"}, {"2.65536", false, ""},
        {"0|2.1.0", false, " 0.0"},    {"0|Scene", false, " 0.0"},
        {"0|-1", false, " 0.0"},       {"123456789", true, " 123456789.0"},
        {"1234567890", false, ""},     {"", false, ""},
        {nullptr, false, ""},
    };
    for (const auto& [pPath, isClean, pModes] : cases)
    {
        std::vector<TuningMode> branch;
        EXPECT_EQ(ModePaths::GetModeBranchFromPath(pPath, branch), isClean);
        std::string modes;
        for (const TuningMode& rMode : branch)
        {
            modes += " " + std::to_string(static_cast<UINT32>(rMode.mode)) + "." + std::to_string(rMode.subMode.value);
        }
        EXPECT_EQ(modes, pModes);
    }
}

TEST(ModePaths, NamesAndNumbersStandForOneAnother)
{
    CHAR                                      text[64];
    const std::pair<const CHAR*, const CHAR*> toNumbers[] = {
        {"Default|Usecase.Video", "0|2.2"},
        {"DEFAULT|sensor.12|uSECASE.preview|Feature2.zllpostfusion", "0|1.12|2.0|4.10"},
        {"Effect.whiteboard|Scene.18", "6.11|5.18"},
        {"Usecas.Video|Usecase.Vide|Usecase.Videos", "0.0|2.0|2.0"},
        {"0.0|2.1", "0.0|0.1"},
        {"|Scene", "0|5"},
        {"Sensor.99999999999", "1.4294967295"},
        {"", ""},
    };
    for (const auto& [pNames, pNumbers] : toNumbers)
    {
        EXPECT_TRUE(ModePaths::GetModeShorthand(pNames, text, sizeof(text)));
        EXPECT_STREQ(text, pNumbers);
    }
    EXPECT_TRUE(ModePaths::GetModeShorthand("Default|Usecase.Video", text, 5));
    EXPECT_STREQ(text, "0|2.");
    EXPECT_FALSE(ModePaths::GetModeShorthand(nullptr, text, sizeof(text)));
    EXPECT_FALSE(ModePaths::GetModeShorthand("Default", text, 0));

    const std::pair<const CHAR*, const CHAR*> toNames[] = {
        {"0.0|2.2;0.0|1.3|5.20", "Default|Usecase.Video;Default|Sensor.3|Scene.BestShot"},
        {"0.7|2.99|3", "Default|Usecase.99|Feature1"},
        {"6.1|9.1", "Effect.Mono|.1"},
        {"", ""},
    };
    for (const auto& [pNumbers, pNames] : toNames)
    {
        ModePaths::GetVernierModesString(pNumbers, text, sizeof(text));
        EXPECT_STREQ(text, pNames);
    }
}
