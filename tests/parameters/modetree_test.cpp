#include "tests/parameters/setmanagerfixture.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace
{

using enum ModeType;

class ModeTreeTest : public SetManagerTest
{
protected:
    /// Names of the modules of use case 2.
    std::vector<std::string> ModulesOfVideo(bool own, bool shared, const PipelineType* pPipeline = nullptr)
    {
        PList<ParameterModule*>  modules;
        std::vector<std::string> names;
        m_manager.GetModules(0, modules, Branch({{Usecase, 2}}).data(), 2, own, shared, pPipeline);
        std::transform(modules.ToArray(), modules.ToArray() + modules.Count(), std::back_inserter(names),
                       [](ParameterModule* pModule) { return pModule->GetModuleName(); });
        return names;
    }

    ParameterSetManager m_manager{"cam", smallschema::Modules, Verbose()};
};

using Names = std::vector<std::string>;

/// Default, a sensor with a use case and a scene below, and a use case right below Default.
ParameterFile MakeFamily()
{
    TuningFileMaker maker;
    const UINT32    root   = maker.Table();
    const UINT32    sensor = maker.AlphaMode(root, Sensor, 1, 10);
    const UINT32    video  = maker.AlphaMode(sensor, Usecase, 2, 20);
    maker.Beta(maker.Mode(video, Scene, 5), 30);
    maker.AlphaMode(root, Usecase, 3, 40);
    maker.Alpha(root, 1);
    maker.Beta(root, 2);
    return maker.Build();
}

}  // namespace

TEST_F(ModeTreeTest, TheDeepestModeOnTheBranchThatHasTheModuleWins)
{
    ASSERT_TRUE(LoadBuffer(m_manager, MakeFamily())) << log.Text();
    const std::tuple<const CHAR*, std::vector<TuningMode>, INT32, INT32> cases[] = {
        {"no branch", {}, 1, 2},
        {"Default alone", Branch({}), 1, 2},
        {"inherits what the sensor lacks", Branch({{Sensor, 1}}), 10, 2},
        {"use case of the sensor", Branch({{Sensor, 1}, {Usecase, 2}}), 20, 2},
        {"levels in between left out", Branch({{Sensor, 1}, {Usecase, 2}, {Scene, 5}}), 20, 30},
        {"a level that leads nowhere keeps the last match", Branch({{Sensor, 1}, {Usecase, 2}, {Scene, 6}}), 20, 2},
        {"behind the lost level nothing counts", Branch({{Sensor, 2}, {Usecase, 3}}), 1, 2},
        {"use case of Default", Branch({{Usecase, 3}}), 40, 2},
        {"use case of another parent", Branch({{Usecase, 2}}), 1, 2},
    };
    for (const auto& [pWhat, branch, alpha, beta] : cases)
    {
        EXPECT_EQ(AlphaValue(m_manager, branch), alpha) << pWhat;
        EXPECT_EQ(BetaValue(m_manager, branch), beta) << pWhat;
    }
}

TEST_F(ModeTreeTest, ASelectorThatIsNotValidEndsTheWalk)
{
    ASSERT_TRUE(LoadBuffer(m_manager, MakeFamily()));
    EXPECT_EQ(m_manager.GetErrorText(), "");

    EXPECT_EQ(AlphaValue(m_manager, Branch({{Sensor, 1}, {static_cast<ModeType>(7), 0}})), 10);
    EXPECT_EQ(m_manager.GetErrorText(), "GetModuleInternal Error: Invalid Mode value (7) found in modeBranch[2]. "
                                        "Expected range: 0 to 6");

    EXPECT_EQ(AlphaValue(m_manager, Branch({{Default, 0}, {Sensor, 1}})), 1);
    EXPECT_EQ(m_manager.GetErrorText(),
              "GetModuleInternal Error: Default mode found in modeBranch at an index > 0 (1). "
              "Index 0 must be Default, but only index 0 may be Default");
}

