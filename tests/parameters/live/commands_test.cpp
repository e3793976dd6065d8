/// The commands of the live tuning service, byte for byte, as a tool that knows nothing of this code would see them.
#include <ctime>
#include <optional>

#include "parameters/live/parametertriggervalues.h"
#include "parameters/live/parametervernierworker.h"
#include "tests/parameters/live/livefixture.h"
#include "tests/parameters/setmanagerfixture.h"
#include "tests/support/temporaryfile.h"

/// Serves requests on the test's own thread, at any pace.
class ThreadlessWorker
{
public:
    VOID Serve(const Bytes& rRequest)
    {
        m_worker.Dispatch(rRequest.data(), static_cast<UINT32>(rRequest.size()));
    }

    VOID Send(const ParameterTriggerValues& rRequest)
    {
        m_worker.SendTriggerValues(rRequest);
    }

    ParameterVernierWorker m_worker{nullptr};
};

namespace
{

std::string PayloadOf(const Bytes& rAnswer, size_t offset)
{
    const std::string all(rAnswer.begin(), rAnswer.end());
    return (all.size() > offset) ? std::string(all.c_str() + offset) : "no payload";
}

class TestHandler : public IVernierCustomHandler
{
public:
    UINT16 ProcessCustom(const BYTE* pPayload, UINT32 payloadSize, UINT32 capacity, BYTE* pOutput,
                         UINT32& rOutputSize) override
    {
        received.assign(pPayload, pPayload + payloadSize);
        room = capacity;
        std::copy(output.begin(), output.end(), pOutput);
        rOutputSize = static_cast<UINT32>(output.size());
        return 0xBEEF;
    }

    VOID RequestTriggerValues(const CHAR* pModePath, const CHAR* pModule, UINT64 moduleNameHash,
                              const CHAR* pPipeline) override
    {
        isHashRight = moduleNameHash == namehash::OfName("alpha");
        texts       = std::string(pModePath) + "/" + pModule + "/" + pPipeline;
        ++requests;
    }

    Bytes            received;
    Bytes            output;
    UINT32           room        = 0;
    bool             isHashRight = false;
    std::string      texts;
    std::atomic<INT> requests = 0;
};

class LiveCommandsTest : public LiveTest
{
protected:
    /// Default with alpha 1, below it Video with alpha 20, Preview with beta 5, and sensor 3.
    static ParameterFile File(bool isTwoTables)
    {
        TuningFileMaker maker;
        const UINT32    root    = maker.Table("main");
        const UINT32    video   = maker.Mode(root, ModeType::Usecase, 2);
        const UINT32    preview = maker.Mode(root, ModeType::Usecase, 0);
        maker.Mode(root, ModeType::Sensor, 3);
        maker.Alpha(root, 1);
        maker.Alpha(video, 20);
        maker.Beta(preview, 5);
        if (isTwoTables)
        {
            maker.Alpha(maker.Table("second"), 300);
        }
        return maker.Build();
    }

    VOID Load(bool isTwoTables = false)
    {
        ParameterSetManager::Options options;
        options.liveTuning = true;
        options.logDebug   = true;
        m_manager.emplace("cam", smallschema::Modules, options);
        File(isTwoTables).WriteTo(m_file.path);
        ASSERT_TRUE(m_manager->LoadBinaryParameters(m_file.path.c_str()));
        m_client.emplace(m_manager->GetLiveTuningPort());
    }

    ~LiveCommandsTest() override
    {
        m_client.reset();
        m_manager.reset();
    }

    UINT64 ID() const
    {
        return reinterpret_cast<UINT64>(static_cast<const IParameterDataAPI*>(&*m_manager));
    }

    Bytes Ask(const Bytes& rRequest)
    {
        EXPECT_TRUE(m_client->Send(rRequest));
        return m_client->ReceivePacket();
    }

