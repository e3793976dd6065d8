// The transport as a tool meets it: bare sockets on one side, a worker that sends each request back on the other.
#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <filesystem>
#include <mutex>
#include <optional>

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

#include "parameters/live/parameterverniercom.h"
#include "tests/parameters/live/livefixture.h"
#include "tests/support/systemlogcapture.h"

namespace
{

class NamedLog : public IParameterLoggingAPI
{
public:
    const CHAR* GetLoggingIdentifier() const override
    {
        return "camera";
    }

    bool LoggingEnabled(ParameterLogging::ParameterLogLevel) const override
    {
        return true;
    }
};

/// The service with a worker whose answers are the requests, or packets of a fixed size.
class EchoService
{
public:
    explicit EchoService(UINT32 answerSize = 0) : m_answerSize(answerSize)
    {
        Start();
    }

    ~EchoService()
    {
        Stop();
    }

    VOID Start()
    {
        m_stop = false;
        com.Start();
        m_worker = std::thread([this] { Work(); });
    }

    VOID Stop()
    {
        if (m_worker.joinable())
        {
            m_stop = true;
            Hold(false);
            com.Stop();
            m_worker.join();
        }
    }

    /// While held, the worker does not finish the request that it works on.
    VOID Hold(bool hold)
    {
        {
            std::lock_guard<std::mutex> lock(m_holdMutex);
            m_hold = hold;
        }
        m_holdEnded.notify_one();
    }

    NamedLog            log;
    ParameterVernierCom com{&log};
    std::atomic<UINT32> requests{0};  ///< taken by the worker

private:
    VOID Work()
    {
        while (!m_stop)
        {
            const auto pPacket = com.Read();
            if (pPacket == nullptr || m_stop)
            {
                continue;
            }
            ++requests;
            std::unique_lock<std::mutex> lock(m_holdMutex);
            m_holdEnded.wait(lock, [this] { return !m_hold; });
            lock.unlock();
            if (m_answerSize > 0)
            {
                com.Write(Packet(m_answerSize, 2).data(), m_answerSize);
            }
            else if (pPacket->size > 0)
            {
                com.Write(pPacket->data.get(), pPacket->size);
            }
        }
    }

    const UINT32            m_answerSize;
    std::thread             m_worker;
    std::atomic<bool>       m_stop{false};
    std::mutex              m_holdMutex;
    std::condition_variable m_holdEnded;
    bool                    m_hold = false;
};

/// Listens on a port of its own, so that nobody else can.
class TakenPort
{
public:
    explicit TakenPort(UINT16 port) : m_socket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address = {};
        address.sin_family  = AF_INET;
        address.sin_port    = htons(port);
        const int on        = 1;
        setsockopt(m_socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof(on));
        // Where this fails another program has the port, which is as good.
        if (bind(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0)
        {
            listen(m_socket, 1);
        }
    }

    ~TakenPort()
    {
        close(m_socket);
    }

    TakenPort(const TakenPort&)            = delete;
    TakenPort& operator=(const TakenPort&) = delete;

private:
    const int m_socket;
};

size_t OpenDescriptors()
{
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return static_cast<size_t>(std::distance(begin(files), end(files)));
}

/// Takes the sockets of a family away from the calling thread for good, and from the threads that it starts.
/// @return false if it cannot
bool LoseSockets(UINT32 family)
{
    constexpr UINT32 Family = offsetof(seccomp_data, args);
    sock_filter      code[] = {
             BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
             BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, __NR_socket, 0, 3),
             BPF_STMT(BPF_LD | BPF_W | BPF_ABS, Family),
             BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, family, 0, 1),
             BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EAFNOSUPPORT),
             BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog program = {static_cast<unsigned short>(std::size(code)), code};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

