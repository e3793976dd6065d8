#include "parameters/live/parameterverniercombase.h"

#include <system_error>
#include <utility>

#include "parameters/live/blockedsignals.h"
#include "parameters/live/readtimeout.h"

namespace
{

constexpr INT32 ReadTimeoutSeconds = 1;

/// Requests that wait and answers that wait, together. A client that sends faster than it is served, or that does not
/// read its answers, is held up by its own connection beyond that, and the service's memory stays bounded.
constexpr size_t MaxPackets = 64;

constexpr UINT32 MinWriteSize = 3;  ///< bytes of a packet that has a command

}  // namespace

ParameterVernierComBase::ParameterVernierComBase(const IParameterLoggingAPI* pLog, bool useReceiveBuffer) : m_pLog(pLog)
{
    if (m_pLog == nullptr)
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                "ParameterVernierComBase constructed with a nullptr Set Manager object\n");
    }
    if (useReceiveBuffer)
    {
        m_pReceived = std::make_unique<RequestFraming>(m_pLog);
    }
}

ParameterVernierComBase::~ParameterVernierComBase() = default;

VOID ParameterVernierComBase::Start()
{
    ParameterLogging::Write(m_pLog, ParameterLogging::Debug, "Starting Vernier server: %s\n", Identifier());
    m_stop = false;
    m_readQueue.Clear();
    m_writeQueue.Clear();
    ++m_client;  // the one of before a stop has gone, and may have been cut off
    StartCom();
    const BlockedSignals signals;
    try
    {
        if (m_pReceived != nullptr)
        {
            m_readThread = std::thread(ReadFunction, this);
        }
        m_writeThread = std::thread(WriteFunction, this);
    }
    catch (const std::system_error& rError)
    {
        // The camera runs without the service.
        ParameterLogging::Write(m_pLog, ParameterLogging::Error, "Vernier server has no threads: %s\n", rError.what());
        Stop();
    }
}

VOID ParameterVernierComBase::Stop()
{
    ParameterLogging::Write(m_pLog, ParameterLogging::Debug, "Stopping TCP/IP Vernier server: %s\n", Identifier());
    m_stop = true;
    m_readQueue.Wake();
    m_writeQueue.Wake();
    AnnounceRoom();
    if (m_readThread.joinable())
    {
        m_readThread.join();
    }
    ShutDownCom();
    if (m_writeThread.joinable())
    {
        m_writeThread.join();
    }
    StopCom();
}

std::unique_ptr<ParameterVernierComBase::Packet> ParameterVernierComBase::Read()
{
    std::unique_ptr<Packet> pPacket = m_readQueue.Pop();
    if (pPacket != nullptr)
    {
        m_servedClient = pPacket->client;
        AnnounceRoom();
    }
    return pPacket;
}

bool ParameterVernierComBase::HasListener() const
{
    return m_deafClient != m_servedClient;
}

VOID ParameterVernierComBase::Write(const BYTE* pBuffer, UINT32 size)
{
    Write(pBuffer, size, m_servedClient);
}

VOID ParameterVernierComBase::Write(const BYTE* pBuffer, UINT32 size, UINT32 client)
{
    auto pPacket    = std::make_unique<Packet>(pBuffer, size);
    pPacket->client = client;
    m_writeQueue.Push(std::move(pPacket));
}

UINT32 ParameterVernierComBase::ReceiveVernierRequest(BYTE* pBuffer, UINT32 size, UINT16 commandLimit,
                                                      INT32 timeoutSeconds, const std::atomic<bool>& rStop)
{
    if (m_pReceived == nullptr)
    {
        return 0;
    }
    const ReadTimeout timeout(timeoutSeconds);
    while (true)
    {
        const UINT32 length = m_pReceived->TakeRequest(pBuffer, size, commandLimit);
        if (length > 0 || rStop || timeout.HasPassed())
        {
            return length;
        }
        const UINT32 count = ReadData(m_pReceived->Room(), m_pReceived->RoomSize(), timeoutSeconds, rStop);
        if (count == Disconnected)
        {
            // What the client left of a request stays held: the bytes of the next client complete it.
            std::lock_guard<std::mutex> lock(m_clientMutex);
            ++m_client;
        }
        else
        {
            m_pReceived->Added(count);
        }
        if (rStop || timeout.HasPassed())
        {
            return 0;
        }
    }
}