    /// What a command with texts answers; the header is checked on the way.
    std::string AskText(UINT16 command, const std::string& rPayload = "")
    {
        const UINT64      id     = vernier::HasRequestID(command) ? 0x1122334455667788 : ID();
        const Bytes       answer = Ask(Request(command, Text(rPayload), id));
        const std::string text   = PayloadOf(answer, vernier::PayloadOffset(command));
        EXPECT_EQ(answer, Request(command, Text(text), id));
        return text;
    }

    /// Takes as much processor time as the service waits for further values.
    static VOID LetTriggerValuesComeTogether()
    {
        const std::clock_t due = std::clock() + 5001;
        while (std::clock() < due)
        {
        }
    }

    /// The service's lines follow its answers.
    bool IsLogged(const std::string& rText)
    {
        return WaitFor([&] { return m_log.Has(rText); });
    }

    const TemporaryFile m_file{std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()) + ".bin"};
    SystemLogCapture    m_log;
    std::optional<ParameterSetManager> m_manager;
    std::optional<LiveClient>          m_client;
};

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

TEST_F(LiveCommandsTest, TriggerValuesFollowWhenTheyHaveComeTogether)
{
    Load();
    TestHandler handler;
    m_manager->SetCustomHandler(&handler);
    const ParameterCTValue values[] = {{1, 0.5}, {2, 4.0}};
    EXPECT_FALSE(m_manager->SetTriggerValues("Default", "alpha", "IPE", "first", values, 2));

    const Bytes request = Request(7, Text("Default:alpha:IPE"));
    ASSERT_TRUE(m_client->Send(request + request));
    ASSERT_TRUE(WaitFor([&] { return handler.requests == 2; }));
    EXPECT_EQ(handler.texts, "Default/alpha/IPE");
    EXPECT_TRUE(handler.isHashRight);
    m_manager->SetCustomHandler(nullptr);

    EXPECT_TRUE(m_manager->SetTriggerValues("Default", "alpha", "IPE", "first", values, 2));
    EXPECT_TRUE(m_manager->SetTriggerValues("Default", "alpha", "IPE", "empty", nullptr, 0));
    LetTriggerValuesComeTogether();
    // The answer goes out when the service wakes up for something else.
    EXPECT_EQ(AskText(9, "0"), "0");
    Bytes payload  = Text("Default:alpha:IPE#first:");
    payload.back() = 2;  // the count follows without a NUL
    payload        = payload + Bytes{0} + Number<UINT32>(1) + Number(0.5) + Number<UINT32>(2) + Number(4.0) +
              Bytes{'e', 'm', 'p', 't', 'y', ':', 0, 0};
    EXPECT_EQ(m_client->ReceivePacket(), Request(7, payload, ID()));
    EXPECT_FALSE(m_manager->SetTriggerValues("Default", "alpha", "IPE", "late", values, 2));
}

TEST(TriggerValues, AreFoundByTheirInstance)
{
    const ParameterCTValue values[] = {{1, 0.5}, {2, 4.0}};
    ParameterTriggerValues request("Default", "alpha", "IPE", 1);
    EXPECT_TRUE(request.Add("first", values, 1));
    EXPECT_TRUE(request.Add("second", values, 2));
    EXPECT_EQ(request.Find("third"), nullptr);
    ASSERT_NE(request.Find("second"), nullptr);
    EXPECT_EQ(request.Find("second")->values.size(), 2u);
    ParameterVernierWorker worker(nullptr);
    EXPECT_FALSE(worker.TriggerRequestExists("Default", "alpha", "IPE"));
    EXPECT_FALSE(worker.TriggerRequestExists("Default", nullptr, "IPE"));
}

TEST(TriggerValues, WaitForSixtyFourRequestsAtMost)
{
    SystemLogCapture log;
    TestHandler      handler;
    ThreadlessWorker worker;
    worker.m_worker.SetCustomHandler(&handler);
    for (INT number = 1; number <= 65; ++number)
    {
        worker.Serve(Request(7, Text("Default:alpha:" + std::to_string(number))));
    }
    EXPECT_EQ(handler.requests, 64);
    EXPECT_TRUE(worker.m_worker.TriggerRequestExists("Default", "alpha", "64"));
    EXPECT_FALSE(worker.m_worker.TriggerRequestExists("Default", "alpha", "65"));
    EXPECT_TRUE(log.Has("Vernier Trigger Values(7) command, 64 requests are waiting already\n", "E"));
    worker.Serve(Request(7, Text("Default:alpha:1")));
    EXPECT_EQ(handler.requests, 65) << "one that waits already";
}

