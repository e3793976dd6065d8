/// @file
/// The transport of the live tuning service over TCP.
#pragma once

#include "parameters/live/parameterverniercombase.h"
#include "parameters/live/socketid.h"

/// Listens on the default port, or on one of the 64 behind it if that is taken. Without a free one it runs all the
/// same, and nobody can connect. One client is served at a time; the others wait until it has left.
class ParameterVernierCom final : public ParameterVernierComBase
{
public:
    /// @param pLog outlives this object
    explicit ParameterVernierCom(const IParameterLoggingAPI* pLog);
    ~ParameterVernierCom() override;

    VOID   StartCom() override;
    VOID   StopCom() override;
    UINT32 ReadData(BYTE* pBuffer, UINT32 size, INT32 timeoutSeconds, const std::atomic<bool>& rStop) override;
    UINT32 WriteData(const BYTE* pBuffer, UINT32 size) override;
    VOID   ShutDownCom() override;

    /// Lets a later Start listen at one interface of the machine, not at all of them.
    /// @param pAddress IPv4, such as "127.0.0.1" @return false if it is none
    bool SetInterface(const CHAR* pAddress)
    {
        return m_socket.SetInterface(pAddress);
    }

    /// @return where clients can connect, 0 if nowhere. Not to be called while another thread starts or stops.
    UINT16 GetPort() const;

    /// Makes a later Start listen on the internal port instead of the default one.
    static inline bool UseInternalPort = false;

private:
    VOID OpenPort();
    VOID BindFirstFree();
    VOID ClosePort();

    /// @return 0, or the error number if there is no socket
    INT32 CreateSocket();

    VOID LogDebug(const CHAR* pText, INT32 socket, const CHAR* pPort, INT32 result, INT32 errorNumber) const;
    VOID LogError(const CHAR* pText, INT32 socket, const CHAR* pPort, INT32 result, INT32 errorNumber) const;

    SocketID m_socket;
};
