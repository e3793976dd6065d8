#include "tests/parameters/setmanagerfixture.h"

#include <thread>

#include "parameters/parameterparserinfo.h"

namespace
{

using enum ModeType;

class ValueAccessTest : public SetManagerTest
{
protected:
    /// Default, use case 2 with a scene 5 that shares its alpha, and use cases 10 to 9 + count. Each alpha has ten
    /// times its use case's number, or 1.
    static ParameterFile MakeModes(UINT16 count)
    {
        TuningFileMaker maker;
        const UINT32    root  = maker.Table("main");
        const UINT32    video = maker.Mode(root, Usecase, 2);
        const UINT32    night = maker.Mode(video, Scene, 5);
        maker.Alpha(root, 1);
        maker.Beta(root, 2);
        maker.builder.AddModule("plain", {3, 4, 1}, root, {1});
        maker.Same("alpha", night, maker.Alpha(video, 20));
        maker.Beta(night, 205);
        for (UINT16 usecase = 10; usecase < 10 + count; ++usecase)
        {
            maker.AlphaMode(root, Usecase, usecase, 10 * usecase);
        }
        maker.Beta(maker.Table("side"), 77);
        return maker.Build();
    }

    /// "-" in front of what a false answer left.
    static std::string Text(ParameterSetManager& rManager, const CHAR* pPath, const CHAR* pModule, const CHAR* pMembers,
                            UINT32 size = 256, BYTE table = 0)
    {
        CHAR       text[256] = "#";
        const bool isRead    = rManager.GetValue(table, pPath, pModule, pMembers, text, size);
        return (isRead ? "" : "-") + std::string(text);
    }

    static std::string Children(ParameterSetManager& rManager, const CHAR* pPath, UINT32 size = 256, BYTE table = 0)
    {
        CHAR         text[256] = "#";
        const UINT32 used      = rManager.GetChildModes(table, pPath, text, size);
        EXPECT_EQ(used, std::strlen(text) + 1);
        return text;
    }

    static std::string Active(ParameterSetManager& rManager, UINT32 size = 256)
    {
        CHAR text[256] = "#";
        EXPECT_TRUE(rManager.GetActiveModes(0, text, size));
        return text;
    }

    static VOID UseMany(ParameterSetManager& rManager)
    {
        for (UINT16 usecase = 10; usecase < 16; ++usecase)
        {
            LoadMode(rManager, Branch({{Usecase, usecase}}));
        }
    }

    const std::vector<TuningMode> m_video = Branch({{Usecase, 2}});
    const std::vector<TuningMode> m_night = Branch({{Usecase, 2}, {Scene, 5}});
};

}  // namespace

