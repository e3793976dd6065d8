#include "parameters/parameterdefinitions.h"

#include <cstddef>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "schema/namehash.h"
#include "tests/support/parameterfilebuilder.h"
#include "tests/support/systemlogcapture.h"

namespace
{

/// Loads definitions alone.
struct Defined
{
    explicit Defined(const ByteWriter& rSection, bool countedArrays = true)
    {
        complete =
            definitions.Read(rSection.Get().data(), static_cast<UINT32>(rSection.Size()), 1, countedArrays, nullptr);
    }

    const ParameterDefinitionElementInfo& Member(UINT32 structureId, const CHAR* pName) const
    {
        return *definitions.FindStructure(structureId)->FindChild(namehash::OfName(pName))->Info;
    }

    ParameterDefinitions definitions;
    bool                 complete = false;
};

TEST(Definitions, LayoutFollowsTypesAndCounts)
{
    ParameterFileBuilder builder;
    builder.DefineModule("alpha", 1);
    builder.DefineStructure(1, "Outer",
                            {{"byte", ParameterDefinitionType_Hex8Bits},
                             {"three", ParameterDefinitionType_Signed16Bits, 3, 3},
                             {"range", ParameterDefinitionType_Signed16Bits, 2, 3},
                             {"maybe", ParameterDefinitionType_Double, 0, 1},
                             {"text", ParameterDefinitionType_String},
                             {"texts", ParameterDefinitionType_IDString, 2, 2},
                             {"inner", ParameterDefinitionType_Structure, 1, 1, 2},
                             {"flagged", ParameterDefinitionType_Unsigned64Bits, 1, 1, 0, 1},
                             {"lost", ParameterDefinitionType_Structure, 1, 1, 77},
                             {"inners", ParameterDefinitionType_Structure, 2, 2, 2},
                             {"last", ParameterDefinitionType_Float}});
    builder.DefineStructure(2, "Inner", {{"x", ParameterDefinitionType_Unsigned64Bits}});
    builder.DefineStructure(3, "Empty", {});

    SystemLogCapture log;
    const Defined    defined(builder.Definitions());
    ASSERT_TRUE(defined.complete);
    const std::tuple<const CHAR*, UINT32, UINT16> members[] = {
        {"byte", 4, 0},  {"three", 5, 128},   {"range", 15, 2}, {"maybe", 23, 2},
        {"text", 31, 0}, {"texts", 39, 128},  {"inner", 59, 0}, {"flagged", 71, 1},
        {"lost", 75, 0}, {"inners", 75, 128}, {"last", 103, 0},
    };
    for (const auto& [pName, offset, flags] : members)
    {
        EXPECT_EQ(defined.Member(1, pName).ParentOffset, offset) << pName;
        EXPECT_EQ(defined.Member(1, pName).Flags, flags) << pName;
    }
    EXPECT_EQ(defined.definitions.FindStructure(1)->Size, 107U);
    EXPECT_EQ(defined.definitions.FindStructure(2)->Size, 12U);
    EXPECT_EQ(defined.definitions.FindStructure(3)->Size, 0U);
    EXPECT_EQ(defined.definitions.FindModuleStructure(namehash::OfName("alpha")), defined.definitions.FindStructure(1));
    EXPECT_TRUE(log.Has("PopulateOffsetSizeStructure structure not found: ID: 77, NameHash: ", "E"));

    // Three fixed arrays have no count in older files.
    EXPECT_EQ(Defined(builder.Definitions(), false).definitions.FindStructure(1)->Size, 95U);

    // Counts that contradict themselves.
    EXPECT_EQ(ParameterDefinitionElementInfo::FlagsFromCounts(0, 0), 0);
    EXPECT_EQ(ParameterDefinitionElementInfo::FlagsFromCounts(5, 1), 0);
    EXPECT_EQ(ParameterDefinitionElementInfo::FlagsFromCounts(5, 3), 2);
}

TEST(Definitions, OtherKindsAreSteppedOverAndUnknownOnesRefused)
{
    const auto text = [](ByteWriter& rWriter) { rWriter.Add<UINT32>(3).Field("ab", 3); };
    ByteWriter section;
    section.Add<BYTE>(ParameterDefinitionType_ScenarioMode).Zeros(1);
    text(section);
    section.Zeros(1).Add<BYTE>(ParameterDefinitionType_ScenarioSubMode).Zeros(3);
    text(section);
    section.Zeros(1).Add<BYTE>(ParameterDefinitionType_Pipeline).Zeros(2);
    text(section);
    text(section);
    section.Add<BYTE>(ParameterDefinitionType_EnumDefinition).Zeros(4);
    text(section);
    section.Zeros(8).Add<UINT32>(2);
    for (UINT32 value = 0; value < 2; ++value)
    {
        section.Zeros(5);
        text(section);
        text(section);
    }
    ParameterFileBuilder builder;
    builder.DefineStructure(9, "T", {{"a", ParameterDefinitionType_Signed8Bits}});
    section.Bytes(builder.Definitions().Get());
    {
        const Defined defined(section);
        EXPECT_TRUE(defined.complete);
        EXPECT_EQ(defined.definitions.FindStructure(9)->Size, 5U);
    }

    SystemLogCapture log;
    section.Add<BYTE>(3);
    const Defined defined(section);
    EXPECT_FALSE(defined.complete);
    EXPECT_TRUE(log.Has("Error: Unexpected type found in definition table (3)\n", "E"));
    EXPECT_NE(defined.definitions.FindStructure(9), nullptr);
}

TEST(Definitions, OfRepeatedNamesTheFirstStays)
{
    ParameterFileBuilder builder;
    builder.DefineModule("alpha", 1);
    builder.DefineModule("alpha", 2);
    builder.DefineStructure(1, "First",
                            {{"a", ParameterDefinitionType_Signed32Bits},
                             {"a", ParameterDefinitionType_Signed64Bits},
                             {"b", ParameterDefinitionType_Signed8Bits}});
    builder.DefineStructure(1, "Second", {});
    SystemLogCapture log;
    const Defined    defined(builder.Definitions());
    ASSERT_TRUE(defined.complete);
    EXPECT_TRUE(log.Has("found in definition table: alpha / alpha\n", "E"));
    EXPECT_TRUE(log.Has("Error: Duplicate structure ID (1) found in definition table: First / Second\n", "E"));
    EXPECT_TRUE(log.Has("Duplicated hash found in Children (", "E"));
    EXPECT_EQ(defined.definitions.FindModuleStructure(namehash::OfName("alpha"))->Members.Count(), 3U);
    EXPECT_EQ(defined.Member(1, "a").Type, ParameterDefinitionType_Signed32Bits);
    EXPECT_EQ(defined.Member(1, "b").ParentOffset, 16U);  // the second "a" takes room
}

TEST(Definitions, EveryTruncationIsRefusedWithoutHarm)
{
    ParameterFileBuilder builder;
    builder.DefineModule("alpha", 1);
    const size_t moduleSize = builder.Definitions().Size();
    builder.DefineStructure(1, "Outer", {{"inner", ParameterDefinitionType_Structure, 0, 4, 2}});
    const std::vector<BYTE> whole = builder.Definitions().Get();
    SystemLogCapture        log;
    for (size_t size = 0; size < whole.size(); ++size)
    {
        const bool isAtRecordEnd = size == 0 || size == moduleSize;
        EXPECT_EQ(
            Defined(ByteWriter().Bytes({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)})).complete,
            isAtRecordEnd)
            << size;
    }
}

