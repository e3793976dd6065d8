#include "tests/parameters/setmanagerfixture.h"

#include <atomic>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <functional>
#include <future>
#include <latch>
#include <limits>
#include <memory>
#include <numeric>
#include <thread>
#include <utility>

#include "parameters/parameterfilesymboltable.h"

namespace
{

using enum ModeType;

class OnDemandTest : public SetManagerTest
{
protected:
    /// Default and use cases 1 to count, each with an alpha of its number times a step.
    static ParameterFile MakeUsecases(UINT16 count, INT32 step = 100)
    {
        TuningFileMaker maker;
        const UINT32    root = maker.Table();
        maker.Alpha(root, 1);
        for (UINT16 usecase = 1; usecase <= count; ++usecase)
        {
            maker.AlphaMode(root, Usecase, usecase, step * usecase);
        }
        return maker.Build();
    }

    /// Use cases 1 and 2 share an alpha of 100, those from 3 to 8 have one of 100 times their number.
    static ParameterFile MakePairAndOthers()
    {
        TuningFileMaker maker;
        const UINT32    root  = maker.Table();
        const UINT32    first = maker.Mode(root, Usecase, 1);
        maker.Same("alpha", maker.Mode(root, Usecase, 2), maker.Alpha(first, 100));
        for (UINT16 usecase = 3; usecase <= 8; ++usecase)
        {
            maker.AlphaMode(root, Usecase, usecase, 100 * usecase);
        }
        return maker.Build();
    }

    static std::vector<TuningMode> UsecaseBranch(UINT16 usecase)
    {
        return Branch({{Usecase, usecase}});
    }
};

/// Holds a load up at its first line in the log, under the mode's mutex, as a file that is slow to read does. Only
/// loads with the reason "slow".
class HeldUpLoad
{
public:
    HeldUpLoad()
    {
        TavoDesk::SetSystemLogSink(Hold, this);
    }

    ~HeldUpLoad()
    {
        Release();
        TavoDesk::SetSystemLogSink(nullptr, nullptr);
    }

    HeldUpLoad(const HeldUpLoad&)            = delete;
    HeldUpLoad& operator=(const HeldUpLoad&) = delete;

    VOID WaitUntilHeld()
    {
        m_held.wait();
    }

    VOID Release()
    {
        m_isReleased.store(true);
        m_isReleased.notify_all();
    }

private:
    static VOID Hold(VOID* pContext, UINT64, const CHAR*, UINT32, const CHAR* pLine)
    {
        if (std::strstr(pLine, "Loading modules (GetModule:slow:") != nullptr)
        {
            auto& rThis = *static_cast<HeldUpLoad*>(pContext);
            rThis.m_held.count_down();
            rThis.m_isReleased.wait(false);
        }
    }

