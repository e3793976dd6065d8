/// @file
/// The live tuning service: answers a tool's requests about modes, parameters and the running camera.
///
/// One thread takes requests from the transport, works on the store and hands the answers back; the frames never wait
/// for it. Numbers of the running camera come the other way: hosts leave them here, and a tool fetches them.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <thread>

#include "parameters/live/answerpacket.h"
#include "parameters/live/parameterctvalue.h"
#include "parameters/live/parametertriggervalues.h"
#include "parameters/live/parameterverniercom.h"
#include "parameters/live/verniercustomhandler.h"
#include "parameters/parametersync.h"
#include "parameters/plist.h"

class IParameterDataAPI;
class ParameterParserInfo;

class ParameterVernierWorker
{
public:
    /// @param pDataAPI the store, which must outlive the worker; its address is the service's Vernier ID. Null is
    ///                 logged, and such a worker never starts
    explicit ParameterVernierWorker(IParameterDataAPI* pDataAPI);
    ~ParameterVernierWorker();
    ParameterVernierWorker(const ParameterVernierWorker&)            = delete;
    ParameterVernierWorker& operator=(const ParameterVernierWorker&) = delete;

    /// Opens the port and starts serving. Does nothing while it serves already.
    VOID Start();

    /// Ends serving and closes the port. Not from the worker's own thread.
    VOID Stop();

    /// @return the TCP port that tools connect to, 0 while there is none
    UINT16 Port() const
    {
        return m_com.GetPort();
    }

    /// See ParameterVernierCom.
    bool SetInterface(const CHAR* pAddress)
    {
        return m_com.SetInterface(pAddress);
    }

    /// Takes a request apart. @param rpPayload into pPacket, null if there is no payload
    /// @return false if the tag is wrong or the size too small
    bool ParseRequest(const BYTE* pPacket, UINT32 size, UINT16& rCommand, UINT64& rVernierID, UINT32& rRequestID,
                      const BYTE*& rpPayload, UINT32& rPayloadSize) const;

    /// The same for an answer.
    bool ParseResponse(const BYTE* pPacket, UINT32 size, UINT16& rCommand, UINT64& rVernierID, UINT32& rRequestID,
                       const BYTE*& rpPayload, UINT32& rPayloadSize) const;

    /// Puts an answer together; that to DeviceInfo has a form of its own and is refused.
    /// @param rLength     length of the packet, set also when it does not fit
    /// @param payloadSize readable bytes of pPayload. The length counts 6 bytes more, 10 with a request ID, and not the
    ///                    8 of the Vernier ID, so that a packet ends 8 bytes early unless the caller counts them here
    static bool BuildResponse(BYTE* pPacket, UINT32 packetSize, UINT32& rLength, UINT16 command, UINT64 vernierID,
                              UINT32 requestID, const BYTE* pPayload, UINT32 payloadSize);

    /// Replaces all numbers of the running camera. Any thread.
    VOID SetControlValues(const PList<ParameterCTValue>& rValues);

    /// Replaces or adds one, in the order of the IDs. Any thread.
    VOID SetControlValue(const ParameterCTValue& rValue);

    /// Delivers the triggers of one instance for a tool that asked. Any thread.
    /// @return false if no tool asked under these texts, or its answer is full
    bool SetTriggerValues(const CHAR* pModePath, const CHAR* pModule, const CHAR* pPipeline, const CHAR* pInstance,
                          const ParameterCTValue* pValues, UINT32 count);

    /// Whether a tool waits for triggers under these texts. Any thread.
    bool TriggerRequestExists(const CHAR* pModePath, const CHAR* pModule, const CHAR* pPipeline);

    /// Installs what serves custom commands and learns of trigger requests; null for none. Returns when the one before
    /// is not running any more.
    VOID SetCustomHandler(IVernierCustomHandler* pHandler);

    /// Whether all bytes are printable or NUL.
    static bool IsPrintable(const BYTE* pData, UINT32 size);

private:
    /// Serves requests on its caller's thread, for programs that test commands without a transport.
    friend class ThreadlessWorker;

    using Packet = ParameterVernierComBase::Packet;

    static bool IsQuestion(vernier::Command command);

    VOID ReadWorker();
    VOID Dispatch(const BYTE* pRequest, UINT32 size);

    // The service, modes, the running camera, the host; parametervernierworker_commands.cpp.
    VOID ProcessDeviceInfo();
    VOID ProcessActiveModes();
    VOID ProcessControlValues();
    VOID ProcessModes(const BYTE* pRequest, UINT32 size);
    VOID ProcessCustom(const BYTE* pRequest, UINT32 size);
    VOID ProcessModeTableIndex(const BYTE* pRequest, UINT32 size);

    // Parameters; parametervernierworker_parameters.cpp.
    struct SetTarget;
    VOID ProcessInfo(const BYTE* pRequest, UINT32 size);
    VOID ProcessGetValues(const BYTE* pRequest, UINT32 size);
    VOID ProcessSetValues(const BYTE* pRequest, UINT32 size);
    VOID SetItem(const SetTarget& rTarget, const CHAR* pItem, AnswerPacket& rAnswer, bool& rResult);
    bool AppendInfo(const ParameterParserInfo& rInfo, bool isFirst, AnswerPacket& rAnswer, UINT32& rPosition);

    // Triggers; parametervernierworker_triggers.cpp.
    VOID                    ProcessTriggerValues(const BYTE* pRequest, UINT32 size);
    VOID                    SendTriggerResponses();
    VOID                    SendTriggerValues(const ParameterTriggerValues& rRequest);
    ParameterTriggerValues* FindTriggerRequest(const CHAR* pModePath, const CHAR* pModule, const CHAR* pPipeline);

    // Packets; parametervernierworker_packets.cpp.
    UINT32 EchoedRequestID(const BYTE* pRequest, UINT32 size) const;
    bool   ReadHeader(const BYTE* pPacket, UINT32 size, UINT32 idOffset, UINT16& rCommand, UINT64& rVernierID) const;

    VOID Queue(const AnswerPacket& rAnswer);

    IParameterDataAPI* const m_pDataAPI;
    const UINT64             m_vernierID;
    ParameterVernierCom      m_com;
    std::atomic<bool>        m_stop = false;
    std::thread              m_thread;
    BYTE                     m_tableIndex = 0;  ///< the mode table that requests are about; the worker thread's own

    std::recursive_mutex   m_handlerMutex;  ///< held while the handler runs
    IVernierCustomHandler* m_pHandler = nullptr;

    ParameterMutex                                       m_valuesMutex;  ///< guards what follows
    PList<ParameterCTValue>                              m_controlValues;
    std::vector<std::unique_ptr<ParameterTriggerValues>> m_triggerRequests;
};
