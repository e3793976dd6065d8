/// @file
/// Bytes to and from a service over TCP, with deadlines.
#pragma once

#include <chrono>
#include <span>
#include <string>

#include "platform/tavotypes.h"

struct addrinfo;

namespace liveclient
{

class Connection
{
public:
    using Deadline = std::chrono::steady_clock::time_point;

    /// Connects. @throws Error, as all operations do
    Connection(const std::string& rHost, UINT16 port, Deadline deadline);
    ~Connection();

    Connection(const Connection&)            = delete;
    Connection& operator=(const Connection&) = delete;

    VOID Send(std::span<const BYTE> bytes, Deadline deadline);

    /// @return false if not all bytes were taken until the deadline
    bool TrySend(std::span<const BYTE> bytes, Deadline deadline);

    /// Waits for as many bytes as there is room for. @return those that came until the deadline
    size_t Receive(std::span<BYTE> bytes, Deadline deadline);

    /// Drops the connection, and with it what the service has not read yet. A second call does nothing.
    VOID Close();

    /// "host:port", for messages.
    const std::string& Peer() const
    {
        return m_peer;
    }

private:
    int  Connect(const addrinfo& rAddress, Deadline deadline);
    bool WaitFor(short events, Deadline deadline) const;
    VOID RequireOpen() const;

    std::string m_peer;
    int         m_socket = -1;
};

}  // namespace liveclient
