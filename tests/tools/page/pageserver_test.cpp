// What browsers ask of a camera and do to it, by the server.

#include <gmock/gmock.h>

#include "tests/tools/page/pagecamera.h"
#include "tools/tuningfile/patchinput.h"

namespace
{

using namespace pagetest;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const CHAR* Convergence = "/api/module?mode=Default&module=kiroconvergence";

// Of unitStepSize, as the phone has it.
constexpr const CHAR* Start      = "0.1";
constexpr const CHAR* StartValue = "\"value\":\"0.1\"";

class PageServer : public PageTest
{
protected:
    PageServer() : m_page(m_camera.Port())
    {
        EXPECT_TRUE(Await([this] { return m_page.IsConnected(); }));
    }

    /// The member of that name in the answer that describes a module.
    json MemberOf(const std::string& rName)
    {
        const json module = m_page.GetJson(Convergence);
        for (const json& rMember : module["members"])
        {
            if (rMember["name"] == rName)
            {
                return rMember;
            }
        }
        return {};
    }

    std::string Held()
    {
        return MemberOf("unitStepSize").value("value", "");
    }

    ServiceCamera m_camera;
    ServedPage    m_page;
};

TEST_F(PageServer, TellsWhatTheCameraHoldsAndWhatItMeans)
{
    const json state = m_page.GetJson("/api/state");
    EXPECT_EQ("Default", state["modes"][0]["path"]);
    EXPECT_EQ("Default|Sensor.0", state["modes"][0]["children"][0]["path"]);
    EXPECT_EQ("frameNumber", state["controls"][0]["name"]);
    EXPECT_TRUE(state["picture"].get<bool>());
    EXPECT_TRUE(state["file"].is_null());

    const json member = MemberOf("unitStepSize");
    EXPECT_EQ("number", member["kind"]);
    EXPECT_EQ(Start, member["value"]);
    EXPECT_EQ(1.0, member["max"]);
    EXPECT_FALSE(member["integer"].get<bool>());
    EXPECT_EQ("choice", MemberOf("drcStretchAgg")["kind"]);
    EXPECT_EQ("record", MemberOf("smoothADRC")["kind"]);

    // A list of records, and the numbers of a list within.
    const json zones = m_page.GetJson("/api/module?mode=Default&module=kirodbconvbase");
    const auto data  = std::find_if(zones["members"].begin(), zones["members"].end(),
                                    [](const json& rMember) { return rMember["name"] == "data"; });
    ASSERT_NE(data, zones["members"].end());
    EXPECT_EQ("list", (*data)["kind"]);
    EXPECT_EQ("data[0]", (*data)["members"][0]["path"]);
    EXPECT_EQ("record", (*data)["members"][0]["kind"]);
    EXPECT_THAT(m_page.Get("/api/module?mode=Default&module=nothing"), StartsWith("404 {"));
    EXPECT_THAT(m_page.Get("/api/module?mode=Default&module=kiroskipcontrol"),
                HasSubstr("this tuning has no kiroskipcontrol for Default"));
    EXPECT_THAT(m_page.Get("/api/module?mode=Default%7CUsecase.Video&module=kiroconvergence"), StartsWith("404 {"));
}

TEST_F(PageServer, TakesBackWhatIsSetAndDoesItAgain)
{
    EXPECT_THAT(m_page.Set("unitStepSize", "0.5"), StartsWith("200 "));
    EXPECT_EQ("0.5", Held());
    EXPECT_EQ(Start, MemberOf("unitStepSize")["start"]);
    EXPECT_TRUE(MemberOf("unitStepSize")["differs"].get<bool>());
    EXPECT_THAT(m_page.Set("unitStepSize", "0.75"), StartsWith("200 "));
    EXPECT_THAT(m_page.Post("/api/undo", json::object()), StartsWith("200 "));
    EXPECT_EQ("0.5", Held());
    EXPECT_THAT(m_page.Post("/api/undo", json::object()), HasSubstr(StartValue));
    EXPECT_EQ(Start, Held());
    EXPECT_THAT(m_page.Post("/api/undo", json::object()), StartsWith("409 "));
    EXPECT_THAT(m_page.Post("/api/redo", json::object()), StartsWith("200 "));
    EXPECT_THAT(m_page.Post("/api/redo", json::object()), StartsWith("200 "));
    EXPECT_EQ("0.75", Held());
    EXPECT_THAT(m_page.Post("/api/redo", json::object()), StartsWith("409 "));

    const json changes = m_page.GetJson("/api/changes")["changes"];
    ASSERT_EQ(1U, changes.size());
    EXPECT_EQ(Start, changes[0]["start"]);
    EXPECT_EQ("0.75", changes[0]["value"]);
    const json whole = {{"mode", "Default"}, {"module", "kiroconvergence"}, {"paths", json::array()}};
    EXPECT_THAT(m_page.Post("/api/reset", whole), HasSubstr(StartValue));
    EXPECT_TRUE(m_page.GetJson("/api/changes")["changes"].empty());
    EXPECT_THAT(m_page.Get("/api/patch"), StartsWith("404 "));
}

TEST_F(PageServer, JoinsADragToOneStep)
{
    const json join = {{"join", true}};
    for (const CHAR* pValue : {"0.3", "0.4", "0.5"})
    {
        EXPECT_THAT(m_page.Set("unitStepSize", pValue, join), StartsWith("200 "));
    }
    EXPECT_THAT(m_page.Set("unitStepSize", "0.6", join, "another"), StartsWith("200 "));
    EXPECT_EQ(2, m_page.GetJson("/api/state")["edits"]["undo"]);
    (VOID) m_page.Post("/api/undo", json::object());
    EXPECT_EQ("0.5", Held());
    (VOID) m_page.Post("/api/undo", json::object());
    EXPECT_EQ(Start, Held());
    (VOID) m_page.Post("/api/redo", json::object());
    EXPECT_EQ("0.5", Held());
}

TEST_F(PageServer, AsksBeforeItSendsWhatCannotBeMeant)
{
    const std::string refusal = m_page.Set("unitStepSize", "7");
    EXPECT_THAT(refusal, StartsWith("409 "));
    EXPECT_THAT(refusal, HasSubstr("\"guard\":true"));
    EXPECT_EQ(Start, Held());
    EXPECT_THAT(m_page.Set("unitStepSize", "7", {{"force", true}}), StartsWith("200 "));
    EXPECT_EQ(7.0, std::stod(Held()));
    EXPECT_THAT(m_page.Set("nothing", "1"), StartsWith("400 "));
    EXPECT_THAT(m_page.Set("unitStepSize", "1e3"), StartsWith("400 "));
    EXPECT_THAT(m_page.Set("drcStretchAgg", "AggTypeCascade"), HasSubstr("\"value\":\"1\""));
}

TEST_F(PageServer, RefusesWhatIsNoRequestOfItsPage)
{
    const json body = {{"mode", "Default"}, {"module", "kiroconvergence"}, {"values", json::array()}};
    EXPECT_THAT(m_page.Post("/api/set", body), StartsWith("400 "));
    EXPECT_THAT(m_page.Post("/api/set", json::array()), StartsWith("400 "));
    EXPECT_THAT(m_page.Post("/api/set", body, {{"Origin", "http://evil.example"}}), StartsWith("403 "));
    EXPECT_THAT(m_page.Post("/api/set", body, {{"Content-Encoding", "gzip"}}), StartsWith("411 "));
    EXPECT_THAT(m_page.Post("/api/nothing", body), StartsWith("404 {\"error\""));
    EXPECT_THAT(m_page.Post("/api/set", std::string(70000, 'x')), StartsWith("413 "));
    for (const CHAR* pPath : {"/../page.cpp", "/%2e%2e/page.cpp", "/nothing.js", "//etc/passwd", "/api/", "/%00"})
    {
        EXPECT_THAT(m_page.Get(pPath), StartsWith("404 {\"error\"")) << pPath;
    }
    EXPECT_THAT(m_page.Get("/dygraph.min.js"), StartsWith("200 "));
    const auto answer = m_page.Browser().Get("/");
    EXPECT_THAT(answer->get_header_value("Content-Security-Policy"), HasSubstr("default-src 'none'"));
    // What makes pattern matching run out of stack elsewhere.
    const auto ranges = m_page.Browser().Get("/", {{"Range", "bytes=0-0" + std::string(8000, '1')}});
    EXPECT_TRUE(!ranges || ranges->status >= 400);
    EXPECT_TRUE(m_page.IsConnected());
}

TEST_F(PageServer, BoundsTheRateOfEdits)
{
    std::string last;
    for (size_t round = 0; round < 3 * page::Page::MaxEditsPerSecond && !last.starts_with("429 "); ++round)
    {
        last = m_page.Post("/api/undo", json::object());
    }
    EXPECT_THAT(last, StartsWith("429 "));
}

TEST_F(PageServer, LeavesATakenPortToItsOwner)
{
    const page::Address taken = {"127.0.0.1", m_page.Server().Port()};
    EXPECT_THROW(page::HttpServer(taken, {}), std::runtime_error);
}

TEST_F(PageTest, WantsATokenFromOtherMachines)
{
    ServiceCamera camera;
    ServedPage    served(camera.Port(), nullptr, "0.0.0.0");
    const auto    token = served.Server().Url().substr(served.Server().Url().find('?'));
    EXPECT_EQ(7U + 32U, token.size());
    EXPECT_THAT(served.Get("/api/state"), StartsWith("403 "));
    EXPECT_THAT(served.Get("/api/state" + token), StartsWith("200 "));
    EXPECT_THAT(served.Post("/api/undo", json::object()), StartsWith("403 "));
    EXPECT_THAT(served.Post("/api/undo" + token, json::object()), testing::Not(StartsWith("403 ")));
}

TEST_F(PageTest, SavesAPatchThatMakesTheCamerasTuning)
{
    ServiceCamera camera;
    const auto    pTuning =
        std::make_shared<tuningfile::Tuning>(tuningfile::ReadTextFile(EXAMPLES_DIR "/tunings/phone.yaml"));
    {
        ServedPage served(camera.Port());
        ASSERT_TRUE(Await([&] { return served.IsConnected(); }));
        (VOID) served.Set("unitStepSize", "0.3");
        (VOID) served.Set("data[0].value.tolerance", "6", json::object(), "me", "kirodbconvbase");
        const auto answer = served.Browser().Get("/api/patch");
        ASSERT_TRUE(answer);
        EXPECT_THAT(answer->get_header_value("Content-Disposition"), HasSubstr("attachment"));
        tuningfile::ApplyPatch(answer->body, "patch", *pTuning);
    }
    ServedPage served(camera.Port(), pTuning);
    ASSERT_TRUE(Await([&] { return served.IsConnected(); }));
    EXPECT_TRUE(served.GetJson("/api/changes")["changes"].empty());
}

/// The number that a patch sets in the first of its modes.
std::string PatchedStep(const std::string& rPatch)
{
    auto tuning = tuningfile::ReadTextFile(EXAMPLES_DIR "/tunings/phone.yaml");
    tuningfile::ApplyPatch(rPatch, "patch", tuning);
    const size_t at = rPatch.find("unitStepSize: ");
    return (at == std::string::npos) ? "" : rPatch.substr(at, rPatch.find('\n', at) - at);
}

TEST_F(PageTest, KeepsEditsOfACameraThatGoesAway)
{
    auto       pCamera = std::make_unique<ServiceCamera>("first");
    const auto port    = pCamera->Port();
    ServedPage served(port);
    ASSERT_TRUE(Await([&] { return served.IsConnected(); }));
    EXPECT_THAT(served.Set("unitStepSize", "0.4"), StartsWith("200 "));
    EXPECT_THAT(served.Set("data[0].value.tolerance", "6", json::object(), "me", "kirodbconvbase"), StartsWith("200 "));
    (VOID) served.Post("/api/undo", json::object());

    pCamera.reset();
    ASSERT_TRUE(Await([&] { return !served.IsConnected(); }));
    const auto saved = served.Browser().Get("/api/patch");
    ASSERT_EQ(200, saved->status);
    EXPECT_THAT(PatchedStep(saved->body), StartsWith("unitStepSize: 0.4}"));
    EXPECT_THAT(saved->body, testing::Not(HasSubstr("tolerance")));

    pCamera = std::make_unique<ServiceCamera>("second");
    if (pCamera->Port() != port)
    {
        GTEST_SKIP() << "somebody has taken the port";
    }
    ASSERT_TRUE(Await([&] { return served.IsConnected(); }));
    EXPECT_EQ(1, served.GetJson("/api/state")["lost"]);
    EXPECT_THAT(served.Get("/api/patch"), StartsWith("404 "));
    EXPECT_THAT(PatchedStep(served.Browser().Get("/api/lost")->body), StartsWith("unitStepSize: 0.4}"));
    EXPECT_EQ("200 {\"lost\":0}", served.Post("/api/again", json::object()));
    const json changes = served.GetJson("/api/changes")["changes"];
    ASSERT_EQ(1U, changes.size());
    EXPECT_EQ("0.4", changes[0]["value"]);
    EXPECT_THAT(served.Get("/api/lost"), StartsWith("404 "));
    EXPECT_THAT(served.Post("/api/undo", json::object()), HasSubstr(StartValue));
}

TEST_F(PageTest, ComparesWithAFile)
{
    const auto pTuning =
        std::make_shared<tuningfile::Tuning>(tuningfile::ReadTextFile(EXAMPLES_DIR "/tunings/phone.yaml"));
    tuningfile::ApplyPatch("modes: {Default: {modules: {kiroconvergence: {unitStepSize: 0.125}}}}", "patch", *pTuning);
    ServiceCamera camera;
    ServedPage    served(camera.Port(), pTuning);
    ASSERT_TRUE(Await([&] { return served.IsConnected(); }));
    const json changes = served.GetJson("/api/changes")["changes"];
    ASSERT_EQ(1U, changes.size());
    EXPECT_EQ("0.125", changes[0]["start"]);
    const json member = {{"mode", "Default"}, {"module", "kiroconvergence"}, {"paths", {"unitStepSize"}}};
    EXPECT_THAT(served.Post("/api/reset", member), HasSubstr("\"value\":\"0.125\""));
    EXPECT_TRUE(served.GetJson("/api/changes")["changes"].empty());
}

TEST_F(PageTest, TellsNamesOfCamerasAsText)
{
    ServiceCamera camera("<img src=x onerror=alert(1)>\x80");
    ServedPage    served(camera.Port());
    ASSERT_TRUE(Await([&] { return served.IsConnected(); }));
    const auto answer = served.Browser().Get("/api/state");
    EXPECT_EQ("application/json", answer->get_header_value("Content-Type"));
    EXPECT_EQ("nosniff", answer->get_header_value("X-Content-Type-Options"));
    EXPECT_THAT(json::parse(answer->body)["camera"]["name"].get<std::string>(),
                StartsWith("<img src=x onerror=alert(1)>\uFFFD"));
}

}  // namespace