TEST_F(ModeTreeTest, DoubtfulCallsAreAnsweredWithAWarning)
{
    ASSERT_TRUE(LoadBuffer(m_manager, MakeFamily()));
    log.Clear();
    ParameterModule* pModule = m_manager.GetModuleInternal(0, "alpha", nullptr, 3, nullptr);
    ASSERT_NE(pModule, nullptr);
    EXPECT_TRUE(log.Has("GetModule(alpha) called with modeBranch == null and modeCount = 3, will return default mode "
                        "module data\n",
                        "W"));

    std::vector<TuningMode> branch = Branch({{Sensor, 1}});
    branch[0].mode                 = Usecase;
    EXPECT_EQ(AlphaValue(m_manager, branch), 10);
    EXPECT_TRUE(log.Has("GetModule(alpha) called with first mode != Default, might not return module data from the "
                        "desired mode path: 2.0|1.1\n",
                        "W"));

    EXPECT_EQ(m_manager.GetModuleInternal(0, "plain", branch.data(), 2, nullptr), nullptr);
    EXPECT_TRUE(log.Has("GetModule plain module not found in default scenario (0.0), mode path: 2.0|1.1\n", "W"));

    EXPECT_EQ(m_manager.GetModuleInternal(1, "alpha", nullptr, 0, nullptr), nullptr);
    EXPECT_TRUE(log.Has("GetModuleInternal called with mode table index (1) >= mode table count (1)\n")) << log.Text();
}

TEST_F(ModeTreeTest, ARunOfOneLevelTakesAChainAsLongAsTheRun)
{
    TuningFileMaker maker;
    const UINT32    root = maker.Table();
    const UINT32    adrc = maker.AlphaMode(root, Feature1, 2, 2);
    const UINT32    isp  = maker.AlphaMode(adrc, Feature1, 1, 3);
    maker.Alpha(root, 1);
    maker.AlphaMode(root, Feature1, 3, 4);
    maker.AlphaMode(isp, Scene, 7, 5);
    maker.AlphaMode(adrc, Feature1, 3, 6);
    ASSERT_TRUE(LoadBuffer(m_manager, maker.Build()));
    const std::tuple<const CHAR*, std::vector<TuningMode>, INT32> cases[] = {
        {"one selector", Branch({{Feature1, 2}}), 2},
        {"in the order of the tree", Branch({{Feature1, 2}, {Feature1, 1}}), 3},
        {"in the other order", Branch({{Feature1, 1}, {Feature1, 2}}), 3},
        {"on behind the run", Branch({{Feature1, 2}, {Feature1, 1}, {Scene, 7}}), 5},
        {"the first one present is a dead end, the next is not", Branch({{Feature1, 3}, {Feature1, 2}}), 6},
        {"chain shorter than the run", Branch({{Feature1, 3}, {Feature1, 2}, {Feature1, 1}}), 1},
        {"repeated selectors make no chain", Branch({{Feature1, 2}, {Feature1, 2}}), 1},
    };
    for (const auto& [pWhat, branch, alpha] : cases)
    {
        EXPECT_EQ(AlphaValue(m_manager, branch), alpha) << pWhat;
    }

    // However long a run is, the search ends.
    std::vector<TuningMode> endless = Branch({});
    endless.resize(50000, Branch({{Feature1, 2}})[1]);
    EXPECT_EQ(AlphaValue(m_manager, endless), 1);
}

