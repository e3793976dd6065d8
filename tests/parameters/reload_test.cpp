#include "tests/parameters/setmanagerfixture.h"

#include <filesystem>

namespace
{

using enum ModeType;

class ReloadTest : public SetManagerTest
{
protected:
    /// Default and two use cases with values that follow from the first.
    static ParameterFile MakeFile(INT32 value)
    {
        TuningFileMaker maker;
        const UINT32    root = maker.Table();
        maker.Alpha(root, value);
        maker.AlphaMode(root, Usecase, 2, value + 1);
        maker.AlphaMode(root, Usecase, 3, value + 2);
        return maker.Build();
    }

    /// A manager of the file, to update another one with.
    static std::unique_ptr<ParameterSetManager> Update(const ParameterFile& rFile)
    {
        auto pUpdate = std::make_unique<ParameterSetManager>("update", smallschema::Modules, Verbose());
        EXPECT_TRUE(LoadBuffer(*pUpdate, rFile));
        return pUpdate;
    }

    const std::vector<TuningMode> video = Branch({{Usecase, 2}});
};

/// A manager whose steps of a reload can be called one by one.
struct SteppedManager : ParameterSetManager
{
    using ParameterSetManager::ParameterSetManager;
    using ParameterSetManager::SaveAndClearModule;
    using ParameterSetManager::SaveAndClearModules;
};

}  // namespace

TEST_F(ReloadTest, OldRecordsLiveUntilTheReloadAfter)
{
    ParameterSetManager&    manager = Open(MakeFile(10));
    smallschema::AlphaType* pOld    = Alpha(manager, video);
    ASSERT_NE(pOld, nullptr);

    Write(MakeFile(20));
    ASSERT_TRUE(manager.ReloadBinaryParameters(false)) << log.Text();
    EXPECT_EQ(pOld->value, 11);
    EXPECT_EQ(pOld->steps[0], 11.5f);
    smallschema::AlphaType* pNew = Alpha(manager, video);
    ASSERT_NE(pNew, nullptr);
    EXPECT_NE(pNew, pOld);
    EXPECT_EQ(pNew->value, 21);

    // The old record can still be given back: to the tree that it came from.
    EXPECT_EQ(Alpha(manager, video, pOld), pNew);

    Write(MakeFile(30));
    ASSERT_TRUE(manager.ReloadBinaryParameters(false));
    EXPECT_EQ(pNew->value, 21);
    EXPECT_EQ(AlphaValue(manager, video), 31);
}

TEST_F(ReloadTest, ReferenceCountsCarryOverBetweenEqualLayouts)
{
    ParameterSetManager& manager = Open(MakeFile(10));
    Alpha(manager, video);
    Alpha(manager, video);
    ASSERT_TRUE(manager.ReloadBinaryParameters(false));
    EXPECT_EQ(References(manager, video), 2u);
    EXPECT_EQ(References(manager, Branch({{Usecase, 3}})), 0u);

    // Another module in the place of the first one: the counts of that mode are left behind.
    TuningFileMaker maker;
    const UINT32    root    = maker.Table();
    const UINT32    usecase = maker.Mode(root, Usecase, 2);
    maker.Mode(root, Usecase, 3);
    maker.Alpha(root, 1);
    maker.Beta(usecase, 2);
    maker.Alpha(usecase, 3);
    Write(maker.Build());
    ASSERT_TRUE(manager.ReloadBinaryParameters(false));
    EXPECT_EQ(References(manager, video), 0u);
    EXPECT_TRUE(
        log.Has("ReloadBinaryParameters: Failed to transfer reference counts, current module name (beta) does not "
                "match prev name (alpha) in mode index 1\n",
                "V"));
}

TEST_F(ReloadTest, AModuleThatIsKeptCountsOnceOverFetchesAndReloads)
{
    ParameterSetManager& manager = Open(MakeFile(10), 5);
    for (int reload = 0; reload < 3; ++reload)
    {
        smallschema::AlphaType* pRecord = KeepAlpha(manager, video);
        ASSERT_NE(pRecord, nullptr);
        EXPECT_EQ(pRecord->value, 11);
        EXPECT_EQ(KeepAlpha(manager, video), pRecord);
        EXPECT_EQ(References(manager, video), 1u) << "reload " << reload;
        // What another user takes beside it and gives back, leaves it in place.
        EXPECT_EQ(Alpha(manager, video), pRecord);
        Release(pRecord);
        EXPECT_TRUE(Mode(manager, video)->IsActive());
        ASSERT_TRUE(manager.ReloadBinaryParameters(false));
    }

    // A mode that is unloaded on request counts nobody, and the next fetch counts again.
    ASSERT_TRUE(UnloadMode(manager, video));
    EXPECT_FALSE(Mode(manager, video)->IsActive());
    KeepAlpha(manager, video);
    EXPECT_EQ(References(manager, video), 1u);
}