TEST(TriggerValues, OfTextsThatFillThePacketAreNotSent)
{
    SystemLogCapture log;
    ThreadlessWorker worker;
    worker.Send(ParameterTriggerValues(std::string(65518, 'm').c_str(), "", "", 1));
    EXPECT_TRUE(log.Has("Vernier Trigger Values(7) command, insufficient space for mode path, module, and pipeline "
                        "info\n",
                        "E"));
}

TEST_F(LiveCommandsTest, AnAnswerOfTriggerValuesEndsBeforeTheInstanceThatDoesNotFit)
{
    // A packet has 65534 bytes at most, and header and texts take 32 of them.
    constexpr size_t Room = 65534 - 14 - 18;
    // An instance without values takes 3 bytes beside its name, one of 5000 values 60003.
    const std::vector<ParameterCTValue> values(5000, ParameterCTValue{1, 0.5});
    // Size of the name of the second instance, its values, whether it is sent.
    const std::tuple<size_t, UINT32, bool, const CHAR*> cases[] = {
        {Room - 6 - 3, 0, true, "Control Values(7)"},
        {Room - 6 - 2, 0, false, "insufficient packet space to hold IPE instance xxx"},
        {Room - 6, 0, false, "insufficient space to write trigger values"},
        {Room - 6 - 60003, 5000, true, "Control Values(7)"},
        {Room - 6 - 60002, 5000, false, "insufficient packet space to hold IPE instance xxx"},
    };
    Load();
    for (const auto& [nameSize, count, isSent, pLog] : cases)
    {
        m_log.Clear();
        ASSERT_TRUE(m_client->Send(Request(7, Text("Default:alpha:IPE"))));
        ASSERT_TRUE(WaitFor([&] { return m_manager->SetTriggerValues("Default", "alpha", "IPE", "one", nullptr, 0); }));
        const std::string name(nameSize, 'x');
        EXPECT_TRUE(m_manager->SetTriggerValues("Default", "alpha", "IPE", name.c_str(), values.data(), count));
        LetTriggerValuesComeTogether();
        // Where the machine is busy the answer may come first.
        const Bytes  packets[] = {Ask(Request(9, Text("0"))), m_client->ReceivePacket()};
        const Bytes& rAnswer   = packets[(packets[0].at(2) == 7) ? 0 : 1];
        EXPECT_EQ(rAnswer.size(), isSent ? 65534u : 14u + 18u + 6u) << nameSize;
        EXPECT_EQ(PayloadOf(rAnswer, 14).substr(0, 22), "Default:alpha:IPE#one:");
        EXPECT_TRUE(IsLogged(pLog)) << pLog;
    }
}