TEST_F(ModeTreeTest, ALinkShowsModulesAndChildrenOfItsTarget)
{
    TuningFileMaker maker;
    const UINT32    root  = maker.Table();
    const UINT32    video = maker.AlphaMode(root, Usecase, 2, 20);
    maker.AlphaMode(video, Scene, 5, 25);
    const UINT32 hop     = maker.Mode(root, Usecase, 3, video);
    const UINT32 twoHops = maker.Mode(root, Usecase, 4, hop);
    const UINT32 ahead   = maker.Mode(root, Usecase, 5, 6);  // to the next but one, which stands behind it
    const UINT32 self    = maker.Mode(root, Usecase, 6, 6);
    const UINT32 circleA = maker.Mode(root, Usecase, 7, 8);
    const UINT32 circleB = maker.Mode(root, Usecase, 8, circleA);
    ASSERT_EQ(self, 6u);
    ASSERT_EQ(circleB, 8u);
    maker.Alpha(root, 1);
    maker.Alpha(hop, 30);  // hidden by the link
    maker.Alpha(twoHops, 40);
    maker.Alpha(ahead, 50);
    maker.Alpha(self, 60);
    maker.Alpha(circleA, 70);
    ASSERT_TRUE(LoadBuffer(m_manager, maker.Build()));

    EXPECT_EQ(AlphaValue(m_manager, Branch({{Usecase, 4}, {Scene, 5}})), 25);
    // A circle of links stands for nothing: its modes keep their own modules.
    for (const auto& [usecase, alpha] : {std::pair<UINT16, INT32>{3, 20}, {4, 20}, {5, 50}, {6, 60}, {7, 70}, {8, 1}})
    {
        EXPECT_EQ(AlphaValue(m_manager, Branch({{Usecase, usecase}})), alpha) << usecase;
    }
}

TEST_F(ModeTreeTest, LinksThatMakeATreeLookEndlessDoNotHoldTheSearchUp)
{
    // Layers whose modes all link to the top of the next layer, the last of which is empty: a run as long as there are
    // layers has more ways to try than anyone could wait for.
    constexpr UINT16 Width = 20;
    TuningFileMaker  maker;
    UINT32           top = maker.Table();
    maker.Alpha(top, 1);
    for (UINT32 layer = 1; layer < Width; ++layer)
    {
        const UINT32 next = layer * (Width + 1);
        for (UINT16 subMode = 1; subMode <= Width; ++subMode)
        {
            maker.Mode(top, Scene, subMode, next);
        }
        top = maker.Mode(0, Effect, static_cast<UINT16>(layer));
        ASSERT_EQ(top, next);
    }
    ASSERT_TRUE(LoadBuffer(m_manager, maker.Build())) << log.Text();
    std::vector<TuningMode> branch = Branch({});
    for (UINT16 subMode = 1; subMode <= Width; ++subMode)
    {
        branch.push_back(Branch({{Scene, subMode}})[1]);
    }
    EXPECT_EQ(AlphaValue(m_manager, branch), 1);
}

TEST_F(ModeTreeTest, RowsThatRepeatTheirParentsModeShareItsNode)
{
    TuningFileMaker maker;
    const UINT32    root  = maker.Table();
    const UINT32    video = maker.Mode(root, Usecase, 2);
    const UINT32    part  = maker.Mode(video, Usecase, 2, BinaryFileFormat::NoLink, 3);
    maker.Alpha(root, 1);
    maker.Alpha(part, 20);
    maker.Beta(video, 21);
    ASSERT_TRUE(LoadBuffer(m_manager, maker.Build()));

    const ModeEntryInfo* pPart  = m_manager.GetModeEntry(part);
    const ModeEntryInfo* pVideo = m_manager.GetModeEntry(video);
    ASSERT_TRUE(pPart != nullptr && pVideo != nullptr);
    EXPECT_EQ(pPart->Entry, pVideo->Entry);
    EXPECT_EQ(pPart->Group, 3);
    EXPECT_EQ(pVideo->Group, 0);
    EXPECT_EQ(AlphaValue(m_manager, Branch({{Usecase, 2}})), 20);

    // Group 3 is the block IPE.
    const PipelineType ipe = PipelineType::IPE;
    const PipelineType ife = PipelineType::IFE;
    EXPECT_EQ(ModulesOfVideo(true, true), (Names{"alpha", "beta"}));
    EXPECT_EQ(ModulesOfVideo(true, true, &ipe), Names{"alpha"});
    EXPECT_EQ(ModulesOfVideo(true, true, &ife), Names{});
}

