#include "parameters/parameterfilesymboltable.h"

#include <gtest/gtest.h>

#include <cstring>

#include "schema/namehash.h"
#include "tests/support/loadedtable.h"
#include "tests/support/parameterfilebuilder.h"
#include "tests/support/systemlogcapture.h"

namespace
{

using Source = LoadedTable::Source;

constexpr Source Sources[] = {Source::Buffer, Source::Disk};

/// The table of a type of place that reads objects; only its address and name matter.
constexpr tuning::RecordDescription SomeRecord{"SomeType", 8, 4, nullptr, 0, false};

std::vector<BYTE> Block(UINT32 value, size_t size = 4)
{
    std::vector<BYTE> block(size, 0);
    std::memcpy(block.data(), &value, std::min<size_t>(size, sizeof(value)));
    return block;
}

UINT32 FirstWord(const ParameterFileSymbolTableEntry& rEntry)
{
    UINT32 value = 0;
    if (rEntry.Data != nullptr && rEntry.DataSize >= sizeof(value))
    {
        std::memcpy(&value, rEntry.Data, sizeof(value));
    }
    return value;
}

TEST(SymbolTable, FindsBlocksInBothTables)
{
    for (const Source source : Sources)
    {
        ParameterFileBuilder builder;
        const UINT32         first  = builder.AddModule("alpha", {1, 2, 3}, 5, Block(0x11));
        const UINT32         second = builder.AddModule("beta", {4, 0, 0}, LoadedTable::UnknownMode, Block(0x22));
        const UINT32         third  = builder.AddModule("", {0, 0, 0}, BinaryFileFormat::NoMode, Block(0x33));
        const UINT32         data   = builder.AddData(Block(0x44, 2000));

        SystemLogCapture log;
        LoadedTable      loaded(builder.Build(), source);
        ASSERT_TRUE(loaded.loaded) << log.Text();
        ParameterFileSymbolTable& rTable = *loaded.table;
        EXPECT_EQ(rTable.Count(), 4U);
        EXPECT_EQ(rTable.DTCount(), 2U);

        // An entry without a mode is no module; one of an unknown mode is, with an empty mode in its place.
        ASSERT_EQ(rTable.ModuleCount(), 2U);
        EXPECT_EQ(rTable.GetModule(0)->ID, first);
        EXPECT_EQ(rTable.GetModule(0)->DuplicateID, first);
        EXPECT_NE(rTable.GetModule(1)->Mode->Entry, rTable.GetModule(0)->Mode->Entry);
        EXPECT_TRUE(log.Has("Failed to find ModeID 11259375 in mode table when creating ModuleData\n", "E"));

        if (source == Source::Disk)
        {
            rTable.FreeEntryData();
            rTable.FileReference(-1);
        }
        for (const auto& [id, value] : {std::pair(first, 0x11U), std::pair(second, 0x22U), std::pair(third, 0x33U)})
        {
            ParameterFileSymbolTableEntry entry;
            ASSERT_TRUE(rTable.Find(entry, id, true));
            EXPECT_EQ(FirstWord(entry), value);
            EXPECT_EQ(entry.ID, id);
        }
        ParameterFileSymbolTableEntry entry;
        ASSERT_TRUE(rTable.Find(entry, data, false));
        EXPECT_EQ(FirstWord(entry), 0x44U);
        EXPECT_EQ(entry.DataSize, 2000U);

        log.Clear();
        EXPECT_FALSE(rTable.Find(entry, 0, true));
        EXPECT_FALSE(rTable.Find(entry, 5, true));
        EXPECT_TRUE(log.Has("Find: Symbol table entry ID 5 out of range 1 - 4\n", "E"));
        EXPECT_EQ(entry.Data, nullptr);
        if (source == Source::Buffer)
        {
            EXPECT_TRUE(rTable.Find(entry, 4, true));  // the count itself is an empty entry
            EXPECT_EQ(entry.DataSize, 0U);
        }
        rTable.FreeEntryData();
        rTable.FreeLookupData();
        EXPECT_FALSE(rTable.Find(entry, first, true));
    }
}

TEST(SymbolTable, RowsOfAllVersionsAreRead)
{
    const VersionUnion versions[] = {{1, 0, 1}, {1, 1, 0}, {2, 0, 0}, {3, 0, 0}, {3, 0, 1},
                                     {3, 5, 0}, {4, 0, 0}, {5, 0, 0}, {6, 0, 0}, {7, 0, 0}};
    for (const VersionUnion& rVersion : versions)
    {
        for (const Source source : Sources)
        {
            SCOPED_TRACE(rVersion.Value);
            ParameterFileBuilder builder(rVersion);
            const UINT32         first        = builder.AddModule("alpha", {1, 2, 3}, 5, Block(0x11));
            const UINT32         second       = builder.AddModule("beta", {4, 5, 6}, 7, Block(0x22));
            const bool           hasDataTable = rVersion >= BinaryFileFormat::DataTableVersion;
            const UINT32         pointee      = hasDataTable ? builder.AddData(Block(0x33)) : second;
            SystemLogCapture     log;
            LoadedTable          loaded(builder.Build(), source);
            ASSERT_TRUE(loaded.loaded) << log.Text();
            ASSERT_EQ(loaded.table->ModuleCount(), 2U);
            EXPECT_EQ(loaded.table->GetModule(1)->Version, VersionUnion(4, 5, 6));
            EXPECT_EQ(loaded.table->GetModule(1)->ModeId, 7U);
            EXPECT_EQ(loaded.table->GetModule(1)->NameHash,
                      rVersion >= BinaryFileFormat::StructSymbolsVersion ? namehash::OfName("beta") : 0);
            ParameterFileSymbolTableEntry entry;
            ASSERT_TRUE(loaded.table->Find(entry, first, true));
            EXPECT_EQ(FirstWord(entry), 0x11U);
            // Without a data table, pointers lead into the symbol table.
            ASSERT_TRUE(loaded.table->Find(entry, pointee, false));
            EXPECT_EQ(FirstWord(entry), hasDataTable ? 0x33U : 0x22U);
        }
    }
}

TEST(SymbolTable, TablesThatCannotBeAreRefused)
{
    ParameterFileBuilder builder;
    builder.AddModule("alpha", {1, 0, 0}, 0, Block(1));
    builder.AddData(Block(2));
    builder.DefineStructure(1, "T", {{"a", ParameterDefinitionType_Signed32Bits}});
    const ParameterFile good = builder.Build();

    const auto refuses = [&](BinaryFileFormat::SectionType type, UINT32 field, UINT32 value, const CHAR* pText)
    {
        for (const Source source : Sources)
        {
            ParameterFile file = good;
            for (UINT32 row = 0; row < 4; ++row)
            {
                const UINT32 place = file.sectionTableOffset + row * 12;
                if (file.bytes[place] == type)
                {
                    file.Put(place + field, value);
                }
            }
            file.Seal();
            SystemLogCapture log;
            EXPECT_FALSE(LoadedTable(file, source).loaded) << pText;
            EXPECT_TRUE(log.Has(pText, "E")) << log.Text();
        }
    };
    constexpr UINT32 Offset = 4;
    constexpr UINT32 Size   = 8;
    refuses(BinaryFileFormat::SymbolTableSection, Size, 65, "Invalid symbol table size: 65, expected: 64\n");
    refuses(BinaryFileFormat::SymbolTableSection, Size, 0xFFFFFFE0, "Failed to read symbol table buffer (offset: ");
    refuses(BinaryFileFormat::SymbolTableSection, Offset, 0xFFFFFFF0, "Failed to read symbol table buffer (offset: ");
    refuses(BinaryFileFormat::DataTableSection, Size, 25, "Invalid data table size: 25, expected: 24\n");
    refuses(BinaryFileFormat::DataTableSection, Size, 0xFFFFFFFC, "Failed to read data table buffer (offset: ");
    refuses(BinaryFileFormat::DefinitionTableSection, Size, 0xFFFFFFFF, "Failed to read definition table buffer ");
    refuses(BinaryFileFormat::DefinitionTableSection, Size, 20, "Failed to read definition table from binary file\n");
}

TEST(SymbolTable, BlocksOutsideOfTheFileAreNotHandedOut)
{
    for (const Source source : Sources)
    {
        ParameterFileBuilder builder;
        const UINT32         far    = builder.AddModule("alpha", {1, 0, 0}, 0, Block(1));
        const UINT32         huge   = builder.AddModule("beta", {1, 0, 0}, 0, Block(1));
        const UINT32         wrap   = builder.AddModule("gamma", {1, 0, 0}, 0, Block(1));
        const UINT32         good   = builder.AddModule("delta", {1, 0, 0}, 0, Block(1));
        builder.Module(far).offset  = 0x7FFFFFFF;
        builder.Module(huge).size   = 0x3FFFFFFF;
        builder.Module(wrap).offset = 0xFFFFFFF8;
        SystemLogCapture log;
        LoadedTable      loaded(builder.Build(), source);
        ASSERT_TRUE(loaded.loaded) << log.Text();
        for (const UINT32 id : {far, huge, wrap, good})
        {
            ParameterFileSymbolTableEntry entry;
            EXPECT_EQ(loaded.table->Find(entry, id, true), id == good) << id;
        }
    }
}

TEST(SymbolTable, ManyEntriesThatClaimTheWholeFileAreRefusedWhereTheyWouldBeFetched)
{
    ParameterFileBuilder builder;
    for (UINT32 index = 0; index < 70000; ++index)
    {
        builder.AddModule("", {1, 0, 0}, BinaryFileFormat::NoMode, {});
    }
    const UINT32 size = static_cast<UINT32>(builder.Build().bytes.size());
    for (UINT32 index = 1; index <= 70000; ++index)
    {
        builder.Module(index).offset = 0;
        builder.Module(index).size   = size / 2;
    }
    SystemLogCapture log;
    EXPECT_FALSE(LoadedTable(builder.Build(), Source::Disk).loaded);
    EXPECT_TRUE(log.Has("Symbol table entries claim ", "E"));
}

TEST(DuplicateObjects, AreSharedByPlaceAndCount)
{
    ParameterFileBuilder builder;
    const UINT32         first  = builder.AddData(Block(1));
    const UINT32         copy   = builder.AddData({}, first);
    const UINT32         single = builder.AddData(Block(1));
    LoadedTable          loaded(builder.Build());
    ASSERT_TRUE(loaded.loaded);
    SystemLogCapture          log;
    ParameterFileSymbolTable& rTable = *loaded.table;
    const ReadingSite         site   = ReadingSite::OfMember(SomeRecord, 1);
    const ReadingSite         other  = ReadingSite::OfMember(SomeRecord, 2);
    UINT32                    object = 0;
    UINT32                    second = 0;

    ParameterFileSymbolTableEntry copyEntry;
    ASSERT_TRUE(rTable.Find(copyEntry, copy, false));
    EXPECT_FALSE(rTable.SetDupObject(false, single, &object, site, 1));
    EXPECT_EQ(rTable.GetDupObject(false, first, site, 1), nullptr);
    EXPECT_TRUE(rTable.SetDupObject(false, first, &object, site, 1));
    EXPECT_FALSE(rTable.SetDupObject(false, first, &second, site, 1));  // the first one stays
    EXPECT_EQ(rTable.GetDupObject(false, copyEntry.DuplicateID, site, 1), &object);
    EXPECT_EQ(rTable.GetDupObject(false, first, other, 1), nullptr);
    EXPECT_EQ(rTable.GetDupObject(false, first, site, 2), nullptr);  // made for another number of values
    EXPECT_EQ(log.Size(), 0U) << log.Text();
    EXPECT_EQ(rTable.FileReference(1), 0);
    EXPECT_TRUE(log.Has("FileReference called with null File object, Adjust: 1\n"));

    EXPECT_FALSE(rTable.ReleaseDupObject(&object));
    EXPECT_TRUE(rTable.ReleaseDupObject(&object));
    EXPECT_TRUE(rTable.ReleaseDupObject(&second));  // never shared
    EXPECT_FALSE(rTable.ReleaseDupObject(nullptr));
    EXPECT_TRUE(rTable.SetDupObject(false, first, &second, site, 1));

    EXPECT_EQ(rTable.GetDupObject(false, 99, site, 1), nullptr);
    EXPECT_TRUE(log.Has("GetDupObject called with invalid values, This: ", "E"));
    EXPECT_FALSE(rTable.SetDupObject(false, first, nullptr, other, 1));
    EXPECT_TRUE(log.Has("SetDupObject called with invalid values, This: ", "E"));
    EXPECT_TRUE(log.Has(", Loc: SomeType:4\n"));
    loaded.table.reset();
    EXPECT_TRUE(log.Has("1 DupInfo object were not released\n", "E"));
}

TEST(DuplicateObjects, IdsOutOfRangeShareNothing)
{
    ParameterFileBuilder builder;
    const UINT32         first       = builder.AddData(Block(1));
    const UINT32         second      = builder.AddData(Block(2));
    builder.Data(first).duplicateId  = 77;
    builder.Data(second).duplicateId = 77;
    SystemLogCapture log;
    LoadedTable      loaded(builder.Build());
    ASSERT_TRUE(loaded.loaded);
    EXPECT_EQ(log.Count("Invalid DuplicateID value 77, should be less than data table count: 3\n", "E"), 2U);
    UINT32 object = 0;
    EXPECT_FALSE(loaded.table->SetDupObject(false, first, &object, ReadingSite::OfMember(SomeRecord, 1), 1));
}

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
    EXPECT_EQ(defined.definitions.FindModuleStructure(namehash::OfName("alpha"))->TypeName, "First");
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
    EXPECT_EQ(child(3, "a")->Info, nullptr);
    EXPECT_EQ(child(3, "inner")->Info->Structure, defined.definitions.FindStructure(4));
    EXPECT_EQ(child(4, "seen")->Info, nullptr);
    EXPECT_EQ(child(4, "unseen")->Info->Structure, defined.definitions.FindStructure(5));
}

}  // namespace
