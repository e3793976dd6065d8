#include "parameters/live/socketid.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/time.h>
#include <unistd.h>

#include "parameters/live/readtimeout.h"

namespace
{

constexpr INT32 PollSlice  = 100;  ///< ms
constexpr INT32 Backlog    = 5;    ///< clients that wait until the present one has left
constexpr INT32 SendSecond = 1;    ///< s, how long a client that does not read may hold up a packet

/// Bytes of requests that the machine keeps of a client that sends faster than it is served. All of them may have to
/// be worked off before the next client has its turn.
constexpr INT32 ReceiveBuffer = 65536;

VOID SetOption(INT32 descriptor, INT32 level, INT32 option, INT32 value)
{
    setsockopt(descriptor, level, option, &value, sizeof(value));
}

/// Bounds what a client can do by standing still. A UNIX socket does without those of TCP.
VOID SetConnectionOptions(INT32 connection)
{
    const timeval sendTimeout = {SendSecond, 0};
    setsockopt(connection, SOL_SOCKET, SO_SNDTIMEO, &sendTimeout, sizeof(sendTimeout));
    SetOption(connection, IPPROTO_TCP, TCP_NODELAY, 1);

    // A tool whose cable was pulled would otherwise hold the only connection for ever.
    SetOption(connection, SOL_SOCKET, SO_KEEPALIVE, 1);
    SetOption(connection, IPPROTO_TCP, TCP_KEEPIDLE, 10);  // s
    SetOption(connection, IPPROTO_TCP, TCP_KEEPINTVL, 5);  // s
    SetOption(connection, IPPROTO_TCP, TCP_KEEPCNT, 3);
    SetOption(connection, IPPROTO_TCP, TCP_USER_TIMEOUT, 25000);  // ms, if it was pulled with an answer on its way
}

}  // namespace

VOID SocketAddress::SetupSocket(AddrType addressType, UINT16 addressPort)
{
    std::memset(&address, 0, sizeof(address));
    type = addressType;
    port = addressPort;
    if (type == AddrType::INET)
    {
        address.inet.sin_family = AF_INET;
        address.inet.sin_addr   = interface;
        address.inet.sin_port   = htons(port);
        length                  = sizeof(address.inet);
        std::snprintf(text, sizeof(text), "0x%x", port);
        return;
    }
    // An abstract name begins with a NUL, and this one has another at its end: without that one the address is another,
    // where no tool looks.
    std::snprintf(text, sizeof(text), "#Vernier%x", port);
    address.local.sun_family = AF_UNIX;
    std::memcpy(address.local.sun_path, text, sizeof(address.local.sun_path));
    address.local.sun_path[0] = '\0';
    length                    = static_cast<socklen_t>(std::strlen(text) + 3);
}

SocketID::~SocketID()
{
    CloseSocket();
}

VOID SocketID::SetupSockets(AddrType type, UINT16 port)
{
    local.SetupSocket(type, port);
    client.SetupSocket(type, port);
}

bool SocketID::SetInterface(const CHAR* pAddress)
{
    in_addr address = {};  // what is no address may be written in part
    if (pAddress == nullptr || inet_pton(AF_INET, pAddress, &address) != 1)
    {
        return false;
    }
    local.interface = address;
    return true;
}