TEST(Definitions, CyclesAndEndlessNestingEnd)
{
    ParameterFileBuilder builder;
    builder.DefineStructure(1, "Self", {{"me", ParameterDefinitionType_Structure, 1, 1, 1}});
    builder.DefineStructure(2, "Ping", {{"pong", ParameterDefinitionType_Structure, 1, 1, 3}});
    builder.DefineStructure(3, "Pong", {{"ping", ParameterDefinitionType_Structure, 0xFFFFFFFF, 0xFFFFFFFF, 2}});
    constexpr UINT32 Depth = 100000;
    for (UINT32 level = 0; level < Depth; ++level)
    {
        builder.DefineStructure(1000 + level, "N", {{"n", ParameterDefinitionType_Structure, 2, 2, 1001 + level}});
    }
    SystemLogCapture log;
    Defined          defined(builder.Definitions());
    EXPECT_TRUE(defined.complete);
    EXPECT_EQ(defined.definitions.FindStructure(1)->Size, 8U);                 // it sees the 4 bytes that it has so far
    EXPECT_EQ(defined.definitions.FindStructure(1000 + Depth - 1)->Size, 8U);  // the innermost one is unknown
    EXPECT_EQ(defined.definitions.FindStructure(1000 + Depth - 2)->Size, 24U);
    EXPECT_EQ(defined.definitions.FindStructure(1000)->Size, 0xFFFFFFFFU);
    for (UINT32 level = 0; level < Depth; ++level)
    {
        defined.definitions.FindStructure(1000 + level)->FindChild(namehash::OfName("n"))->Verified = true;
    }
    defined.definitions.Prune();
    EXPECT_EQ(defined.definitions.StructureCount(), 3U);
}

