/// First tunings: whatever the answers are, the text compiles, and a check has nothing to say.
#include <map>
#include <stdexcept>

#include <gtest/gtest.h>

#include <fmt/format.h>

#include "tests/support/tuningslip.h"
#include "tools/newtuning/firsttuning.h"
#include "tools/newtuning/questions.h"
#include "tools/newtuning/template.h"

namespace
{

using newtuning::Answers;
using Texts = std::map<std::string, std::string>;

/// @param rTexts answers by the names of their questions; the others take their default
/// @param rFault of the first text that was no answer: "name: what was expected"
Answers Collect(const Texts& rTexts, std::string& rFault)
{
    Answers answers;
    for (const newtuning::Question& rQuestion : newtuning::Questions())
    {
        const auto        given = rTexts.find(rQuestion.pName);
        const std::string expected =
            rQuestion.Take((given != rTexts.end()) ? given->second : rQuestion.Default(answers), answers);
        if (!expected.empty())
        {
            rFault = fmt::format("{}: {}", rQuestion.pName, expected);
            break;
        }
    }
    return answers;
}

std::string MadeFrom(const Texts& rTexts)
{
    std::string       fault;
    const std::string text = newtuning::FirstTuning(Collect(rTexts, fault));
    EXPECT_EQ("", fault);
    return text;
}

VOID ExpectClean(const Texts& rTexts)
{
    const std::string text = MadeFrom(rTexts);
    EXPECT_EQ("", ToText(FindingsOf(text, "first.yaml")));
}

TEST(FirstTuning, IsCleanWhateverIsMeteredAndProtectedFrom)
{
    for (const CHAR* pMetering : {"average", "centre", "spot", "faces"})
    {
        for (const CHAR* pMains : {"50", "60", "off"})
        {
            for (const CHAR* pHDR : {"yes", "no"})
            {
                SCOPED_TRACE(fmt::format("{} {} {}", pMetering, pMains, pHDR));
                ExpectClean({{"metering", pMetering}, {"mains", pMains}, {"hdr", pHDR}});
            }
        }
    }
}

TEST(FirstTuning, IsCleanForOddSensors)
{
    ExpectClean({{"gain-max", "1"}, {"time-max", "5"}});
    ExpectClean({{"gain-min", "1.5"}, {"gain-max", "2.5"}, {"line-time", "3.3"}, {"fps", "120"}, {"hdr", "yes"}});
    ExpectClean({{"fps", "24"}, {"top-gain", "2"}, {"time-max", "500"}, {"mains", "60"}});
}

TEST(FirstTuning, TakesNoAnswersThatContradictEachOther)
{
    const std::pair<Texts, const CHAR*> cases[] = {
        {{{"gain-min", "2"}, {"gain-max", "1"}}, "gain-max: 2 to 10000, the lowest gain or more"},
        {{{"gain-min", "nan"}}, "gain-min: 0.01 to 1000"},
        {{{"gain-max", "64x"}}, "gain-max: 1 to 10000, the lowest gain or more"},
        {{{"line-time", "1000"}, {"fps", "200"}}, "fps: 1 to 100, a frame lasting ten lines or more"},
        {{{"gain-min", "2"}, {"top-gain", "1"}}, "top-gain: 2 to 64, the sensor's gains"},
        {{{"mains", "40"}}, "mains: one of 50, 60, off"},
        {{{"metering", "Spot"}}, "metering: one of average, centre, spot, faces"},
    };
    for (const auto& [texts, pFault] : cases)
    {
        std::string fault;
        (VOID) Collect(texts, fault);
        EXPECT_EQ(pFault, fault);
    }
}

TEST(Template, FillsPlacesAndKeepsPartsThatAreOn)
{
    const newtuning::Filling filling = {{{"a", "x"}}, {{"on", true}, {"off", false}}};
    EXPECT_EQ("1 x.\n3x\n",
              newtuning::Fill("1 @a@.\n@if off@\n@if on@\n2\n@end@\n@end@\n@if on@\n3@a@\n@end@\n", filling));
    EXPECT_THROW((VOID)newtuning::Fill("@b@\n", filling), std::logic_error);
    EXPECT_THROW((VOID)newtuning::Fill("@if c@\n@end@\n", filling), std::logic_error);
}

}  // namespace
