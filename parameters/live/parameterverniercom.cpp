#include "parameters/live/parameterverniercom.h"

#include <cerrno>

static_assert(SocketID::Disconnected == ParameterVernierComBase::Disconnected);

ParameterVernierCom::ParameterVernierCom(const IParameterLoggingAPI* pLog)
    : ParameterVernierComBase(pLog, true), m_socket(pLog)
{
    m_socket.SetupSockets(AddrType::INET, vernier::DefaultPort);
}

ParameterVernierCom::~ParameterVernierCom()
{
    if (IsRunning())
    {
        Stop();
    }
}

VOID ParameterVernierCom::StartCom()
{
    OpenPort();
}

VOID ParameterVernierCom::StopCom()
{
    ClosePort();
}

UINT32 ParameterVernierCom::ReadData(BYTE* pBuffer, UINT32 size, INT32 timeoutSeconds, const std::atomic<bool>& rStop)
{
    return m_socket.ReadData(pBuffer, size, timeoutSeconds, rStop);
}

UINT32 ParameterVernierCom::WriteData(const BYTE* pBuffer, UINT32 size)
{
    return m_socket.WriteData(pBuffer, size);
}

VOID ParameterVernierCom::ShutDownCom()
{
    m_socket.ShutDownConnection();
}

UINT16 ParameterVernierCom::GetPort() const
{
    return (m_socket.descriptor >= 0) ? m_socket.local.port : UINT16{0};
}

VOID ParameterVernierCom::OpenPort()
{
    if (m_socket.descriptor >= 0)
    {
        return;
    }
    m_socket.SetupSockets(AddrType::INET, UseInternalPort ? vernier::InternalPort : vernier::DefaultPort);
    const INT32 error = CreateSocket();
    if (error != 0)
    {
        LogError("Vernier Server socket create failed", m_socket.descriptor, m_socket.local.text, -1, error);
        return;
    }
    BindFirstFree();
}

/// A machine without IP can still be tuned from within, unless the internal port is asked for: that one stays TCP.
INT32 ParameterVernierCom::CreateSocket()
{
    const SocketAddress& rLocal = m_socket.local;
    if (m_socket.Create())
    {
        LogDebug("Vernier Server INET socket created", m_socket.descriptor, rLocal.text, 0, 0);
        return 0;
    }
    const INT32 inetError = errno;
    LogDebug("Vernier Server INET socket create failed", m_socket.descriptor, rLocal.text, -1, inetError);
    if (UseInternalPort)
    {
        return inetError;
    }
    m_socket.SetupSockets(AddrType::UNIX, vernier::InternalPort);
    if (m_socket.Create())
    {
        LogDebug("Vernier Server UNIX socket created", m_socket.descriptor, rLocal.text, 0, 0);
        return 0;
    }
    const INT32 unixError = errno;
    LogError("Vernier Server UNIX socket create failed", m_socket.descriptor, rLocal.text, -1, unixError);
    return unixError;
}

VOID ParameterVernierCom::BindFirstFree()
{
    SocketAddress& rLocal = m_socket.local;
    const UINT16   limit  = static_cast<UINT16>(rLocal.port + vernier::PortsBehind);
    while (!m_socket.Listen())
    {
        LogDebug("Vernier Server bind failed", m_socket.descriptor, rLocal.text, -1, errno);
        if (rLocal.port == limit)
        {
            ParameterLogging::Write(m_pLog, ParameterLogging::Error, "Vernier Failed to bind any ports\n");
            m_socket.CloseSocket();
            return;
        }
        rLocal.SetupSocket(rLocal.type, static_cast<UINT16>(rLocal.port + 1));
    }
    LogDebug("Vernier Server bound", m_socket.descriptor, rLocal.text, 0, 0);
}

VOID ParameterVernierCom::ClosePort()
{
    m_socket.CloseSocket();
}

VOID ParameterVernierCom::LogDebug(const CHAR* pText, INT32 socket, const CHAR* pPort, INT32 result,
                                   INT32 errorNumber) const
{
    ParameterLogging::Write(m_pLog, ParameterLogging::Debug, "%s, Socket: %d, Port: %s: Result: %d, errno: %d\n", pText,
                            socket, pPort, result, errorNumber);
}

VOID ParameterVernierCom::LogError(const CHAR* pText, INT32 socket, const CHAR* pPort, INT32 result,
                                   INT32 errorNumber) const
{
    ParameterLogging::Write(m_pLog, ParameterLogging::Error, "%s, Socket: %d, Port: %s: Result: %d, errno: %d\n", pText,
                            socket, pPort, result, errorNumber);
}
