// Files whose schema of a record is another one than the code's.

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <tuple>
#include <utility>
#include <vector>

#include "tests/parameters/loadedrecord.h"
#include "tests/support/allforms.h"
#include "tests/support/recordwriter.h"
#include "tests/support/systemlogcapture.h"

namespace smallrecord
{

/// A small record, for files that differ from the code.
struct SmallType
{
    INT32               first;
    float               numbers[4];
    allforms::PointType point;
    UINT32              listCount;
    UINT32              listID;
    UINT32*             list;
    UINT32              last;
};
TUNING_RECORD(SmallType)
    MEMBER(first)
    MEMBER(numbers)
    MEMBER(point)
    VARIABLE(list)
    MEMBER(last)
TUNING_RECORD_END

}  // namespace smallrecord

using smallrecord::SmallType;

namespace
{

using Source = LoadedTable::Source;

/// A file whose schema of SmallType is another one than the code's.
class SmallFile
{
public:
    explicit SmallFile(const VersionUnion& rVersion = {7, 0, 0}) : builder(rVersion), members(MembersOfCode())
    {
        block.Add<UINT32>(0);
    }

    std::vector<DefinedMember> MembersOfCode()
    {
        return RecordWriter(builder).Members(tuning::DescriptionOf<SmallType>());
    }

    /// Ends the record and adds it for a mode.
    UINT32 AddRecord(UINT32 modeId = 0)
    {
        block.Patch(0, static_cast<UINT32>(block.Size() - sizeof(UINT32)));
        return builder.AddModule("small", ModuleVersion, modeId, block.Get());
    }

    ParameterFile Build()
    {
        builder.DefineModule("small", 100);
        builder.DefineStructure(100, "SmallType", members);
        return builder.Build();
    }

    VOID Remove(const CHAR* pName)
    {
        std::erase_if(members, [&](const DefinedMember& rMember) { return rMember.name == pName; });
    }

    DefinedMember& Member(const CHAR* pName)
    {
        return *std::find_if(members.begin(), members.end(),
                             [&](const DefinedMember& rMember) { return rMember.name == pName; });
    }

    ByteWriter& AddNumbers(UINT32 count)
    {
        block.Add(count);
        for (UINT32 index = 0; index < count; ++index)
        {
            block.Add(static_cast<FLOAT>(index) + 0.5F);
        }
        return block;
    }

    ByteWriter& AddPoint(FLOAT x, INT32 y)
    {
        return block.Add<UINT32>(8).Add(x).Add(y);
    }

    ByteWriter& AddList(const std::vector<UINT32>& rValues)
    {
        ByteWriter values;
        for (const UINT32 value : rValues)
        {
            values.Add(value);
        }
        return block.Add(static_cast<UINT32>(rValues.size())).Add(builder.AddData(values.Get()));
    }

    ParameterFileBuilder       builder;
    std::vector<DefinedMember> members;
    ByteWriter                 block;
};

/// The record of a small file, loaded by itself, and what was logged of it.
struct Reading
{
    explicit Reading(const ParameterFile& rFile) : loaded(rFile), small(loaded, 1, "small")
    {
    }