TEST_F(ModeTreeTest, GetModulesTellsOwnModulesFromSharedOnes)
{
    TuningFileMaker maker;
    const UINT32    root  = maker.Table();
    const UINT32    video = maker.Mode(root, Usecase, 2);
    const UINT32    alpha = maker.Alpha(root, 1);
    maker.Same("alpha", video, alpha);
    maker.Beta(video, 2);
    ASSERT_TRUE(LoadBuffer(m_manager, maker.Build()));

    EXPECT_EQ(ModulesOfVideo(true, false), Names{"beta"});
    EXPECT_EQ(ModulesOfVideo(false, true), Names{"alpha"});
    PList<ParameterModule*> modules;
    m_manager.GetModules(0, modules, Branch({{Usecase, 9}}).data(), 2, true, true, nullptr);
    EXPECT_EQ(modules.Count(), 0u);
}

TEST_F(ModeTreeTest, ModesAreFoundByIdAndByPath)
{
    ASSERT_TRUE(LoadBuffer(m_manager, MakeFamily()));
    ModeEntry* pNight = m_manager.GetModeEntry(BYTE(0), "0.0|1.1|2.2|5.5");
    ASSERT_NE(pNight, nullptr);
    EXPECT_EQ(m_manager.GetModeEntry(UINT32(3))->Entry, pNight);
    CHAR path[ModeEntry::MaxPathText];
    pNight->GetModePath(path, sizeof(path));
    EXPECT_STREQ(path, "0.0|1.1|2.2|5.5");
    pNight->GetModePath(path, 8);
    EXPECT_STREQ(path, "0.0|1.1");  // whole items only

    EXPECT_EQ(m_manager.GetModeEntry(BYTE(0), "0.0|1.1|2.9"), nullptr);
    EXPECT_EQ(m_manager.GetModeEntry(BYTE(0), "0.0|1.x"), nullptr);
    EXPECT_EQ(m_manager.GetModeEntry(BYTE(0), "0.0|1.70000"), nullptr);
    EXPECT_EQ(m_manager.GetModeEntry(BYTE(0), ""), nullptr);
    EXPECT_EQ(m_manager.GetModeEntry(BYTE(1), "0.0"), nullptr);
    EXPECT_EQ(m_manager.GetModeEntry(UINT32(5)), nullptr);
    EXPECT_EQ(m_manager.GetModeEntry(UINT32(0x01000000)), nullptr);
}

TEST_F(ModeTreeTest, RowsThatContradictThemselvesRefuseTheFile)
{
    const std::tuple<UINT32, UINT32, UINT32, const CHAR*> cases[] = {
        {0x01000001, 0, 0xFFFFFFFF, "ReadModeSection: Index from Mode ID does not match expected"},
        {1, 0x01000000, 0xFFFFFFFF, "ReadModeSection: Mode Table Index != Parent Table Index"},
        {1, 0, 0x02000000, "ReadModeSection: Mode Table Index != Link Table Index"},
        {2, 0, 0xFFFFFFFF, "ReadModeSection: Mode ID exceeds mode count"},
        {1, 2, 0xFFFFFFFF, "ReadModeSection: Parent Mode ID exceeds mode count"},
        {1, 0, 2, "ReadModeSection: Link Mode ID exceeds mode count"},
    };
    for (const auto& [id, parent, link, pError] : cases)
    {
        TuningFileMaker maker;
        const UINT32    root = maker.Table("main");
        maker.Mode(root, Usecase, 1);
        maker.Alpha(root, 1);
        ParameterFile file = maker.Build();
        const size_t  row  = file.Section(BinaryFileFormat::ModeTableSection).Offset + 128 + 24;
        file.Put(row, id);
        file.Put(row + 12, parent);
        file.Put(row + 16, link);
        file.Seal();
        EXPECT_FALSE(LoadBuffer(m_manager, file)) << pError;
        EXPECT_EQ(m_manager.GetErrorText(), pError);
        EXPECT_EQ(m_manager.GetModeTableCount(), 0u);
    }
}

