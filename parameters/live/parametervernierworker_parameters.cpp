/// What the service answers to commands about parameters: their description, their values, and new values. An empty
/// payload tells a tool that its request could not be served; the protocol has no error code.
#include "parameters/live/parametervernierworker.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <mutex>
#include <string>

#include "parameters/live/requesttext.h"
#include "parameters/parameterdataapi.h"
#include "parameters/parameterparserinfo.h"
#include "parameters/parameterutils.h"
#include "platform/tavocommonutils.h"

using vernier::Command;

namespace
{

constexpr UINT32 InfoAnswer   = vernier::PacketLimit - 1;
constexpr UINT32 ValuesAnswer = 65535;  ///< of GetValues and SetValues: one of exactly this length is not sent any more

using Field = RequestText::Field;

/// What GetValues and SetValues begin with: mode path and module. The rest of the text are members or items.
struct ValueRequest
{
    ValueRequest(const BYTE* pRequest, UINT32 size, IParameterDataAPI& rDataAPI)
        : text(pRequest, size, vernier::HeaderSizeWithRequestID)
    {
        text.Take(':', modePath);
        hasModule = !text.IsAtEnd();
        text.Take(':', module);
        (VOID) rDataAPI.GetModeShorthand(modePath, shorthand, sizeof(shorthand));
    }

    RequestText text;
    Field       modePath;
    Field       module;
    Field       shorthand = {};
    bool        hasModule = false;
};

}  // namespace

/// Where the items of a SetValues request go.
struct ParameterVernierWorker::SetTarget
{
    const CHAR*             pModePath;
    const CHAR*             pModule;
    std::unique_ptr<CHAR[]> pReadBack;  ///< ValuesAnswer bytes for one value
};

VOID ParameterVernierWorker::ProcessInfo(const BYTE* pRequest, UINT32 size)
{
    if (size < vernier::SmallestWithPayload)
    {
        return;
    }
    const std::lock_guard<ParameterMutex> lock(m_pDataAPI->GetDataMutex());
    AnswerPacket                          answer(pRequest, size, InfoAnswer);
    RequestText                           text(pRequest, size, vernier::HeaderSizeWithRequestID);
    Field                                 modePath;
    Field                                 member;
    Field                                 shorthand = {};
    text.Take(':', modePath);
    text.Take('\0', member);
    (VOID) m_pDataAPI->GetModeShorthand(modePath, shorthand, sizeof(shorthand));
    PList<ParameterParserInfo> infos;
    UINT32                     position = vernier::HeaderSizeWithRequestID;
    if (m_pDataAPI->GetInfo(m_tableIndex, shorthand, (member[0] != '\0') ? member : nullptr, infos))
    {
        UINT32 index = 0;
        while (index < infos.Count() && AppendInfo(infos[index], index == 0, answer, position))
        {
            ++index;
        }
    }
    answer.SetLength(position + 1);
    Queue(answer);
    ParameterLogging::Write(m_pDataAPI, ParameterLogging::Debug,
                            "Vernier queued command: Info(%d), ID: %u, Payload: %.127s\n",
                            static_cast<INT32>(Command::Info), EchoedRequestID(pRequest, size),
                            answer.Text(vernier::HeaderSizeWithRequestID));
}

bool ParameterVernierWorker::AppendInfo(const ParameterParserInfo& rInfo, bool isFirst, AnswerPacket& rAnswer,
                                        UINT32& rPosition)
{
    std::string text = isFirst ? "" : ";";
    text += rInfo.Name;
    if (rInfo.Value[0] != '\0')
    {
        text += '=';
        text += rInfo.Value;
    }
    text += ',';
    text += rInfo.Type;
    if (rInfo.IsArray || rInfo.IsVariable)
    {
        text += "," + std::to_string(rInfo.Count);
    }
    // One byte is left for the terminator.
    const UINT32 room = rAnswer.Room(rPosition) - 1;
    const UINT32 used = std::min(static_cast<UINT32>(text.size()), room);
    std::memcpy(rAnswer.Text(rPosition), text.data(), used);
    if (used < text.size())
    {
        ParameterLogging::Write(m_pDataAPI, ParameterLogging::Error,
                                "Failed to write %lld bytes to binary offset %d, length %d\n",
                                static_cast<INT64>(text.size()), rPosition, rAnswer.Capacity());
    }
    rPosition += used;
    return used == text.size();
}

