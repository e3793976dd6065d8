/// What the client of live tuning sends, and what it makes of good and bad answers.
#include <chrono>
#include <cstdlib>
#include <functional>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/refusal.h"
#include "tests/support/temporaryfile.h"
#include "tests/tools/scriptedservice.h"
#include "tools/kirotune/livemembers.h"
#include "tools/kirotune/liveoutput.h"
#include "tools/kirotune/livesession.h"
#include "tools/liveclient/packet.h"
#include "tools/liveclient/texts.h"

namespace
{

using namespace liveclient;
using testing::ElementsAre;
using testing::FieldsAre;
using testing::HasSubstr;

constexpr UINT64 Token = 0x1122334455667788;

Options To(UINT16 port, int milliseconds = 20000)
{
    return {"127.0.0.1", port, std::chrono::milliseconds(milliseconds)};
}

/// An answer with a text.
ScriptedService::Reply Says(UINT16 command, std::string_view text)
{
    return [command, payload = Text(text)](UINT32 requestID) { return Request(command, payload, Token, requestID); };
}

ScriptedService::Reply Sends(const Bytes& rBytes)
{
    return [rBytes](UINT32) { return rBytes; };
}

/// The answer to DeviceInfo: version 2.0 before the token.
ScriptedService::Reply DeviceSays(std::string_view text)
{
    return Sends(Request(0, Number<UINT16>(Token >> 48) + Text(text), (Token << 16) | 2));
}

TEST(LiveClient, TalksAsTheProtocolSays)
{
    const Bytes     modes = Text("Sensor.0,Usecase.ZSL") + Bytes(10);  // the service adds ten zeros
    ScriptedService service(
        {Says(1, "Default;Default|Usecase.Video"), DeviceSays("cam:0:main,night"),
         Says(2, "7=1.500000,4000000000=-nan"), [&](UINT32 requestID) { return Request(3, modes, Token, requestID); },
         Says(4, "mode=2,Enum;text=a,b;c=d,String;rec,Structure;list,Float,3;x=-0.5,Float"),
         Says(5, "a=1.0;t=x;y;list=1.0,2.0;e="), Says(6, "a=0.5;b=-3.0"), Says(9, "1"), Says(9, "0"),
         [](UINT32 requestID) {
             return Request(8, {0x34, 0x12, 0xFF, 0x00}, Token, requestID);
         }});
    {
        Client client(To(service.Port()));
        EXPECT_THAT(client.ActiveModes(), ElementsAre("Default", "Default|Usecase.Video"));
        EXPECT_THAT(client.Device(), FieldsAre("cam:0", ElementsAre("main", "night"), 2, 0, Token));
        EXPECT_THAT(client.ControlValues(), ElementsAre(FieldsAre(7u, 1.5), FieldsAre(4000000000u, testing::IsNan())));
        EXPECT_THAT(client.ChildModes("0"), ElementsAre("Sensor.0", "Usecase.ZSL"));
        EXPECT_THAT(client.Info("Default", "m.r"),
                    ElementsAre(FieldsAre("mode", "2", "Enum", std::nullopt),
                                FieldsAre("text", "a,b;c=d", "String", std::nullopt),
                                FieldsAre("rec", "", "Structure", std::nullopt), FieldsAre("list", "", "Float", 3u),
                                FieldsAre("x", "-0.5", "Float", std::nullopt)));
        EXPECT_THAT(client.Get("0.0|2.2", "m", {"a", "t"}),
                    ElementsAre(FieldsAre("a", "1.0"), FieldsAre("t", "x;y"), FieldsAre("list", "1.0,2.0"),
                                FieldsAre("e", "")));
        EXPECT_THAT(client.Set("Default", "m", {{"a", "0.5"}, {"b[1]", "-3"}}),
                    ElementsAre(FieldsAre("a", "0.5"), FieldsAre("b", "-3.0")));
        EXPECT_EQ(1u, client.TableIndex());
        EXPECT_EQ(0u, client.SelectTable(12));
        const Bytes        bytes{0, 1, 2};
        const CustomResult custom = client.Custom(bytes);
        EXPECT_EQ(0x1234, custom.result);
        EXPECT_THAT(custom.bytes, ElementsAre(0xFF, 0x00));
    }
    const std::vector<Bytes>& rRequests = service.End();
    ASSERT_EQ(10u, rRequests.size());
    EXPECT_EQ((Bytes{0x56, 0x4B, 1, 0, 14, 0, 0, 0, 0, 0, 0, 0, 0, 0}), rRequests[0]);
    EXPECT_EQ((Bytes{0x56, 0x4B, 0, 0, 14, 0, 0, 0, 0, 0, 0, 0, 0, 0}), rRequests[1]);
    EXPECT_EQ((Bytes{0x56, 0x4B, 2, 0, 14, 0, 0x88, 0x77, 0x66, 0x55, 0x44, 0x33, 0x22, 0x11}), rRequests[2]);
    const std::pair<UINT16, const char*> texts[] = {
        {3, "Default"}, {4, "Default:m.r"}, {5, "Default|Usecase.Video:m:a,t"}, {6, "Default:m:a=0.5;b[1]=-3"},
        {9, ""},        {9, "12"}};
    UINT32 lastID = 0;
    for (size_t index = 0; index < std::size(texts); ++index)
    {
        const auto& [command, pText] = texts[index];
        const Bytes& rRequest        = rRequests[3 + index];
        UINT32       requestID       = 0;
        std::memcpy(&requestID, rRequest.data() + 14, vernier::HasRequestID(command) ? 4 : 0);
        EXPECT_EQ(Request(command, Text(pText), Token, requestID), rRequest);
        EXPECT_TRUE(!vernier::HasRequestID(command) || requestID != lastID);
        lastID = requestID;
    }
    EXPECT_EQ((Bytes{0, 1, 2}), Bytes(rRequests[9].begin() + 18, rRequests[9].end()));
    EXPECT_EQ(ECONNRESET, service.LastError()) << "only a reset frees the service for the next client at once";
}

TEST(LiveClient, SkipsAnswersToOthers)
{
    ScriptedService service({[](UINT32 requestID)
                             {
                                 return Request(5, Text("a=1.0"), Token, requestID - 1000) +
                                        Request(7, Text("p:m:t#"), Token) + Request(6, Text(""), Token, requestID) +
                                        Request(0xFFFF, {}, Token) + Request(5, Text("a=2.0"), Token, requestID);
                             }},
                            false, 1);  // half a request of another client has swallowed the first one
    Client          client(To(service.Port(), 2000));
    EXPECT_THAT(client.Get("Default", "m", {"a"}), ElementsAre(FieldsAre("a", "2.0")));
}

TEST(LiveClient, ConnectsToAServiceThatTakesItsTime)
{
    ScriptedService service({Says(5, "a=1.0")}, false, 0, std::chrono::milliseconds(300));
    Client          client(To(service.Port()));
    EXPECT_THAT(client.Get("Default", "m", {"a"}), ElementsAre(FieldsAre("a", "1.0")));
}

TEST(LiveClient, RefusesBadAnswersAndLeaves)
{
    const auto cut = [](Bytes bytes, size_t size)
    {
        bytes.resize(size);
        return bytes;
    };
    const Bytes good = Request(1, Text("Default"), Token);
    // closes: behind the answer
    // timeout: ms; short where the client has to wait for its end
    const std::tuple<Bytes, bool, int, const char*> cases[] = {
        {{}, true, 20000, "has closed the connection"},
        {{}, false, 1000, "no answer to ActiveModes within 1000 ms"},
        {cut(good, 3), true, 20000, "has closed the connection"},
        {cut(good, 20), true, 20000, "has closed the connection"},
        {cut(good, 20), false, 1000, "an answer ends after 20 of 22 bytes"},
        {cut(good, 5), false, 1000, "an answer ends after 5 of 6 bytes"},
        {Text("HTTP/1.1 400"), false, 20000, "an answer starts with 21576, expected 19286"},
        {{0x56, 0x4B, 1, 0, 0, 0}, false, 20000, "says that it has 0 bytes, expected at least 14"},
        {{0x56, 0x4B, 0, 0, 15, 0}, false, 20000, "says that it has 15 bytes, expected at least 16"},
        {{0x56, 0x4B, 5, 0, 17, 0}, false, 20000, "says that it has 17 bytes, expected at least 18"},
        {Request(1, {'D', 'e'}, Token), false, 20000, "has no end"},
        {Request(1, {}, Token), false, 20000, "has no end"},
    };
    for (const auto& [answer, closes, timeout, pFault] : cases)
    {
        ScriptedService service({Sends(answer)}, closes);
        {
            Client client(To(service.Port(), timeout));
            EXPECT_THAT(RefusalOf([&] { (VOID) client.ActiveModes(); }), HasSubstr(pFault));
        }
    }
    ScriptedService service(
        {[](UINT32 requestID) { return Request(8, {1}, Token, requestID); }, Says(9, "x"), Sends({})});
    {
        Client client(To(service.Port(), 1000));
        EXPECT_THAT(RefusalOf([&] { (VOID) client.Custom(Bytes{1}); }), HasSubstr("holds no result"));
        EXPECT_THAT(RefusalOf([&] { (VOID) client.TableIndex(); }), HasSubstr("'x', expected a number"));
        EXPECT_THAT(RefusalOf([&] { (VOID) client.Device(); }), HasSubstr("no answer"));
        EXPECT_THAT(RefusalOf([&] { (VOID) client.Device(); }), HasSubstr("the connection has been closed"));
    }
}

TEST(LiveClient, TellsWhyThereIsNoConnection)
{
    EXPECT_EQ("nobody listens at 127.0.0.1:1: Connection refused", RefusalOf([] { Client client(To(1)); }));
    EXPECT_THAT(RefusalOf([] { Client client({"no such host", 1}); }), HasSubstr("unknown host 'no such host': "));
    const ScriptedService silent({}, false, 1000);  // takes connections, as for a second client, and never serves them
    EXPECT_THAT(RefusalOf([&] { Client client(To(silent.Port(), 100)); }),
                HasSubstr(std::to_string(silent.Port()) + " takes the connection but does not answer within 100 ms"));
}

TEST(LiveClient, NothingFromTheNetworkDoesMoreThanFail)
{
    std::mt19937      random(1);
    const std::string letters = "a1.-=,;:|\x80 nanFloatEnum";
    for (int round = 0; round < 5000; ++round)
    {
        std::string text;
        for (UINT32 count = random() % 40; count > 0; --count)
        {
            text += letters[random() % letters.size()];
        }
        Bytes packet = Request(random() % 10, Text(text), Token);
        packet[4]    = static_cast<BYTE>(random() % (packet.size() + 1));
        DeviceInfo device;
        ParseDevice(text, device);
        (VOID) ParseValues(text);
        (VOID) kirotune::JsonValue("kirosync", {text, text});
        (VOID) RefusalOf([&] { (VOID) ParseControlValues(text); });
        (VOID) RefusalOf([&] { (VOID) ParseMemberInfos(text); });
        (VOID) RefusalOf(
            [&]
            {
                const Bytes exact(packet.begin(), packet.begin() + AnswerLength(packet));
                (VOID) TextOf(DecodeAnswer(exact));
            });
    }
}

TEST(LiveClient, SpellsOutModePaths)
{
    const std::pair<const char*, const char*> paths[] = {
        {"0", "Default"},
        {"0.0|1.3|2.2|5.20", "Default|Sensor.3|Usecase.Video|Scene.BestShot"},
        {"Default|Sensor.3|4.HLG", "Default|Sensor.3|Feature2.HLG"},
        {"0|2.99", "Default|Usecase.99"},  // without a name, as the service lists it
    };
    for (const auto& [pPath, pNamed] : paths)
    {
        EXPECT_EQ(pNamed, NamedPath(pPath));
    }
    const std::pair<const char*, const char*> faults[] = {
        {"", "unknown mode ''"},
        {"Default|", "unknown mode ''"},
        {"Usecase.Video", "expected Default as the first mode"},
        {"Default|Default", "expected Default as the first mode, and only there"},
        {"0.1", "expected Default as the first mode"},
        {"Default|Usecase", "expected 'Usecase.<sub-mode>'"},
        {"Default|Usecase.Vdeo", "did you mean 'Video'?"},
        {"Default|Use", "expected one of: Default, Sensor, Usecase"},
        {"Default|Sensor.x", "expected a number from 0 to 65535"},
        {"0|7.0", "no mode 7, there are 0 Default, 1 Sensor"},
        {"0|2.65536", "unknown sub-mode '65536'"},
    };
    for (const auto& [pPath, pFault] : faults)
    {
        EXPECT_THAT(RefusalOf([&, pText = pPath] { (VOID) NamedPath(pText); }), HasSubstr(pFault)) << pPath;
    }
}

TEST(LiveClient, SendsOnlyWhatTheServiceReadsAsItIsMeant)
{
    for (const char* pText : {"0", "-12.5", ".5", "5.", "00.50"})
    {
        EXPECT_TRUE(IsNumber(pText)) << pText;
    }
    for (const char* pText : {"", "-", ".", "--1", "1-2", "+1", "1e3", "0x10", "1.2.3", " 1", "nan", "1,5"})
    {
        EXPECT_FALSE(IsNumber(pText)) << pText;
    }
    ScriptedService service({});
    {
        Client     client(To(service.Port()));
        const auto set = [&](const std::string& rModule, const Value& rValue)
        { return RefusalOf([&] { (VOID) client.Set("Default", rModule, {rValue}); }); };
        EXPECT_THAT(set("m", {"a", "1e3"}), HasSubstr("value '1e3' of a: expected a decimal number"));
        EXPECT_THAT(set("m", {"a;b", "1"}), HasSubstr("member 'a;b': expected a name"));
        EXPECT_THAT(set("m:x", {"a", "1"}), HasSubstr("module 'm:x': expected a name"));
        EXPECT_THAT(set("", {"a", "1"}), HasSubstr("module ''"));
        EXPECT_THAT(set("m", {"a", std::string(510, '1')}), HasSubstr("512 characters is too long"));
        EXPECT_THAT(
            RefusalOf([&] { (VOID) client.Get("Default", "m", std::vector<std::string>(200, std::string(400, 'a'))); }),
            HasSubstr("too long, at most 65534 can be sent"));
    }
    EXPECT_TRUE(service.End().empty());
}

TEST(LiveClient, KnowsWhatTheSchemaSays)
{
    using namespace kirotune;
    const std::string sync  = "kirosync";
    const std::string roi   = "kirodbroi";
    const auto        first = FindMember(roi, "data[3].coords");
    ASSERT_TRUE(first.has_value());
    EXPECT_TRUE(first->isWholeArray);
    EXPECT_FALSE(FindMember("kirodbroi.data[3]", "coords[1]")->isWholeArray);
    for (const char* pMember : {"dat", "data.weight.x", "", "SymbolTableID"})
    {
        EXPECT_FALSE(FindMember(roi, pMember).has_value()) << pMember;
    }
    EXPECT_FALSE(FindMember("none", "data").has_value());
    EXPECT_FALSE(FindMember(".", ".").has_value());
    EXPECT_EQ("-1.5", NumberFor(roi, {"data[0].weight", "-1.5"}));
    EXPECT_EQ("1", NumberFor("kirometering", {"luxIndexOperation.enableCompensation", "true"}));
    EXPECT_EQ("0", NumberFor("unknown", {"switch", "false"}));
    EXPECT_THAT(RefusalOf([&] { (VOID) NumberFor(roi, {"data[0].coords", "1"}); }), HasSubstr("data[0].coords[0]=1"));
    EXPECT_THAT(RefusalOf([&] { (VOID) NumberFor(roi, {"data[0].description", "1"}); }), HasSubstr("is a text"));

    const char* const lux = "luxSyncConfig";
    EXPECT_EQ("1", NumberFor(sync, {lux, "UseMaster"}));
    EXPECT_THAT(RefusalOf([&] { (VOID) NumberFor(sync, {lux, "UseMastr"}); }), HasSubstr("did you mean 'UseMaster'?"));
    EXPECT_EQ("1 (UseMaster)", WithEnumerator(sync, {lux, "1"}));
    EXPECT_EQ("7", WithEnumerator(sync, {lux, "7"}));

    const auto line = [](const std::string& rModule, const Value& rValue)
    { return tuningfile::ToJsonLine(JsonValue(rModule, rValue)); };
    EXPECT_EQ("[1.0]\n", line(roi, {"data[0].coords", "1.0"}));
    EXPECT_EQ("[1.0, -2.0]\n", line("unknown", {"a", "1.0,-2.0"}));
    EXPECT_EQ("\"7\"\n", line(roi, {"data[0].description", "7"}));
    EXPECT_EQ("\"nan\"\n", line(roi, {"data[0].weight", "nan"}));
    EXPECT_EQ("\"007\"\n", line("unknown", {"a", "007"}));
    EXPECT_EQ("-0.5\n", line("unknown", {"a", "-0.5"}));
    EXPECT_EQ("\xC3\xA9\xEF\xBF\xBD\xEF\xBF\xBD[2J\xEF\xBF\xBD", Clean("\xC3\xA9\xFF\x1B[2J\xC2\x9B"));
}

/// What a person sees of a session: its standard output, and the fault that ends it.
std::string ShownBy(ScriptedService& rService, bool isJson, const std::function<VOID(kirotune::LiveSession&)>& rUse)
{
    testing::internal::CaptureStdout();
    const std::string fault = RefusalOf(
        [&]
        {
            kirotune::LiveSession session(To(rService.Port()), isJson);
            rUse(session);
        });
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout() + fault;
}

TEST(LiveSession, ShowsWhatASetHasDone)
{
    const TemporaryFile state("state");  // for journals of edits
    (VOID) setenv("XDG_STATE_HOME", state.path.c_str(), 1);
    using Texts                                                                       = std::vector<std::string>;
    const std::tuple<std::vector<ScriptedService::Reply>, Texts, const char*> cases[] = {
        {{DeviceSays("cam"), Says(5, "weight=1.0"), Says(6, "weight=0.5")}, {"weight=0.5"}, "weight  1.0  ->  0.5\n"},
        {{DeviceSays("cam"), Says(5, "a=1.0;b=2.0"), Says(6, "b=3.0")},
         {"a=1", "b=3"},
         "b  2.0  ->  3.0\nthe camera did not set: a"},
        {{DeviceSays("cam"), Says(5, "a=1.0")},
         {"a=1", "b=3"},
         "no such mode path, module or member: 'Default' kirodbroi b"},
        {{}, {"a"}, "'a': expected NAME=VALUE"},
    };
    for (const auto& [replies, assignments, pShown] : cases)
    {
        ScriptedService service(replies);
        EXPECT_EQ(pShown, ShownBy(service, false,
                                  [&, &texts = assignments](kirotune::LiveSession& rSession)
                                  { rSession.Set("Default", "kirodbroi", texts, true); }));
        EXPECT_EQ(replies.size(), service.End().size()) << pShown;
    }
}

TEST(LiveSession, ListsModesOnlyOfPathsThatThereAre)
{
    ScriptedService service({DeviceSays("cam"), Says(3, "Sensor.0,Usecase.Video"), Says(3, "Scene.Night")});
    EXPECT_EQ("the tuning has no mode 'Scene.Snow' below 'Default|Usecase.Video', there are Scene.Night",
              ShownBy(service, false,
                      [](kirotune::LiveSession& rSession) { rSession.Modes("Default|Usecase.Video|Scene.Snow"); }));
}

TEST(LiveSession, DescribesOneMemberByItsRecord)
{
    ScriptedService service({Says(4, ""), Says(4, "luxSyncConfig=1,Enum;masterAndSlaveConfig,Structure")});
    EXPECT_THAT(ShownBy(service, false,
                        [](kirotune::LiveSession& rSession) { rSession.Info("Default", "kirosync.luxSyncConfig"); }),
                testing::StartsWith("member         type  count  value          range\n"
                                    "luxSyncConfig  Enum         1 (UseMaster)\n"
                                    "Whose lux index the factors over it go by"));
}

TEST(LiveSession, WatchesForChanges)
{
    ScriptedService service({Says(5, "a=1.0"), Says(5, "a=1.0"), Says(5, "a=2.0")});
    EXPECT_THAT(ShownBy(service, true,
                        [](kirotune::LiveSession& rSession)
                        { rSession.Watch("Default", "unknown", "a", {.rate = 1000.0, .count = 2}); }),
                testing::ContainsRegex(R"(^\{"seconds": [0-9.]+, "values": \{"a": 1\.0\}\}
\{"seconds": [0-9.]+, "values": \{"a": 2\.0\}\}
$)"));
    EXPECT_EQ(3u, service.End().size());
}

TEST(LiveSession, WatchesNumbersThatTheCameraPublishes)
{
    ScriptedService service({Says(2, "2=1.500000,4000000000=-nan"), Says(2, "2=1.500000,4000000000=-nan"),
                             Says(2, "2=2.500000,4000000000=-nan"), Says(2, "3=1.000000")});
    EXPECT_THAT(ShownBy(service, true,
                        [](kirotune::LiveSession& rSession) {
                            rSession.Watch("Default", "", "", {.rate = 1000.0, .controls = {"4000000000", "luxIndex"}});
                        }),
                testing::ContainsRegex(
                    R"(\{"seconds": [0-9.]+, "values": \{\}, "controls": \{"4000000000": "-?nan", "luxIndex": 1\.5\}\}
\{"seconds": [0-9.]+, "values": \{\}, "controls": \{"4000000000": "-?nan", "luxIndex": 2\.5\}\}
the camera publishes no '4000000000', expected one of: currentLuma$)"));
}

}  // namespace
