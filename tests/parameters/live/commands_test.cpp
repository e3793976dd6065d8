/// The commands of the live tuning service, byte for byte, as a tool that knows nothing of this code would see them.
#include <cstdio>

#include "parameters/live/parametervernierworker.h"
#include "tests/parameters/live/commandsfixture.h"

TEST_F(LiveCommandsTest, DeviceInfoTellsVersionIdAndTables)
{
    Load();
    const std::string name = m_manager->GetLoggingIdentifier();
    ASSERT_EQ(name.substr(0, 4), "cam;");
    const UINT16 length = static_cast<UINT16>(name.size() + 17);
    const Bytes  header = Number<UINT16>(19286) + Number<UINT16>(0) + Number(length) + Bytes({2, 0}) + Number(ID());
    EXPECT_EQ(Ask(Request(0)), header + Text(name));

    // A packet of three bytes can name no command and counts as this one.
    EXPECT_EQ(PayloadOf(Ask(WithLength(Request(7), 3)), 16), name);
    m_client.reset();
    Load(true);
    EXPECT_EQ(PayloadOf(Ask(Request(0)), 16), std::string(m_manager->GetLoggingIdentifier()) + ":main,second");
}

TEST_F(LiveCommandsTest, AStoreWithoutNameIsNamedByItsAddress)
{
    const ParameterSetManager::Options options;
    ParameterSetManager                unnamed(nullptr, smallschema::Modules, options);
    ParameterVernierWorker             worker(&unnamed);
    worker.Start();
    worker.Start();  // does nothing
    m_client.emplace(worker.Port());
    CHAR address[24];
    std::snprintf(address, sizeof(address), "0x%016lx",
                  reinterpret_cast<unsigned long>(static_cast<IParameterDataAPI*>(&unnamed)));
    EXPECT_EQ(PayloadOf(Ask(Request(0)), 16), address);
    worker.Stop();
    EXPECT_EQ(worker.Port(), 0);
}

TEST_F(LiveCommandsTest, ActiveModesAreThoseThatFramesUse)
{
    Load();
    EXPECT_EQ(Ask(Request(1)), Request(1, Text(""), ID()));
    const std::vector<TuningMode> video = Branch({{ModeType::Usecase, 2}});
    ASSERT_NE(m_manager->GetModuleInternal(0, "alpha", video.data(), 2, nullptr), nullptr);
    EXPECT_EQ(AskText(1), "Default|Usecase.Video");
}

TEST_F(LiveCommandsTest, ControlValuesComeInTheOrderOfTheirIds)
{
    Load();
    EXPECT_EQ(Ask(Request(2)), Request(2, Text(""), ID()));
    m_manager->SetControlValue({7, 1.5});
    m_manager->SetControlValue({3, -2.0});
    m_manager->SetControlValue({7, 0.25});
    EXPECT_EQ(AskText(2), "3=-2.000000,7=0.250000");

    // Of values that take 312 bytes each, 13 fit; the short one behind them does too.
    PList<ParameterCTValue> many;
    for (UINT32 id = 10; id < 30; ++id)
    {
        many.Add({id, 1e300});
    }
    many.Add({30, 1.0});
    m_manager->SetControlValues(many);
    const std::string text = AskText(2);
    EXPECT_EQ(std::count(text.begin(), text.end(), '='), 14);
    EXPECT_TRUE(text.ends_with(",30=1.000000"));
    EXPECT_LT(text.size(), 4096u - 14u);
}

TEST_F(LiveCommandsTest, ModesListsChildrenWithTenZerosBehind)
{
    Load();
    const std::string children = "Usecase.Video,Usecase.Preview,Sensor.3";
    const auto        expected = [&](const std::string& rText) {
        return WithLength(Request(3, Text(rText), ID(), 77), static_cast<UINT16>(18 + rText.size() + 1 + 10)) +
               Bytes(10);
    };
    EXPECT_EQ(Ask(Request(3, Text("Default"), ID(), 77)), expected(children));
    EXPECT_EQ(Ask(Request(3, Text("Default|Usecase.Video"), ID(), 77)), expected(""));
    EXPECT_EQ(Ask(Request(3, Text("default|usecase.nowhere"), ID(), 77)), expected(""))
        << "an unknown name counts as 0";
    EXPECT_FALSE(m_log.Has("Vernier ID does not match"));
    EXPECT_EQ(Ask(Request(3, Text(""), 5, 77)), expected(children)) << "no such mode: the root's children";
    EXPECT_TRUE(IsLogged("Request packet Vernier ID does not match, Command: Modes(3): Expected: " +
                         std::to_string(ID()) + ", Actual: 5"));
}

