/// @file
/// A tuning tool as bare sockets, for tests of the live tuning service.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "parameters/live/vernierprotocol.h"
#include "tests/parameters/live/packets.h"
#include "tests/support/privatenetwork.h"

/// A packet of so many bytes that states this length; behind the header it counts up from first.
inline Bytes Packet(UINT32 size, UINT16 command = 1, BYTE first = 0)
{
    Bytes bytes(size);
    for (UINT32 i = vernier::IDOffset; i < size; ++i)
    {
        bytes[i] = static_cast<BYTE>(first + i);
    }
    const UINT16 header[] = {vernier::StartTag, command, static_cast<UINT16>(size)};
    for (UINT32 i = 0; i < vernier::IDOffset; ++i)
    {
        bytes[i] = static_cast<BYTE>(header[i / 2] >> (8 * (i % 2)));
    }
    return bytes;
}

inline Bytes WithLength(Bytes packet, UINT16 length)
{
    packet[vernier::LengthOffset]     = static_cast<BYTE>(length);
    packet[vernier::LengthOffset + 1] = static_cast<BYTE>(length >> 8);
    return packet;
}

/// @return false if it has not come true for so long that it never will
inline bool WaitFor(const std::function<bool()>& rCondition)
{
    const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!rCondition())
    {
        if (std::chrono::steady_clock::now() > giveUp)
        {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

/// A connection to the service; closes in an orderly way at its end.
class LiveClient
{
public:
    /// Tries until the port listens.
    /// @param receiveBuffer bytes that the machine takes for a client that does not read; 0 for the usual ones
    explicit LiveClient(UINT16 port, INT32 receiveBuffer = 0)
    {
        sockaddr_in address     = {};
        address.sin_family      = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port        = htons(port);
        Connect(reinterpret_cast<const sockaddr*>(&address), sizeof(address), receiveBuffer);
        const int on = 1;
        setsockopt(m_socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof(on));
    }

    /// @param rName of an abstract UNIX address, without the NUL in front
    explicit LiveClient(const std::string& rName)
    {
        sockaddr_un address = {};
        address.sun_family  = AF_UNIX;
        std::copy(rName.begin(), rName.end(), address.sun_path + 1);
        Connect(reinterpret_cast<const sockaddr*>(&address),
                static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + rName.size()), 0);
    }

    ~LiveClient()
    {
        Close();
    }

    LiveClient(const LiveClient&)            = delete;
    LiveClient& operator=(const LiveClient&) = delete;

    /// @return false if the service has cut the connection
    bool Send(const Bytes& rBytes)
    {
        return send(m_socket, rBytes.data(), rBytes.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(rBytes.size());
    }

    /// Sends for as long as the service takes bytes, and so many bytes at most. @return bytes sent
    size_t Flood(const Bytes& rBytes, size_t limit)
    {
        size_t sent = 0;
        pollfd slot = {m_socket, POLLOUT, 0};
        while (sent < limit && poll(&slot, 1, 500) > 0)
        {
            const size_t  offset = sent % rBytes.size();
            const ssize_t result =
                send(m_socket, rBytes.data() + offset, rBytes.size() - offset, MSG_NOSIGNAL | MSG_DONTWAIT);
            if (result <= 0)
            {
                break;
            }
            sent += static_cast<size_t>(result);
        }
        return sent;
    }

    /// @return so many bytes; fewer if the service has cut the connection, or is silent for so long that it is dead
    Bytes Receive(size_t count)
    {
        Bytes  bytes(count);
        size_t held = 0;
        pollfd slot = {m_socket, POLLIN, 0};
        while (held < count && poll(&slot, 1, 60000) > 0)
        {
            const ssize_t result = recv(m_socket, bytes.data() + held, count - held, 0);
            if (result <= 0)
            {
                break;
            }
            held += static_cast<size_t>(result);
        }
        bytes.resize(held);
        return bytes;
    }

    /// @return one packet, by the length that it states
    Bytes ReceivePacket()
    {
        Bytes header = Receive(vernier::IDOffset);
        if (header.size() < vernier::IDOffset)
        {
            return header;
        }
        const size_t length = header[vernier::LengthOffset] | (size_t{header[vernier::LengthOffset + 1]} << 8);
        return header + Receive(length > header.size() ? length - header.size() : 0);
    }

    /// @return whether bytes of the service, or its end, have arrived
    bool HasInput()
    {
        pollfd slot = {m_socket, POLLIN, 0};
        return poll(&slot, 1, 0) > 0;
    }

    /// Says that no more is sent; answers can still be received.
    VOID HalfClose()
    {
        shutdown(m_socket, SHUT_WR);
    }

    /// Leaves at once; what is under way is lost.
    VOID Reset()
    {
        const linger now = {1, 0};
        setsockopt(m_socket, SOL_SOCKET, SO_LINGER, &now, sizeof(now));
        Close();
    }

    VOID Close()
    {
        if (m_socket >= 0)
        {
            close(m_socket);
            m_socket = -1;
        }
    }

private:
    VOID Connect(const sockaddr* pAddress, socklen_t length, INT32 receiveBuffer)
    {
        EXPECT_TRUE(WaitFor(
            [&]
            {
                Close();
                m_socket = socket(pAddress->sa_family, SOCK_STREAM | SOCK_CLOEXEC, 0);
                if (receiveBuffer > 0)
                {
                    setsockopt(m_socket, SOL_SOCKET, SO_RCVBUF, &receiveBuffer, sizeof(receiveBuffer));
                }
                return connect(m_socket, pAddress, length) == 0;
            }));
    }

    int m_socket = -1;
};

/// Gives the test program a network of its own where the machine allows that.
class LiveTest : public ::testing::Test
{
protected:
    static VOID SetUpTestSuite()
    {
        s_private = PrivateNetwork::Enter();
    }

    static inline bool s_private = false;  ///< ports are taken by the test alone
};
