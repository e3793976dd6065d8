#include "tests/parameters/ondemandfixture.h"

#include <limits>
#include <memory>

namespace
{

using enum ModeType;

using ReferencesTest = OnDemandTest;

}  // namespace

TEST_F(ReferencesTest, ReferencesAreTakenBeforeTheyAreGivenBack)
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

TEST_F(ReferencesTest, ReferencesThatFitNoModeChangeNoCount)
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

TEST_F(ReferencesTest, ACountThatIsNeverGivenBackStopsAtItsTop)
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