TEST_F(ReloadTest, AFailedReloadLeavesNothingAndCanBeTriedAgain)
{
    ParameterSetManager manager("cam", smallschema::Modules, Verbose());
    EXPECT_FALSE(manager.ReloadBinaryParameters(false));
    EXPECT_EQ(manager.GetErrorText(), "ReloadBinaryParameters called with empty file name");

    for (const bool bufferMode : {false, true})
    {
        ParameterSetManager&    other   = Open(MakeFile(10));
        smallschema::AlphaType* pOld    = Alpha(other, video);
        ParameterFile           damaged = MakeFile(20);
        damaged.Put<BYTE>(500, 1);
        Write(damaged);
        EXPECT_FALSE(other.ReloadBinaryParameters(bufferMode));
        EXPECT_EQ(other.GetErrorText(), "Binary file CRC validation failed");
        EXPECT_EQ(AlphaValue(other, video), -1);
        EXPECT_EQ(pOld->value, 11);

        std::filesystem::remove(m_path);
        EXPECT_FALSE(other.ReloadBinaryParameters(bufferMode));
        EXPECT_EQ(other.GetErrorText(), bufferMode ? "ReloadBinaryParameters: Failed to open file"
                                                   : "Unable to allocate space to read binary file");

        Write(MakeFile(30));
        ASSERT_TRUE(other.ReloadBinaryParameters(bufferMode));
        EXPECT_EQ(AlphaValue(other, video), 31);
    }
}

TEST_F(ReloadTest, InBufferModeTheFileIsForgotten)
{
    ParameterSetManager& manager = Open(MakeFile(10));
    ASSERT_TRUE(manager.ReloadBinaryParameters(true));
    EXPECT_TRUE(log.Has("Reloading binary file " + m_path + " in buffer mode\n"));
    std::filesystem::remove(m_path);
    EXPECT_EQ(AlphaValue(manager, video), 11);
    EXPECT_FALSE(manager.ReloadBinaryParameters(false));
    EXPECT_EQ(AlphaValue(manager, video), 11);
}

TEST_F(ReloadTest, AnUpdateReplacesModulesWhereTheTreesAgree)
{
    for (const bool fileMode : {false, true})
    {
        ParameterSetManager&    manager = Open(MakeFile(10));
        smallschema::AlphaType* pOld    = Alpha(manager, video);

        TuningFileMaker maker;
        const UINT32    root = maker.Table();
        maker.Beta(root, 50);
        maker.AlphaMode(root, Usecase, 2, 60);
        maker.AlphaMode(root, Usecase, 9, 70);
        const std::string updatePath = m_path + ".update";
        maker.Build().WriteTo(updatePath);
        auto pUpdate = std::make_unique<ParameterSetManager>("update", smallschema::Modules, Verbose());
        ASSERT_TRUE(fileMode ? pUpdate->LoadBinaryParameters(updatePath.c_str()) : LoadBuffer(*pUpdate, maker.Build()));
        ASSERT_TRUE(manager.UpdateParameters(std::move(pUpdate))) << log.Text();
        EXPECT_EQ(AlphaValue(manager, video), 60);
        EXPECT_EQ(BetaValue(manager, {}), 50);
        EXPECT_EQ(AlphaValue(manager, {}), 10);
        EXPECT_EQ(AlphaValue(manager, Branch({{Usecase, 3}})), 12);
        EXPECT_EQ(AlphaValue(manager, Branch({{Usecase, 9}})), 10) << "no such mode here";
        EXPECT_EQ(pOld->value, 11);
        EXPECT_EQ(pOld->steps[0], 11.5f);

        // Loading and unloading of the mode goes on around the new module.
        EXPECT_TRUE(UnloadMode(manager, video));
        EXPECT_EQ(AlphaValue(manager, video), 60);
        smallschema::AlphaType* pUpdated = Alpha(manager, video);

        ASSERT_TRUE(manager.ReloadBinaryParameters(false));
        EXPECT_EQ(AlphaValue(manager, video), 11);
        EXPECT_EQ(pUpdated->value, 60);
        ASSERT_TRUE(manager.ReloadBinaryParameters(false));
        EXPECT_EQ(AlphaValue(manager, video), 11);
        std::filesystem::remove(updatePath);
    }
}

TEST_F(ReloadTest, UpdatedModulesAreNeverEvicted)
{
    constexpr UINT16 Usecases = 8;
    const auto       make     = [](INT32 value)
    {
        TuningFileMaker maker;
        const UINT32    root = maker.Table();
        for (UINT16 usecase = 1; usecase <= Usecases; ++usecase)
        {
            maker.AlphaMode(root, Usecase, usecase, value + usecase);
        }
        return maker.Build();
    };
    ParameterSetManager& manager = Open(make(10), 1);
    ASSERT_TRUE(manager.UpdateParameters(Update(make(20))));
    for (UINT16 usecase = 1; usecase <= Usecases; ++usecase)
    {
        EXPECT_TRUE(LoadMode(manager, Branch({{Usecase, usecase}})));
    }
    for (UINT16 usecase = 1; usecase <= Usecases; ++usecase)
    {
        EXPECT_EQ(AlphaValue(manager, Branch({{Usecase, usecase}})), 20 + usecase);
    }
}