VOID ParameterVernierWorker::ProcessGetValues(const BYTE* pRequest, UINT32 size)
{
    const std::lock_guard<ParameterMutex> lock(m_pDataAPI->GetDataMutex());
    const UINT32                          requestID = EchoedRequestID(pRequest, size);
    AnswerPacket                          answer(pRequest, size, ValuesAnswer);
    const ValueRequest                    request(pRequest, size, *m_pDataAPI);
    if (request.hasModule)
    {
        (VOID) m_pDataAPI->GetValue(
            m_tableIndex, request.shorthand, request.module, request.text.IsAtEnd() ? nullptr : request.text.Rest(),
            answer.Text(vernier::HeaderSizeWithRequestID), answer.Room(vernier::HeaderSizeWithRequestID));
    }
    answer.EndAfterText(vernier::HeaderSizeWithRequestID);
    Queue(answer);
    ParameterLogging::Write(
        m_pDataAPI, ParameterLogging::Debug, "Vernier queued command: GetValues(%d), ID: %u, Payload: %.127s\n",
        static_cast<INT32>(Command::GetValues), requestID, answer.Text(vernier::HeaderSizeWithRequestID));
}

VOID ParameterVernierWorker::ProcessSetValues(const BYTE* pRequest, UINT32 size)
{
    const std::lock_guard<ParameterMutex> lock(m_pDataAPI->GetDataMutex());
    const UINT32                          requestID = EchoedRequestID(pRequest, size);
    AnswerPacket                          answer(pRequest, size, ValuesAnswer);
    ValueRequest                          request(pRequest, size, *m_pDataAPI);
    bool                                  result = false;
    if (request.text.IsAtEnd())
    {
        ParameterLogging::Write(m_pDataAPI, ParameterLogging::Error, "Vernier SetValues failed: Failed to read mode\n");
    }
    const SetTarget target = {request.shorthand, request.module, std::make_unique<CHAR[]>(ValuesAnswer)};
    while (!request.text.IsAtEnd() && !m_stop)
    {
        Field item;
        request.text.Take(';', item);
        SetItem(target, item, answer, result);
    }
    answer.EndAfterText(vernier::HeaderSizeWithRequestID);
    Queue(answer);
    ParameterLogging::Write(m_pDataAPI, ParameterLogging::Debug,
                            result ? "Vernier command succeeded: SetValues(%d), ID: %u, Payload: %.127s\n"
                                   : "Vernier command failed: SetValues(%d), ID: %u, Payload: %.127s\n",
                            static_cast<INT32>(Command::SetValues), requestID,
                            answer.Text(vernier::HeaderSizeWithRequestID));
}

VOID ParameterVernierWorker::SetItem(const SetTarget& rTarget, const CHAR* pItem, AnswerPacket& rAnswer, bool& rResult)
{
    Field        name;
    const UINT32 nameLength = ParameterUtils::GetSubString(pItem, '=', name, sizeof(name));
    const CHAR*  pValue     = pItem + nameLength + ((pItem[nameLength] == '=') ? 1 : 0);
    if (*pValue == '\0')
    {
        return;
    }
    rResult = m_pDataAPI->SetValue(m_tableIndex, rTarget.pModePath, rTarget.pModule, name, pValue);
    if (!rResult)
    {
        ParameterLogging::Write(m_pDataAPI, ParameterLogging::Error, "Vernier SetValues failed: Mode: %s, Value: %s\n",
                                rTarget.pModePath, pItem);
        return;
    }
    CHAR* const pReadBack = rTarget.pReadBack.get();
    if (!m_pDataAPI->GetValue(m_tableIndex, rTarget.pModePath, rTarget.pModule, name, pReadBack, ValuesAnswer))
    {
        return;
    }
    CHAR* const  pText = rAnswer.Text(vernier::HeaderSizeWithRequestID);
    const UINT32 room  = rAnswer.Room(vernier::HeaderSizeWithRequestID);
    if (pText[0] != '\0')
    {
        (VOID) Tavo::OsUtils::StrLCat(pText, ";", room);
    }
    (VOID) Tavo::OsUtils::StrLCat(pText, pReadBack, room);
}
