#include "tests/parameters/setmanagerfixture.h"

#include <atomic>
#include <filesystem>
#include <limits>
#include <thread>

#include "parameters/parameterfilesymboltable.h"

namespace
{

using enum ModeType;

class OnDemandTest : public SetManagerTest
{
protected:
    /// Default and use cases 1 to count, each with an alpha of 100 times its number.
    static ParameterFile MakeUsecases(UINT16 count)
    {
        TuningFileMaker maker;
        const UINT32    root = maker.Table();
        maker.Alpha(root, 1);
        for (UINT16 usecase = 1; usecase <= count; ++usecase)
        {
            maker.Alpha(maker.Mode(root, Usecase, usecase), 100 * usecase);
        }
        return maker.Build();
    }

    static std::vector<TuningMode> UsecaseBranch(UINT16 usecase)
    {
        return Branch({{Usecase, usecase}});
    }

    static bool IsLoaded(ParameterSetManager& rManager, const std::vector<TuningMode>& rBranch)
    {
        return Mode(rManager, rBranch)->Loaded;
    }

    static bool LoadMode(ParameterSetManager& rManager, const std::vector<TuningMode>& rBranch)
    {
        return rManager.LoadMode(0, rBranch.data(), static_cast<UINT32>(rBranch.size()), "test");
    }

    static bool UnloadMode(ParameterSetManager& rManager, const std::vector<TuningMode>& rBranch)
    {
        return rManager.UnloadMode(0, rBranch.data(), static_cast<UINT32>(rBranch.size()));
    }

    static VOID Release(VOID* pRecord)
    {
        TableModule::FromRecord(pRecord)->Release();
    }

    static UINT32 References(ParameterSetManager& rManager, const std::vector<TuningMode>& rBranch)
    {
        return Mode(rManager, rBranch)->GetReferenceCount();
    }
};

}  // namespace

TEST_F(OnDemandTest, ModesAreReadWhenABranchFirstLeadsThere)
{
    TuningFileMaker maker;
    const UINT32    root   = maker.Table();
    const UINT32    sensor = maker.Mode(root, Sensor, 1);
    const UINT32    video  = maker.Mode(sensor, Usecase, 2);
    const UINT32    zsl    = maker.Mode(sensor, Usecase, 3, video);
    maker.Alpha(root, 1);
    maker.Alpha(sensor, 10);
    maker.Alpha(video, 20);
    maker.Alpha(zsl, 30);
    ParameterSetManager manager("cam", smallschema::Modules, Verbose());
    ASSERT_TRUE(manager.LoadBinaryParameters(Write(maker.Build()))) << log.Text();
    EXPECT_TRUE(IsLoaded(manager, Branch({})));
    EXPECT_TRUE(IsLoaded(manager, Branch({{Sensor, 1}})));
    EXPECT_FALSE(IsLoaded(manager, Branch({{Sensor, 1}, {Usecase, 2}})));
    log.Clear();

    const smallschema::AlphaType* pVideo = Alpha(manager, Branch({{Sensor, 1}, {Usecase, 2}}));
    ASSERT_NE(pVideo, nullptr);
    EXPECT_EQ(pVideo->value, 20);
    EXPECT_EQ(pVideo->steps[1], 20.25f);
    EXPECT_TRUE(IsLoaded(manager, Branch({{Sensor, 1}, {Usecase, 2}})));
    EXPECT_TRUE(log.Has("Loading modules (GetModule:Unknown:0.0|1.1|2.2): 0.0|1.1|2.2\n", "V")) << log.Text();
    EXPECT_EQ(log.Count("oading modules"), 1u) << "only this mode was missing";

    UnloadMode(manager, Branch({{Sensor, 1}, {Usecase, 2}}));
    log.Clear();
    EXPECT_TRUE(LoadMode(manager, Branch({{Sensor, 1}, {Usecase, 3}})));
    EXPECT_TRUE(log.Has("Loading modules (GetModule:test:0.0|1.1|2.3): 0.0|1.1|2.3->0.0|1.1|2.2\n", "V"));
    EXPECT_FALSE(LoadMode(manager, Branch({{Sensor, 1}, {Usecase, 4}})));

    // In between the file is closed: what is in memory needs it no more, what is not cannot be read without it.
    std::filesystem::remove(m_path);
    UnloadMode(manager, Branch({{Sensor, 1}, {Usecase, 2}}));
    EXPECT_EQ(AlphaValue(manager, Branch({{Sensor, 1}})), 10);
    EXPECT_EQ(AlphaValue(manager, Branch({{Sensor, 1}, {Usecase, 2}})), -1);
    EXPECT_TRUE(log.Has("AlphaTypeClass::LoadModule Failed to find module ID (3) in Symbol Table\n"));
    EXPECT_TRUE(log.Has("Failed to load module alpha, path: 0.0|1.1|2.2, skipping\n"));
    EXPECT_TRUE(log.Has("GetModule alpha failed to find a loaded module in 0.0|1.1|2.2, returning null\n"));
    EXPECT_EQ(References(manager, Branch({{Sensor, 1}, {Usecase, 2}})), 0u);
}

