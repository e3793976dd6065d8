#include "tests/parameters/ondemandfixture.h"

#include <chrono>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace
{

using enum ModeType;

using LostFileTest = OnDemandTest;

}  // namespace

TEST_F(LostFileTest, AFileThatChangedIsReadNoMoreAndSaidOnce)
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

TEST_F(LostFileTest, AFileThatWasAwayIsReadAgainOnceItIsBack)
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

TEST_F(LostFileTest, WhatIsWrittenOverDuringALoadDoesNotCount)
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

TEST_F(LostFileTest, WhatIsWrittenOverWhileAFileIsTakenInRefusesIt)
{
    ParameterSetManager manager("cam", smallschema::Modules, Verbose());
    const CHAR* const   pPath = Write(MakeUsecases(2));
    std::filesystem::last_write_time(m_path, std::filesystem::last_write_time(m_path) - std::chrono::seconds(2));
    const auto overwrite = [](VOID* pContext, UINT64, const CHAR*, UINT32, const CHAR* pLine)
    {
        if (std::strstr(pLine, "ReadHeader: Binary Version") != nullptr)
        {
            MakeUsecases(2, 300).WriteTo(*static_cast<const std::string*>(pContext));
        }
    };
    std::string path = m_path;
    TavoDesk::SetSystemLogSink(overwrite, &path);
    EXPECT_FALSE(manager.LoadBinaryParameters(pPath));
    TavoDesk::SetSystemLogSink(nullptr, nullptr);
    EXPECT_EQ(manager.GetErrorText().find("Failed to parse binary header data for:"), 0U) << manager.GetErrorText();
    EXPECT_TRUE(manager.LoadBinaryParameters(pPath));
    EXPECT_EQ(AlphaValue(manager, UsecaseBranch(2)), 600);
}