TEST_F(LiveCommandsTest, InfoDescribesMembersAndGetValuesReadsThem)
{
    Load();
    constexpr UINT16                                   Info    = 4;
    constexpr UINT16                                   Get     = 5;
    const std::tuple<UINT16, const CHAR*, const CHAR*> cases[] = {
        {Info, "Default|Usecase.Video:alpha",
         "module_version,Structure;parameter_version,Structure;value=20,Int32;steps,Float,2"},
        {Info, "Default:alpha.module_version", "major_revision=0,Int32;minor_revision=0,Int32;incr_revision=0,Int32"},
        {Info, "Default:nothing", ""},
        {Info, "Default", ""},
        {Get, "Default|Usecase.Video:alpha:value,steps[1]", "value=20;steps[1]=20.25"},
        {Get, "Default|Usecase.Video:alpha", "value=20;steps=20.5,20.25"},
        {Get, "Default|Usecase.Video:alpha:", "value=20;steps=20.5,20.25"},
        {Get, "Default:alpha.module_version:major_revision", "major_revision=0"},
        {Get, "Default|Usecase.Preview:alpha:value", "value=1"},  // inherited
        {Get, "Default", ""},
        {Get, "", ""},
        {Get, ":", ""},
        {Get, "::", ""}};
    for (const auto& [command, pPath, pAnswer] : cases)
    {
        EXPECT_EQ(AskText(command, pPath), pAnswer) << command << " " << pPath;
    }
    // Too short for a request ID: answered with zeros in its place.
    EXPECT_EQ(Ask(WithLength(Request(5, {}, 9, 0x0706), 16)), Request(5, Text(""), 9, 0x0706));
    EXPECT_TRUE(IsLogged("Failed to read 4 bytes from binary file offset 14, length 16"));
}

TEST_F(LiveCommandsTest, SetValuesAnswersWhatItReadsBack)
{
    Load();
    const std::vector<TuningMode> video = Branch({{ModeType::Usecase, 2}});
    const std::vector<TuningMode> root  = Branch({});
    const auto                    value = [&](const std::vector<TuningMode>& rBranch)
    {
        auto* pRecord = static_cast<smallschema::AlphaType*>(m_manager->GetModuleRecord(
            "alpha", namehash::OfName("alpha"), rBranch.data(), static_cast<UINT32>(rBranch.size()), nullptr));
        return std::pair(pRecord->value, pRecord->SymbolTableID >> 24);
    };
    EXPECT_EQ(AskText(6, "Default|Usecase.Video:alpha:value=-7"), "value=-7");
    EXPECT_EQ(value(video), std::pair(-7, 1u));
    EXPECT_EQ(value(root), std::pair(1, 0u));

    // Items without a value are passed over, those that fail are left out, and the others are set.
    EXPECT_EQ(AskText(6, "Default|Usecase.Video:alpha:value;value=;nothing=3;steps[1]=2.5;value=1e3;;steps[0]=9"),
              "steps[1]=2.5;steps[0]=9.0");
    EXPECT_EQ(value(video), std::pair(-7, 3u));
    EXPECT_TRUE(IsLogged("Vernier SetValues failed: Mode: 0|2.2, Value: nothing=3"));
    EXPECT_TRUE(IsLogged("Vernier command succeeded: SetValues(6), ID: 16909060, Payload: steps[1]=2.5;steps[0]=9.0"));
    EXPECT_EQ(AskText(6, "Default:alpha.module_version:major_revision=4"), "major_revision=4");

    EXPECT_EQ(AskText(6, "Default:alpha"), "");
    EXPECT_TRUE(IsLogged("Vernier SetValues failed: Failed to read mode"));
    EXPECT_EQ(AskText(6, "Default:nothing:value=3"), "");
    EXPECT_TRUE(IsLogged("Vernier command failed: SetValues(6)"));
}