    std::latch        m_held{1};
    std::atomic<bool> m_isReleased = false;
};

/// @return whether the work ended while nobody let it go on; a minute means that it waits
bool EndsByItself(const std::future<VOID>& rWork)
{
    return rWork.wait_for(std::chrono::minutes(1)) == std::future_status::ready;
}

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

TEST_F(OnDemandTest, TheModeUsedLongestAgoMakesRoomUnlessItIsInUse)
{
    using Usecases = std::vector<UINT16>;
    // Size of the cache, the use case that is held, those that are used, and those in memory then.
    const std::tuple<const CHAR*, UINT32, UINT16, Usecases, Usecases> cases[] = {
        {"the oldest goes", 6, 0, {1, 2, 3, 4, 5, 6, 1, 7}, {1, 3, 4, 5, 6, 7}},
        {"one that is held stays beyond the size", 6, 3, {4, 5, 6, 1, 7, 8, 9}, {1, 3, 5, 6, 7, 8, 9}},
        {"one that is held is the newest again", 5, 1, {2, 3, 4, 5, 6, 1}, {1, 3, 4, 5, 6}},
        {"five stay in a smaller cache", 1, 0, {1, 2, 3, 4, 5, 6, 7, 8}, {4, 5, 6, 7, 8}},
        {"all stay without a cache", 0, 0, {1, 2, 3, 4, 5, 6, 7, 8}, {1, 2, 3, 4, 5, 6, 7, 8}},
    };
    for (const auto& [pName, cacheSize, held, used, loaded] : cases)
    {
        SCOPED_TRACE(pName);
        ParameterSetManager&    manager = Open(MakeUsecases(9), cacheSize);
        smallschema::AlphaType* pHeld   = (held > 0) ? Alpha(manager, UsecaseBranch(held)) : nullptr;
        for (const UINT16 usecase : used)
        {
            ASSERT_TRUE(LoadMode(manager, UsecaseBranch(usecase)));
        }
        Usecases inMemory(9);
        std::iota(inMemory.begin(), inMemory.end(), UINT16{1});
        std::erase_if(inMemory, [&](UINT16 usecase) { return !IsLoaded(manager, UsecaseBranch(usecase)); });
        EXPECT_EQ(inMemory, loaded);
        EXPECT_EQ(Mode(manager, {})->Table->ActiveModes.Count(), (cacheSize > 0) ? loaded.size() : 5u);
        if (pHeld != nullptr)
        {
            EXPECT_EQ(pHeld->steps[0], 100.0f * held + 0.5f);
            Release(pHeld);
            LoadMode(manager, UsecaseBranch(used.back()));
            EXPECT_EQ(IsLoaded(manager, UsecaseBranch(held)), held == used.back());
        }
    }
    EXPECT_TRUE(log.Has("Unloading modules (GetModule:Unknown:): 0.0|2.2\n", "V")) << log.Text();
}

TEST_F(OnDemandTest, AnEvictedModeCountsNobody)
{
    ParameterSetManager& manager = Open(MakeUsecases(6), 5);
    ASSERT_NE(Alpha(manager, UsecaseBranch(1)), nullptr);
    // The reference stays with a module that the mode does not own, so that nothing keeps the mode.
    auto pUpdate = std::make_unique<ParameterSetManager>("update", smallschema::Modules, Verbose());
    ASSERT_TRUE(LoadBuffer(*pUpdate, MakeUsecases(1)));
    ASSERT_TRUE(manager.UpdateParameters(std::move(pUpdate)));
    for (UINT16 usecase = 2; usecase <= 6; ++usecase)
    {
        LoadMode(manager, UsecaseBranch(usecase));
    }
    EXPECT_FALSE(IsLoaded(manager, UsecaseBranch(1)));
    EXPECT_TRUE(log.Has("Unloading mode with 1 unreleased modules: 0.0|2.1\n")) << log.Text();
    EXPECT_TRUE(log.Has("ReleaseReferences called with unreleased module: alpha, RefCnt: 1\n"));
    EXPECT_EQ(References(manager, UsecaseBranch(1)), 0u);
}

TEST_F(OnDemandTest, ReferencesAreTakenBeforeTheyAreGivenBack)
{
    ParameterSetManager&    manager = Open(MakeUsecases(2));
    smallschema::AlphaType* pFirst  = Alpha(manager, UsecaseBranch(1));
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

    PList<ParameterModule*> modules;
    manager.GetModules(0, modules, UsecaseBranch(2).data(), 2, true, true, nullptr);
    EXPECT_EQ(References(manager, UsecaseBranch(2)), 1u);
    manager.ReleaseModules(modules);
    EXPECT_EQ(References(manager, UsecaseBranch(2)), 0u);
    EXPECT_EQ(modules.Count(), 0u);
}

TEST_F(OnDemandTest, ReferencesThatFitNoModeChangeNoCount)
{
    TuningFileMaker maker;
    const UINT32    root  = maker.Table();
    const UINT32    video = maker.Mode(root, Usecase, 2);
    maker.Same("alpha", maker.Mode(root, Usecase, 3), maker.Alpha(video, 5));
    ParameterSetManager&    manager = Open(maker.Build());
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
    ParameterSetManager&    manager = Open(MakeUsecases(1));
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

TEST_F(OnDemandTest, NobodyWaitsForAModeThatIsBeingLoaded)
{
    // The mode that is loaded slowly is in the list since another one that shares its module was used, and it is the
    // next to go.
    ParameterSetManager& manager = Open(MakePairAndOthers(), 5);
    for (const UINT16 usecase : {2, 3, 4, 5, 6})
    {
        ASSERT_TRUE(LoadMode(manager, UsecaseBranch(usecase)));
    }
    smallschema::AlphaType* pHeld = Alpha(manager, UsecaseBranch(3));
    HeldUpLoad              holdUp;
    std::thread             tool([&] { EXPECT_TRUE(LoadMode(manager, UsecaseBranch(1), "slow")); });
    holdUp.WaitUntilHeld();
    const std::future<VOID> camera =
        std::async(std::launch::async,
                   [&]
                   {
                       for (const UINT16 usecase : {7, 8, 7, 3})
                       {
                           EXPECT_EQ(AlphaValue(manager, UsecaseBranch(usecase)), 100 * usecase);
                       }
                   });
    EXPECT_TRUE(EndsByItself(camera));
    holdUp.Release();
    tool.join();
    camera.wait();
    EXPECT_TRUE(IsLoaded(manager, UsecaseBranch(1))) << "used last";
    EXPECT_EQ(AlphaValue(manager, UsecaseBranch(1)), 100);
    Release(pHeld);
}

TEST_F(OnDemandTest, AFetchOfWhatIsLoadedTakesNoLock)
{
    ParameterSetManager&    manager = Open(MakeUsecases(2));
    smallschema::AlphaType* pRecord = Alpha(manager, UsecaseBranch(1));
    ModeEntry*              pMode   = Mode(manager, UsecaseBranch(1));
    std::future<VOID>       camera;
    {
        const std::lock_guard<ParameterMutex> tableLock(pMode->Table->ActModeMutex);
        const std::lock_guard<ParameterMutex> lock(pMode->Mutex);
        camera = std::async(std::launch::async,
                            [&]
                            {
                                for (int frame = 0; frame < 10; ++frame)
                                {
                                    pRecord = Alpha(manager, UsecaseBranch(1), pRecord);
                                    EXPECT_EQ(pRecord->value, 100);
                                }
                            });
        EXPECT_TRUE(EndsByItself(camera));
    }
    camera.wait();
    Release(pRecord);
    EXPECT_EQ(References(manager, UsecaseBranch(1)), 0u);
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

TEST_F(OnDemandTest, AFileThatChangedIsReadNoMoreAndSaidOnce)
{
    const auto replace = [this](const ParameterFile& rFile)
    {
        rFile.WriteTo(m_path + ".new");
        std::filesystem::rename(m_path + ".new", m_path);
    };
    const std::pair<const CHAR*, std::function<VOID()>> changes[] = {
        {"touched",
         [this]
         {
             const auto time = std::filesystem::last_write_time(m_path);
             std::filesystem::last_write_time(m_path, time + std::chrono::seconds(2));
         }},
        {"replaced by one of the same size and time",
         [&]
         {
             const auto time = std::filesystem::last_write_time(m_path);
             replace(MakeUsecases(2, 300));
             std::filesystem::last_write_time(m_path, time);
         }},
        {"cut, with the same time",
         [this]
         {
             const auto time = std::filesystem::last_write_time(m_path);
             std::filesystem::resize_file(m_path, 100);
             std::filesystem::last_write_time(m_path, time);
         }},
        {"deleted", [this] { std::filesystem::remove(m_path); }},
    };
    Options options  = Verbose();
    options.logDebug = false;
    for (const auto& [pName, change] : changes)
    {
        SCOPED_TRACE(pName);
        ParameterSetManager manager("cam", smallschema::Modules, options);
        ASSERT_TRUE(manager.LoadBinaryParameters(Write(MakeUsecases(2))));
        const smallschema::AlphaType* pHeld = Alpha(manager, UsecaseBranch(1));
        change();
        log.Clear();
        EXPECT_EQ(AlphaValue(manager, UsecaseBranch(2)), -1);
        EXPECT_EQ(log.Count("must reload") + log.Count("Failed to open binary file"), 1u) << log.Text();
        EXPECT_EQ(log.Count("Failed to load module alpha, path: 0.0|2.2, skipping\n"), 1u) << log.Text();
        log.Clear();
        EXPECT_EQ(AlphaValue(manager, UsecaseBranch(2)), -1);
        EXPECT_FALSE(LoadMode(manager, UsecaseBranch(2)));
        EXPECT_EQ(log.Text(), "") << "nothing that was not said before";
        EXPECT_EQ(Alpha(manager, UsecaseBranch(1)), pHeld);
        EXPECT_EQ(pHeld->steps[0], 100.5f);
        EXPECT_EQ(AlphaValue(manager, Branch({})), 1);

        replace(MakeUsecases(2));
        ASSERT_TRUE(manager.ReloadBinaryParameters(false)) << log.Text();
        EXPECT_EQ(AlphaValue(manager, UsecaseBranch(2)), 200);
    }
}

TEST_F(OnDemandTest, AFileThatWasAwayIsReadAgainOnceItIsBack)
{
    constexpr UINT32     Cache   = 5;
    ParameterSetManager& manager = Open(MakePairAndOthers(), Cache);
    const auto           canRead = [&manager](UINT16 usecase)
    {
        const std::vector<TuningMode> branch = UsecaseBranch(usecase);
        return manager.CanRead(0, branch.data(), static_cast<UINT32>(branch.size()));
    };
    // Use case 1 goes, and with it the module that use case 2 shares.
    for (const UINT16 usecase : {2, 1, 3, 4, 5, 6, 7})
    {
        ASSERT_TRUE(canRead(usecase));
    }
    std::filesystem::rename(m_path, m_path + ".away");
    for (const UINT16 usecase : {2, 8, 1, 2, 8, 1})
    {
        EXPECT_FALSE(canRead(usecase)) << usecase;
        EXPECT_EQ(AlphaValue(manager, UsecaseBranch(usecase)), -1) << usecase;
    }
    for (const UINT16 usecase : {3, 4, 5, 6, 7})
    {
        EXPECT_TRUE(canRead(usecase)) << usecase << " went for what could not be read";
        EXPECT_EQ(AlphaValue(manager, UsecaseBranch(usecase)), 100 * usecase);
    }
    std::filesystem::rename(m_path + ".away", m_path);
    for (const UINT16 usecase : {2, 8})
    {
        EXPECT_TRUE(canRead(usecase)) << usecase;
        EXPECT_EQ(AlphaValue(manager, UsecaseBranch(usecase)), (usecase == 2) ? 100 : 800);
    }

    TuningFileMaker withoutModes;
    withoutModes.builder.AddModeTable("empty");
    EXPECT_TRUE(Open(withoutModes.Build()).CanRead(0, UsecaseBranch(1).data(), 2)) << "nothing to read";
}

TEST_F(OnDemandTest, WhatIsWrittenOverDuringALoadDoesNotCount)
{
    ParameterSetManager& manager = Open(MakeUsecases(2));
    std::filesystem::last_write_time(m_path, std::filesystem::last_write_time(m_path) - std::chrono::seconds(2));
    ASSERT_TRUE(manager.ReloadBinaryParameters(false));
    HeldUpLoad        holdUp;
    std::future<bool> load =
        std::async(std::launch::async, [&] { return LoadMode(manager, UsecaseBranch(2), "slow"); });
    holdUp.WaitUntilHeld();
    (VOID) Write(MakeUsecases(2, 300));
    holdUp.Release();
    EXPECT_FALSE(load.get());
    EXPECT_EQ(AlphaValue(manager, UsecaseBranch(2)), -1);
}

TEST_F(OnDemandTest, ThreadsSeeTheirRecordsWhateverIsEvictedMeanwhile)
{
    constexpr UINT16 Usecases = 16;
    constexpr UINT16 Sharing  = 4;  // further ones, which share the modules of the first ones
    constexpr UINT16 Kept     = Usecases;
    // Each value twice, so that two modules share an array.
    const auto valueOf = [](UINT16 usecase) { return 100 * (1 + (usecase - 1) % (Usecases / 2)); };

    TuningFileMaker maker;
    maker.writer.m_sharesData = true;
    const UINT32        root  = maker.Table();
    std::vector<UINT32> alphas;
    for (UINT16 usecase = 1; usecase <= Usecases; ++usecase)
    {
        alphas.push_back(maker.Alpha(maker.Mode(root, Usecase, usecase), valueOf(usecase)));
    }
    for (UINT16 sharing = 0; sharing < Sharing; ++sharing)
    {
        maker.Same("alpha", maker.Mode(root, Usecase, static_cast<UINT16>(Usecases + 1 + sharing)), alphas[sharing]);
    }
    Options options     = Verbose(5);
    options.logErrors   = false;
    options.logWarnings = false;
    options.logDebug    = false;
    ParameterSetManager manager("cam", smallschema::Modules, options);
    ASSERT_TRUE(manager.LoadBinaryParameters(Write(maker.Build())));
    std::atomic<UINT32>      wrong{0};
    std::vector<std::thread> threads;
    for (UINT32 thread = 0; thread < 4; ++thread)
    {
        threads.emplace_back(
            [&, thread]
            {
                smallschema::AlphaType* pPrevious = nullptr;
                UINT32                  state     = thread + 1;
                for (UINT32 round = 0; round < 2000; ++round)
                {
                    state                = state * 1664525 + 1013904223;
                    const UINT16 usecase = static_cast<UINT16>(1 + (state >> 16) % (Usecases + Sharing));
                    const INT32  value   = valueOf(usecase);
                    auto*        pRecord = Alpha(manager, UsecaseBranch(usecase), pPrevious);
                    if (pRecord == nullptr || pRecord->value != value ||
                        pRecord->steps[1] != static_cast<float>(value) + 0.25f)
                    {
                        ++wrong;
                    }
                    const auto* pKept = KeepAlpha(manager, UsecaseBranch(Kept));
                    wrong += (pKept != nullptr && pKept->steps[1] == static_cast<float>(valueOf(Kept)) + 0.25f) ? 0 : 1;
                    pPrevious = (round % 2 == 0) ? nullptr : pRecord;
                    if (round % 2 == 0)
                    {
                        Release(pRecord);
                    }
                }
                if (pPrevious != nullptr)
                {
                    Release(pPrevious);
                }
            });
    }
    for (std::thread& rThread : threads)
    {
        rThread.join();
    }
    EXPECT_EQ(wrong, 0u);
    EXPECT_LE(Mode(manager, {})->Table->ActiveModes.Count(), 5u + 4u);
    for (UINT16 usecase = 1; usecase <= Usecases + Sharing; ++usecase)
    {
        EXPECT_EQ(References(manager, UsecaseBranch(usecase)), (usecase == Kept) ? 1u : 0u);
    }

    // What is in memory after all of it can go: nothing has lost its place in the list.
    for (UINT16 usecase = 12; usecase <= Usecases; ++usecase)
    {
        LoadMode(manager, UsecaseBranch(usecase));
    }
    for (UINT16 usecase = 1; usecase < 12; ++usecase)
    {
        EXPECT_FALSE(Mode(manager, UsecaseBranch(usecase))->ModuleMap[0].Module->IsLoaded()) << usecase;
    }
}