TEST_F(ValueAccessTest, ModulesAnswerByPathAndMember)
{
    ParameterSetManager&                                                 manager = Open(MakeModes(0));
    const std::tuple<const CHAR*, const CHAR*, const CHAR*, const CHAR*> cases[] = {
        {"0.0|2.2", "alpha", "value", "value=20"},
        {"0.0", "alpha", "value", "value=1"},
        {"0.0|2.9", "alpha", "value", "value=1"},  // no such mode: Default stands in
        {"0.0|2.2|5.5", "beta", "value", "value=205"},
        {"0|2.2", "alpha", "value,steps", "value=20;steps=20.5,20.25"},
        {"0|2.2", "alpha", "nothing,value", "value=20"},
        {"0|2.2", "alpha", "value,nothing", "-value=20"},
        {"0|2.2", "alpha", "steps[1],,value", "steps[1]=20.25;value=20"},
        {"0|2.2", "alpha", nullptr, "value=20;steps=20.5,20.25"},
        {"0|2.2", "alpha", "", "value=20;steps=20.5,20.25"},
        {"0|2.2", "alpha.module_version", nullptr, "major_revision=0;minor_revision=0;incr_revision=0"},
        {"0|2.2", "alpha.steps[1]", nullptr, "steps[1]=20.25"},
        {"0|2.2", "alpha.module_version.major_revision", nullptr, "major_revision=0"},
        {"0|2.2", "alpha.nothing", nullptr, "-"},
        {"0|2.2", "alpha.nothing", "value", "-"},
        {"0|2.2", "plain", nullptr, "-"},
        {"0|2.2", "gamma", "value", "-"},
        {"0|2.2", "", "value", "-"},
        {"0|2.2", nullptr, "value", "-"},
        {"0|2.x", "alpha", "value", "-"},
        {"", "alpha", "value", "-"},
        {nullptr, "alpha", "value", "-"},
    };
    for (const auto& [pPath, pModule, pMembers, pText] : cases)
    {
        EXPECT_EQ(Text(manager, pPath, pModule, pMembers), pText);
    }
    EXPECT_EQ(Text(manager, "0|2.2", "alpha", "value,steps", 12), "value=20;st");
    EXPECT_EQ(Text(manager, "0|2.2", "alpha", nullptr, 12), "value=20;st");
    EXPECT_EQ(Text(manager, "0|2.2", "alpha", "steps,nothing", 4), "-ste") << "cut or not, the last one is the answer";
    EXPECT_FALSE(manager.GetValue(0, "0", "alpha", "value", nullptr, 8));
    EXPECT_EQ(Text(manager, "0", (std::string(200, 'm') + ".value").c_str(), "value"), "-");
    EXPECT_EQ(References(manager, m_video), 0u);
    EXPECT_EQ(References(manager, {}), 0u);

    PList<ParameterParserInfo> list;
    EXPECT_TRUE(manager.GetInfo(0, "0|2.2", "alpha", list));
    ASSERT_EQ(list.Count(), 4u);
    EXPECT_STREQ(list.ToArray()[2].Value, "20");
    EXPECT_EQ(list.ToArray()[3].Count, 2u);
    EXPECT_TRUE(manager.GetInfo(0, "0|2.2", "alpha.", list));
    EXPECT_TRUE(manager.GetInfo(0, "0|2.2", "alpha.module_version", list));
    EXPECT_EQ(list.Count(), 4u + 4u + 3u);
    EXPECT_FALSE(manager.GetInfo(0, "0|2.2", "plain", list));
    EXPECT_FALSE(manager.GetInfo(0, "0|2.2", nullptr, list));
    EXPECT_FALSE(manager.GetInfo(0, "", "alpha", list));
    EXPECT_TRUE(log.Has("GetInfo called with null or empty modeBranch\n"));
    EXPECT_EQ(References(manager, m_video), 0u);
}

TEST_F(ValueAccessTest, AChangeShowsInTheRecordAndInItsID)
{
    ParameterSetManager&    manager  = Open(MakeModes(0));
    smallschema::AlphaType* pRecord  = Alpha(manager, m_video);
    const UINT32            id       = pRecord->SymbolTableID;
    const UINT32            modified = TableModule::FromRecord(pRecord)->GetModified();
    ASSERT_LT(id, 0x1000000u);
    EXPECT_TRUE(manager.SetValue(0, "0.0|2.2", "alpha", "value", "31"));
    EXPECT_EQ(pRecord->value, 31);
    EXPECT_EQ(pRecord->SymbolTableID, id + 0x1000000u);
    EXPECT_EQ(TableModule::FromRecord(pRecord)->GetModified(), modified + 1);
    EXPECT_EQ(manager.GetSetValueCount(), 1u);

    for (const auto& [pModule, pName, pValue] :
         {std::tuple{"alpha", "value", "x"}, {"alpha", "nothing", "1"}, {"plain", "value", "1"}})
    {
        log.Clear();
        EXPECT_FALSE(manager.SetValue(0, "0.0|2.2", pModule, pName, pValue));
        EXPECT_TRUE(log.Has("Vernier SetValues failed: Variable not found: \n", "E"));
    }
    EXPECT_FALSE(manager.SetValue(0, "0.0|2.2", "gamma", "value", "1"));
    EXPECT_TRUE(log.Has("Vernier SetValues failed: Module not found: \n", "E"));
    EXPECT_FALSE(manager.SetValue(0, "0.0|2.2", "", "value", "1"));
    EXPECT_FALSE(manager.SetValue(0, "0.0|2.2", nullptr, "value", "1"));
    EXPECT_FALSE(manager.SetValue(0, "0.0|2.2", "alpha", nullptr, "1"));
    EXPECT_FALSE(manager.SetValue(0, "0.0|2.2", "alpha", "value", nullptr));
    EXPECT_FALSE(manager.SetValue(0, "", "alpha", "value", "1"));
    EXPECT_EQ(pRecord->SymbolTableID, id + 0x1000000u);
    EXPECT_EQ(manager.GetSetValueCount(), 1u);

    // The count of changes has a byte of its own: it never reaches the ID, and 0 stays for the record of the file.
    for (UINT32 change = 2; change <= 255; ++change)
    {
        ASSERT_TRUE(manager.SetValue(0, "0.0|2.2", "alpha.module_version", "minor_revision", "4"));
    }
    EXPECT_EQ(pRecord->SymbolTableID, id + 0xFF000000u);
    EXPECT_EQ(pRecord->module_version.minor_revision, 4);
    EXPECT_TRUE(manager.SetValue(0, "0.0|2.2", "alpha", "steps[1]", "0.5"));
    EXPECT_EQ(pRecord->SymbolTableID, id + 0x1000000u);
    EXPECT_EQ(pRecord->steps[1], 0.5f);
}