TEST_F(LiveCommandsTest, CustomCommandsAreTheHosts)
{
    Load();
    EXPECT_EQ(Ask(Request(8, Bytes{1}, 6)), Request(8, Number<UINT16>(0), 6))
        << "nobody serves them: result 0, no data";

    TestHandler handler;
    handler.output = {0xFF, 0, 0x10};
    m_manager->SetCustomHandler(&handler);
    EXPECT_EQ(Ask(Request(8, Bytes{9, 0, 8}, 6)), Request(8, Number<UINT16>(0xBEEF) + handler.output, 6));
    EXPECT_EQ(handler.received, (Bytes{9, 0, 8}));
    EXPECT_TRUE(IsLogged("Custom(8), ID: 16909060, Payload: FF0010..."));

    handler.output.assign(handler.room, 'x');
    const Bytes largest = Ask(Request(8, Bytes{1}));
    EXPECT_EQ(largest.size(), 65534u);
    m_manager->SetCustomHandler(nullptr);
}

TEST_F(LiveCommandsTest, TheModeTableIsChosenByIndex)
{
    Load(true);
    EXPECT_EQ(AskText(5, "Default:alpha:value"), "value=1");
    EXPECT_EQ(AskText(9, "1"), "1");
    EXPECT_EQ(AskText(5, "Default:alpha:value"), "value=300");
    for (const CHAR* pNone : {"2", "-1", "none"})
    {
        EXPECT_EQ(AskText(9, pNone), "1");
    }
    EXPECT_EQ(PayloadOf(Ask(Request(9)), 14), "1") << "a request without index asks for it";
    EXPECT_EQ(AskText(9, "0"), "0");
}

TEST_F(LiveCommandsTest, HostsCanTakeRequestsApart)
{
    Load();
    UINT16      command = 0;
    UINT64      id      = 0;
    UINT32      request = 0;
    UINT32      size    = 0;
    const BYTE* pData   = nullptr;
    const auto  parse   = [&](const ParameterSetManager& rManager, const Bytes& rPacket, UINT32 length)
    {
        size = 0;
        return rManager.ParseVernierRequest(rPacket.data(), length, command, id, request, pData, size);
    };
    const Bytes               get = Request(5, Text("a:b"), 99, 12);
    ParameterSetManager       derived(&*m_manager, 0);
    const ParameterSetManager offline("off", smallschema::Modules, {});
    for (const ParameterSetManager* pManager : {&*m_manager, &derived})
    {
        ASSERT_TRUE(parse(*pManager, get, 22));
        EXPECT_EQ(std::tie(command, id, request, size), std::make_tuple(UINT16{5}, UINT64{99}, 12u, 4u));
        EXPECT_EQ(pData, get.data() + 18);
    }
    EXPECT_FALSE(parse(*m_manager, get, 18));
    EXPECT_FALSE(parse(*m_manager, get, 13));
    EXPECT_TRUE(IsLogged("Failed to read 8 bytes from binary file offset 6, length 13"));
    EXPECT_FALSE(parse(*m_manager, get, 6));
    EXPECT_TRUE(parse(*m_manager, Request(1), 14));
    Bytes foreign = get;
    foreign[0]    = 0;
    EXPECT_FALSE(parse(*m_manager, foreign, 22));
    EXPECT_FALSE(parse(offline, get, 22));
    derived.SetLiveTuningAutostart(false);
    EXPECT_FALSE(parse(*m_manager, get, 22));
}

