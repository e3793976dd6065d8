#include "parameters/recordtext.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <string>

#include "parameters/parameterparserinfo.h"
#include "tests/support/allforms.h"

namespace
{

class RecordTextTest : public ::testing::Test
{
protected:
    RecordTextTest()
    {
        m_record.labels[1]   = nullptr;
        m_record.centreCount = 0;
        m_record.last        = 4000000000;
    }

    /// "-" for a path that has no answer.
    std::string Get(const CHAR* pPath, UINT32 size = 256)
    {
        CHAR text[256];
        std::memset(text, '#', sizeof(text));
        if (!RecordText::GetValue(Description(), &m_record, pPath, text, size))
        {
            return "-";
        }
        EXPECT_LT(std::strlen(text), size);
        return text;
    }

    bool Set(const CHAR* pPath, const CHAR* pValue)
    {
        return RecordText::SetValue(Description(), &m_record, pPath, pValue);
    }

    /// Members as "name:type=value" and "name[count]:type".
    std::string Info(const CHAR* pPath)
    {
        PList<ParameterParserInfo> list;
        if (!RecordText::GetInfo(Description(), &m_record, pPath, list))
        {
            return "-";
        }
        std::string text;
        for (UINT32 index = 0; index < list.Count(); ++index)
        {
            const ParameterParserInfo& rInfo = list.ToArray()[index];
            EXPECT_FALSE(rInfo.IsVariable);
            text += (index > 0) ? " " : "";
            text += rInfo.Name;
            text += rInfo.IsArray ? "[" + std::to_string(rInfo.Count) + "]" : "";
            text += std::string(":") + rInfo.Type;
            text += (rInfo.Value[0] != '\0') ? std::string("=") + rInfo.Value : "";
        }
        return text;
    }

    static const tuning::RecordDescription& Description()
    {
        return allforms::EverythingTypeTable::Description;
    }

    allforms::Everything      m_all;
    allforms::EverythingType& m_record = m_all.record;
};

}  // namespace

TEST_F(RecordTextTest, APathLeadsToItsValue)
{
    const std::pair<const CHAR*, const CHAR*> cases[] = {
        {"signed8", "-8"},
        {"unsigned16", "65000"},
        {"last", "4000000000"},
        {"signed64", "-1099511627776"},
        {"unsigned64", "18446744069414584320"},  // as near as a double comes
        {"precise", "0.1"},
        {"colour", "4"},
        {"enable", "1"},
        {"origin.x", "1.5"},
        {"corners[1].y", "3"},
        {"title", "a title"},
        {"module_version.major_revision", "7"},
        {"parameter_version.revision", "rev 3"},
        {"unsigned8", "1,0,255"},
        {"unsigned8[1]", "0"},
        {"unsigned8[3]", "1,0,255"},  // an index that is none gives all
        {"labels", "left,"},          // one text is absent
        {"labels[0]", "left"},
        {"flags", "1,0"},
        {"leaves[0].curve", "0.5,0.75"},
        {"leaves[0].curve[1]", "0.75"},
        {"leaves[2].name", "-"},
        {"leaves.name", "-"},
        {"corners[2].y", "-"},
        {"corners[4294967295].y", "-"},
        {"corners[4294967297].y", "-"},
        {"limit", "0.25"},
        {"centre.x", "-"},
        {"origin", "-"},
        {"origin.", "-"},
        {"leaves[1]", "-"},
        {"SymbolTableID", "-"},
        {"module_version.SymbolTableID", "-"},
        {"Precise", "-"},
        {"precis", "-"},
        {"precise2", "-"},
        {"", "-"},
        {nullptr, "-"},
        {".", "-"},
        {"[", "-"},
        {"unsigned8[", "-"},
        {"unsigned8[]", "1,0,255"},
        {"precise.x", "0.1"},  // nothing stands below a value
    };
    for (const auto& [pPath, pText] : cases)
    {
        EXPECT_EQ(Get(pPath), pText) << (pPath != nullptr ? pPath : "null");
    }
    EXPECT_EQ(Get(std::string(100000, 'a').c_str()), "-");
    EXPECT_EQ(Get((std::string(200, '.') + "precise").c_str()), "-");
}

TEST_F(RecordTextTest, WhatDoesNotFitIsCut)
{
    EXPECT_EQ(Get("title", 4), "a t");
    EXPECT_EQ(Get("unsigned8", 6), "1,0,2");
    EXPECT_EQ(Get("unsigned8", 5), "1,0,");
    EXPECT_EQ(Get("unsigned8", 1), "");
    EXPECT_EQ(Get("title", 1), "");
}