TEST_F(ValueAccessTest, AnEditOfASharedArrayIsOneOfAllRecordsThatHaveIt)
{
    TuningFileMaker maker;
    maker.writer.m_sharesData = true;
    const UINT32 root         = maker.Table();
    maker.Alpha(root, 1);
    maker.AlphaMode(root, Usecase, 2, 1);
    maker.AlphaMode(root, Usecase, 3, 3);
    ParameterSetManager&    manager   = Open(maker.Build());
    smallschema::AlphaType* records[] = {Alpha(manager, {}), Alpha(manager, m_video),
                                         Alpha(manager, Branch({{Usecase, 3}}))};
    ASSERT_EQ(records[0]->steps, records[1]->steps);
    ASSERT_NE(records[0]->steps, records[2]->steps);

    const std::pair<const CHAR*, std::array<bool, 3>> edits[] = {{"steps[1]", {true, true, false}},
                                                                 {"value", {false, true, false}}};
    for (const auto& [pName, isNew] : edits)
    {
        UINT64 stamps[3];
        std::ranges::transform(records, stamps, TableModule::ContentStamp);
        const UINT32 id = records[0]->SymbolTableID;
        EXPECT_TRUE(manager.SetValue(0, "0.0|2.2", "alpha", pName, "7"));
        for (size_t index = 0; index < std::size(records); ++index)
        {
            EXPECT_EQ(TableModule::ContentStamp(records[index]) != stamps[index], isNew[index])
                << pName << " " << index;
        }
        EXPECT_EQ(records[0]->SymbolTableID, id) << "that of the edited record alone counts";
    }
    EXPECT_EQ(records[0]->steps[1], 7.0f);
}

TEST_F(ValueAccessTest, AnEditedModeIsNeverEvicted)
{
    ParameterSetManager& manager = Open(MakeModes(6), 5);
    EXPECT_EQ(Text(manager, "0|2.2", "alpha", "value"), "value=20");
    UseMany(manager);
    EXPECT_FALSE(Mode(manager, m_video)->Loaded) << "reading alone does not keep a mode";

    // Through the mode that shares the module: its owner is the one to keep.
    ASSERT_TRUE(manager.SetValue(0, "0|2.2|5.5", "alpha", "value", "21"));
    EXPECT_TRUE(Mode(manager, m_video)->Preserve);
    EXPECT_FALSE(Mode(manager, m_night)->Preserve);
    EXPECT_FALSE(Mode(manager, {})->Table->ActiveModes.Contains(Mode(manager, m_video)));
    EXPECT_EQ(References(manager, m_video), 0u);
    UseMany(manager);
    EXPECT_FALSE(manager.GetModeEntry(0, "0|2.2|5.5")->Loaded);
    UnloadMode(manager, m_video);
    EXPECT_TRUE(Mode(manager, m_video)->Loaded);
    EXPECT_EQ(AlphaValue(manager, m_video), 21);
    EXPECT_EQ(AlphaValue(manager, m_night), 21);
    EXPECT_EQ(Alpha(manager, m_video), Alpha(manager, m_night));
}