TEST_F(LiveCommandsTest, HostsCanBuildAnswersThatToolsRead)
{
    Load();
    BYTE                packet[32] = {};
    UINT32              length     = 0;
    const BYTE          content[]  = {1, 2, 3, 4, 5};
    ParameterSetManager derived(&*m_manager, 0);
    ASSERT_TRUE(m_manager->BuildVernierResponse(packet, sizeof(packet), length, 5, 99, 12, content, 5));
    EXPECT_EQ(length, 15u) << "6 and 4 bytes more than the payload";
    EXPECT_EQ(Bytes(packet, packet + 23), WithLength(Request(5, Bytes{1, 2, 3, 4, 5}, 99, 12), 15));
    EXPECT_TRUE(derived.BuildVernierResponse(packet, sizeof(packet), length, 5, 99, 12, content, 5));
    EXPECT_FALSE(m_manager->BuildVernierResponse(packet, 20, length, 5, 99, 12, content, 11));
    EXPECT_EQ(length, 21u);
    EXPECT_FALSE(m_manager->BuildVernierResponse(packet, sizeof(packet), length, 0, 99, 12, content, 5));
    EXPECT_FALSE(m_manager->BuildVernierResponse(packet, 14, length, 2, 99, 12, content, 5));
    EXPECT_FALSE(m_manager->BuildVernierResponse(nullptr, 32, length, 2, 99, 12, content, 5));

    const ParameterVernierWorker tool(nullptr);
    EXPECT_TRUE(IsLogged("ParameterVernierWorker constructed with a nullptr Set Manager object"));
    UINT16      command = 0;
    UINT64      id      = 0;
    UINT32      request = 0;
    UINT32      size    = 0;
    const BYTE* pData   = nullptr;
    const auto  parse   = [&](const BYTE* pPacket, size_t count)
    { return tool.ParseResponse(pPacket, static_cast<UINT32>(count), command, id, request, pData, size); };
    ASSERT_TRUE(parse(packet, 23));
    EXPECT_EQ(std::tie(command, id, request, size), std::make_tuple(UINT16{5}, UINT64{99}, 12u, 5u));
    EXPECT_EQ(pData, packet + 18);
    EXPECT_FALSE(parse(packet, 18));
    EXPECT_FALSE(parse(nullptr, 23));
    ASSERT_TRUE(parse(Request(9, {}, 99).data(), 14)) << "no payload";
    EXPECT_EQ(std::tie(command, id, request, size), std::make_tuple(UINT16{9}, UINT64{99}, 0u, 0u));
    const Bytes device = Ask(Request(0));
    ASSERT_TRUE(parse(device.data(), device.size()));
    EXPECT_EQ(std::tie(command, id), std::make_tuple(UINT16{0}, ID()));
}

TEST_F(LiveCommandsTest, ADerivedManagerServesThroughItsMain)
{
    Load();
    ParameterSetManager derived(&*m_manager, 0);
    EXPECT_EQ(derived.GetLiveTuningPort(), m_manager->GetLiveTuningPort());
    PList<ParameterCTValue> values;
    values.Add({3, 0.5});
    derived.SetControlValues(values);
    EXPECT_EQ(AskText(2), "3=0.500000");
    derived.SetControlValue({8, 2.5});
    EXPECT_EQ(AskText(2), "8=2.500000") << "takes the place of all";

    TestHandler handler;
    derived.SetCustomHandler(&handler);
    ASSERT_TRUE(m_client->Send(Request(7, Text("Default:alpha:IPE"))));
    ASSERT_TRUE(WaitFor([&] { return handler.requests == 1; }));
    derived.SetCustomHandler(nullptr);
    EXPECT_TRUE(derived.SetTriggerValues("Default", "alpha", "IPE", "x", nullptr, 0));
}

TEST_F(LiveCommandsTest, NoPortIsOpenedUnlessAskedFor)
{
    ParameterSetManager::Options options;
    options.liveTuning = true;
    m_manager.emplace("cam", smallschema::Modules, options);
    m_manager->SetLiveTuningAutostart(false);
    File(false).WriteTo(m_file.path);
    ASSERT_TRUE(m_manager->LoadBinaryParameters(m_file.path.c_str()));
    EXPECT_EQ(m_manager->GetLiveTuningPort(), 0);
}
