// The transport as a tool meets it: bare sockets on one side, a worker that sends each request back on the other.
#include <filesystem>

#include "tests/parameters/live/transportfixture.h"

namespace
{

size_t OpenDescriptors()
{
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return static_cast<size_t>(std::distance(begin(files), end(files)));
}

/// So many of the shortest packets.
Bytes Packets(size_t count)
{
    Bytes packets;
    for (; count > 0; --count)
    {
        packets = packets + Packet(14);
    }
    return packets;
}

}  // namespace

TEST_F(TransportTest, ServesRequestsHoweverTheyAreCut)
{
    EchoService service;
    LiveClient  client(service.com.GetPort());
    const Bytes several = Packet(14) + Packet(65534, 3) + Packet(20, 7, 9);
    EXPECT_TRUE(client.Send(several));
    EXPECT_EQ(client.Receive(several.size()), several);

    const Bytes request = Packet(24, 9);
    for (BYTE byte : request)
    {
        EXPECT_TRUE(client.Send({byte}));
        std::this_thread::sleep_for(std::chrono::milliseconds(1));  // or the machine may put them together again
    }
    EXPECT_EQ(client.Receive(request.size()), request);

    // Of 13 bytes the worker gets 13; what has 65535 reaches it empty.
    EXPECT_TRUE(client.Send(Packet(13) + Packet(65535) + Packet(15)));
    EXPECT_EQ(client.Receive(13 + 15), Packet(13) + Packet(15));
    EXPECT_TRUE(WaitFor([&] { return log.Has("Vernier write 15 bytes, Command: 1\n", "V"); }));
    EXPECT_TRUE(log.Has("Vernier write 24 bytes, Command: 9, Request ID: 286265102\n", "V")) << log.Text();
    EXPECT_TRUE(log.Has("Vernier write 20 bytes, Command: 7\n", "V"));
    EXPECT_FALSE(log.Has("", "E")) << log.Text();
}

TEST_F(TransportTest, SurvivesAThousandClients)
{
    EchoService  service;
    const UINT16 port = service.com.GetPort();
    ExpectServed(service);
    const size_t before = OpenDescriptors();
    for (UINT32 i = 0; i < 990; ++i)
    {
        ExpectServed(service, static_cast<BYTE>(i));
        if (i % 10 == 0)
        {
            LiveClient(port).Reset();
        }
    }
    {
        LiveClient silent(port);
        LiveClient asking(port);
        EXPECT_TRUE(asking.Send(Packet(14)));
        silent.Close();
        EXPECT_EQ(asking.Receive(14), Packet(14));
    }
    ExpectServed(service);
    EXPECT_LE(OpenDescriptors(), before + 1);  // of the last client
    EXPECT_TRUE(log.Has("Vernier accepted data connection on port 0x4b56\n", "V") || !s_private);
    EXPECT_TRUE(log.Has("Vernier client disconnected.  Resetting socket on port 0x4b56\n", "V") || !s_private);
    EXPECT_FALSE(log.Has("", "E")) << log.Text();
}

TEST_F(TransportTest, SecondClientWaitsUntilTheFirstHasLeft)
{
    EchoService service;
    LiveClient  first(service.com.GetPort());
    EXPECT_TRUE(first.Send(Packet(14)));
    EXPECT_EQ(first.Receive(14), Packet(14));

    LiveClient second(service.com.GetPort());
    EXPECT_TRUE(second.Send(Packet(20)));
    EXPECT_TRUE(first.Send(Packet(16)));
    EXPECT_EQ(first.Receive(16), Packet(16));
    EXPECT_FALSE(second.HasInput());
    first.Reset();
    EXPECT_EQ(second.Receive(20), Packet(20));
}

TEST_F(TransportTest, AnswersAClientThatHasSaidAll)
{
    EchoService service;
    service.Hold(true);
    LiveClient client(service.com.GetPort());
    EXPECT_TRUE(client.Send(Packet(20) + Packet(30)));
    client.HalfClose();
    EXPECT_TRUE(WaitFor([&] { return service.requests > 0; }));
    service.Hold(false);
    EXPECT_EQ(client.Receive(51), Packet(20) + Packet(30));  // and then the end
}

// The answers of the first client would fill any buffer of the machine. None of them reaches the second.
TEST_F(TransportTest, ClientThatNeverReadsIsCutOff)
{
    EchoService service(65534);
    LiveClient  client(service.com.GetPort(), 4096);
    EXPECT_TRUE(client.Send(Packets(200)));
    EXPECT_TRUE(WaitFor([&] { return log.Has("Sockets send failed. Attempted send 65534 bytes, sent ", "E"); }));

    LiveClient next(service.com.GetPort());
    EXPECT_TRUE(next.Send(Packet(14, 8)));
    EXPECT_EQ(next.Receive(65534), Packet(65534, 2));
    EXPECT_TRUE(WaitFor([&] { return service.requests > 100; }));
    EXPECT_FALSE(next.HasInput());
}

TEST_F(TransportTest, FloodIsHeldUpByItsConnection)
{
    constexpr size_t Limit = size_t{128} << 20;

    EchoService service;
    service.Hold(true);
    LiveClient client(service.com.GetPort());
    EXPECT_LT(client.Flood(Packet(65534), Limit), Limit);
    client.Reset();
    service.Hold(false);
    EXPECT_TRUE(WaitFor([&] { return service.requests >= 64; }));
    LiveClient next(service.com.GetPort());
    EXPECT_TRUE(next.Send(Bytes(65534, 0) + Packet(14)));  // ends the request that the flood left behind
    EXPECT_TRUE(WaitFor(
        [&]
        {
            EXPECT_TRUE(next.Send(Packet(14)));
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
            return next.HasInput();
        }));
}

TEST_F(TransportTest, StopsAndStartsWhateverGoesOn)
{
    EchoService service(65534);
    service.Stop();  // nobody there
    EXPECT_EQ(service.com.GetPort(), 0);
    service.Start();
    EXPECT_TRUE(log.Has("Starting Vernier server: camera\n", "V"));
    EXPECT_TRUE(log.Has("Stopping TCP/IP Vernier server: camera\n", "V"));

    LiveClient idle(service.com.GetPort());
    EXPECT_TRUE(idle.Send(Packet(14)));
    EXPECT_EQ(idle.Receive(65534).size(), 65534u);
    service.Stop();
    EXPECT_TRUE(idle.Receive(1).empty());
    service.Start();

    LiveClient deaf(service.com.GetPort(), 4096);
    EXPECT_TRUE(deaf.Send(Packets(200)));
    EXPECT_TRUE(WaitFor([&] { return service.requests > 64; }));
    service.Stop();

    service.Start();
    LiveClient next(service.com.GetPort());
    EXPECT_TRUE(next.Send(Packet(14)));
    EXPECT_EQ(next.Receive(65534), Packet(65534, 2));
}

TEST_F(TransportTest, WritesNothingThatIsNoPacket)
{
    EchoService service;
    const Bytes bytes(65535, 1);
    service.com.Write(nullptr, 20);
    service.com.Write(bytes.data(), 0);
    service.com.Write(bytes.data(), 65535);
    service.com.Write(bytes.data(), 2);
    EXPECT_TRUE(WaitFor([&] { return log.Count("Vernier write insufficient buffer size", "E") == 4; }));
    EXPECT_EQ(log.Count("Vernier write insufficient buffer size 0\n"), 3u);
    ExpectServed(service);
}