TEST_F(OnDemandTest, ThePlaceInTheFileAndItsIDsSurviveUnloading)
{
    ParameterSetManager manager("cam", smallschema::Modules, Verbose());
    ASSERT_TRUE(manager.LoadBinaryParameters(Write(MakeUsecases(2))));
    smallschema::AlphaType* pRecord = Alpha(manager, UsecaseBranch(2));
    ASSERT_NE(pRecord, nullptr);
    EXPECT_EQ(pRecord->SymbolTableID, 3u);
    EXPECT_EQ(TableModule::FromRecord(pRecord)->GetModified(), 1u);
    Release(pRecord);
    ASSERT_TRUE(UnloadMode(manager, UsecaseBranch(2)));
    EXPECT_EQ(pRecord->steps, nullptr);
    EXPECT_EQ(Alpha(manager, UsecaseBranch(2)), pRecord);
    EXPECT_EQ(pRecord->SymbolTableID, 3u);
    EXPECT_EQ(pRecord->steps[0], 200.5f);
    EXPECT_EQ(TableModule::FromRecord(pRecord)->GetModified(), 2u);
}

TEST_F(OnDemandTest, TheModeUsedLongestAgoMakesRoomForANewOne)
{
    ParameterSetManager manager("cam", smallschema::Modules, Verbose(6));
    ASSERT_TRUE(manager.LoadBinaryParameters(Write(MakeUsecases(9))));
    for (UINT16 usecase = 1; usecase <= 6; ++usecase)
    {
        ASSERT_TRUE(LoadMode(manager, UsecaseBranch(usecase)));
    }
    EXPECT_TRUE(IsLoaded(manager, UsecaseBranch(1)));
    LoadMode(manager, UsecaseBranch(1));  // now 2 is the oldest
    log.Clear();
    LoadMode(manager, UsecaseBranch(7));
    EXPECT_TRUE(log.Has("Unloading modules (GetModule:Unknown:): 0.0|2.2\n", "V")) << log.Text();
    EXPECT_FALSE(IsLoaded(manager, UsecaseBranch(2)));
    EXPECT_TRUE(IsLoaded(manager, UsecaseBranch(1)));

    // A mode in use stays, and so does the list for as long as it is in use.
    smallschema::AlphaType* pThird = Alpha(manager, UsecaseBranch(3));
    for (const UINT16 usecase : {4, 5, 6, 1, 7, 8, 9})
    {
        LoadMode(manager, UsecaseBranch(usecase));
    }
    EXPECT_TRUE(IsLoaded(manager, UsecaseBranch(3)));
    EXPECT_EQ(pThird->value, 300);
    Release(pThird);
    EXPECT_TRUE(IsLoaded(manager, UsecaseBranch(3)));
    LoadMode(manager, UsecaseBranch(9));
    EXPECT_FALSE(IsLoaded(manager, UsecaseBranch(3)));
}

TEST_F(OnDemandTest, FiveModesStayEvenInASmallCacheAndAllWithoutOne)
{
    for (const UINT32 cacheSize : {1u, 0u})
    {
        ParameterSetManager manager("cam", smallschema::Modules, Verbose(cacheSize));
        ASSERT_TRUE(manager.LoadBinaryParameters(Write(MakeUsecases(8))));
        for (UINT16 usecase = 1; usecase <= 8; ++usecase)
        {
            LoadMode(manager, UsecaseBranch(usecase));
        }
        EXPECT_TRUE(IsLoaded(manager, UsecaseBranch(4)));
        EXPECT_EQ(IsLoaded(manager, UsecaseBranch(3)), cacheSize == 0);
        EXPECT_EQ(Mode(manager, {})->Table->ActiveModes.Count(), 5u);
    }
}

