/// Trigger values: a tool asks for those of a module, the host delivers them over the following frames, and what has
/// come together is sent when the request has reached its age.
#include "parameters/live/parametervernierworker.h"

#include <algorithm>
#include <iterator>

#include "parameters/live/requesttext.h"
#include "parameters/parameterdataapi.h"
#include "schema/namehash.h"

using vernier::Command;

namespace
{

constexpr std::clock_t CollectingTime = 5001;                      ///< ticks of std::clock
constexpr UINT32       TriggerAnswer  = vernier::PacketLimit - 1;  ///< bytes of the packet
constexpr size_t       MaxRequests    = 64;                        ///< that wait for their age
constexpr UINT32       MaxTexts       = 65520;                     ///< of the three texts with their separators

}  // namespace

ParameterTriggerValues* ParameterVernierWorker::FindTriggerRequest(const CHAR* pModePath, const CHAR* pModule,
                                                                   const CHAR* pPipeline)
{
    if (pModePath == nullptr || pModule == nullptr || pPipeline == nullptr)
    {
        return nullptr;
    }
    const auto found = std::ranges::find_if(m_triggerRequests, [&](const auto& rpRequest)
                                            { return rpRequest->IsRequest(pModePath, pModule, pPipeline); });
    return (found != m_triggerRequests.end()) ? found->get() : nullptr;
}

bool ParameterVernierWorker::TriggerRequestExists(const CHAR* pModePath, const CHAR* pModule, const CHAR* pPipeline)
{
    const std::lock_guard<ParameterMutex> lock(m_valuesMutex);
    return FindTriggerRequest(pModePath, pModule, pPipeline) != nullptr;
}

bool ParameterVernierWorker::SetTriggerValues(const CHAR* pModePath, const CHAR* pModule, const CHAR* pPipeline,
                                              const CHAR* pInstance, const ParameterCTValue* pValues, UINT32 count)
{
    const std::lock_guard<ParameterMutex> lock(m_valuesMutex);
    ParameterTriggerValues*               pRequest = FindTriggerRequest(pModePath, pModule, pPipeline);
    return pRequest != nullptr && pRequest->Add((pInstance != nullptr) ? pInstance : "", pValues, count);
}

VOID ParameterVernierWorker::ProcessTriggerValues(const BYTE* pRequest, UINT32 size)
{
    UINT16      command     = 0;
    UINT64      vernierID   = 0;
    UINT32      requestID   = 0;
    const BYTE* pPayload    = nullptr;
    UINT32      payloadSize = 0;
    if (!ParseRequest(pRequest, size, command, vernierID, requestID, pPayload, payloadSize))
    {
        return;
    }
    RequestText        text(pRequest, size, vernier::HeaderSize);
    RequestText::Field modePath;
    RequestText::Field module;
    RequestText::Field pipeline;
    text.Take(':', modePath);
    text.Take(':', module);
    text.Take(':', pipeline);
    {
        const std::lock_guard<ParameterMutex> lock(m_valuesMutex);
        if (ParameterTriggerValues* pKnown = FindTriggerRequest(modePath, module, pipeline))
        {
            pKnown->client = m_com.ServedClient();
        }
        else if (m_triggerRequests.size() < MaxRequests)
        {
            m_triggerRequests.push_back(
                std::make_unique<ParameterTriggerValues>(modePath, module, pipeline, m_com.ServedClient()));
        }
        else
        {
            ParameterLogging::Write(m_pDataAPI, ParameterLogging::Error,
                                    "Vernier Trigger Values(%d) command, %zu requests are waiting already\n", command,
                                    MaxRequests);
            return;
        }
    }
    const std::lock_guard<std::recursive_mutex> lock(m_handlerMutex);
    if (m_pHandler != nullptr)
    {
        m_pHandler->RequestTriggerValues(modePath, module, namehash::OfName(module), pipeline);
    }
}

VOID ParameterVernierWorker::SendTriggerResponses()
{
    std::vector<std::unique_ptr<ParameterTriggerValues>> due;
    {
        // A frame may be waiting to leave its values, so the packets are made afterwards.
        const std::lock_guard<ParameterMutex> lock(m_valuesMutex);
        if (m_triggerRequests.empty())
        {
            return;  // before each request: the clock costs more than a request that is dropped
        }
        const std::clock_t now      = std::clock();
        const auto         firstDue = std::stable_partition(m_triggerRequests.begin(), m_triggerRequests.end(),
                                                            [now](const auto& rpRequest)
                                                            { return now - rpRequest->requestTime < CollectingTime; });
        due.assign(std::make_move_iterator(firstDue), std::make_move_iterator(m_triggerRequests.end()));
        m_triggerRequests.erase(firstDue, m_triggerRequests.end());
    }
    for (const auto& rpRequest : due)
    {
        SendTriggerValues(*rpRequest);
    }
}

VOID ParameterVernierWorker::SendTriggerValues(const ParameterTriggerValues& rRequest)
{
    constexpr INT32 CommandNumber = static_cast<INT32>(Command::TriggerValues);

    const std::string texts = rRequest.modePath + ":" + rRequest.module + ":" + rRequest.pipeline + "#";
    if (texts.size() > MaxTexts)
    {
        ParameterLogging::Write(m_pDataAPI, ParameterLogging::Error,
                                "Vernier Trigger Values(%d) command, insufficient space for mode path, module, and "
                                "pipeline info\n",
                                CommandNumber);
        return;
    }
    AnswerPacket answer(Command::TriggerValues, m_vernierID, TriggerAnswer);
    UINT32       position = vernier::HeaderSize;
    const auto   append   = [&](const VOID* pData, size_t size)
    {
        std::copy_n(static_cast<const BYTE*>(pData), size, answer.Data() + position);
        position += static_cast<UINT32>(size);
    };
    append(texts.data(), texts.size());
    for (const ParameterTriggerIDValues& rInstance : rRequest.instances)
    {
        const size_t nameSize = rInstance.instance.size() + 1;
        if (nameSize > answer.Room(position))
        {
            ParameterLogging::Write(m_pDataAPI, ParameterLogging::Error,
                                    "Vernier Trigger Values(%u) command, insufficient space to write trigger values\n",
                                    CommandNumber);
            break;
        }
        if (rInstance.WireSize() > answer.Room(position))
        {
            ParameterLogging::Write(m_pDataAPI, ParameterLogging::Error,
                                    "Vernier Trigger Values(%u) command, insufficient packet space to hold IPE "
                                    "instance %s\n",
                                    CommandNumber, rInstance.instance.c_str());
            break;
        }
        const UINT16 count = static_cast<UINT16>(rInstance.values.size());
        append((rInstance.instance + ":").data(), nameSize);
        append(&count, sizeof(count));
        append(rInstance.values.data(), rInstance.values.size() * sizeof(ParameterCTValue));
    }
    answer.SetLength(position);
    m_com.Write(answer.Data(), answer.Length(), rRequest.client);
    ParameterLogging::Write(m_pDataAPI, ParameterLogging::Debug,
                            "Vernier queued command: Control Values(%d), Version: %u.%u, Name: %.127s\n", CommandNumber,
                            vernier::VersionMajor, vernier::VersionMinor, answer.Text(vernier::HeaderSize));
}