VOID ParameterVernierComBase::QueueReadData(const BYTE* pData, INT32 size)
{
    if (m_stop || pData == nullptr || size <= 0)
    {
        return;
    }
    auto pPacket    = std::make_unique<Packet>(pData, static_cast<UINT32>(size));
    pPacket->client = m_client;
    m_readQueue.Push(std::move(pPacket));
}

VOID ParameterVernierComBase::ReadFunction(VOID* pArgument)
{
    if (pArgument != nullptr)
    {
        static_cast<ParameterVernierComBase*>(pArgument)->ReadWorker();
    }
}

VOID ParameterVernierComBase::WriteFunction(VOID* pArgument)
{
    if (pArgument != nullptr)
    {
        static_cast<ParameterVernierComBase*>(pArgument)->WriteWorker();
    }
}

VOID ParameterVernierComBase::ReadWorker()
{
    const auto pBuffer = std::make_unique<BYTE[]>(vernier::PacketLimit);
    while (!m_stop)
    {
        WaitForRoom();
        const UINT32 length = ReceiveVernierRequest(pBuffer.get(), vernier::PacketLimit, vernier::CommandCount,
                                                    ReadTimeoutSeconds, m_stop);
        QueueReadData(pBuffer.get(), static_cast<INT32>(length));
    }
}

VOID ParameterVernierComBase::WriteWorker()
{
    while (!m_stop)
    {
        const std::unique_ptr<Packet> pPacket = m_writeQueue.Pop();
        AnnounceRoom();
        if (pPacket != nullptr && !m_stop)
        {
            Send(*pPacket);
        }
    }
}

VOID ParameterVernierComBase::Send(const Packet& rPacket)
{
    if (rPacket.size < MinWriteSize)
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error, "Vernier write insufficient buffer size %d\n",
                                static_cast<INT32>(rPacket.size));
        return;
    }
    std::lock_guard<std::mutex> lock(m_clientMutex);
    if (rPacket.client != m_client)
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Debug, "Vernier client has left, %d bytes not written\n",
                                static_cast<INT32>(rPacket.size));
        return;
    }
    if (WriteData(rPacket.data.get(), rPacket.size) < rPacket.size)
    {
        m_deafClient = rPacket.client;
    }
    LogWrite(rPacket);
}

VOID ParameterVernierComBase::LogWrite(const Packet& rPacket) const
{
    // The low byte tells all commands apart.
    const BYTE* const pData   = rPacket.data.get();
    const BYTE        command = pData[vernier::CommandOffset];
    const INT32       size    = static_cast<INT32>(rPacket.size);

    if (rPacket.size >= vernier::HeaderSizeWithRequestID &&
        command > static_cast<BYTE>(vernier::Command::ControlValues) &&
        command != static_cast<BYTE>(vernier::Command::TriggerValues))
    {
        const BYTE* const pID       = pData + vernier::RequestIDOffset;
        const UINT32      requestID = pID[0] | (UINT32{pID[1]} << 8) | (UINT32{pID[2]} << 16) | (UINT32{pID[3]} << 24);
        ParameterLogging::Write(m_pLog, ParameterLogging::Debug,
                                "Vernier write %d bytes, Command: %u, Request ID: %u\n", size, command, requestID);
        return;
    }
    ParameterLogging::Write(m_pLog, ParameterLogging::Debug, "Vernier write %d bytes, Command: %d\n", size, command);
}

size_t ParameterVernierComBase::PacketCount() const
{
    return m_readQueue.Size() + m_writeQueue.Size();
}

/// When too many packets wait, comes back when many fewer do, so that threads do not take turns for each packet; and
/// when stopping.
VOID ParameterVernierComBase::WaitForRoom()
{
    if (PacketCount() >= MaxPackets)
    {
        std::unique_lock<std::mutex> lock(m_roomMutex);
        m_room.wait(lock, [this] { return m_stop || PacketCount() <= MaxPackets / 2; });
    }
}

VOID ParameterVernierComBase::AnnounceRoom()
{
    if (!m_stop && PacketCount() > MaxPackets / 2)
    {
        return;
    }
    {
        // Whoever waits has either not looked yet, or is woken.
        const std::lock_guard<std::mutex> lock(m_roomMutex);
    }
    m_room.notify_one();
}

const CHAR* ParameterVernierComBase::Identifier() const
{
    const CHAR* const pIdentifier = (m_pLog != nullptr) ? m_pLog->GetLoggingIdentifier() : nullptr;
    return (pIdentifier != nullptr) ? pIdentifier : "";
}
