// Modules that a frame asks for again and again: found without a walk while nothing changes, and never a stale one.

#include <array>

#include "tests/parameters/ondemandfixture.h"

namespace
{

using enum ModeType;

class KeptLookupsTest : public OnDemandTest
{
protected:
    static INT32 KeptValue(ParameterSetManager& rManager, const std::vector<TuningMode>& rBranch)
    {
        const smallschema::AlphaType* pRecord = KeepAlpha(rManager, rBranch);
        return (pRecord != nullptr) ? pRecord->value : -1;
    }

    /// Lines of the log that name a text.
    size_t LinesWith(const std::string& rText) const
    {
        size_t            count = 0;
        const std::string all   = log.Text();
        for (size_t at = all.find(rText); at != std::string::npos; at = all.find(rText, at + 1))
        {
            ++count;
        }
        return count;
    }
};

}  // namespace

TEST_F(KeptLookupsTest, EveryPathHasItsOwnAnswersInWhateverOrderItIsAsked)
{
    ParameterSetManager& manager = OpenBuffer(MakeUsecases(6));
    // More paths than are remembered at once, over the same array of selectors, as a host changes it in place.
    std::vector<TuningMode> selectors = UsecaseBranch(1);
    for (int round = 0; round < 3; ++round)
    {
        for (UINT16 usecase = 1; usecase <= 6; ++usecase)
        {
            selectors[1].subMode.value = usecase;
            EXPECT_EQ(KeptValue(manager, selectors), 100 * usecase);
            EXPECT_EQ(KeptValue(manager, selectors), 100 * usecase);
            EXPECT_EQ(AlphaValue(manager, selectors), 100 * usecase);
        }
    }
    // A shorter path over the same selectors, and one that leaves the tree.
    EXPECT_EQ(KeptValue(manager, Branch({})), 1);
    EXPECT_EQ(KeptValue(manager, Branch({{Usecase, 3}, {Scene, 4}})), 300);
}

TEST_F(KeptLookupsTest, StoresAndTablesDoNotAnswerForOneAnother)
{
    ParameterSetManager& one = OpenBuffer(MakeUsecases(2, 100));
    EXPECT_EQ(KeptValue(one, UsecaseBranch(2)), 200);
    ParameterSetManager& other = OpenBuffer(MakeUsecases(2, 1000));
    EXPECT_EQ(KeptValue(other, UsecaseBranch(2)), 2000);
    EXPECT_EQ(KeptValue(one, UsecaseBranch(2)), 200);

    // A store in the memory of one that has gone.
    alignas(ParameterSetManager) std::array<std::byte, sizeof(ParameterSetManager)> place;
    for (const INT32 step : {10, 20, 30})
    {
        auto* pManager = new (place.data()) ParameterSetManager("cam", smallschema::Modules, Verbose());
        ASSERT_TRUE(LoadBuffer(*pManager, MakeUsecases(2, step)));
        EXPECT_EQ(KeptValue(*pManager, UsecaseBranch(2)), 2 * step);
        pManager->~ParameterSetManager();
    }

    TuningFileMaker maker;
    maker.Alpha(maker.Table("first"), 7);
    maker.Alpha(maker.Table("second"), 8);
    ParameterSetManager& tables = OpenBuffer(maker.Build());
    ParameterSetManager  derived(&tables, 1);
    EXPECT_EQ(KeptValue(tables, Branch({})), 7);
    EXPECT_EQ(KeptValue(derived, Branch({})), 8);
    EXPECT_EQ(KeptValue(tables, Branch({})), 7);
}

