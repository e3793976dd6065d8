/// @file
/// The transport of the live tuning service, whatever carries it: requests come in by one thread and wait for the
/// worker, answers of the worker wait for another thread that sends them.
#pragma once

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

#include "parameters/live/packetqueue.h"
#include "parameters/live/requestframing.h"
#include "parameters/parameterlogging.h"

class ParameterVernierComBase
{
public:
    using Packet = PacketQueue::Packet;

    /// What ReadData answers when the client has left.
    static constexpr UINT32 Disconnected = 0xFFFFFFFF;

    /// A derived class stops before its members go.
    virtual ~ParameterVernierComBase();

    virtual VOID StartCom() = 0;
    virtual VOID StopCom()  = 0;

    /// Waits for bytes, or for a client if there is none.
    /// @param timeoutSeconds how long; for ever if negative
    /// @return bytes read, 0 if none came before the time-out or the stop, Disconnected
    virtual UINT32 ReadData(BYTE* pBuffer, UINT32 size, INT32 timeoutSeconds, const std::atomic<bool>& rStop) = 0;

    /// @return bytes sent
    virtual UINT32 WriteData(const BYTE* pBuffer, UINT32 size) = 0;

    /// Makes a WriteData that waits for the client come back. The read thread does not run at that time.
    virtual VOID ShutDownCom() = 0;

    /// Begins with empty queues. Bytes of a request that was not complete are still there.
    VOID Start();

    /// Ends both threads and the wait of a Read that is going on, or of the next one, which answers null. After a Start
    /// all works again.
    VOID Stop();

    /// Waits for a request.
    /// @return the next one, empty if it was of 65535 bytes; null if the service is about to stop
    std::unique_ptr<Packet> Read();

    /// @return false if the request that was Read last is one of a client that has been cut off, since it did not take
    ///         its answers: what only asks need not be served
    bool HasListener() const;

    /// Queues a copy of an answer to the request that was Read last; never waits. It is dropped if the client of that
    /// request has left by the time it would be sent. Null, a size of 0 or one of 65535 and more send nothing.
    VOID Write(const BYTE* pBuffer, UINT32 size);

    /// The same for a client that was served before. @param client its number, from ServedClient
    VOID Write(const BYTE* pBuffer, UINT32 size, UINT32 client);

    /// @return the number of the client whose request was Read last
    UINT32 ServedClient() const
    {
        return m_servedClient;
    }

    /// Waits for a whole request.
    /// @param size           of the buffer, 65535 to hold any request
    /// @param commandLimit   requests with this command or a higher one are dropped
    /// @param timeoutSeconds as for ReadData
    /// @return bytes of the request, 0 if none was complete before the time-out or the stop
    UINT32 ReceiveVernierRequest(BYTE* pBuffer, UINT32 size, UINT16 commandLimit, INT32 timeoutSeconds,
                                 const std::atomic<bool>& rStop);

    /// Queues a copy of a request for Read. Ignored when stopping, for null data and for a size of 0 or below; a size
    /// of 65535 and more gives an empty packet.
    VOID QueueReadData(const BYTE* pData, INT32 size);

protected:
    /// @param pLog             on whose behalf messages are written; outlives this object
    /// @param useReceiveBuffer whether there is something to read, and a thread that does
    ParameterVernierComBase(const IParameterLoggingAPI* pLog, bool useReceiveBuffer);

    bool IsRunning() const
    {
        return m_writeThread.joinable();
    }

    const IParameterLoggingAPI* const m_pLog;

private:
    static VOID ReadFunction(VOID* pArgument);
    static VOID WriteFunction(VOID* pArgument);

    VOID ReadWorker();
    VOID WriteWorker();
    VOID Send(const Packet& rPacket);
    VOID LogWrite(const Packet& rPacket) const;
    VOID WaitForRoom();
    VOID AnnounceRoom();

    size_t PacketCount() const;

    const CHAR* Identifier() const;

    std::unique_ptr<RequestFraming> m_pReceived;  ///< null without a receive buffer
    std::atomic<bool>               m_stop{false};
    std::thread                     m_readThread;
    std::thread                     m_writeThread;
    PacketQueue                     m_readQueue;
    PacketQueue                     m_writeQueue;

    /// Clients are numbered, so that the answers to one that has left do not reach the next one. Held while sending:
    /// the next client is taken only after the number has changed.
    std::mutex          m_clientMutex;
    UINT32              m_client = 0;       ///< changed by the read thread alone, and by Start
    std::atomic<UINT32> m_servedClient{0};  ///< whose request was Read last
    std::atomic<UINT32> m_deafClient{~0U};  ///< the last one that has not taken an answer

    std::mutex              m_roomMutex;
    std::condition_variable m_room;  ///< there may be room in the queues
};
