#include "tests/parameters/ondemandfixture.h"

#include <filesystem>

namespace
{

using enum ModeType;

}  // namespace

TEST_F(OnDemandTest, ModesAreReadWhenABranchFirstLeadsThere)
{
    TuningFileMaker maker;
    const UINT32    root   = maker.Table();
    const UINT32    sensor = maker.AlphaMode(root, Sensor, 1, 10);
    const UINT32    target = maker.AlphaMode(sensor, Usecase, 2, 20);
    maker.Alpha(maker.Mode(sensor, Usecase, 3, target), 30);
    ParameterSetManager&          manager = Open(maker.Build());
    const std::vector<TuningMode> video   = Branch({{Sensor, 1}, {Usecase, 2}});
    EXPECT_TRUE(IsLoaded(manager, Branch({})));
    EXPECT_TRUE(IsLoaded(manager, Branch({{Sensor, 1}})));
    EXPECT_FALSE(IsLoaded(manager, video));
    log.Clear();

    smallschema::AlphaType* pVideo = Alpha(manager, video);
    ASSERT_NE(pVideo, nullptr);
    EXPECT_EQ(pVideo->value, 20);
    EXPECT_EQ(pVideo->steps[1], 20.25f);
    EXPECT_TRUE(IsLoaded(manager, video));
    EXPECT_TRUE(log.Has("Loading modules (GetModule:Unknown:0.0|1.1|2.2): 0.0|1.1|2.2\n", "V")) << log.Text();
    EXPECT_EQ(log.Count("oading modules"), 1u) << "only this mode was missing";

    // Place and ID outlive unloading.
    const UINT32 id = pVideo->SymbolTableID;
    EXPECT_EQ(TableModule::FromRecord(pVideo)->GetModified(), 1u);
    UnloadMode(manager, video);
    EXPECT_EQ(pVideo->steps, nullptr);
    log.Clear();
    EXPECT_TRUE(LoadMode(manager, Branch({{Sensor, 1}, {Usecase, 3}})));
    EXPECT_EQ(pVideo->SymbolTableID, id);
    EXPECT_EQ(pVideo->steps[1], 20.25f);
    EXPECT_EQ(TableModule::FromRecord(pVideo)->GetModified(), 2u);
    EXPECT_TRUE(log.Has("Loading modules (GetModule:test:0.0|1.1|2.3): 0.0|1.1|2.3->0.0|1.1|2.2\n", "V"));
    EXPECT_FALSE(LoadMode(manager, Branch({{Sensor, 1}, {Usecase, 4}})));

    // In between the file is closed: what is in memory needs it no more, what is not cannot be read without it.
    std::filesystem::remove(m_path);
    UnloadMode(manager, video);
    EXPECT_EQ(AlphaValue(manager, Branch({{Sensor, 1}})), 10);
    EXPECT_EQ(AlphaValue(manager, video), -1);
    EXPECT_TRUE(log.Has("AlphaTypeClass::LoadModule Failed to find module ID (2) in Symbol Table\n"));
    EXPECT_TRUE(log.Has("Failed to load module alpha, path: 0.0|1.1|2.2, skipping\n"));
    EXPECT_TRUE(log.Has("GetModule alpha failed to find a loaded module in 0.0|1.1|2.2, returning null\n"));
    EXPECT_EQ(References(manager, video), 0u);
}

TEST_F(OnDemandTest, UnloadingOnRequestTakesTheLastModeOnly)
{
    TuningFileMaker maker;
    const UINT32    root  = maker.Table("one");
    const UINT32    video = maker.AlphaMode(root, Usecase, 2, 2);
    maker.AlphaMode(video, Scene, 5, 3);
    const UINT32 kept = maker.Mode(root, Usecase, 3, BinaryFileFormat::NoLink, 0, BinaryFileFormat::PreserveModeFlag);
    maker.Table("two");
    maker.Alpha(root, 1);
    maker.Alpha(kept, 4);
    ParameterSetManager&          manager = Open(maker.Build());
    const std::vector<TuningMode> branch  = Branch({{Usecase, 2}, {Scene, 5}});
    smallschema::AlphaType*       pNight  = Alpha(manager, branch);
    ASSERT_NE(pNight, nullptr);

    EXPECT_FALSE(UnloadMode(manager, Branch({{Usecase, 2}, {Scene, 6}})));
    EXPECT_TRUE(IsLoaded(manager, Branch({{Usecase, 2}})));
    EXPECT_TRUE(UnloadMode(manager, branch));
    EXPECT_TRUE(IsLoaded(manager, Branch({{Usecase, 2}})));
    EXPECT_FALSE(IsLoaded(manager, branch));
    EXPECT_TRUE(log.Has("(one): Unloading referenced module alpha, Mode: 0.0|2.2|5.5, Ref count: 1\n"));
    EXPECT_TRUE(log.Has("(one): Unloading mode with 1 unreleased modules: 0.0|2.2|5.5\n"));
    EXPECT_TRUE(log.Has("ReleaseReferences called with unreleased module: alpha, RefCnt: 1\n"));
    EXPECT_EQ(References(manager, branch), 0u);

    // A selector that is not valid stops the walk, and the mode reached so far goes.
    EXPECT_TRUE(UnloadMode(manager, Branch({{Usecase, 2}, {static_cast<ModeType>(9), 0}})));
    EXPECT_FALSE(IsLoaded(manager, Branch({{Usecase, 2}})));

    // Preserved modes stay, by the file's flag or by their level.
    EXPECT_EQ(AlphaValue(manager, Branch({{Usecase, 3}})), 4);
    EXPECT_TRUE(UnloadMode(manager, Branch({{Usecase, 3}})));
    EXPECT_TRUE(IsLoaded(manager, Branch({{Usecase, 3}})));
    EXPECT_TRUE(UnloadMode(manager, Branch({})));
    EXPECT_TRUE(IsLoaded(manager, Branch({})));
}

