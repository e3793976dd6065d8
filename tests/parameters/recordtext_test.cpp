#include "parameters/recordtext.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <string>

#include "parameters/parameterparserinfo.h"

namespace panelschema
{

enum Tint : INT32
{
    Cold = -1,
    Warm = 7
};
TUNING_ENUM(Tint)
ENUMERATOR(Cold)
ENUMERATOR(Warm)
TUNING_ENUM_END

struct StepType
{
    float  start;
    UINT16 frames;
};
TUNING_RECORD(StepType)
MEMBER(start)
MEMBER(frames)
TUNING_RECORD_END

struct GroupType
{
    double    weight;
    StepType  pair[2];
    UINT32    stepsCount;
    UINT32    stepsID;
    StepType* steps;
};
TUNING_RECORD(GroupType)
MEMBER(weight)
MEMBER(pair)
VARIABLE(steps)
TUNING_RECORD_END

struct PanelType
{
    UINT32                  SymbolTableID;
    module_versionStruct    module_version;
    parameter_versionStruct parameter_version;
    INT8                    tiny;
    UINT16                  small;
    UINT32                  gain;
    INT64                   wide;
    UINT64                  time;
    float                   ratio;
    BOOL                    on;
    Tint                    tint;
    CHAR*                   title;
    INT32                   grid[3];
    CHAR*                   labels[2];
    GroupType               group;
    UINT32                  curveCount;
    UINT32                  curveID;
    float*                  curve;
    UINT32                  limitCount;
    UINT32                  limitID;
    float                   limit;
    UINT32                  edgeCount;
    UINT32                  edgeID;
    StepType                edge;
};
TUNING_RECORD(PanelType)
MODULE_HEADER
MEMBER(tiny)
MEMBER(small)
MEMBER(gain)
MEMBER(wide)
MEMBER(time)
MEMBER(ratio)
BOOLEAN(on)
MEMBER(tint)
MEMBER(title)
MEMBER(grid)
MEMBER(labels)
MEMBER(group)
VARIABLE(curve)
OPTIONAL(limit)
OPTIONAL(edge)
TUNING_RECORD_END

}  // namespace panelschema

namespace
{

using namespace panelschema;

class RecordTextTest : public ::testing::Test
{
protected:
    /// "-" for a path that has no answer.
    std::string Get(const CHAR* pPath, UINT32 size = 256)
    {
        CHAR text[256];
        std::memset(text, '#', sizeof(text));
        if (!RecordText::GetValue(Description(), &m_panel, pPath, text, size))
        {
            return "-";
        }
        EXPECT_LT(std::strlen(text), size);
        return text;
    }

    bool Set(const CHAR* pPath, const CHAR* pValue)
    {
        return RecordText::SetValue(Description(), &m_panel, pPath, pValue);
    }

    /// Members as "name:type=value" and "name[count]:type".
    std::string Info(const CHAR* pPath)
    {
        PList<ParameterParserInfo> list;
        if (!RecordText::GetInfo(Description(), &m_panel, pPath, list))
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
        return PanelTypeTable::Description;
    }

    CHAR     m_revision[4] = "r1";
    CHAR     m_title[8]    = "camera";
    float    m_curve[2]    = {0.5f, 1.0f};
    StepType m_steps[3]    = {{1.0f, 10}, {2.0f, 20}, {3.0f, 30}};
    // The edge is not there: its count is 0.
    PanelType m_panel = {.SymbolTableID     = 5,
                         .module_version    = {.major_revision = 10},
                         .parameter_version = {.revision = m_revision},
                         .tiny              = -128,
                         .small             = 65535,
                         .gain              = 4000000000u,
                         .wide              = -4294967297,
                         .time              = 33333333,
                         .ratio             = 0.25f,
                         .on                = TRUE,
                         .tint              = Cold,
                         .title             = m_title,
                         .grid              = {10, -20, 30},
                         .labels            = {m_revision},
                         .group             = {1.5, {{1.0f, 1}, {2.0f, 2}}, 3, 0, m_steps},
                         .curveCount        = 2,
                         .curve             = m_curve,
                         .limitCount        = 1,
                         .limit             = 2.0f,
                         .edge              = {9.0f, 9}};
};

}  // namespace

TEST_F(RecordTextTest, APathLeadsToItsValue)
{
    const std::pair<const CHAR*, const CHAR*> cases[] = {
        {"tiny", "-128"},
        {"small", "65535"},
        {"gain", "4000000000"},
        {"wide", "-4294967297"},
        {"time", "33333333"},
        {"ratio", "0.25"},
        {"on", "1"},
        {"tint", "-1"},
        {"title", "camera"},
        {"module_version.major_revision", "10"},
        {"parameter_version.revision", "r1"},
        {"grid", "10,-20,30"},
        {"grid[1]", "-20"},
        {"grid[3]", "10,-20,30"},  // an index that is none gives all
        {"labels", "r1,"},         // one text is absent
        {"labels[0]", "r1"},
        {"curve", "0.5,1.0"},
        {"curve[1]", "1.0"},
        {"group.weight", "1.5"},
        {"group.pair[1].frames", "2"},
        {"group.steps[2].start", "3.0"},
        {"group.steps[3].start", "-"},
        {"group.steps.start", "-"},
        {"group.pair[2].frames", "-"},
        {"group.pair[4294967295].frames", "-"},
        {"limit", "2.0"},
        {"edge.start", "-"},
        {"group", "-"},
        {"group.", "-"},
        {"group.steps[1]", "-"},
        {"SymbolTableID", "-"},
        {"module_version.SymbolTableID", "-"},
        {"Ratio", "-"},
        {"rati", "-"},
        {"ratio2", "-"},
        {"", "-"},
        {nullptr, "-"},
        {".", "-"},
        {"[", "-"},
        {"grid[", "-"},
        {"grid[]", "10,-20,30"},
        {"ratio.x", "0.25"},  // nothing stands below a value
    };
    for (const auto& [pPath, pText] : cases)
    {
        EXPECT_EQ(Get(pPath), pText) << (pPath != nullptr ? pPath : "null");
    }
    EXPECT_EQ(Get(std::string(100000, 'a').c_str()), "-");
    EXPECT_EQ(Get((std::string(200, '.') + "ratio").c_str()), "-");

    // What does not fit is cut.
    EXPECT_EQ(Get("title", 4), "cam");
    EXPECT_EQ(Get("grid", 9), "10,-20,3");
    EXPECT_EQ(Get("grid", 4), "10,");
    EXPECT_EQ(Get("grid", 1), "");
    EXPECT_EQ(Get("title", 1), "");
}

