/// @file
/// The transport under test, with a worker that sends each request back.
#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "parameters/live/parameterverniercom.h"
#include "tests/parameters/live/livefixture.h"
#include "tests/support/systemlogcapture.h"

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