TEST_F(RecordTextTest, NothingIsReadOfAnArrayThatIsNotThere)
{
    m_all.leaves[0].curve = nullptr;  // with a count left over
    m_record.limitCount   = 0;
    m_record.centreCount  = 1;
    EXPECT_EQ(Get("leaves[0].curve"), "");
    EXPECT_EQ(Get("leaves[0].curve[0]"), "");
    EXPECT_EQ(Get("limit"), "-");
    EXPECT_EQ(Get("centre.x"), "9.0");
    EXPECT_EQ(Info("leaves[0]"), "curve[0]:Float name:String=sky");
    EXPECT_FALSE(Set("leaves[0].curve[0]", "1"));
    EXPECT_FALSE(Set("limit", "1"));
    EXPECT_EQ(m_record.limit, 0.25f);
    m_record.leaves = nullptr;
    EXPECT_EQ(Get("leaves[0].name"), "-");
}

TEST_F(RecordTextTest, NumbersAreStoredAsTheirTypeHoldsThem)
{
    const std::tuple<const CHAR*, const CHAR*, const CHAR*> cases[] = {
        {"signed8", "-7.9", "-7"},      {"signed8", "300", "127"},
        {"signed8", "-300", "-128"},    {"unsigned16", "12.9", "12"},
        {"unsigned16", "-1", "0"},      {"last", "99999999999", "4294967295"},
        {"signed64", "-5", "-5"},       {"unsigned64", "16666666", "16666666"},
        {"origin.x", "0.125", "0.125"}, {"origin.x", "-2", "-2.0"},
        {"enable", "0", "0"},           {"colour", "0", "0"},
        {"unsigned8[2]", "33", "33"},   {"leaves[0].curve[0]", "0.875", "0.875"},
        {"precise", "2.5", "2.5"},      {"corners[1].y", "-21", "-21"},
        {"limit", "3", "3.0"},
    };
    for (const auto& [pPath, pValue, pText] : cases)
    {
        EXPECT_TRUE(Set(pPath, pValue)) << pPath;
        EXPECT_EQ(Get(pPath), pText);
    }
    EXPECT_EQ(m_record.corners[1].x, 2.5f) << "only the member itself is written";
    EXPECT_EQ(m_record.corners[1].y, -21);
    EXPECT_EQ(m_record.colour, allforms::Colour::Red);
    EXPECT_EQ(Get("unsigned8"), "1,0,33");
    EXPECT_TRUE(Set("origin.x", std::string(400, '9').c_str()));
    EXPECT_TRUE(Set("last", std::string(400, '9').c_str()));
    EXPECT_EQ(m_record.last, std::numeric_limits<UINT32>::max());
}

TEST_F(RecordTextTest, ARecordStaysAsItIsIfThereIsNothingToSet)
{
    const allforms::EverythingType            before  = m_record;
    const std::pair<const CHAR*, const CHAR*> cases[] = {
        {"precise", "fast"},  {"precise", ""},
        {"precise", nullptr}, {"precise", "1.2.3"},
        {"precise", "1e3"},   {"precise", " 1"},
        {"unsigned8", "1"},   {"unsigned8[3]", "1"},
        {"flags", "1"},       {"title", "1"},
        {"labels[0]", "1"},   {"origin", "1"},
        {"centre.x", "1"},    {"SymbolTableID", "1"},
        {"nothing", "1"},     {"", "1"},
        {nullptr, "1"},       {"leaves[2].curve[0]", "1"},
    };
    for (const auto& [pPath, pValue] : cases)
    {
        EXPECT_FALSE(Set(pPath, pValue)) << (pPath != nullptr ? pPath : "null");
    }
    EXPECT_EQ(std::memcmp(&before, &m_record, sizeof(before)), 0);
}

TEST_F(RecordTextTest, MembersAreDescribed)
{
    EXPECT_EQ(Info(nullptr), Info(""));
    EXPECT_EQ(Info(""), "module_version:Structure parameter_version:Structure signed8:Int32=-8 unsigned8[3]:UInt32 "
                        "signed16:Int32=-1600 unsigned16:UInt32=65000 signed64:UInt64=-1099511627776 "
                        "unsigned64:UInt64=18446744069414584320 precise:Float=0.1 colour:Enum=4 palette[3]:Enum "
                        "enable:Boolean=1 origin:Structure corners[2]:Structure title:String=a title labels[2]:String "
                        "colours[3]:Enum flags[2]:Boolean leaves[2]:Structure notes[2]:String limit:Float=0.25 "
                        "centre:Structure remark:String=remark absent[0]:Float last:UInt32=4000000000");
    EXPECT_EQ(Info("module_version"), "major_revision:Int32=7 minor_revision:Int32=0 incr_revision:Int32=9");
    EXPECT_EQ(Info("leaves[0]"), "curve[2]:Float name:String=sky");
    for (const CHAR* pPath : {"leaves[2]", "leaves", "precise", "unsigned8", "unsigned8[0]", "centre", "nothing", "."})
    {
        EXPECT_EQ(Info(pPath), "-") << pPath;
    }
}