TEST_F(ReloadTest, AnUpdateNeedsTablesOfTheSameName)
{
    TuningFileMaker two;
    two.Alpha(two.Table("main"), 1);
    two.Alpha(two.Table("side"), 2);
    ParameterSetManager manager("cam", smallschema::Modules, Verbose());
    EXPECT_FALSE(manager.UpdateParameters(nullptr));
    ASSERT_TRUE(LoadBuffer(manager, two.Build()));

    const auto make = [](const std::string& rName)
    {
        TuningFileMaker maker;
        maker.Alpha(maker.Table(rName), 9);
        return Update(maker.Build());
    };
    EXPECT_FALSE(manager.UpdateParameters(make("rear")));
    EXPECT_EQ(manager.GetErrorText(),
              "UpdateParameters: Error: No matching module tables names found, unable to update parameters");
    ASSERT_TRUE(manager.UpdateParameters(make("side")));
    EXPECT_EQ(AlphaValue(manager, {}), 1);
    ParameterModule* pSide = manager.GetModuleInternal(1, "alpha", nullptr, 0, nullptr);
    ASSERT_NE(pSide, nullptr);
    EXPECT_EQ(static_cast<smallschema::AlphaType*>(static_cast<TableModule*>(pSide)->Record())->value, 9);
}

TEST_F(ReloadTest, AnUpdateFromOrToATableWithoutModesChangesNothing)
{
    TuningFileMaker empty;
    empty.builder.AddModeTable();
    for (const auto& [mine, others] :
         {std::pair{MakeFile(10), empty.Build()}, {empty.Build(), MakeFile(20)}, {empty.Build(), empty.Build()}})
    {
        ParameterSetManager& manager = OpenBuffer(mine);
        const INT32          before  = AlphaValue(manager, video);
        EXPECT_TRUE(manager.UpdateParameters(Update(others)));
        EXPECT_EQ(AlphaValue(manager, video), before);
    }
}

TEST_F(ReloadTest, ADerivedManagerHasAllDoneByItsMain)
{
    const auto make = [](INT32 value)
    {
        TuningFileMaker maker;
        const UINT32    front = maker.Table("front");
        const UINT32    back  = maker.Table("back");
        maker.Beta(front, value);
        maker.AlphaMode(front, Usecase, 2, value + 1);
        maker.AlphaMode(back, Usecase, 2, value + 2);
        return maker.Build();
    };
    SteppedManager manager("cam", smallschema::Modules, Verbose());
    SteppedManager derived(&manager, 1);
    ASSERT_TRUE(derived.LoadBinaryParameters(Write(make(10))));
    EXPECT_EQ(manager.GetModeTableCount(), 2u);
    EXPECT_FALSE(LoadBuffer(derived, make(10)));
    EXPECT_EQ(manager.GetErrorText(), "Binary file already loaded");

    // Its own table, whatever index is named.
    EXPECT_TRUE(LoadMode(derived, video));
    EXPECT_FALSE(Mode(manager, video, 0)->Loaded);
    EXPECT_TRUE(Mode(manager, video, 1)->Loaded);
    EXPECT_TRUE(UnloadMode(derived, video));
    EXPECT_FALSE(Mode(manager, video, 1)->Loaded);

    Write(make(20));
    ASSERT_TRUE(derived.ReloadBinaryParameters(false));
    EXPECT_EQ(AlphaValue(manager, video), 21);
    EXPECT_EQ(AlphaValue(derived, video), 22);
    EXPECT_TRUE(derived.UpdateParameters(Update(make(30))));
    EXPECT_EQ(AlphaValue(manager, video), 31);

    Write(make(40));
    ASSERT_TRUE(derived.ReloadBinaryParameters(false));
    DefaultModule* const          pAlpha = manager.GetDefaultModule(namehash::OfName("alpha"));
    DefaultModule* const          pBeta  = manager.GetDefaultModule(namehash::OfName("beta"));
    const smallschema::AlphaType* pOld   = Alpha(manager, video);
    {
        SteppedManager another(&manager, 0);
        another.SaveAndClearModule(pAlpha);
        EXPECT_TRUE(pAlpha->RemoveAll().empty());
        EXPECT_NE(pBeta->Find(1), nullptr);
        another.SaveAndClearModules();
        EXPECT_EQ(pBeta->Find(1), nullptr);
    }
    EXPECT_EQ(pOld->value, 41) << "until the next reload";
    ASSERT_TRUE(manager.ReloadBinaryParameters(false));
    EXPECT_EQ(AlphaValue(manager, video), 41);
}