TEST_F(RecordTextTest, NothingIsReadOfAnArrayThatIsNotThere)
{
    m_panel.curve       = nullptr;  // with a count left over
    m_panel.group.steps = nullptr;
    m_panel.limitCount  = 0;
    m_panel.edgeCount   = 1;
    EXPECT_EQ(Get("curve"), "");
    EXPECT_EQ(Get("curve[0]"), "");
    EXPECT_EQ(Get("group.steps[0].start"), "-");
    EXPECT_EQ(Get("limit"), "-");
    EXPECT_EQ(Get("edge.start"), "9.0");
    EXPECT_EQ(Info("group"), "weight:Float=1.5 pair[2]:Structure steps[0]:Structure");
    EXPECT_FALSE(Set("curve[0]", "1"));
    EXPECT_FALSE(Set("limit", "1"));
    EXPECT_EQ(m_panel.limit, 2.0f);
}

TEST_F(RecordTextTest, NumbersAreStoredAsTheirTypeHoldsThem)
{
    const std::tuple<const CHAR*, const CHAR*, const CHAR*> cases[] = {
        {"tiny", "-7.9", "-7"},
        {"tiny", "300", "127"},
        {"tiny", "-300", "-128"},
        {"small", "12.9", "12"},
        {"small", "-1", "0"},
        {"gain", "99999999999", "4294967295"},
        {"wide", "-5", "-5"},
        {"time", "16666666", "16666666"},
        {"ratio", "0.125", "0.125"},
        {"ratio", "-2", "-2.0"},
        {"on", "0", "0"},
        {"tint", "7", "7"},
        {"grid[2]", "33", "33"},
        {"curve[0]", "0.75", "0.75"},
        {"group.weight", "2.5", "2.5"},
        {"group.pair[0].start", "8", "8.0"},
        {"group.steps[1].frames", "21", "21"},
        {"limit", "3", "3.0"},
    };
    for (const auto& [pPath, pValue, pText] : cases)
    {
        EXPECT_TRUE(Set(pPath, pValue)) << pPath;
        EXPECT_EQ(Get(pPath), pText);
    }
    EXPECT_EQ(m_steps[1].start, 2.0f) << "only the member itself is written";
    EXPECT_EQ(m_steps[1].frames, 21);
    EXPECT_EQ(m_panel.tint, Warm);
    EXPECT_EQ(Get("grid"), "10,-20,33");
    EXPECT_TRUE(Set("ratio", std::string(400, '9').c_str()));
    EXPECT_TRUE(Set("gain", std::string(400, '9').c_str()));
    EXPECT_EQ(m_panel.gain, std::numeric_limits<UINT32>::max());
}

TEST_F(RecordTextTest, ARecordStaysAsItIsIfThereIsNothingToSet)
{
    const PanelType                           before  = m_panel;
    const std::pair<const CHAR*, const CHAR*> cases[] = {
        {"ratio", "fast"},   {"ratio", ""},          {"ratio", nullptr},
        {"ratio", "1.2.3"},  {"ratio", "1e3"},       {"ratio", " 1"},
        {"grid", "1"},       {"grid[3]", "1"},       {"curve", "1"},
        {"title", "1"},      {"labels[0]", "1"},     {"group", "1"},
        {"edge.start", "1"}, {"SymbolTableID", "1"}, {"nothing", "1"},
        {"", "1"},           {nullptr, "1"},         {"group.steps[3].start", "1"},
    };
    for (const auto& [pPath, pValue] : cases)
    {
        EXPECT_FALSE(Set(pPath, pValue)) << (pPath != nullptr ? pPath : "null");
    }
    EXPECT_EQ(std::memcmp(&before, &m_panel, sizeof(before)), 0);
}

TEST_F(RecordTextTest, MembersAreDescribed)
{
    EXPECT_EQ(Info(nullptr), Info(""));
    EXPECT_EQ(Info(""), "module_version:Structure parameter_version:Structure tiny:Int32=-128 small:UInt32=65535 "
                        "gain:UInt32=4000000000 wide:UInt64=-4294967297 time:UInt64=33333333 ratio:Float=0.25 "
                        "on:Boolean=1 tint:Enum=-1 title:String=camera grid[3]:Int32 labels[2]:String "
                        "group:Structure curve[2]:Float limit:Float=2.0 edge:Structure");
    EXPECT_EQ(Info("module_version"), "major_revision:Int32=10 minor_revision:Int32=0 incr_revision:Int32=0");
    EXPECT_EQ(Info("group.steps[1]"), "start:Float=2.0 frames:UInt32=20");
    for (const CHAR* pPath : {"group.steps[3]", "group.steps", "ratio", "grid", "grid[0]", "edge", "nothing", "."})
    {
        EXPECT_EQ(Info(pPath), "-") << pPath;
    }
}