TEST_F(OnDemandTest, ASharedModuleComesBackAfterItsOwnerWasUnloaded)
{
    TuningFileMaker maker;
    const UINT32    root  = maker.Table();
    const UINT32    video = maker.Mode(root, Usecase, 2);
    const UINT32    zsl   = maker.Mode(root, Usecase, 3);
    maker.Same("alpha", zsl, maker.Alpha(video, 5));
    ParameterSetManager&    manager = Open(maker.Build());
    smallschema::AlphaType* pRecord = Alpha(manager, Branch({{Usecase, 3}}));
    ASSERT_NE(pRecord, nullptr);
    EXPECT_EQ(References(manager, Branch({{Usecase, 2}})), 1u);
    EXPECT_EQ(References(manager, Branch({{Usecase, 3}})), 0u);
    Release(pRecord);
    const PList<ModeEntry*>& rActive = Mode(manager, {})->Table->ActiveModes;
    ASSERT_EQ(rActive.Count(), 1u) << "the mode that owns what is loaded";
    EXPECT_EQ(rActive[0], Mode(manager, Branch({{Usecase, 2}})));

    UnloadMode(manager, Branch({{Usecase, 3}}));
    EXPECT_NE(pRecord->steps, nullptr) << "not this mode's to unload";
    LoadMode(manager, Branch({{Usecase, 3}}));
    UnloadMode(manager, Branch({{Usecase, 2}}));
    EXPECT_EQ(pRecord->steps, nullptr);
    EXPECT_EQ(Alpha(manager, Branch({{Usecase, 3}})), pRecord);
    EXPECT_EQ(pRecord->steps[0], 5.5f);
}

TEST_F(OnDemandTest, ATableMayHaveANameAndNoModes)
{
    TuningFileMaker maker;
    maker.Alpha(maker.Table("main"), 1);
    maker.builder.AddModeTable("empty");
    ParameterSetManager& manager = Open(maker.Build());
    EXPECT_FALSE(manager.LoadMode(1, nullptr, 0, nullptr));
    EXPECT_FALSE(manager.UnloadMode(1, nullptr, 0));
    EXPECT_EQ(manager.GetErrorText(), "UnloadMode root mode is nullptr");
    EXPECT_EQ(manager.GetModeEntry(1, nullptr, 0), nullptr);
    EXPECT_EQ(manager.GetModuleInternal(1, "alpha", nullptr, 0, nullptr), nullptr);
    EXPECT_TRUE(log.Has("GetModule(alpha) Uninitialized Set Manager. "));

    maker.Alpha(0x01000000, 2);  // mode 0 of the table
    ParameterSetManager other("cam", smallschema::Modules, Verbose());
    EXPECT_FALSE(other.LoadBinaryParameters(Write(maker.Build())));
    EXPECT_EQ(other.GetErrorText(), "AddModule: RootMode is nullptr");
}

TEST_F(OnDemandTest, AFileTooLargeToBeKeptInMemoryIsLoadedPieceByPiece)
{
    ParameterFile file = MakeUsecases(2);
    file.bytes.insert(file.bytes.end() - sizeof(UINT64), 5U << 20, 0);
    file.Seal();
    ParameterSetManager& manager = Open(file);
    EXPECT_EQ(AlphaValue(manager, {}), 1);
    EXPECT_EQ(AlphaValue(manager, UsecaseBranch(2)), 200);
    EXPECT_TRUE(UnloadMode(manager, UsecaseBranch(2)));
    EXPECT_EQ(AlphaValue(manager, UsecaseBranch(2)), 200);
    EXPECT_EQ(log.Count("", "E"), 0U) << log.Text();
}

TEST_F(OnDemandTest, InBufferModeThereIsNothingToLoadOrUnload)
{
    ParameterSetManager manager("cam", smallschema::Modules, Verbose());
    EXPECT_FALSE(LoadMode(manager, {}));
    EXPECT_EQ(manager.GetErrorText(), "LoadMode called with no binary file loaded");
    ASSERT_TRUE(LoadBuffer(manager, MakeUsecases(2)));
    EXPECT_TRUE(IsLoaded(manager, UsecaseBranch(2)));
    EXPECT_FALSE(LoadMode(manager, {}));
    EXPECT_EQ(manager.GetErrorText(), "LoadMode is not valid in buffer mode");
    EXPECT_FALSE(UnloadMode(manager, {}));
    EXPECT_EQ(manager.GetErrorText(), "UnloadMode is not valid in buffer mode");
    smallschema::AlphaType* pRecord = Alpha(manager, UsecaseBranch(2));
    EXPECT_EQ(References(manager, UsecaseBranch(2)), 0u);
    log.Clear();
    Release(pRecord);
    EXPECT_EQ(log.Size(), 0u);

    // A file can be used so, too.
    Options wholeFile  = Verbose();
    wholeFile.fileMode = false;
    ParameterSetManager other("cam", smallschema::Modules, wholeFile);
    ASSERT_TRUE(other.LoadBinaryParameters(Write(MakeUsecases(2))));
    std::filesystem::remove(m_path);
    EXPECT_EQ(AlphaValue(other, UsecaseBranch(2)), 200);
}
