#include "tests/parameters/setmanagerfixture.h"

#include "parameters/parameterfilesymboltable.h"
#include "parameters/tuningsetmanager.h"
#include "tools/tuningfile/bytes.h"

namespace
{

using enum ModeType;

ParameterFile MakeTwoModes()
{
    TuningFileMaker maker;
    const UINT32    root = maker.Table("main");
    maker.Alpha(root, 1);
    maker.AlphaMode(root, Usecase, 2, 2);
    return maker.Build();
}

size_t SectionRow(const ParameterFile& rFile, BinaryFileFormat::SectionType type)
{
    size_t row = rFile.sectionTableOffset;
    while (tuningfile::LoadInteger<UINT32>(rFile.bytes, row) != type)
    {
        row += 12;
    }
    return row;
}

}  // namespace

TEST_F(SetManagerTest, ARefusedFileSaysWhyAndLeavesNothingBehind)
{
    using enum BinaryFileFormat::SectionType;
    const ParameterFile good   = MakeTwoModes();
    const size_t        symbol = good.Section(SymbolTableSection).Offset + 64;
    const std::string   tables = "Failed to read symbol table, data table or definition table";
    // What is said of a file with other bytes in one place.
    const std::tuple<std::string, size_t, std::vector<BYTE>> cases[] = {
        {"Invalid binary header tag: QELTO Tunara Header", 0, {'Q'}},
        {"Unsupported binary header version : 7.0.1. Please re-generate parser code using the latest version of "
         "ParameterParser",
         36,
         {1}},
        {"Invalid binary file section count", 164, {1}},
        {"Invalid binary file section count", 160, {0xFF, 0xFF, 0xFF, 0x7F}},
        {tables, SectionRow(good, SymbolTableSection) + 8, {33, 0, 0, 0}},
        {tables, good.Section(DefinitionTableSection).Offset, {3}},
        {"ReadModeSection: Failed, buffer is nullptr",
         SectionRow(good, ModeTableSection) + 4,
         {0xF0, 0xFF, 0xFF, 0x7F}},
        {"AddModule: moduleData->ModeId(7) >= m_modeCount(2)", symbol + 16, {7}},
        {"Failed to parse binary header data for:  Name: alpha, Major: 10, Minor: 0, Patch: 1, Mode: 1",
         symbol + 12,
         {1}},
        {"Failed to find header module:  Name Hash: 123456789abcdef0, Major: 10, Minor: 0, Patch: 0, Mode: 1",
         symbol,
         {0xF0, 0xDE, 0xBC, 0x9A, 0x78, 0x56, 0x34, 0x12}},
    };
    for (const bool fileMode : {false, true})
    {
        ParameterSetManager manager("cam", smallschema::Modules, Verbose());
        const auto          load = [&](const ParameterFile& rFile)
        { return fileMode ? manager.LoadBinaryParameters(Write(rFile)) : LoadBuffer(manager, rFile); };
        for (const auto& [error, place, bytes] : cases)
        {
            ParameterFile file = good;
            std::copy(bytes.begin(), bytes.end(), file.bytes.begin() + static_cast<std::ptrdiff_t>(place));
            file.Seal();
            EXPECT_FALSE(load(file)) << error;
            EXPECT_EQ(manager.GetErrorText(), error);
            EXPECT_EQ(manager.GetModeTableCount(), 0u) << error;
            EXPECT_EQ(AlphaValue(manager, {}), -1) << error;
        }
        ParameterFile unsealed = MakeTwoModes();
        unsealed.Put<BYTE>(2000, 1);
        EXPECT_FALSE(load(unsealed));
        EXPECT_EQ(manager.GetErrorText(), "Binary file CRC validation failed");
        EXPECT_FALSE(manager.LoadBinaryParameters(nullptr));
        EXPECT_EQ(manager.GetErrorText(), "LoadBinaryParameters called with nullptr file name");

        ASSERT_TRUE(load(MakeTwoModes())) << log.Text();
        EXPECT_EQ(manager.GetErrorText(), "");
        EXPECT_EQ(AlphaValue(manager, Branch({{Usecase, 2}})), 2);
    }
}