TEST_F(OnDemandTest, ReferencesAreTakenBeforeTheyAreGivenBack)
{
    ParameterSetManager manager("cam", smallschema::Modules, Verbose());
    ASSERT_TRUE(manager.LoadBinaryParameters(Write(MakeUsecases(2))));
    smallschema::AlphaType* pFirst = Alpha(manager, UsecaseBranch(1));
    EXPECT_EQ(References(manager, UsecaseBranch(1)), 1u);
    EXPECT_EQ(Alpha(manager, UsecaseBranch(1), pFirst), pFirst);
    EXPECT_EQ(References(manager, UsecaseBranch(1)), 1u);
    smallschema::AlphaType* pSecond = Alpha(manager, UsecaseBranch(2), pFirst);
    EXPECT_EQ(References(manager, UsecaseBranch(1)), 0u);
    EXPECT_EQ(References(manager, UsecaseBranch(2)), 1u);

    Release(pSecond);
    Release(pSecond);
    EXPECT_TRUE(log.Has("Attempt to release unreferenced module.  Mode: 2, SubMode: 2, Module alpha\n"));
    EXPECT_EQ(References(manager, UsecaseBranch(2)), 0u);

    // A previous record is given back also if nothing takes its place.
    pFirst = Alpha(manager, UsecaseBranch(1));
    EXPECT_EQ(
        Get<smallschema::BetaType>(manager, "beta", UsecaseBranch(1), reinterpret_cast<smallschema::BetaType*>(pFirst)),
        nullptr);
    EXPECT_EQ(References(manager, UsecaseBranch(1)), 0u);

    PList<ParameterModule*>       modules;
    const std::vector<TuningMode> branch = UsecaseBranch(2);
    manager.GetModules(0, modules, branch.data(), 2, true, true, nullptr);
    EXPECT_EQ(References(manager, branch), 1u);
    manager.ReleaseModules(modules);
    EXPECT_EQ(References(manager, branch), 0u);
    EXPECT_EQ(modules.Count(), 0u);
}

TEST_F(OnDemandTest, ReferencesThatFitNoModeChangeNoCount)
{
    TuningFileMaker maker;
    const UINT32    root  = maker.Table();
    const UINT32    video = maker.Mode(root, Usecase, 2);
    maker.Same("alpha", maker.Mode(root, Usecase, 3), maker.Alpha(video, 5));
    ParameterSetManager manager("cam", smallschema::Modules, Verbose());
    ASSERT_TRUE(manager.LoadBinaryParameters(Write(maker.Build())));
    smallschema::AlphaType* pRecord = Alpha(manager, UsecaseBranch(3));
    ASSERT_NE(pRecord, nullptr);
    ParameterModule* pModule = TableModule::FromRecord(pRecord);
    ModeEntry*       pHeir   = Mode(manager, UsecaseBranch(3));
    EXPECT_FALSE(pHeir->AddReference(pModule));
    EXPECT_FALSE(pHeir->ReleaseReference(pModule));
    EXPECT_EQ(log.Count("reference from wrong mode.  Mode: 2, SubMode: 3, Module alpha, ModePath: 0.0|2.2\n"), 2u);
    ModeEntry* pRoot = Mode(manager, Branch({}));
    EXPECT_FALSE(pRoot->AddReference(pModule));
    EXPECT_FALSE(pRoot->ReleaseReference(pModule));
    EXPECT_EQ(log.Count("a non-existant module.  Mode: 0, SubMode: 0, Module alpha\n"), 2u);

    // A default instance is of no mode.
    const std::unique_ptr<TableModule> pDefault = TableModule::Make(smallschema::Modules[0], nullptr);
    pDefault->Release();
    EXPECT_TRUE(log.Has("release module reference when Data or SetManager is nullptr. Module alpha\n"));
    manager.ReleaseModule(pDefault.get());
    EXPECT_TRUE(log.Has("release module with a nullptr Data object.  Mode: 0, SubMode: 0, Module alpha\n"));
    EXPECT_EQ(References(manager, UsecaseBranch(2)), 1u);
    Release(pRecord);
    EXPECT_EQ(References(manager, UsecaseBranch(2)), 0u);
}

TEST_F(OnDemandTest, ACountThatIsNeverGivenBackStopsAtItsTop)
{
    ParameterSetManager manager("cam", smallschema::Modules, Verbose());
    ASSERT_TRUE(manager.LoadBinaryParameters(Write(MakeUsecases(1))));
    smallschema::AlphaType* pRecord = Alpha(manager, UsecaseBranch(1));
    ModeEntry*              pMode   = Mode(manager, UsecaseBranch(1));
    pMode->ModuleMap[0].RefCount    = std::numeric_limits<INT32>::max() - 1;
    Alpha(manager, UsecaseBranch(1));
    Alpha(manager, UsecaseBranch(1));
    EXPECT_TRUE(pMode->IsActive());
    Release(pRecord);
    EXPECT_EQ(pMode->ModuleMap[0].RefCount, std::numeric_limits<INT32>::max());
}

