/// What hosts hand to the live tuning service.
#include "parameters/live/parametervernierworker.h"
#include "parameters/parameterstore.h"

VOID ParameterSetManager::StopLiveTuning()
{
    if (m_pOwnStore != nullptr && m_pOwnStore->Worker() != nullptr)
    {
        m_pOwnStore->Worker()->Stop();
    }
}

VOID ParameterSetManager::SetLiveTuningAutostart(bool isAutostart)
{
    m_rStore.IsAutostart = isAutostart;
}

bool ParameterSetManager::SetLiveTuningAddress(const CHAR* pAddress)
{
    return m_rStore.Worker() != nullptr && m_rStore.Worker()->SetInterface(pAddress);
}

UINT16 ParameterSetManager::GetLiveTuningPort() const
{
    return (m_rStore.Worker() != nullptr) ? m_rStore.Worker()->Port() : UINT16{0};
}

VOID ParameterSetManager::SetControlValues(const PList<ParameterCTValue>& rValues)
{
    if (m_rStore.Worker() != nullptr)
    {
        m_rStore.Worker()->SetControlValues(rValues);
    }
}

VOID ParameterSetManager::SetControlValue(const ParameterCTValue& rValue)
{
    if (IsDerived())
    {
        // A list of one, which replaces all others.
        PList<ParameterCTValue> values;
        values.Add(rValue);
        SetControlValues(values);
    }
    else if (m_rStore.Worker() != nullptr)
    {
        m_rStore.Worker()->SetControlValue(rValue);
    }
}

bool ParameterSetManager::SetTriggerValues(const CHAR* pModePath, const CHAR* pModule, const CHAR* pPipeline,
                                           const CHAR* pInstance, const ParameterCTValue* pValues, UINT32 count)
{
    return m_rStore.Worker() != nullptr &&
           m_rStore.Worker()->SetTriggerValues(pModePath, pModule, pPipeline, pInstance, pValues, count);
}

VOID ParameterSetManager::SetCustomHandler(IVernierCustomHandler* pHandler)
{
    if (m_rStore.Worker() != nullptr)
    {
        m_rStore.Worker()->SetCustomHandler(pHandler);
    }
}

bool ParameterSetManager::ParseVernierRequest(const BYTE* pPacket, UINT32 size, UINT16& rCommand, UINT64& rVernierID,
                                              UINT32& rRequestID, const BYTE*& rpPayload, UINT32& rPayloadSize) const
{
    return m_rStore.Worker() != nullptr && m_rStore.IsAutostart &&
           m_rStore.Worker()->ParseRequest(pPacket, size, rCommand, rVernierID, rRequestID, rpPayload, rPayloadSize);
}

bool ParameterSetManager::BuildVernierResponse(BYTE* pPacket, UINT32 packetSize, UINT32& rLength, UINT16 command,
                                               UINT64 vernierID, UINT32 requestID, const BYTE* pPayload,
                                               UINT32 payloadSize) const
{
    return m_rStore.Worker() != nullptr && m_rStore.IsAutostart &&
           ParameterVernierWorker::BuildResponse(pPacket, packetSize, rLength, command, vernierID, requestID, pPayload,
                                                 payloadSize);
}