TEST_F(SetManagerTest, FilesThatCannotBeReadAreRefused)
{
    ParameterSetManager manager("cam", smallschema::Modules, Verbose());
    EXPECT_FALSE(manager.LoadBinaryParameters(m_path.c_str()));
    EXPECT_EQ(manager.GetErrorText(), "Unable to allocate space to read binary file");
    EXPECT_FALSE(manager.LoadBinaryParameters(std::string(1023, 'x').c_str()));
    EXPECT_EQ(manager.GetErrorText(), "File name length (1023) exceeds max file name length of 1023");
    EXPECT_FALSE(manager.LoadBinaryParameters(Write(ParameterFile())));  // empty
    EXPECT_NE(manager.GetErrorText(), "");
    EXPECT_FALSE(manager.LoadBinaryParameters(static_cast<const BYTE*>(nullptr), 0));
    EXPECT_NE(manager.GetErrorText(), "");

    // In file mode the section table has to lie in the first 3388 bytes, which must be there.
    TuningFileMaker small;
    small.builder.SetMinimumSize(0);
    small.Alpha(small.Table(), 4);
    const ParameterFile file = small.Build();
    ASSERT_LT(file.bytes.size(), 3388u);
    EXPECT_FALSE(manager.LoadBinaryParameters(Write(file)));
    EXPECT_EQ(manager.GetErrorText(), "Failed to read 3388 bytes from binary file " + m_path);
    EXPECT_TRUE(LoadBuffer(manager, file));

    TuningFileMaker compressed;
    compressed.builder.SetHeader("tag", "tool", BinaryFileFormat::CompressedFlag);
    compressed.Table();
    ParameterSetManager other("cam", smallschema::Modules, Verbose());
    EXPECT_FALSE(LoadBuffer(other, compressed.Build()));
    EXPECT_EQ(other.GetErrorText(), "Compressed binary file not supported (support ended with V5.1.0)");
    EXPECT_FALSE(other.LoadBinaryParameters(Write(compressed.Build())));
    EXPECT_EQ(other.GetErrorText(), "Compressed binary files ssupport removed in V5.1.0");
}

TEST_F(SetManagerTest, AFileWithoutSymbolsOrDataHasModesAndNoModules)
{
    for (const bool fileMode : {false, true})
    {
        ParameterSetManager manager(nullptr, smallschema::Modules, Verbose());
        ParameterFile       file = MakeTwoModes();
        file.Put<UINT32>(SectionRow(file, BinaryFileFormat::DataSection) + 8, 0);
        file.Seal();
        EXPECT_TRUE(fileMode ? manager.LoadBinaryParameters(Write(file)) : LoadBuffer(manager, file));
        EXPECT_TRUE(log.Has("ReadModeSections: Binary missing symbol table or data SymbolOffset("));
        EXPECT_NE(Mode(manager, Branch({{Usecase, 2}})), nullptr);
        EXPECT_EQ(AlphaValue(manager, Branch({{Usecase, 2}})), -1);
        EXPECT_STREQ(manager.GetLoggingIdentifier(), "test tuning");
    }
}

TEST_F(SetManagerTest, OldFilesAreReadAsFarAsTheirModeTree)
{
    const VersionUnion versions[] = {{1, 0, 1}, {1, 0, 2}, {1, 1, 0}, {2, 0, 0}, {3, 0, 0},
                                     {3, 0, 1}, {4, 0, 0}, {5, 0, 0}, {6, 0, 0}, {7, 0, 0}};
    for (const VersionUnion& rVersion : versions)
    {
        TuningFileMaker maker(rVersion);
        const UINT32    root = maker.Table("main");
        maker.Mode(root, Usecase, 2, BinaryFileFormat::NoLink, 0, BinaryFileFormat::PreserveModeFlag);
        maker.Mode(root, Usecase, 3, 1);
        SCOPED_TRACE(rVersion.Value);
        ParameterSetManager& manager = OpenBuffer(maker.Build());
        EXPECT_EQ(manager.GetErrorText(), "");
        const bool hasTag = rVersion > VersionUnion(1, 0, 1);
        EXPECT_STREQ(manager.GetLoggingIdentifier(), hasTag ? "cam;BinaryTag=test tuning" : "cam;BinaryTag=");
        ModeEntry* pVideo = Mode(manager, Branch({{Usecase, 2}}));
        ModeEntry* pZsl   = Mode(manager, Branch({{Usecase, 3}}));
        ASSERT_TRUE(pVideo != nullptr && pZsl != nullptr);
        EXPECT_EQ(pVideo->Preserve, rVersion >= BinaryFileFormat::ModeFlagsVersion);
        EXPECT_EQ(pZsl->Target() == pVideo, rVersion >= BinaryFileFormat::LinkVersion);
        PList<const CHAR*> names;
        manager.GetModeTableNames(names);
        EXPECT_STREQ(names[0], (rVersion >= BinaryFileFormat::DataTableVersion) ? "main" : "");
    }
}

TEST_F(SetManagerTest, ModesWithTheSameDataShareOneRecord)
{
    TuningFileMaker maker;
    const UINT32    root  = maker.Table();
    const UINT32    video = maker.Mode(root, Usecase, 2);
    const UINT32    zsl   = maker.Mode(root, Usecase, 3);
    const UINT32    alpha = maker.Alpha(root, 7);
    maker.Same("alpha", video, alpha);
    maker.Alpha(zsl, 7);
    // Another module may name the same block as its own; it gets an instance of its own all the same.
    maker.Same("beta", root, alpha);
    ParameterSetManager&    manager = OpenBuffer(maker.Build());
    smallschema::AlphaType* pRoot   = Alpha(manager, {});
    ASSERT_NE(pRoot, nullptr);
    EXPECT_EQ(Alpha(manager, Branch({{Usecase, 2}})), pRoot);
    EXPECT_NE(Alpha(manager, Branch({{Usecase, 3}})), pRoot);
    const auto* pBeta = Get<smallschema::BetaType>(manager, "beta", {});
    ASSERT_NE(pBeta, nullptr);
    EXPECT_EQ(pRoot->SymbolTableID, alpha);
    EXPECT_EQ(pBeta->SymbolTableID, alpha) << "the entry that holds the data";
    ASSERT_EQ(pRoot->stepsCount, 2u);
    EXPECT_EQ(pRoot->steps[0], 7.5f);
    EXPECT_EQ(pRoot->steps[1], 7.25f);
}