TEST_F(OnDemandTest, UnloadingOnRequestTakesTheLastModeOnly)
{
    TuningFileMaker maker;
    const UINT32    root  = maker.Table("one");
    const UINT32    video = maker.Mode(root, Usecase, 2);
    const UINT32    night = maker.Mode(video, Scene, 5);
    const UINT32 kept = maker.Mode(root, Usecase, 3, BinaryFileFormat::NoLink, 0, BinaryFileFormat::PreserveModeFlag);
    maker.Table("two");
    maker.Alpha(root, 1);
    maker.Alpha(video, 2);
    maker.Alpha(night, 3);
    maker.Alpha(kept, 4);
    ParameterSetManager manager("cam", smallschema::Modules, Verbose());
    ASSERT_TRUE(manager.LoadBinaryParameters(Write(maker.Build())));
    const std::vector<TuningMode> branch = Branch({{Usecase, 2}, {Scene, 5}});
    smallschema::AlphaType*       pNight = Alpha(manager, branch);
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
    ParameterSetManager manager("cam", smallschema::Modules, Verbose());
    ASSERT_TRUE(manager.LoadBinaryParameters(Write(maker.Build())));
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
    for (const bool hasModule : {false, true})
    {
        TuningFileMaker maker;
        maker.Alpha(maker.Table("main"), 1);
        maker.builder.AddModeTable("empty");
        if (hasModule)
        {
            maker.Alpha(0x01000000, 2);  // mode 0 of the table
        }
        ParameterSetManager manager("cam", smallschema::Modules, Verbose());
        EXPECT_EQ(manager.LoadBinaryParameters(Write(maker.Build())), !hasModule);
        EXPECT_EQ(manager.GetErrorText(), hasModule ? "AddModule: RootMode is nullptr" : "");
        if (!hasModule)
        {
            EXPECT_FALSE(manager.LoadMode(1, nullptr, 0, nullptr));
            EXPECT_FALSE(manager.UnloadMode(1, nullptr, 0));
            EXPECT_EQ(manager.GetErrorText(), "UnloadMode root mode is nullptr");
            EXPECT_EQ(manager.GetModeEntry(1, nullptr, 0), nullptr);
            EXPECT_EQ(manager.GetModuleInternal(1, "alpha", nullptr, 0, nullptr), nullptr);
            EXPECT_TRUE(log.Has("GetModule(alpha) Uninitialized Set Manager. "));
        }
    }
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

TEST_F(OnDemandTest, AFileThatWasReplacedIsReadNoMore)
{
    ParameterSetManager manager("cam", smallschema::Modules, Verbose());
    ASSERT_TRUE(manager.LoadBinaryParameters(Write(MakeUsecases(2))));
    std::filesystem::last_write_time(m_path, std::filesystem::last_write_time(m_path) + std::chrono::seconds(2));
    EXPECT_EQ(AlphaValue(manager, UsecaseBranch(2)), -1);
    EXPECT_EQ(AlphaValue(manager, Branch({})), 1);
    ASSERT_TRUE(manager.ReloadBinaryParameters(false)) << log.Text();
    EXPECT_EQ(AlphaValue(manager, UsecaseBranch(2)), 200);
}

TEST_F(OnDemandTest, ThreadsSeeTheirRecordsWhateverIsEvictedMeanwhile)
{
    constexpr UINT16 Usecases = 16;

    Options options     = Verbose(5);
    options.logErrors   = false;
    options.logWarnings = false;
    options.logDebug    = false;
    ParameterSetManager manager("cam", smallschema::Modules, options);
    ASSERT_TRUE(manager.LoadBinaryParameters(Write(MakeUsecases(Usecases))));
    std::atomic<UINT32>      wrong{0};
    std::vector<std::thread> threads;
    for (UINT32 thread = 0; thread < 4; ++thread)
    {
        threads.emplace_back(
            [&, thread]
            {
                smallschema::AlphaType* pRecord = nullptr;
                UINT32                  state   = thread + 1;
                for (UINT32 round = 0; round < 400; ++round)
                {
                    state                = state * 1664525 + 1013904223;
                    const UINT16 usecase = static_cast<UINT16>(1 + (state >> 16) % Usecases);
                    pRecord              = Alpha(manager, UsecaseBranch(usecase), pRecord);
                    if (pRecord == nullptr || pRecord->value != 100 * usecase ||
                        pRecord->steps[1] != static_cast<float>(100 * usecase) + 0.25f)
                    {
                        ++wrong;
                    }
                }
                Release(pRecord);
            });
    }
    for (std::thread& rThread : threads)
    {
        rThread.join();
    }
    EXPECT_EQ(wrong, 0u);
    EXPECT_LE(Mode(manager, {})->Table->ActiveModes.Count(), 5u + 4u);
    for (UINT16 usecase = 1; usecase <= Usecases; ++usecase)
    {
        EXPECT_EQ(References(manager, UsecaseBranch(usecase)), 0u);
    }
}