TEST_F(KeptLookupsTest, ReloadsUpdatesEditsAndUnloadingInMidRunAreSeenAtTheNextLookup)
{
    ParameterSetManager&    manager = Open(MakeUsecases(3, 100));
    smallschema::AlphaType* pFirst  = KeepAlpha(manager, UsecaseBranch(2));
    ASSERT_EQ(KeepAlpha(manager, UsecaseBranch(2)), pFirst);

    ASSERT_TRUE(manager.SetValue(0, UsecaseBranch(2).data(), 2, "alpha", "value", "42"));
    EXPECT_EQ(KeptValue(manager, UsecaseBranch(2)), 42);

    // A mode that is unloaded is read again, and kept anew.
    KeepAlpha(manager, UsecaseBranch(3))->value = 43;
    ASSERT_TRUE(UnloadMode(manager, UsecaseBranch(3)));
    EXPECT_EQ(KeptValue(manager, UsecaseBranch(3)), 300);
    EXPECT_EQ(References(manager, UsecaseBranch(3)), 1u);

    Write(MakeUsecases(3, 500));
    ASSERT_TRUE(manager.ReloadBinaryParameters(false));
    EXPECT_EQ(KeptValue(manager, UsecaseBranch(2)), 1000);

    auto pUpdate = std::make_unique<ParameterSetManager>("update", smallschema::Modules, Verbose());
    ASSERT_TRUE(LoadBuffer(*pUpdate, MakeUsecases(3, 7)));
    ASSERT_TRUE(manager.UpdateParameters(std::move(pUpdate)));
    EXPECT_EQ(KeptValue(manager, UsecaseBranch(2)), 14);

    Write(MakeUsecases(1, 9));
    ASSERT_TRUE(manager.ReloadBinaryParameters(true));
    EXPECT_EQ(KeptValue(manager, UsecaseBranch(2)), 1);
    EXPECT_EQ(KeptValue(manager, UsecaseBranch(1)), 9);
}

TEST_F(KeptLookupsTest, InMemoryAModuleThatIsGivenBackIsFoundAgainAsLongAsItIsTheOne)
{
    ParameterSetManager&    manager = OpenBuffer(MakeUsecases(2, 100));
    smallschema::AlphaType* pFirst  = Alpha(manager, UsecaseBranch(2));
    smallschema::AlphaType* pRoot   = Alpha(manager, Branch({}), pFirst);
    ASSERT_EQ(Alpha(manager, UsecaseBranch(2), pRoot), pFirst);
    ASSERT_TRUE(manager.SetValue(0, UsecaseBranch(2).data(), 2, "alpha", "value", "42"));
    EXPECT_EQ(AlphaValue(manager, UsecaseBranch(2)), 42);

    auto pUpdate = std::make_unique<ParameterSetManager>("update", smallschema::Modules, Verbose());
    ASSERT_TRUE(LoadBuffer(*pUpdate, MakeUsecases(2, 7)));
    ASSERT_TRUE(manager.UpdateParameters(std::move(pUpdate)));
    EXPECT_EQ(AlphaValue(manager, UsecaseBranch(2)), 14);

    // From file to memory. In file mode each reference is counted, whatever was found before.
    ParameterSetManager& reloaded = Open(MakeUsecases(2, 100));
    EXPECT_EQ(AlphaValue(reloaded, UsecaseBranch(2)), 200);
    EXPECT_EQ(AlphaValue(reloaded, UsecaseBranch(2)), 200);
    EXPECT_EQ(References(reloaded, UsecaseBranch(2)), 2u);
    Write(MakeUsecases(2, 500));
    ASSERT_TRUE(reloaded.ReloadBinaryParameters(true));
    EXPECT_EQ(AlphaValue(reloaded, UsecaseBranch(2)), 1000);
}

TEST_F(KeptLookupsTest, APathThatIsAskedForAgainCountsAsUsed)
{
    ParameterSetManager& manager = Open(MakeUsecases(3));
    (VOID) KeptValue(manager, UsecaseBranch(1));
    (VOID) KeptValue(manager, UsecaseBranch(2));
    EXPECT_GT(Mode(manager, UsecaseBranch(2))->LastUse, Mode(manager, UsecaseBranch(1))->LastUse);
    (VOID) KeptValue(manager, UsecaseBranch(1));
    EXPECT_GT(Mode(manager, UsecaseBranch(1))->LastUse, Mode(manager, UsecaseBranch(2))->LastUse);
}

TEST_F(KeptLookupsTest, WhatALookupHasToSayItSaysEachTime)
{
    TuningFileMaker maker;
    const UINT32    root = maker.Table();
    maker.AlphaMode(root, Usecase, 1, 5);
    ParameterSetManager& manager = OpenBuffer(maker.Build());
    for (size_t time = 1; time <= 3; ++time)
    {
        EXPECT_EQ(KeptValue(manager, UsecaseBranch(1)), 5);
        EXPECT_EQ(LinesWith("alpha module not found in default scenario"), 2 * time - 1);
        EXPECT_EQ(KeptValue(manager, Branch({})), -1);
    }
    std::vector<TuningMode> odd = UsecaseBranch(1);
    odd[0].subMode.value        = 1;
    for (size_t time = 1; time <= 2; ++time)
    {
        EXPECT_EQ(KeptValue(manager, odd), 5);
        EXPECT_EQ(LinesWith("called with first mode != Default"), time);
    }
}