TEST_F(LiveCommandsTest, TriggerValuesOfAClientThatHasLeftReachNobody)
{
    Load();
    ASSERT_TRUE(m_client->Send(Request(7, Text("Default:alpha:IPE"))));
    ASSERT_TRUE(WaitFor([&] { return m_manager->SetTriggerValues("Default", "alpha", "IPE", "x", nullptr, 0); }));
    m_client->Reset();
    m_client.emplace(m_manager->GetLiveTuningPort());
    LetTriggerValuesComeTogether();
    for (INT turn = 0; turn < 3; ++turn)
    {
        EXPECT_EQ(AskText(9, "0"), "0");
    }
    EXPECT_FALSE(m_manager->SetTriggerValues("Default", "alpha", "IPE", "x", nullptr, 0)) << "the request is over";
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

TEST_F(LiveCommandsTest, HostsCanReadAndBuildPackets)
{
    Load();
    UINT16      command = 0;
    UINT64      id      = 0;
    UINT32      request = 0;
    UINT32      size    = 0;
    const BYTE* pData   = nullptr;
    const auto  parse   = [&](const Bytes& rPacket, UINT32 length)
    { return m_manager->ParseVernierRequest(rPacket.data(), length, command, id, request, pData, size); };

    const Bytes         get = Request(5, Text("a:b"), 99, 12);
    ParameterSetManager derived(&*m_manager, 0);
    ASSERT_TRUE(derived.ParseVernierRequest(get.data(), 22, command, id, request, pData, size));
    size = 0;
    ASSERT_TRUE(parse(get, 22));
    EXPECT_EQ(std::tie(command, id, request, size), std::make_tuple(UINT16{5}, UINT64{99}, 12u, 4u));
    EXPECT_EQ(pData, get.data() + 18);
    EXPECT_FALSE(parse(get, 18));
    EXPECT_FALSE(parse(get, 13));
    EXPECT_TRUE(IsLogged("Failed to read 8 bytes from binary file offset 6, length 13"));
    EXPECT_FALSE(parse(get, 6));
    EXPECT_TRUE(parse(Request(1), 14));
    Bytes foreign = get;
    foreign[0]    = 0;
    EXPECT_FALSE(parse(foreign, 22));

    BYTE       packet[32] = {};
    UINT32     length     = 0;
    const BYTE content[]  = {1, 2, 3, 4, 5};
    ASSERT_TRUE(m_manager->BuildVernierResponse(packet, sizeof(packet), length, 5, 99, 12, content, 5));
    EXPECT_EQ(length, 15u) << "6 and 4 bytes more than the payload";
    EXPECT_EQ(Bytes(packet, packet + 23), WithLength(Request(5, Bytes{1, 2, 3, 4, 5}, 99, 12), 15));
    EXPECT_TRUE(derived.BuildVernierResponse(packet, sizeof(packet), length, 5, 99, 12, content, 5));
    EXPECT_FALSE(m_manager->BuildVernierResponse(packet, 20, length, 5, 99, 12, content, 11));
    EXPECT_EQ(length, 21u);
    EXPECT_FALSE(m_manager->BuildVernierResponse(packet, sizeof(packet), length, 0, 99, 12, content, 5));
    EXPECT_FALSE(m_manager->BuildVernierResponse(packet, 14, length, 2, 99, 12, content, 5));
    EXPECT_FALSE(m_manager->BuildVernierResponse(nullptr, 32, length, 2, 99, 12, content, 5));

    // The answer as a tool reads it.
    const ParameterVernierWorker tool(nullptr);
    EXPECT_TRUE(IsLogged("ParameterVernierWorker constructed with a nullptr Set Manager object"));
    const auto parseAnswer = [&](const BYTE* pPacket, size_t count)
    { return tool.ParseResponse(pPacket, static_cast<UINT32>(count), command, id, request, pData, size); };
    ASSERT_TRUE(parseAnswer(packet, 23));
    EXPECT_EQ(std::tie(command, id, request, size), std::make_tuple(UINT16{5}, UINT64{99}, 12u, 5u));
    EXPECT_EQ(pData, packet + 18);
    EXPECT_FALSE(parseAnswer(packet, 18));
    EXPECT_FALSE(parseAnswer(nullptr, 23));
    ASSERT_TRUE(parseAnswer(Request(9, {}, 99).data(), 14)) << "no payload";
    EXPECT_EQ(std::tie(command, id, request, size), std::make_tuple(UINT16{9}, UINT64{99}, 0u, 0u));
    const Bytes device = Ask(Request(0));
    ASSERT_TRUE(parseAnswer(device.data(), device.size()));
    EXPECT_EQ(std::tie(command, id), std::make_tuple(UINT16{0}, ID()));

    ParameterSetManager offline("off", smallschema::Modules, {});
    EXPECT_FALSE(offline.ParseVernierRequest(get.data(), 22, command, id, request, pData, size));
    derived.SetLiveTuningAutostart(false);
    EXPECT_FALSE(parse(get, 22));
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

}  // namespace
