/// @file
/// The listening socket of the live tuning service, and the connection of the one client that it serves.
#pragma once

#include <atomic>
#include <mutex>

#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/un.h>

#include "parameters/parameterlogging.h"
#include "platform/tavotypes.h"

enum class AddrType : INT32
{
    INET = 0,
    UNIX = 1
};

struct SocketAddress
{
    static constexpr size_t MaxText = 108;

    /// Sets the address up for a port of the machine, or for an abstract UNIX name made of the port.
    VOID SetupSocket(AddrType addressType, UINT16 addressPort);

    union
    {
        sockaddr    any;
        sockaddr_in inet;
        sockaddr_un local;
    } address{};

    in_addr   interface     = {};  ///< of the machine; all of them unless told otherwise
    AddrType  type          = AddrType::INET;
    socklen_t length        = 0;  ///< bytes of the address in use
    UINT16    port          = 0;
    CHAR      text[MaxText] = {};  ///< names the port in log lines
};

/// One thread reads, which also takes clients and closes connections; another one writes. Open and close the
/// listening socket while neither runs.
class SocketID
{
public:
    /// What ReadData answers when the client has left.
    static constexpr UINT32 Disconnected = 0xFFFFFFFF;

    explicit SocketID(const IParameterLoggingAPI* pLog) : m_pLog(pLog)
    {
    }

    ~SocketID();

    SocketID(const SocketID&)            = delete;
    SocketID& operator=(const SocketID&) = delete;

    /// Sets both addresses up.
    VOID SetupSockets(AddrType type, UINT16 port);

    /// Lets the next set-up listen at one interface of the machine. @param pAddress IPv4, such as "127.0.0.1"
    /// @return false if it is none
    bool SetInterface(const CHAR* pAddress);

    /// Makes the descriptor that is to listen. @return false with errno set if there is none
    bool Create();

    /// Binds the local address and listens.
    /// @return false with errno set if the port is taken; the descriptor can then be bound to another one
    bool Listen();

    /// Waits for bytes of the client, or for a client if there is none.
    /// @param timeoutSeconds how long; for ever if negative
    /// @param rStop          ends the wait within a tenth of a second
    /// @return bytes read, 0 if none came, Disconnected
    UINT32 ReadData(BYTE* pBuffer, UINT32 size, INT32 timeoutSeconds, const std::atomic<bool>& rStop);

    /// Waits at most a second for a client that does not read. A client that has not taken all is disconnected, since
    /// it could not tell where the next packet begins: ReadData answers with what it has sent once more, and then that
    /// it has left, however much there is behind.
    /// @return bytes sent
    UINT32 WriteData(const BYTE* pBuffer, UINT32 size);

    /// Ends the connection without closing it: a WriteData that waits for the client comes back. Call it from the
    /// reading thread, or when that one has ended.
    VOID ShutDownConnection();

    VOID CloseConnection();

    /// Closes connection and listening socket.
    VOID CloseSocket();

    SocketAddress local;
    SocketAddress client;           ///< only what accept fills
    INT32         descriptor = -1;  ///< listens; -1 if there is none

private:
    bool WaitForInput(bool peerGone) const;
    bool Accept();
    VOID Disconnect();

    const IParameterLoggingAPI* const m_pLog;

    /// Held while sending, and while the descriptor changes: a number closed under the hands of a sender could by then
    /// belong to another file of the process. The reading thread, which alone changes it, looks at it without.
    std::mutex m_connectionMutex;
    INT32      m_connection = -1;

    std::atomic<bool> m_isCutOff{false};     ///< the client does not take answers, or has left without them
    bool              m_isLastRead = false;  ///< has been cut off before it was last read from
};
