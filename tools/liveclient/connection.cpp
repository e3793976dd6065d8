#include "tools/liveclient/connection.h"

#include <algorithm>
#include <cerrno>
#include <memory>
#include <system_error>

#include <fmt/format.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include "tools/liveclient/error.h"

namespace liveclient
{

namespace
{

std::string TextOf(int error)
{
    return std::generic_category().message(error);
}

using Addresses = std::unique_ptr<addrinfo, decltype(&freeaddrinfo)>;

Addresses Resolve(const std::string& rHost, UINT16 port)
{
    addrinfo hints{};
    hints.ai_family   = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* pList   = nullptr;
    const int fault   = getaddrinfo(rHost.c_str(), std::to_string(port).c_str(), &hints, &pList);
    if (fault != 0)
    {
        throw Error(fmt::format("unknown host '{}': {}", rHost, gai_strerror(fault)));
    }
    return Addresses(pList, &freeaddrinfo);
}

}  // namespace

Connection::Connection(const std::string& rHost, UINT16 port, Deadline deadline)
    : m_peer((rHost.find(':') == std::string::npos) ? fmt::format("{}:{}", rHost, port)
                                                    : fmt::format("[{}]:{}", rHost, port))
{
    const Addresses addresses = Resolve(rHost, port);
    int             error     = 0;
    for (const addrinfo* pAddress = addresses.get(); pAddress != nullptr && m_socket < 0; pAddress = pAddress->ai_next)
    {
        error = Connect(*pAddress, deadline);
    }
    if (m_socket >= 0)
    {
        const int on = 1;
        (VOID) setsockopt(m_socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof(on));
        return;
    }
    throw Error((error == ECONNREFUSED) ? fmt::format("nobody listens at {}: {}", m_peer, TextOf(error))
                                        : fmt::format("no connection to {}: {}", m_peer, TextOf(error)));
}

Connection::~Connection()
{
    Close();
}

/// Sets m_socket if the address answers. @return the error otherwise
int Connection::Connect(const addrinfo& rAddress, Deadline deadline)
{
    m_socket = socket(rAddress.ai_family, rAddress.ai_socktype | SOCK_NONBLOCK | SOCK_CLOEXEC, rAddress.ai_protocol);
    if (m_socket < 0)
    {
        return errno;
    }
    int error = (connect(m_socket, rAddress.ai_addr, rAddress.ai_addrlen) == 0) ? 0 : errno;
    if (error == EINPROGRESS)
    {
        socklen_t size = sizeof(error);
        error          = ETIMEDOUT;
        if (WaitFor(POLLOUT, deadline))
        {
            (VOID) getsockopt(m_socket, SOL_SOCKET, SO_ERROR, &error, &size);
        }
    }
    if (error != 0)
    {
        Close();
    }
    return error;
}

/// @return whether the socket is ready, or broken, before the deadline
bool Connection::WaitFor(short events, Deadline deadline) const
{
    using namespace std::chrono;
    pollfd entry{m_socket, events, 0};
    while (true)
    {
        const INT64 left   = ceil<milliseconds>(deadline - steady_clock::now()).count();
        const int   result = poll(&entry, 1, static_cast<int>(std::clamp<INT64>(left, 0, 60000)));
        if (result > 0)
        {
            return true;
        }
        if (result < 0 && errno != EINTR)
        {
            throw Error(fmt::format("{}: {}", m_peer, TextOf(errno)));
        }
        if (left <= 0)
        {
            return false;
        }
    }
}

VOID Connection::RequireOpen() const
{
    if (m_socket < 0)
    {
        throw Error(fmt::format("{}: the connection has been closed", m_peer));
    }
}

VOID Connection::Send(std::span<const BYTE> bytes, Deadline deadline)
{
    if (!TrySend(bytes, deadline))
    {
        throw Error(fmt::format("{} takes no more bytes", m_peer));
    }
}

bool Connection::TrySend(std::span<const BYTE> bytes, Deadline deadline)
{
    RequireOpen();
    while (!bytes.empty())
    {
        const ssize_t sent = send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent >= 0)
        {
            bytes = bytes.subspan(static_cast<size_t>(sent));
        }
        else if (errno == EAGAIN)
        {
            if (!WaitFor(POLLOUT, deadline))
            {
                return false;
            }
        }
        else if (errno != EINTR)
        {
            throw Error(fmt::format("{} has closed the connection: {}", m_peer, TextOf(errno)));
        }
    }
    return true;
}

size_t Connection::Receive(std::span<BYTE> bytes, Deadline deadline)
{
    RequireOpen();
    size_t held = 0;
    while (held < bytes.size())
    {
        const ssize_t received = recv(m_socket, bytes.data() + held, bytes.size() - held, 0);
        if (received > 0)
        {
            held += static_cast<size_t>(received);
        }
        else if (received == 0)
        {
            throw Error(fmt::format("{} has closed the connection", m_peer));
        }
        else if (errno == EAGAIN)
        {
            if (!WaitFor(POLLIN, deadline))
            {
                break;
            }
        }
        else if (errno != EINTR)
        {
            throw Error(fmt::format("{} has closed the connection: {}", m_peer, TextOf(errno)));
        }
    }
    return held;
}

VOID Connection::Close()
{
    if (m_socket < 0)
    {
        return;
    }
    // A reset tells the service at once that this client has left. An orderly close it would notice only when its read
    // time-out of one second has passed, and the next client, such as the next line of a script, would wait for that.
    // Nothing is lost by it: whoever closes has its answers, or has given them up.
    const linger reset{1, 0};
    (VOID) setsockopt(m_socket, SOL_SOCKET, SO_LINGER, &reset, sizeof(reset));
    (VOID) close(m_socket);
    m_socket = -1;
}

}  // namespace liveclient