TEST_F(ValueAccessTest, EachTableAnswersForItself)
{
    TuningFileMaker maker;
    maker.Beta(maker.Table("main"), 1);
    const UINT32 side = maker.Table("side");
    maker.Beta(side, 2);
    maker.Mode(side, Effect, 1);
    ParameterSetManager& main = Open(maker.Build());
    ParameterSetManager  derived(&main, 1);
    EXPECT_EQ(&derived.GetDataMutex(), &main.GetDataMutex());
    EXPECT_EQ(Text(derived, "0", "beta", "value"), "value=2");
    EXPECT_TRUE(derived.SetValue(0, "0", "beta", "value", "3"));
    EXPECT_EQ(Text(main, "0", "beta", "value"), "value=1");
    EXPECT_EQ(Text(main, "0", "beta", "value", 64, 1), "value=3");
    EXPECT_EQ(derived.GetSetValueCount(), 1u);
    EXPECT_EQ(Children(derived, ""), "Effect.Mono");
    PList<ParameterParserInfo> list;
    EXPECT_TRUE(derived.GetInfo(7, "0", "beta", list));
    CHAR text[16];
    EXPECT_TRUE(derived.GetActiveModes(7, text, sizeof(text)));

    EXPECT_EQ(Text(main, "0", "beta", nullptr, 64, 2), "-");
    EXPECT_FALSE(main.SetValue(2, "0", "beta", "value", "3"));
    EXPECT_FALSE(main.GetInfo(2, "0", "beta", list));
    EXPECT_FALSE(main.GetActiveModes(2, text, sizeof(text)));
    EXPECT_EQ(Children(main, "0", 64, 2), "");
    EXPECT_TRUE(log.Has("GetChildModes called with mode table index (2) >= mode table count (2)\n"));
    EXPECT_FALSE(main.GetActiveModes(0, nullptr, 8));
    EXPECT_EQ(main.GetChildModes(0, "0", text, 0), 0u);
}

TEST_F(ValueAccessTest, ChildrenAreListedByName)
{
    TuningFileMaker maker;
    const UINT32    root   = maker.Table();
    const UINT32    sensor = maker.Mode(root, Sensor, 3);
    const UINT32    video  = maker.Mode(root, Usecase, 2);
    maker.Mode(root, Usecase, 99);
    maker.Mode(sensor, Usecase, 3, video);
    maker.Mode(video, Scene, 5);
    maker.Mode(video, Effect, 0);
    maker.Alpha(root, 1);
    ParameterSetManager& manager = OpenBuffer(maker.Build());
    EXPECT_EQ(Children(manager, "0.0"), "Sensor.3,Usecase.Video,Usecase.99");
    EXPECT_EQ(Children(manager, "0.0|2.2"), "Scene.Night,Effect.None");
    EXPECT_EQ(Children(manager, "0.0|1.3|2.3"), "Scene.Night,Effect.None") << "a link shows its target's";
    EXPECT_EQ(Children(manager, "0.0|2.2|5.5"), "");
    for (const CHAR* pPath : {"", "0.0|2.7", "x", static_cast<const CHAR*>(nullptr)})
    {
        EXPECT_EQ(Children(manager, pPath), Children(manager, "0.0")) << "the root stands in";
    }
    EXPECT_EQ(Children(manager, "0.0", 22), "Sensor.3");
    EXPECT_TRUE(log.Has("Failed to write 14 bytes to binary offset 8, length 22\n", "E")) << log.Text();
    EXPECT_EQ(Children(manager, "0.0", 23), "Sensor.3,Usecase.Video");
}

