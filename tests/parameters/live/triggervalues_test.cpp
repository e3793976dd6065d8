/// Values of triggers, which a tool asks for and frames bring together.
#include <ctime>
#include <string>
#include <tuple>
#include <vector>

#include "parameters/live/parametertriggervalues.h"
#include "parameters/live/parametervernierworker.h"
#include "tests/parameters/live/commandsfixture.h"

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

using TriggerValuesTest = LiveCommandsTest;

/// Takes as much processor time as the service waits for further values.
VOID LetTriggerValuesComeTogether()
{
    const std::clock_t due = std::clock() + 5001;
    while (std::clock() < due)
    {
    }
}

}  // namespace

TEST_F(TriggerValuesTest, TriggerValuesFollowWhenTheyHaveComeTogether)
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

TEST_F(TriggerValuesTest, AnAnswerOfTriggerValuesEndsBeforeTheInstanceThatDoesNotFit)
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

TEST_F(TriggerValuesTest, TriggerValuesOfAClientThatHasLeftReachNobody)
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