TEST_F(SetManagerTest, UnknownModulesArePassedOverWhereThatIsAllowed)
{
    TuningFileMaker maker;
    const UINT32    root = maker.Table();
    maker.builder.AddModule("foreign", {1, 0, 0}, root, std::vector<BYTE>(16));
    maker.Alpha(root, 3);
    Options options             = Verbose();
    options.allowUnknownModules = true;
    ParameterSetManager manager("cam", smallschema::Modules, options);
    ASSERT_TRUE(LoadBuffer(manager, maker.Build())) << log.Text();
    EXPECT_EQ(AlphaValue(manager, {}), 3);
}

TEST_F(SetManagerTest, ADerivedManagerWorksOnItsOwnTable)
{
    TuningFileMaker maker;
    const UINT32    front = maker.Table("front");
    const UINT32    back  = maker.Table("back");
    maker.builder.AddModule("abf40_ife", {4, 0, 0}, front, {1, 2, 3});
    maker.builder.AddModule("abf40_ife", {4, 0, 0}, back, {4, 5, 6});
    TuningSetManager main("cam");
    main.SetLiveTuningAutostart(false);
    ASSERT_TRUE(main.LoadBinaryParameters(Write(maker.Build()))) << log.Text();
    EXPECT_EQ(main.GetModeTableCount(), 2u);

    const BareModuleType* pFront = main.GetModule_abf40_ife(nullptr, 0, nullptr);
    ASSERT_NE(pFront, nullptr);
    EXPECT_EQ(pFront->SymbolTableID, 1u);
    {
        std::unique_ptr<TuningSetManager> pBack = main.CreateSetManager("back");
        ASSERT_NE(pBack, nullptr);
        const BareModuleType* pRecord = pBack->GetModule_abf40_ife(nullptr, 0, nullptr);
        ASSERT_NE(pRecord, nullptr);
        EXPECT_EQ(pRecord->SymbolTableID, 2u);
        EXPECT_EQ(pBack->GetMainSetManager(), &main);

        // Also of a derived manager there are further ones, and its calls take its own table whatever index they name.
        std::unique_ptr<TuningSetManager> pFirst = pBack->CreateSetManager(BYTE(0));
        ASSERT_NE(pFirst, nullptr);
        EXPECT_EQ(pFirst->GetModule_abf40_ife(nullptr, 0, nullptr), pFront);
        EXPECT_EQ(pBack->GetModeEntry(BYTE(0), "0.0"), main.GetModeEntry(BYTE(1), "0.0"));
        pBack->SetError("seen from both");
        EXPECT_EQ(main.GetErrorText(), "seen from both");
    }
    EXPECT_EQ(main.CreateSetManager(BYTE(2)), nullptr);
    EXPECT_TRUE(log.Has("CreateSetManager called mode table index (2) >= mode table count (2)\n"));
    EXPECT_EQ(main.CreateSetManager("side"), nullptr);
    EXPECT_TRUE(log.Has("CreateSetManager unable to find mode table side\n"));
    EXPECT_EQ(main.CreateSetManager(nullptr), nullptr);

    EXPECT_EQ(main.GetModule_kiroface(nullptr, 0, nullptr), nullptr);
    EXPECT_EQ(main.GetDefaultModule(1), nullptr);
    EXPECT_TRUE(log.Has("Failed to find module 0x1 in DefaultModuleMap\n"));
    EXPECT_FALSE(main.UpdateBinaryParameters(nullptr, 0));
    EXPECT_TRUE(log.Has("UpdateBinaryParameters not available.  To enable, add --update when generating parser utility "
                        "code\n"));

    TuningSetManager orphan(nullptr, 1);
    EXPECT_TRUE(log.Has("TuningSetManager called with null main parameter\n"));
    EXPECT_EQ(orphan.GetModule_abf40_ife(nullptr, 0, nullptr), nullptr);

    EXPECT_TRUE(ParameterSetManager::ModeTableEntryExists(m_path.c_str(), "back"));
    EXPECT_FALSE(ParameterSetManager::ModeTableEntryExists(m_path.c_str(), "bac"));
    EXPECT_FALSE(ParameterSetManager::ModeTableEntryExists((m_path + "x").c_str(), "back"));
}