bool SocketID::Create()
{
    const INT32 domain = (local.type == AddrType::INET) ? AF_INET : AF_UNIX;
    descriptor         = socket(domain, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (descriptor < 0)
    {
        return false;
    }
    SetOption(descriptor, SOL_SOCKET, SO_RCVBUF, ReceiveBuffer);  // connections by TCP take it over
    if (local.type == AddrType::INET)
    {
        // Connections of an earlier run that still wait for late segments do not keep a restarted camera off its port.
        SetOption(descriptor, SOL_SOCKET, SO_REUSEADDR, 1);
    }
    return true;
}

bool SocketID::Listen()
{
    if (bind(descriptor, &local.address.any, local.length) != 0)
    {
        return false;
    }
    if (listen(descriptor, Backlog) == 0)
    {
        return true;
    }
    // Another process has bound the same port and was the first to listen. A bound socket cannot be bound again.
    const INT32 error = errno;
    close(descriptor);
    Create();
    errno = error;
    return false;
}

UINT32 SocketID::ReadData(BYTE* pBuffer, UINT32 size, INT32 timeoutSeconds, const std::atomic<bool>& rStop)
{
    const ReadTimeout timeout(timeoutSeconds);
    bool              peerGone = false;
    while (true)
    {
        if (m_isLastRead)
        {
            Disconnect();
            return Disconnected;
        }
        const bool ready = WaitForInput(peerGone);
        if (ready && peerGone)
        {
            break;
        }
        if (ready && (m_connection >= 0 || Accept()))
        {
            const bool    isCutOff = m_isCutOff;  // asked first: what came before is then still read
            const ssize_t received = recv(m_connection, pBuffer, size, MSG_DONTWAIT);
            if (received > 0)
            {
                m_isLastRead = isCutOff;
                return static_cast<UINT32>(received);
            }
            if (received < 0 && errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR)
            {
                Disconnect();
                return Disconnected;
            }
            peerGone = (received == 0);
        }
        if (rStop || timeout.HasPassed())
        {
            break;
        }
    }
    if (!peerGone)
    {
        return 0;
    }
    Disconnect();
    return Disconnected;
}

/// @param peerGone the client sends no more, so that only a connection that is dead both ways is worth a wake-up: the
///                 client may have closed its sending side only, and still wait for answers
bool SocketID::WaitForInput(bool peerGone) const
{
    pollfd slot = {};
    slot.fd     = (m_connection >= 0) ? m_connection : descriptor;
    slot.events = peerGone ? 0 : POLLIN;
    return poll(&slot, 1, PollSlice) > 0;
}

bool SocketID::Accept()
{
    socklen_t   length     = sizeof(client.address);
    const INT32 connection = accept4(descriptor, &client.address.any, &length, SOCK_CLOEXEC);
    if (connection < 0)
    {
        // Without a free descriptor the client stays in the backlog, and the next poll would return at once.
        poll(nullptr, 0, PollSlice);
        return false;
    }
    ParameterLogging::Write(m_pLog, ParameterLogging::Debug, "Vernier accepted data connection on port %s\n",
                            local.text);
    SetConnectionOptions(connection);

    std::lock_guard<std::mutex> lock(m_connectionMutex);
    m_connection = connection;
    m_isCutOff   = false;
    m_isLastRead = false;
    return true;
}

VOID SocketID::Disconnect()
{
    ParameterLogging::Write(m_pLog, ParameterLogging::Debug,
                            "Vernier client disconnected.  Resetting socket on port %s\n", local.text);
    CloseConnection();
}

UINT32 SocketID::WriteData(const BYTE* pBuffer, UINT32 size)
{
    std::lock_guard<std::mutex> lock(m_connectionMutex);

    ssize_t result = 0;
    do
    {
        result = send(m_connection, pBuffer, size, MSG_NOSIGNAL);
    } while (result < 0 && errno == EINTR);
    const UINT32 sent = (result > 0) ? static_cast<UINT32>(result) : 0;
    if (sent < size)
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                "Sockets send failed. Attempted send %u bytes, sent %u bytes on port %s\n", size, sent,
                                local.text);
        shutdown(m_connection, SHUT_RDWR);
        m_isCutOff = true;
    }
    return sent;
}

VOID SocketID::ShutDownConnection()
{
    if (m_connection >= 0)
    {
        shutdown(m_connection, SHUT_RDWR);
    }
}

VOID SocketID::CloseConnection()
{
    ShutDownConnection();  // or the lock would wait for a send that waits for the client

    std::lock_guard<std::mutex> lock(m_connectionMutex);
    if (m_connection >= 0)
    {
        close(m_connection);
        m_connection = -1;
        m_isLastRead = false;
    }
}

VOID SocketID::CloseSocket()
{
    CloseConnection();
    if (descriptor >= 0)
    {
        close(descriptor);
        descriptor = -1;
    }
}