TEST(Definitions, PruningKeepsWhatIsStillNeeded)
{
    ParameterFileBuilder builder;
    builder.DefineModule("matched", 1);
    builder.DefineModule("missed", 2);
    builder.DefineModule("deep", 3);
    builder.DefineStructure(1, "Matched", {{"a", ParameterDefinitionType_Signed32Bits}});
    builder.DefineStructure(2, "Missed", {{"a", ParameterDefinitionType_Signed32Bits}});
    builder.DefineStructure(
        3, "Deep",
        {{"a", ParameterDefinitionType_Signed32Bits}, {"inner", ParameterDefinitionType_Structure, 1, 1, 4}});
    builder.DefineStructure(
        4, "Inner",
        {{"seen", ParameterDefinitionType_Signed32Bits}, {"unseen", ParameterDefinitionType_Structure, 0, 9, 5}});
    builder.DefineStructure(5, "Leaf", {{"a", ParameterDefinitionType_Signed32Bits}});
    Defined    defined(builder.Definitions());
    const auto child = [&](UINT32 id, const CHAR* pName)
    { return defined.definitions.FindStructure(id)->FindChild(namehash::OfName(pName)); };
    for (const auto& [id, pName] : {std::pair(1U, "a"), {2U, "a"}, {3U, "a"}, {3U, "inner"}, {4U, "seen"}, {5U, "a"}})
    {
        child(id, pName)->Verified = true;
    }
    defined.definitions.FindStructure(2)->MissedMember = true;

    defined.definitions.Prune();
    EXPECT_EQ(defined.definitions.FindModuleStructure(namehash::OfName("matched")), nullptr);
    EXPECT_EQ(defined.definitions.FindStructure(1), nullptr);
    EXPECT_NE(defined.definitions.FindModuleStructure(namehash::OfName("missed")), nullptr);
    // A structure that is not fully seen keeps the way to it.
    ASSERT_NE(defined.definitions.FindModuleStructure(namehash::OfName("deep")), nullptr);
    EXPECT_FALSE(child(3, "a")->Info.has_value());
    EXPECT_EQ(child(3, "inner")->Info->Structure, defined.definitions.FindStructure(4));
    EXPECT_FALSE(child(4, "seen")->Info.has_value());
    EXPECT_EQ(child(4, "unseen")->Info->Structure, defined.definitions.FindStructure(5));
}

}  // namespace
