/// @file
/// A service of canned answers for one client, on a port of the kernel's choice.
#pragma once

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <functional>
#include <span>
#include <thread>
#include <vector>

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "tests/parameters/live/packets.h"

class ScriptedService
{
public:
    /// Makes the bytes that answer a request; none for silence.
    using Reply = std::function<Bytes(UINT32 requestID)>;

    /// Answers as the replies say, but for the request by which a client finds its place in the stream: that is
    /// answered whenever it comes.
    /// @param closesAtEnd closes the connection behind the last reply
    /// @param swallowed   requests at first that get no answer
    /// @param lag         before each half of the answer by which a client finds its place
    explicit ScriptedService(std::vector<Reply> replies, bool closesAtEnd = false, UINT32 swallowed = 0,
                             std::chrono::milliseconds lag = {})
        : m_replies(std::move(replies)), m_closesAtEnd(closesAtEnd), m_swallowed(swallowed), m_lag(lag)
    {
        m_listening = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family      = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size          = sizeof(address);
        EXPECT_EQ(0, bind(m_listening, reinterpret_cast<sockaddr*>(&address), size));
        EXPECT_EQ(0, listen(m_listening, 1));
        EXPECT_EQ(0, getsockname(m_listening, reinterpret_cast<sockaddr*>(&address), &size));
        m_port   = ntohs(address.sin_port);
        m_thread = std::thread([this] { Serve(); });
    }

    ~ScriptedService()
    {
        (VOID) End();
        close(m_listening);
    }

    UINT16 Port() const
    {
        return m_port;
    }

    /// Waits until the client has left. @return the requests that the replies answered, and those behind them
    const std::vector<Bytes>& End()
    {
        if (m_thread.joinable())
        {
            shutdown(m_listening, SHUT_RDWR);
            m_thread.join();
        }
        return m_requests;
    }

    /// How the client left. To be called after End.
    int LastError() const
    {
        return m_lastError;
    }

private:
    bool ReadAll(std::span<BYTE> bytes)
    {
        const ssize_t received = recv(m_client, bytes.data(), bytes.size(), MSG_WAITALL);
        m_lastError            = (received < 0) ? errno : 0;
        return received == static_cast<ssize_t>(bytes.size());
    }

    bool ReadRequest(Bytes& rRequest)
    {
        rRequest.assign(14, 0);
        while (rRequest[0] == 0)  // what a client without an answer sends behind its first request
        {
            if (!ReadAll(std::span(rRequest).first(1)))
            {
                return false;
            }
        }
        if (!ReadAll(std::span(rRequest).subspan(1)))
        {
            return false;
        }
        const size_t length = rRequest[4] + 256u * rRequest[5];
        EXPECT_GE(length, 14u);
        rRequest.resize(std::max<size_t>(length, 14));
        return length <= 14 || ReadAll(std::span(rRequest).subspan(14));
    }

    Bytes Answer(const Bytes& rRequest)
    {
        UINT32 requestID = 0;
        if (rRequest.size() >= 18)
        {
            std::memcpy(&requestID, rRequest.data() + 14, sizeof(requestID));
        }
        if (rRequest == Request(5, Text(""), 0, requestID))
        {
            const Bytes answer = rRequest;
            const auto  middle = answer.begin() + (m_lag.count() > 0 ? 3 : 0);
            std::this_thread::sleep_for(m_lag);
            (VOID) send(m_client, answer.data(), static_cast<size_t>(middle - answer.begin()), MSG_NOSIGNAL);
            std::this_thread::sleep_for(m_lag);
            return {middle, answer.end()};
        }
        m_requests.push_back(rRequest);
        return (m_requests.size() <= m_replies.size()) ? m_replies[m_requests.size() - 1](requestID) : Bytes();
    }

    VOID Serve()
    {
        m_client = accept(m_listening, nullptr, nullptr);
        Bytes request;
        while (m_client >= 0 && !(m_closesAtEnd && m_requests.size() == m_replies.size()) && ReadRequest(request))
        {
            if (m_swallowed > 0)
            {
                --m_swallowed;
                continue;
            }
            const Bytes answer = Answer(request);
            (VOID) send(m_client, answer.data(), answer.size(), MSG_NOSIGNAL);
        }
        close(m_client);
    }

    const std::vector<Reply>        m_replies;
    const bool                      m_closesAtEnd;
    UINT32                          m_swallowed;
    const std::chrono::milliseconds m_lag;
    int                             m_listening = -1;
    int                             m_client    = -1;
    UINT16                          m_port      = 0;
    int                             m_lastError = 0;
    std::vector<Bytes>              m_requests;
    std::thread                     m_thread;
};
