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

}  // namespace
