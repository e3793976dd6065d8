#include "tests/parameters/ondemandfixture.h"

#include <algorithm>
#include <memory>
#include <mutex>
#include <numeric>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

namespace
{

using enum ModeType;

class EvictionTest : public OnDemandTest
{
protected:
    static constexpr UINT16 Usecases = 16;
    static constexpr UINT16 Sharing  = 4;  ///< further ones, which share the modules of the first ones
    static constexpr UINT16 Kept     = Usecases;

    /// Each value twice, so that two modules share an array.
    static INT32 ValueOf(UINT16 usecase)
    {
        return 100 * (1 + (usecase - 1) % (Usecases / 2));
    }

    static ParameterFile MakeCrowd()
    {
        TuningFileMaker maker;
        maker.writer.m_sharesData = true;
        const UINT32        root  = maker.Table();
        std::vector<UINT32> alphas;
        for (UINT16 usecase = 1; usecase <= Usecases; ++usecase)
        {
            alphas.push_back(maker.Alpha(maker.Mode(root, Usecase, usecase), ValueOf(usecase)));
        }
        for (UINT16 sharing = 0; sharing < Sharing; ++sharing)
        {
            maker.Same("alpha", maker.Mode(root, Usecase, static_cast<UINT16>(Usecases + 1 + sharing)),
                       alphas[sharing]);
        }
        return maker.Build();
    }

    static bool IsWhole(const smallschema::AlphaType* pRecord, INT32 value)
    {
        return pRecord != nullptr && pRecord->value == value && pRecord->steps[1] == static_cast<float>(value) + 0.25f;
    }

    /// Fetches use cases of the crowd, each second one as the successor of the one before, and keeps one of them.
    /// @return how many were not what they should be
    static UINT32 FetchAtRandom(ParameterSetManager& rManager, UINT32 seed)
    {
        UINT32                  wrong     = 0;
        smallschema::AlphaType* pPrevious = nullptr;
        for (UINT32 round = 0; round < 2000; ++round)
        {
            seed                 = seed * 1664525 + 1013904223;
            const UINT16 usecase = static_cast<UINT16>(1 + (seed >> 16) % (Usecases + Sharing));
            auto*        pRecord = Alpha(rManager, UsecaseBranch(usecase), pPrevious);
            wrong += IsWhole(pRecord, ValueOf(usecase)) ? 0 : 1;
            wrong += IsWhole(KeepAlpha(rManager, UsecaseBranch(Kept)), ValueOf(Kept)) ? 0 : 1;
            pPrevious = (round % 2 == 0) ? nullptr : pRecord;
            if (pPrevious == nullptr)
            {
                Release(pRecord);
            }
        }
        if (pPrevious != nullptr)
        {
            Release(pPrevious);
        }
        return wrong;
    }
};

}  // namespace

TEST_F(EvictionTest, TheModeUsedLongestAgoMakesRoomUnlessItIsInUse)
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

TEST_F(EvictionTest, AnEvictedModeCountsNobody)
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

TEST_F(EvictionTest, NobodyWaitsForAModeThatIsBeingLoaded)
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

TEST_F(EvictionTest, AFetchOfWhatIsLoadedTakesNoLock)
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

TEST_F(EvictionTest, ThreadsSeeTheirRecordsWhateverIsEvictedMeanwhile)
{
    Options options     = Verbose(5);
    options.logErrors   = false;
    options.logWarnings = false;
    options.logDebug    = false;
    ParameterSetManager manager("cam", smallschema::Modules, options);
    ASSERT_TRUE(manager.LoadBinaryParameters(Write(MakeCrowd())));
    std::atomic<UINT32>      wrong{0};
    std::vector<std::thread> threads;
    for (UINT32 thread = 0; thread < 4; ++thread)
    {
        threads.emplace_back([&, thread] { wrong += FetchAtRandom(manager, thread + 1); });
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