/// Starts services in a thread that has no sockets of some families.
/// @return false if it cannot lose them
bool StartWithout(std::initializer_list<UINT32> families, const std::function<VOID()>& rStart)
{
    bool isLost = false;
    std::thread(
        [&]
        {
            isLost = std::all_of(families.begin(), families.end(), LoseSockets);
            if (isLost)
            {
                rStart();
            }
        })
        .join();
    return isLost;
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

class TransportTest : public LiveTest
{
protected:
    ~TransportTest() override
    {
        ParameterVernierCom::UseInternalPort = false;
    }

    /// A good client gets its own request back and nothing else.
    static VOID ExpectServed(EchoService& rService, BYTE first = 50)
    {
        const Bytes request = Packet(33, 4, first);
        LiveClient  client(rService.com.GetPort());
        EXPECT_TRUE(client.Send(request));
        EXPECT_EQ(client.Receive(request.size()), request);
        EXPECT_FALSE(client.HasInput());
        client.Reset();
    }

    SystemLogCapture log;  ///< declared first: it must outlive the threads of the service
};

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

TEST_F(TransportTest, TakenPortLeadsToTheNext)
{
    const TakenPort taken(19286);
    EchoService     service;
    EXPECT_TRUE(s_private ? service.com.GetPort() == 19287 : service.com.GetPort() > 19286);
    EXPECT_TRUE(log.Has("Vernier Server bind failed, Socket: ", "V"));
    EXPECT_TRUE(log.Has(", Port: 0x4b56: Result: -1, errno: 98\n", "V")) << log.Text();
    EXPECT_TRUE(log.Has("Vernier Server bound, Socket: ", "V"));
    ExpectServed(service);
}

TEST_F(TransportTest, RunsWithoutAPort)
{
    std::deque<TakenPort> taken;
    for (UINT16 i = 0; i <= 64; ++i)
    {
        taken.emplace_back(static_cast<UINT16>(19286 + i));
    }
    EchoService service;
    EXPECT_EQ(service.com.GetPort(), 0);
    EXPECT_EQ(log.Count("Vernier Server bind failed", "V"), 65u);
    EXPECT_TRUE(log.Has("Vernier Failed to bind any ports\n", "E"));
    service.Stop();
    taken.clear();
    service.Start();
    ExpectServed(service);
}

TEST_F(TransportTest, RunsWithoutADescriptor)
{
    std::optional<EchoService> service;
    if (!StartWithout({AF_INET, AF_UNIX}, [&] { service.emplace(); }))
    {
        GTEST_SKIP() << "this machine does not filter system calls";
    }
    EXPECT_EQ(service->com.GetPort(), 0);
    EXPECT_TRUE(log.Has("Vernier Server INET socket create failed, Socket: -1, Port: 0x4b56: Result: -1", "V"));
    EXPECT_TRUE(log.Has("Vernier Server UNIX socket create failed, Socket: -1, Port: #Vernier8167: Result: -1", "E"));
    EXPECT_TRUE(log.Has("Vernier Server socket create failed, ", "E"));
}

TEST_F(TransportTest, InternalPort)
{
    ParameterVernierCom::UseInternalPort = true;
    EchoService service;
    EXPECT_TRUE(s_private ? service.com.GetPort() == 33127 : service.com.GetPort() >= 33127);
    ExpectServed(service);
}

TEST_F(TransportTest, FallsBackToUnixAddressWithoutIP)
{
    std::optional<EchoService> service;
    std::optional<EchoService> internal;
    const bool                 isStarted = StartWithout({AF_INET},
                                                        [&]
                                                        {
                                            service.emplace();
                                            ParameterVernierCom::UseInternalPort = true;
                                            internal.emplace();
                                        });
    if (!isStarted)
    {
        GTEST_SKIP() << "this machine does not filter system calls";
    }
    EXPECT_EQ(service->com.GetPort(), 33127);
    EXPECT_EQ(internal->com.GetPort(), 0);
    EXPECT_EQ(log.Count("Vernier Server INET socket create failed", "V"), 2u);
    EXPECT_EQ(log.Count("Vernier Server UNIX socket created", "V"), 1u);
    EXPECT_EQ(log.Count("Vernier Server socket create failed", "E"), 1u);
    EXPECT_TRUE(log.Has(", Port: #Vernier8167: Result: 0, errno: 0\n", "V")) << log.Text();

    const std::string name("Vernier8167\0", 12);
    LiveClient        client(name);
    EXPECT_TRUE(client.Send(Packet(20)));
    EXPECT_EQ(client.Receive(20), Packet(20));
    client.Close();
    LiveClient next(name);
    EXPECT_TRUE(next.Send(Packet(30)));
    EXPECT_EQ(next.Receive(30), Packet(30));
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
