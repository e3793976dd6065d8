#include "parameters/live/parametervernierworker.h"

#include <algorithm>
#include <system_error>

#include "parameters/live/blockedsignals.h"
#include "parameters/parameterdataapi.h"
#include "parameters/parameterutils.h"

using vernier::Command;

ParameterVernierWorker::ParameterVernierWorker(IParameterDataAPI* pDataAPI)
    : m_pDataAPI(pDataAPI), m_vernierID(reinterpret_cast<UINT64>(pDataAPI)), m_com(pDataAPI)
{
    if (pDataAPI == nullptr)
    {
        ParameterLogging::Write(nullptr, ParameterLogging::Error,
                                "ParameterVernierWorker constructed with a nullptr Set Manager object\n");
    }
}

ParameterVernierWorker::~ParameterVernierWorker()
{
    Stop();
}

VOID ParameterVernierWorker::Start()
{
    if (m_thread.joinable() || m_pDataAPI == nullptr)
    {
        return;
    }
    m_stop = false;
    m_com.Start();
    const BlockedSignals signals;
    try
    {
        m_thread = std::thread([this] { ReadWorker(); });
    }
    catch (const std::system_error& rError)
    {
        // The camera runs without the service.
        ParameterLogging::Write(m_pDataAPI, ParameterLogging::Error, "Vernier server has no worker: %s\n",
                                rError.what());
        m_com.Stop();
    }
}

VOID ParameterVernierWorker::Stop()
{
    m_stop = true;
    if (m_thread.joinable())
    {
        m_com.Stop();
        m_thread.join();
    }
}

/// Whether a request changes nothing and starts nothing: it is about its answer alone.
bool ParameterVernierWorker::IsQuestion(Command command)
{
    return command <= Command::GetValues;
}

VOID ParameterVernierWorker::ReadWorker()
{
    while (!m_stop)
    {
        SendTriggerResponses();
        const std::unique_ptr<Packet> pPacket = m_com.Read();
        if (pPacket != nullptr && !m_stop && pPacket->size > 0)
        {
            Dispatch(pPacket->data.get(), pPacket->size);
        }
    }
}

VOID ParameterVernierWorker::Dispatch(const BYTE* pRequest, UINT32 size)
{
    // A packet too short to name a command counts as a request for the device.
    UINT16 command  = 0;
    UINT64 position = vernier::CommandOffset;
    (VOID) ParameterUtils::ReadField(command, pRequest, size, position, 1, m_pDataAPI);
    // What a client that floods has left behind would otherwise hold up the next one.
    if (IsQuestion(static_cast<Command>(command)) && !m_com.HasListener())
    {
        return;
    }
    switch (static_cast<Command>(command))
    {
    case Command::DeviceInfo:
        return ProcessDeviceInfo();
    case Command::ActiveModes:
        return ProcessActiveModes();
    case Command::ControlValues:
        return ProcessControlValues();
    case Command::Modes:
        return ProcessModes(pRequest, size);
    case Command::Info:
        return ProcessInfo(pRequest, size);
    case Command::GetValues:
        return ProcessGetValues(pRequest, size);
    case Command::SetValues:
        return ProcessSetValues(pRequest, size);
    case Command::TriggerValues:
        return ProcessTriggerValues(pRequest, size);
    case Command::Custom:
        return ProcessCustom(pRequest, size);
    case Command::ModeTableIndex:
        return ProcessModeTableIndex(pRequest, size);
    }
}

VOID ParameterVernierWorker::SetControlValues(const PList<ParameterCTValue>& rValues)
{
    const std::lock_guard<ParameterMutex> lock(m_valuesMutex);
    m_controlValues.Clear();
    for (UINT32 index = 0; index < rValues.Count(); ++index)
    {
        m_controlValues.Add(rValues[index]);
    }
}

VOID ParameterVernierWorker::SetControlValue(const ParameterCTValue& rValue)
{
    const std::lock_guard<ParameterMutex> lock(m_valuesMutex);
    UINT32                                index = 0;
    while (index < m_controlValues.Count() && m_controlValues[index].ID < rValue.ID)
    {
        ++index;
    }
    if (index < m_controlValues.Count() && m_controlValues[index].ID == rValue.ID)
    {
        m_controlValues[index] = rValue;
    }
    else
    {
        m_controlValues.Insert(index, rValue);
    }
}

VOID ParameterVernierWorker::SetCustomHandler(IVernierCustomHandler* pHandler)
{
    const std::lock_guard<std::recursive_mutex> lock(m_handlerMutex);
    m_pHandler = pHandler;
}

bool ParameterVernierWorker::IsPrintable(const BYTE* pData, UINT32 size)
{
    return std::all_of(pData, pData + size, [](BYTE byte) { return byte == 0 || (byte >= 32 && byte <= 126); });
}

VOID ParameterVernierWorker::Queue(const AnswerPacket& rAnswer)
{
    m_com.Write(rAnswer.Data(), rAnswer.Length());
}
