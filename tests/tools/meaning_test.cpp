/// What the tunables say about themselves, and what that makes of numbers.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include <fmt/format.h>

#include "schema/kiroglobalelements.h"
#include "schema/recordwalk.h"
#include "tools/meaning/modulewords.h"
#include "tools/meaning/numbersense.h"
#include "tools/meaning/wordpath.h"
#include "tools/meaning/wordtext.h"

namespace
{

using namespace meaning;
using tuning::MemberWords;
using tuning::RecordMember;
using tuning::RecordWords;
using tuning::Unit;
using tuning::Words;

using Visit = std::function<void(const std::string& rPath, const RecordMember&, const MemberWords&)>;

void VisitAll(const RecordWords& rRecord, const std::string& rPath, const Visit& rVisit)
{
    for (UINT32 index = 0; index < rRecord.pRecord->memberCount; ++index)
    {
        const RecordMember& rMember = rRecord.pRecord->pMembers[index];
        if (!rMember.IsStored())
        {
            continue;
        }
        const std::string path = fmt::format("{}.{}", rPath, rMember.pName);
        rVisit(path, rMember, rRecord.pMembers[index]);
        if (rMember.type == tuning::ValueType::Record)
        {
            ASSERT_NE(nullptr, rRecord.pMembers[index].pRecord) << path;
            VisitAll(*rRecord.pMembers[index].pRecord, path, rVisit);
        }
    }
}

/// Each row of each module, with its path.
void VisitAll(const Visit& rVisit)
{
    for (const tuning::ModuleDescription& rModule : tuning::TuningModules)
    {
        if (rModule.pRecord != nullptr)
        {
            VisitAll(*WordsOf(rModule), rModule.pName, rVisit);
        }
    }
}

bool IsSentence(const CHAR* pText)
{
    const std::string_view text = (pText != nullptr) ? pText : "";
    return text.size() > 8 && text.back() == '.' && text.find("  ") == text.npos;
}

bool IsPlainNumber(const RecordMember& rMember)
{
    return tuning::IsNumber(rMember.type) && rMember.type != tuning::ValueType::Boolean &&
           rMember.type != tuning::ValueType::Enum;
}

TEST(Meaning, EveryTunableHasASentenceAndEveryNumberARange)
{
    size_t rows = 0;
    VisitAll(
        [&rows](const std::string& rPath, const RecordMember& rMember, const MemberWords& rWords)
        {
            ++rows;
            EXPECT_TRUE(IsSentence(rWords.words.meaning)) << rPath;
            EXPECT_TRUE(!IsPlainNumber(rMember) || rWords.words.range.IsGiven()) << rPath;
            EXPECT_TRUE(rMember.form != tuning::Form::Variable || rWords.words.entries.IsGiven()) << rPath;
            for (UINT32 index = 0; rMember.pEnum != nullptr && index < rMember.pEnum->count; ++index)
            {
                ASSERT_NE(nullptr, rWords.pEnum) << rPath;
                EXPECT_TRUE(IsSentence(rWords.pEnum->pEnumerators[index].meaning))
                    << rPath << ' ' << rMember.pEnum->pEnumerators[index].pName;
            }
        });
    EXPECT_GT(rows, 1800u);
    for (const tuning::ModuleDescription& rModule : tuning::TuningModules)
    {
        EXPECT_TRUE(rModule.pRecord == nullptr || IsSentence(SentenceOf(*WordsOf(rModule)))) << rModule.pName;
    }
}

TEST(Meaning, RangesHoldOneAnotherAndTheStart)
{
    VisitAll(
        [](const std::string& rPath, const RecordMember& rMember, const MemberWords& rMemberWords)
        {
            const Words& rWords = rMemberWords.words;
            if (rWords.odd.IsGiven())
            {
                EXPECT_TRUE(rWords.odd.low <= rWords.range.low && rWords.odd.high >= rWords.range.high) << rPath;
            }
            if (IsPlainNumber(rMember) && rWords.start != nullptr && rWords.start[0] != '[' && rWords.start[0] != '{')
            {
                EXPECT_TRUE(rWords.range.Holds(std::stod(rWords.start))) << rPath << ' ' << rWords.start;
            }
            if (rMember.pEnum != nullptr && rWords.start != nullptr && !rMember.IsArray())
            {
                bool isName = false;
                for (UINT32 index = 0; index < rMember.pEnum->count; ++index)
                {
                    isName = isName || std::string_view(rWords.start) == rMember.pEnum->pEnumerators[index].pName;
                }
                EXPECT_TRUE(isName) << rPath << ' ' << rWords.start;
            }
        });
}

TEST(Meaning, FaultsSayWhatWasExpectedAndWhichUnitWasMeant)
{
    const Words share{.meaning = "", .unit = Unit::Share, .range = {0, 1}, .odd = {0, 2}};
    EXPECT_FALSE(FaultOf(share, 0.5).has_value());
    EXPECT_TRUE(FaultOf(share, 1.5)->isOdd);
    EXPECT_FALSE(FaultOf(share, 50.0)->isOdd);
    EXPECT_EQ("0 to 1 (share)", FaultOf(share, 50.0)->expected);
    EXPECT_EQ("50 percent are 0.5", FaultOf(share, 50.0)->advice);
    EXPECT_FALSE(FaultOf(share, std::numeric_limits<DOUBLE>::quiet_NaN())->isOdd);

    const Words time{.meaning = "", .unit = Unit::Nanoseconds, .range = {0, 1e9}};
    EXPECT_FALSE(FaultOf(time, 0.0).has_value());
    EXPECT_FALSE(FaultOf(time, 33333333.0).has_value());
    EXPECT_EQ("33 ms are 33000000 ns, 33 us are 33000 ns", FaultOf(time, 33.0)->advice);

    const Words gain{.meaning = "", .unit = Unit::Gain, .range = tuning::RowTerms::Above(0)};
    EXPECT_EQ("above 0 (linear gain)", FaultOf(gain, 0.0)->expected);
    EXPECT_FALSE(FaultOf(gain, 1e-6).has_value());
    const Words list{.meaning = "", .entries = {1, 10}};
    EXPECT_FALSE(CountFaultOf(list, 10).has_value());
    EXPECT_EQ("1 to 10 entries", CountFaultOf(list, 11)->expected);
}

TEST(Meaning, PathsLeadToWords)
{
    const WordPath speed =
        FindWords("kirodbconvbase.data[0].value.trigger1Data.trigger2Data.trigger3Data.triggerData.baseSpeed");
    ASSERT_NE(nullptr, speed.pWords);
    EXPECT_EQ(Unit::Share, speed.pJudged->unit);
    EXPECT_EQ(nullptr, speed.pRecord);

    EXPECT_EQ("tolerence", FindWords("kirodbconvbase.data.value.tolerence").unknown);
    EXPECT_EQ(nullptr, FindWords("kirodbconvbas").pModule);
    EXPECT_NE(nullptr, FindWords("kirodbconvbase").pRecord);
    EXPECT_EQ("x", FindWords("kirodbconvbase.data.value.tolerance.x").unknown);

    // A pair is judged by what the member that holds it says.
    EXPECT_EQ(Unit::LuxIndex, FindWords("kiroextension.flagMonitor.flashFlag.flashLuxTrigger.start").pJudged->unit);
}

}  // namespace