TEST_F(ModeTreeTest, ACleanLastTableExcusesAnEarlierOne)
{
    TuningFileMaker maker;
    const UINT32    first  = maker.Table("first");
    const UINT32    video  = maker.Mode(first, Usecase, 2);
    const UINT32    second = maker.Table("second");
    maker.Alpha(first, 1);
    maker.Alpha(second, 2);
    ParameterFile good = maker.Build();
    const size_t  row  = good.Section(BinaryFileFormat::ModeTableSection).Offset + 128 + 24;
    good.Put<UINT32>(row + 12, 77);  // parent of the use case
    good.Seal();
    ASSERT_TRUE(LoadBuffer(m_manager, good)) << log.Text();
    EXPECT_EQ(m_manager.GetModeEntry(video), nullptr);
    EXPECT_EQ(AlphaValue(m_manager, {}), 1);

    // A module of the row that was left out refuses the file after all.
    maker.Beta(video, 3);
    ParameterFile bad = maker.Build();
    bad.Put<UINT32>(bad.Section(BinaryFileFormat::ModeTableSection).Offset + 128 + 24 + 12, 77);
    bad.Seal();
    ParameterSetManager other("cam", smallschema::Modules, Verbose());
    EXPECT_FALSE(LoadBuffer(other, bad));
    EXPECT_EQ(other.GetModeTableCount(), 0u);
    EXPECT_NE(other.GetErrorText().find("Name: beta, Major: 10, Minor: 0, Patch: 0, Mode: 1"), std::string::npos)
        << other.GetErrorText();
}

TEST_F(ModeTreeTest, ASectionOfOddSizeGivesItsIndexToTheNext)
{
    TuningFileMaker maker;
    maker.builder.AddModeTable("odd");
    maker.Table("real");
    ParameterFile file = maker.Build();
    // The table "real" was made as number 1 and has to become number 0, so its only row is changed with the size.
    const auto [first, last] = file.sections.equal_range(BinaryFileFormat::ModeTableSection);
    const SectionInfo real   = std::next(first)->second;
    file.Put<UINT32>(real.Offset + 128, 0);
    file.Put<UINT32>(real.Offset + 128 + 12, 0);
    file.Put<UINT32>(file.sectionTableOffset + 8, 127);
    file.Seal();
    ASSERT_TRUE(LoadBuffer(m_manager, file)) << log.Text();
    EXPECT_TRUE(log.Has("ReadModeSection: ModeSize 127 does not match expected size 128\n"));
    PList<const CHAR*> names;
    m_manager.GetModeTableNames(names);
    ASSERT_EQ(names.Count(), 1u);
    EXPECT_STREQ(names[0], "real");
}

TEST_F(ModeTreeTest, WithoutModeSectionsThereIsDefaultAlone)
{
    TuningFileMaker maker;
    maker.Alpha(0, 9);
    ASSERT_TRUE(LoadBuffer(m_manager, maker.Build())) << log.Text();
    EXPECT_EQ(AlphaValue(m_manager, Branch({{Sensor, 1}})), 9);
}

TEST_F(ModeTreeTest, TreesOfAnyShapeAreSurvived)
{
    // A chain of many levels, whose last entries link into a circle, and an entry whose parent stands behind it.
    TuningFileMaker  maker;
    constexpr UINT32 Levels = 30000;
    UINT32           parent = maker.Table();
    maker.Alpha(parent, 1);
    for (UINT32 level = 1; level < Levels; ++level)
    {
        parent = maker.Mode(parent, Scene, static_cast<UINT16>(level), (level % 2 == 0) ? level + 1 : level - 1);
    }
    maker.Alpha(parent, 2);
    maker.Mode(Levels + 1, Usecase, 1);
    maker.Mode(Levels, Usecase, 2);
    ParameterFile file = maker.Build();
    ASSERT_TRUE(LoadBuffer(m_manager, file)) << log.Text();
    CHAR path[ModeEntry::MaxPathText];
    m_manager.GetModeEntry(parent)->Entry->GetModePath(path, sizeof(path));
    EXPECT_LT(std::strlen(path), sizeof(path));
    std::vector<TuningMode> branch = Branch({});
    for (UINT32 level = 1; level < Levels; ++level)
    {
        branch.push_back(Branch({{Scene, static_cast<UINT16>(level)}})[1]);
    }
    EXPECT_EQ(AlphaValue(m_manager, branch), 1);
}
