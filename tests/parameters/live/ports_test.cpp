// The address at which the service can be reached: where its port is taken, and where there is none.
#include <algorithm>
#include <cerrno>
#include <deque>
#include <functional>
#include <initializer_list>
#include <iterator>
#include <optional>
#include <string>
#include <thread>

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

#include "tests/parameters/live/transportfixture.h"

namespace
{

using PortsTest = TransportTest;

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

}  // namespace

TEST_F(PortsTest, TakenPortLeadsToTheNext)
{
    const TakenPort taken(19286);
    EchoService     service;
    EXPECT_TRUE(s_private ? service.com.GetPort() == 19287 : service.com.GetPort() > 19286);
    EXPECT_TRUE(log.Has("Vernier Server bind failed, Socket: ", "V"));
    EXPECT_TRUE(log.Has(", Port: 0x4b56: Result: -1, errno: 98\n", "V")) << log.Text();
    EXPECT_TRUE(log.Has("Vernier Server bound, Socket: ", "V"));
    ExpectServed(service);
}

TEST_F(PortsTest, RunsWithoutAPort)
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

TEST_F(PortsTest, RunsWithoutADescriptor)
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

TEST_F(PortsTest, InternalPort)
{
    ParameterVernierCom::UseInternalPort = true;
    EchoService service;
    EXPECT_TRUE(s_private ? service.com.GetPort() == 33127 : service.com.GetPort() >= 33127);
    ExpectServed(service);
}

TEST_F(PortsTest, FallsBackToUnixAddressWithoutIP)
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