    LoadedTable       loaded;
    SystemLogCapture  log;
    Loaded<SmallType> small;
    const SmallType&  record = small.record;
};

TEST(SchemaDrift, MembersThatTheFileLacksStayZeroAlsoInLaterModes)
{
    SmallFile file;
    for (const CHAR* pName : {"numbers", "point", "list"})
    {
        file.Remove(pName);
    }
    file.block.Add<INT32>(-5).Add<UINT32>(99);
    file.AddRecord(0);
    file.AddRecord(1);
    LoadedTable loaded(file.Build(), Source::Disk);
    ASSERT_TRUE(loaded.loaded);
    for (const UINT32 id : {1U, 2U})
    {
        SystemLogCapture  log;
        Loaded<SmallType> small(loaded, id, "small");
        EXPECT_EQ(small.record.first, -5);
        EXPECT_EQ(small.record.numbers[0], 0.0F);
        EXPECT_EQ(small.record.point.x, 0.0F);
        EXPECT_EQ(small.record.list, nullptr);
        EXPECT_EQ(small.record.last, 99U);
        for (const CHAR* pReader : {"ReadSimpleTypeFixedArray: 0x", "Load: 0x", "ReadSimpleTypeArray: 0x"})
        {
            EXPECT_TRUE(log.Has(pReader, "E")) << log.Text();
        }
        EXPECT_EQ(log.Count("entry not found in the binary file, all values will be 0\n"), 3U) << log.Text();
        EXPECT_FALSE(log.Has("XSD"));
        loaded.table->FreeEntryData();
        loaded.table->ClearDefinitions(false);
    }
}

TEST(SchemaDrift, AMemberThatTheCodeLacks)
{
    for (const bool atEnd : {true, false})
    {
        SmallFile           file;
        const DefinedMember extra{"extra", ParameterDefinitionType_Unsigned32Bits};
        file.members.insert(atEnd ? file.members.end() : file.members.begin() + 1, extra);
        file.block.Add<INT32>(-5);
        if (!atEnd)
        {
            file.block.Add<UINT32>(0x40000000);  // read as the count of the numbers
        }
        file.AddNumbers(4);
        file.AddPoint(1.0F, 2);
        file.AddList({7}).Add<UINT32>(99);
        if (atEnd)
        {
            file.block.Add<UINT32>(0x1234);
        }
        file.AddRecord();
        const Reading reading(file.Build());
        EXPECT_EQ(reading.record.first, -5);
        EXPECT_EQ(reading.record.last == 99U, atEnd);
        EXPECT_TRUE(reading.log.Has("does not match expected bytes (", "W"));
        EXPECT_EQ(reading.log.Has("differs from expected", "W"), !atEnd);
        EXPECT_EQ(reading.log.Has("expected count (4) != the binary count (1073741824), the binary XSD != the source "
                                  "XSD\n",
                                  "W"),
                  !atEnd);
        EXPECT_EQ(reading.log.Size() == 1U, atEnd) << reading.log.Text();
    }
}

TEST(SchemaDrift, CountsThatLieInARecordOfTheRightSizeAreFound)
{
    for (const bool isDefined : {true, false})
    {
        SCOPED_TRACE(isDefined);
        SmallFile file;
        file.block.Add<INT32>(-5);
        file.block.Add<UINT32>(3).Add(0.5F).Add(1.5F).Add(2.5F).Add(3.5F);  // with room for four
        file.AddPoint(1.0F, 2);
        file.AddList({7}).Add<UINT32>(99);
        file.AddRecord();
        const Reading reading(isDefined ? file.Build() : file.builder.Build());
        EXPECT_EQ(reading.record.first, -5);
        EXPECT_EQ(reading.record.numbers[2], 2.5F);
        EXPECT_EQ(reading.record.numbers[3], 0.0F);
        EXPECT_TRUE(reading.log.Has("expected count (4) != the binary count (3), the binary XSD != the source XSD\n"));
        EXPECT_EQ(reading.log.Has("differs from expected"), isDefined);
        EXPECT_NE(reading.record.point.x, 1.0F) << "what follows is read from where the reading stands";
    }
    for (const bool isDefined : {true, false})
    {
        SCOPED_TRACE(isDefined);
        SmallFile file;
        file.block.Add<INT32>(-5);
        file.AddNumbers(4);
        file.block.Add<UINT32>(4).Add(1.0F).Add<INT32>(2);  // says that it has 4 bytes
        file.AddList({7}).Add<UINT32>(99);
        file.AddRecord();
        const Reading reading(isDefined ? file.Build() : file.builder.Build());
        EXPECT_EQ(reading.record.numbers[3], 3.5F);
        EXPECT_EQ(reading.record.point.x, 1.0F);
        EXPECT_EQ(reading.record.point.y, 0);
        EXPECT_NE(reading.record.last, 99U);
    }
}

TEST(SchemaDrift, StoredTypesAndCountsAreConverted)
{
    SmallFile file;
    file.Member("first").type      = ParameterDefinitionType_Signed16Bits;
    file.Member("numbers").minimum = 6;
    file.Member("numbers").maximum = 6;
    file.Member("list").flags      = ParameterDefinitionElementInfo::FloatFlag;
    file.Member("last").type       = ParameterDefinitionType_Double;
    file.block.Add<INT16>(-300);
    file.AddNumbers(6);
    file.AddPoint(1.0F, 2);
    file.block.Add<UINT32>(2).Add(file.builder.AddData(ByteWriter().Add(2.9F).Add(-1.0F).Get()));
    file.block.Add(7.9);
    file.AddRecord();
    const Reading reading(file.Build());
    EXPECT_EQ(reading.record.first, -300);
    EXPECT_TRUE(
        reading.log.Has("Insufficient data to read array of symbol table entry\n", "E"));  // said of other widths
    EXPECT_EQ(reading.record.numbers[3], 3.5F);
    EXPECT_TRUE(reading.log.Has("expected count (4) != the binary count (6), the binary XSD != the source XSD\n", "W"));
    // What follows is read from where the reading stands: the fifth number is the byte count of the point.
    EXPECT_TRUE(reading.log.Has("Binary file position (", "W"));

    // None of it counts as matching.
    reading.loaded.table->ClearDefinitions(false);
    ParameterDefinitionStructure* pRoot = reading.loaded.table->FindModuleStructure(namehash::OfName("small"));
    ASSERT_NE(pRoot, nullptr);
    for (const CHAR* pName : {"first", "numbers", "last"})
    {
        EXPECT_TRUE(pRoot->FindChild(namehash::OfName(pName))->Info.has_value()) << pName;
    }
}

TEST(SchemaDrift, ListsOfOtherTypesAndFormsAreRead)
{
    using Words        = std::vector<UINT32>;
    const auto asIs    = [](DefinedMember&) {};
    const auto ofBytes = [](DefinedMember& rList) { rList.type = ParameterDefinitionType_Unsigned8Bits; };
    const auto floats  = [](DefinedMember& rList) { rList.flags = ParameterDefinitionElementInfo::FloatFlag; };
    const auto pair    = [](DefinedMember& rList) { rList.minimum = rList.maximum = 2; };
    const auto single  = [](DefinedMember& rList) { rList.minimum = rList.maximum = 1; };
    // What stands in the record, and the data that it ends with the entry of.
    const std::tuple<const CHAR*, VOID (*)(DefinedMember&), Words, std::vector<BYTE>, Words> cases[] = {
        {"bytes", ofBytes, {3}, {200, 2, 3}, {200, 2, 3}},
        {"floats", floats, {2}, ByteWriter().Add(2.9F).Add(-1.0F).Get(), {2, 0}},
        {"a fixed array, inside the record", pair, {2, 11, 12}, {}, {11, 12}},
        {"a single value, inside the record", single, {11}, {}, {11}},
        {"clipped to what the block holds", asIs, {0xFFFFFFFF}, ByteWriter().Add(5U).Add(6U).Get(), {5, 6}},
        {"empty", asIs, {0, 0}, {}, {}},
        {"of no such entry", asIs, {2, 4711}, {}, {}},
    };
    for (const auto& [pName, define, words, data, expected] : cases)
    {
        SCOPED_TRACE(pName);
        SmallFile file;
        file.block.Add<INT32>(0);
        file.AddNumbers(4);
        file.AddPoint(1.0F, 2);
        define(file.Member("list"));
        for (const UINT32 word : words)
        {
            file.block.Add(word);
        }
        if (!data.empty())
        {
            file.block.Add(file.builder.AddData(data));
        }
        file.block.Add<UINT32>(99);
        file.AddRecord();
        const Reading reading(file.Build());
        EXPECT_EQ(Words(reading.record.list, reading.record.list + reading.record.listCount), expected);
        EXPECT_EQ(reading.record.last, 99U) << reading.log.Text();
    }
}

TEST(SharedData, IdenticalBlocksBecomeOneObjectUntilTheLastUserGoes)
{
    for (const Source source : {Source::Buffer, Source::Disk})
    {
        SmallFile    file;
        const UINT32 list = file.builder.AddData(ByteWriter().Add<UINT32>(7, 8).Get());
        const UINT32 copy = file.builder.AddData({}, list);
        // The last one lies about how many values the same block has.
        for (const auto& [id, count] : {std::pair(list, 2U), std::pair(copy, 2U), std::pair(copy, 1U)})
        {
            file.block = ByteWriter();
            file.block.Add<UINT32>(0).Add<INT32>(1);
            file.AddNumbers(4);
            file.AddPoint(1.0F, 2).Add(count).Add(id).Add<UINT32>(99);
            file.AddRecord();
        }
        LoadedTable      loaded(file.Build(), source);
        const UINT64     before = LiveAllocations();
        SystemLogCapture log;
        {
            auto pFirst = std::make_unique<Loaded<SmallType>>(loaded, 1, "small");
            auto pCopy  = std::make_unique<Loaded<SmallType>>(loaded, 2, "small");
            auto pOther = std::make_unique<Loaded<SmallType>>(loaded, 3, "small");
            EXPECT_EQ(pFirst->record.list, pCopy->record.list);
            EXPECT_NE(pFirst->record.list, pOther->record.list);
            EXPECT_EQ(LiveAllocations(), before + 2);
            pFirst.reset();
            EXPECT_EQ(pCopy->record.list[1], 8U);
        }
        EXPECT_EQ(LiveAllocations(), before);
        loaded.table.reset();
        EXPECT_EQ(log.Size(), 0U) << log.Text();
    }
}

}  // namespace