TEST_F(ValueAccessTest, ActiveModesAreThoseThatFramesHold)
{
    ParameterSetManager& manager = Open(MakeModes(6));
    EXPECT_EQ(Active(manager), "");
    EXPECT_EQ(Text(manager, "0|2.2", "alpha", "value"), "value=20");
    EXPECT_EQ(Active(manager), "") << "a tool that reads is not a frame";

    smallschema::AlphaType* pVideo = Alpha(manager, m_video);
    EXPECT_EQ(Active(manager), "Default|Usecase.Video");
    BetaValue(manager, m_night);
    EXPECT_EQ(Active(manager), "Default|Usecase.Video|Scene.Night") << "the mode above goes without saying";
    Alpha(manager, m_video);
    EXPECT_EQ(Active(manager), "Default|Usecase.Video|Scene.Night");
    Alpha(manager, Branch({{Usecase, 12}}));
    Alpha(manager, Branch({{Usecase, 10}}));
    EXPECT_EQ(Active(manager), "Default|Usecase.10;Default|Usecase.12;Default|Usecase.Video|Scene.Night");
    EXPECT_EQ(Active(manager, 20), "Default|Usecase.10;");
    for (const UINT16 usecase : {11, 13, 14})
    {
        Alpha(manager, Branch({{Usecase, usecase}}));
    }
    EXPECT_EQ(Active(manager), "Default|Usecase.14;Default|Usecase.13;Default|Usecase.11;Default|Usecase.10;"
                               "Default|Usecase.12");

    // An edited mode counts while those used after it are in use: behind others it may just be kept.
    Release(pVideo);
    ASSERT_TRUE(manager.SetValue(0, "0|2.14", "alpha", "value", "1"));
    Alpha(manager, Branch({{Usecase, 14}}));
    EXPECT_EQ(Active(manager).substr(0, 19), "Default|Usecase.14;");
    LoadMode(manager, Branch({{Usecase, 15}}));
    EXPECT_EQ(Active(manager).substr(0, 19), "Default|Usecase.13;");
}

TEST_F(ValueAccessTest, TextAccessRunsBesideFramesAndReloads)
{
    ParameterSetManager& manager = Open(MakeModes(6), 5);
    IParameterDataAPI&   rData   = manager;

    const auto access = [&](UINT32 rounds)
    {
        UINT32 wrong = 0;
        for (UINT32 round = 0; round < rounds; ++round)
        {
            CHAR                       text[128];
            PList<ParameterParserInfo> list;
            PList<const CHAR*>         names;
            const std::string          path = "0.0|2." + std::to_string(10 + round % 6);
            wrong += rData.GetValue(0, path.c_str(), "alpha", nullptr, text, sizeof(text)) ? 0 : 1;
            wrong += rData.GetInfo(0, path.c_str(), "alpha", list) ? 0 : 1;
            wrong += rData.SetValue(0, "0.0|2.2|5.5", "beta", "value", "206") ? 0 : 1;  // frames here read no beta
            wrong += rData.GetActiveModes(0, text, sizeof(text)) ? 0 : 1;
            wrong += rData.GetChildModes(0, "0.0", text, sizeof(text)) > 1 ? 0 : 1;
            wrong += (rData.GetModeTableCount() == 2) ? 0 : 1;
            const std::lock_guard<ParameterMutex> lock(rData.GetDataMutex());
            rData.GetModeTableNames(names);
            wrong += (names.Count() == 2 && std::string(names[1]) == "side") ? 0 : 1;
        }
        return wrong;
    };
    UINT32                  wrong = 0;
    std::jthread            tool([&] { wrong = access(300); });
    smallschema::AlphaType* pRecord = nullptr;
    for (UINT16 frame = 0; frame < 600; ++frame)
    {
        pRecord = Alpha(manager, Branch({{Usecase, static_cast<UINT16>(10 + frame * 7 % 6)}}), pRecord);
        ASSERT_NE(pRecord, nullptr);
        EXPECT_EQ(pRecord->value % 10, 0);
    }
    Release(pRecord);
    tool.join();
    EXPECT_EQ(wrong, 0u);

    tool = std::jthread([&] { wrong = access(60); });
    for (UINT32 reload = 0; reload < 10; ++reload)
    {
        EXPECT_TRUE(manager.ReloadBinaryParameters(false));
    }
    tool.join();
    EXPECT_EQ(wrong, 0u);
    EXPECT_STREQ(manager.GetLoggingIdentifier(), "cam;BinaryTag=test tuning");
}
