/// What hosts hand to the live tuning service.
#include "parameters/live/parametervernierworker.h"
#include "parameters/parametersetmanager.h"

VOID ParameterSetManager::StopLiveTuning()
{
    if (m_pWorker != nullptr)
    {
        m_pWorker->Stop();
    }
}

VOID ParameterSetManager::SetLiveTuningAutostart(bool isAutostart)
{
    if (IsDerived())
    {
        m_pMain->SetLiveTuningAutostart(isAutostart);
        return;
    }
    m_isAutostart = isAutostart;
}

bool ParameterSetManager::SetLiveTuningAddress(const CHAR* pAddress)
{
    if (IsDerived())
    {
        return m_pMain->SetLiveTuningAddress(pAddress);
    }
    return m_pWorker != nullptr && m_pWorker->SetInterface(pAddress);
}

UINT16 ParameterSetManager::GetLiveTuningPort() const
{
    if (IsDerived())
    {
        return m_pMain->GetLiveTuningPort();
    }
    return (m_pWorker != nullptr) ? m_pWorker->Port() : UINT16{0};
}

VOID ParameterSetManager::SetControlValues(const PList<ParameterCTValue>& rValues)
{
    if (IsDerived())
    {
        m_pMain->SetControlValues(rValues);
    }
    else if (m_pWorker != nullptr)
    {
        m_pWorker->SetControlValues(rValues);
    }
}

VOID ParameterSetManager::SetControlValue(const ParameterCTValue& rValue)
{
    if (IsDerived())
    {
        // A list of one, which replaces all others: what derived managers have always done.
        PList<ParameterCTValue> values;
        values.Add(rValue);
        m_pMain->SetControlValues(values);
    }
    else if (m_pWorker != nullptr)
    {
        m_pWorker->SetControlValue(rValue);
    }
}

bool ParameterSetManager::SetTriggerValues(const CHAR* pModePath, const CHAR* pModule, const CHAR* pPipeline,
                                           const CHAR* pInstance, const ParameterCTValue* pValues, UINT32 count)
{
    if (IsDerived())
    {
        return m_pMain->SetTriggerValues(pModePath, pModule, pPipeline, pInstance, pValues, count);
    }
    return m_pWorker != nullptr &&
           m_pWorker->SetTriggerValues(pModePath, pModule, pPipeline, pInstance, pValues, count);
}

VOID ParameterSetManager::SetCustomHandler(IVernierCustomHandler* pHandler)
{
    if (IsDerived())
    {
        m_pMain->SetCustomHandler(pHandler);
    }
    else if (m_pWorker != nullptr)
    {
        m_pWorker->SetCustomHandler(pHandler);
    }
}

bool ParameterSetManager::ParseVernierRequest(const BYTE* pPacket, UINT32 size, UINT16& rCommand, UINT64& rVernierID,
                                              UINT32& rRequestID, const BYTE*& rpPayload, UINT32& rPayloadSize) const
{
    if (IsDerived())
    {
        return m_pMain->ParseVernierRequest(pPacket, size, rCommand, rVernierID, rRequestID, rpPayload, rPayloadSize);
    }
    return m_pWorker != nullptr && m_isAutostart &&
           m_pWorker->ParseRequest(pPacket, size, rCommand, rVernierID, rRequestID, rpPayload, rPayloadSize);
}

bool ParameterSetManager::BuildVernierResponse(BYTE* pPacket, UINT32 packetSize, UINT32& rLength, UINT16 command,
                                               UINT64 vernierID, UINT32 requestID, const BYTE* pPayload,
                                               UINT32 payloadSize) const
{
    if (IsDerived())
    {
        return m_pMain->BuildVernierResponse(pPacket, packetSize, rLength, command, vernierID, requestID, pPayload,
                                             payloadSize);
    }
    return m_pWorker != nullptr && m_isAutostart &&
           ParameterVernierWorker::BuildResponse(pPacket, packetSize, rLength, command, vernierID, requestID, pPayload,
                                                 payloadSize);
}
