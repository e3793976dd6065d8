/// What the service answers to each command that is about the store. An empty payload tells a tool that its request
/// could not be served; the protocol has no error code.
#include "parameters/live/parametervernierworker.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "parameters/parameterdataapi.h"
#include "parameters/parameterparserinfo.h"
#include "parameters/parameterutils.h"
#include "platform/tavocommonutils.h"

using vernier::Command;

namespace
{

constexpr UINT32 FieldSize         = 512;    ///< of mode path, module and one item of a request, with terminator
constexpr UINT32 SmallAnswer       = 4096;   ///< bytes of the packets of commands 0, 1, 2 and 9
constexpr UINT32 ModesAnswer       = 16384;  ///< of command 3
constexpr UINT32 ValuesAnswer      = 65535;  ///< of commands 5 and 6: one of exactly this length is not sent any more
constexpr UINT32 InfoAnswer        = vernier::PacketLimit - 1;
constexpr UINT32 CustomOutput      = 2;  ///< from the result to the output of a custom command
constexpr UINT32 SmallestWithTexts = 19;

using Field = CHAR[FieldSize];

/// The texts of a request, cut off one after the other.
class RequestText
{
public:
    /// @param offset of the payload; a payload without NUL ends with the packet
    RequestText(const BYTE* pRequest, UINT32 size, UINT32 offset)
    {
        if (size > offset)
        {
            const CHAR* pText = reinterpret_cast<const CHAR*>(pRequest + offset);
            m_text.assign(pText, strnlen(pText, size - offset));
        }
        m_pRest = m_text.c_str();
    }

    /// Takes what stands before the next delimiter, as far as a field holds it; an overlong text leaves its end for the
    /// next field, where nothing fits it.
    VOID Take(CHAR delimiter, Field& rField)
    {
        m_pRest += ParameterUtils::GetSubString(m_pRest, delimiter, rField, sizeof(rField));
        m_pRest += (*m_pRest == delimiter && !IsAtEnd()) ? 1 : 0;
    }

    /// What was not taken yet.
    const CHAR* Rest() const
    {
        return m_pRest;
    }

    bool IsAtEnd() const
    {
        return *m_pRest == '\0';
    }

private:
    std::string m_text;
    const CHAR* m_pRest;
};

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

/// Bytes as log lines show them: as text if they are one, else in hexadecimal.
std::string Preview(const BYTE* pData, UINT32 size)
{
    constexpr UINT32 MaxBytes = 64;
    constexpr UINT32 MaxText  = 127;

    if (ParameterVernierWorker::IsPrintable(pData, size))
    {
        const CHAR* pText = reinterpret_cast<const CHAR*>(pData);
        return {pText, strnlen(pText, std::min(size, MaxText))};
    }
    std::string text;
    for (UINT32 index = 0; index < std::min(size, MaxBytes); ++index)
    {
        CHAR pair[3];
        std::snprintf(pair, sizeof(pair), "%02X", pData[index]);
        text += pair;
    }
    return text;
}

}  // namespace

/// Where the items of a SetValues request go.
struct ParameterVernierWorker::SetTarget
{
    const CHAR*             pModePath;
    const CHAR*             pModule;
    std::unique_ptr<CHAR[]> pReadBack;  ///< ValuesAnswer bytes for one value
};

VOID ParameterVernierWorker::ProcessDeviceInfo()
{
    const std::lock_guard<ParameterMutex> lock(m_pDataAPI->GetDataMutex());
    AnswerPacket                          answer(Command::DeviceInfo, m_vernierID, SmallAnswer);
    answer.Put(vernier::DeviceVersionOffset, vernier::VersionMajor);
    answer.Put(vernier::DeviceVersionOffset + 1, vernier::VersionMinor);

    CHAR* const  pText       = answer.Text(vernier::DevicePayloadOffset);
    const UINT32 room        = answer.Room(vernier::DevicePayloadOffset);
    const CHAR*  pIdentifier = m_pDataAPI->GetLoggingIdentifier();
    if (pIdentifier != nullptr && pIdentifier[0] != '\0')
    {
        (VOID) Tavo::OsUtils::StrLCpy(pText, pIdentifier, room);
    }
    else
    {
        std::snprintf(pText, room, "0x%016lx", static_cast<unsigned long>(m_vernierID));
    }
    PList<const CHAR*> names;
    m_pDataAPI->GetModeTableNames(names);
    for (UINT32 index = 0; names.Count() >= 2 && index < names.Count(); ++index)
    {
        (VOID) Tavo::OsUtils::StrLCat(pText, (index == 0) ? ":" : ",", room);
        (VOID) Tavo::OsUtils::StrLCat(pText, names[index], room);
    }
    answer.EndAfterText(vernier::DevicePayloadOffset);
    Queue(answer);
    ParameterLogging::Write(
        m_pDataAPI, ParameterLogging::Debug, "Vernier queued command: Info(%d), Version: %u.%u, Name: %.127s\n",
        static_cast<INT32>(Command::DeviceInfo), vernier::VersionMajor, vernier::VersionMinor, pText);
}

VOID ParameterVernierWorker::ProcessActiveModes()
{
    const std::lock_guard<ParameterMutex> lock(m_pDataAPI->GetDataMutex());
    AnswerPacket                          answer(Command::ActiveModes, m_vernierID, SmallAnswer);
    (VOID) m_pDataAPI->GetActiveModes(m_tableIndex, answer.Text(vernier::HeaderSize), answer.Room(vernier::HeaderSize));
    answer.EndAfterText(vernier::HeaderSize);
    Queue(answer);
    ParameterLogging::Write(m_pDataAPI, ParameterLogging::Debug,
                            "Vernier queued command: Active Modes(%d), Version: %u.%u, Active: %.127s\n",
                            static_cast<INT32>(Command::ActiveModes), vernier::VersionMajor, vernier::VersionMinor,
                            answer.Text(vernier::HeaderSize));
}

VOID ParameterVernierWorker::ProcessControlValues()
{
    constexpr size_t MaxValueText = 352;  // the largest double takes 309 digits before the point

    std::vector<ParameterCTValue> values;
    {
        // Formatting takes its time, and a frame may be waiting to leave its values.
        const std::lock_guard<ParameterMutex> lock(m_valuesMutex);
        values.assign(m_controlValues.ToArray(), m_controlValues.ToArray() + m_controlValues.Count());
    }
    AnswerPacket answer(Command::ControlValues, m_vernierID, SmallAnswer);
    CHAR* const  pText    = answer.Text(vernier::HeaderSize);
    const UINT32 room     = answer.Room(vernier::HeaderSize);
    UINT32       position = 0;
    for (const ParameterCTValue& rValue : values)
    {
        CHAR text[MaxValueText];
        rValue.ToString(text, sizeof(text));
        const UINT32 length = static_cast<UINT32>(std::strlen(text)) + ((position > 0) ? 1 : 0);
        if (length < room - position)
        {
            std::snprintf(pText + position, room - position, (position > 0) ? ",%s" : "%s", text);
            position += length;
        }
    }
    answer.EndAfterText(vernier::HeaderSize);
    Queue(answer);
    ParameterLogging::Write(m_pDataAPI, ParameterLogging::Debug,
                            "Vernier queued command: Control Values(%d), Version: %u.%u, Name: %.127s\n",
                            static_cast<INT32>(Command::ControlValues), vernier::VersionMajor, vernier::VersionMinor,
                            pText);
}

VOID ParameterVernierWorker::ProcessModes(const BYTE* pRequest, UINT32 size)
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
    if (vernierID != m_vernierID)
    {
        ParameterLogging::Write(m_pDataAPI, ParameterLogging::Error,
                                "Request packet Vernier ID does not match, Command: Modes(%d): Expected: %llu, "
                                "Actual: %llu\n",
                                command, m_vernierID, vernierID);
    }
    const std::lock_guard<ParameterMutex> lock(m_pDataAPI->GetDataMutex());
    const RequestText                     path(pRequest, size, vernier::HeaderSizeWithRequestID);
    Field                                 shorthand = {};
    std::vector<CHAR>                     content(ModesAnswer);
    (VOID) m_pDataAPI->GetModeShorthand(path.Rest(), shorthand, sizeof(shorthand));
    const UINT32 used = m_pDataAPI->GetChildModes(m_tableIndex, shorthand, content.data(),
                                                  ModesAnswer - vernier::HeaderSizeWithRequestID);

    // The header is counted here and once more in part where the packet is built: ten zeros follow the content.
    std::vector<BYTE> packet(ModesAnswer);
    UINT32            length = 0;
    if (BuildResponse(packet.data(), ModesAnswer, length, command, m_vernierID, requestID,
                      reinterpret_cast<const BYTE*>(content.data()), used + vernier::HeaderSizeWithRequestID))
    {
        m_com.Write(packet.data(), length);
    }
    ParameterLogging::Write(m_pDataAPI, ParameterLogging::Debug,
                            "Vernier queued command: Modes(%d), ID: %u, Payload: %.127s...\n", command, requestID,
                            content.data());
}

UINT32 ParameterVernierWorker::EchoedRequestID(const BYTE* pRequest, UINT32 size) const
{
    UINT32 requestID = 0;
    UINT64 position  = vernier::RequestIDOffset;
    (VOID) ParameterUtils::ReadField(requestID, pRequest, size, position, 1, m_pDataAPI);
    return requestID;
}

VOID ParameterVernierWorker::ProcessInfo(const BYTE* pRequest, UINT32 size)
{
    if (size < SmallestWithTexts)
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

VOID ParameterVernierWorker::ProcessCustom(const BYTE* pRequest, UINT32 size)
{
    if (size < SmallestWithTexts)
    {
        return;
    }
    constexpr UINT32 ResultOffset = vernier::HeaderSizeWithRequestID;
    constexpr UINT32 OutputOffset = ResultOffset + CustomOutput;

    AnswerPacket answer(pRequest, size, vernier::PacketLimit - 1);
    UINT16       result     = 0;
    UINT32       outputSize = 0;
    {
        const std::lock_guard<std::recursive_mutex> lock(m_handlerMutex);
        if (m_pHandler != nullptr)
        {
            result = m_pHandler->ProcessCustom(pRequest + vernier::HeaderSizeWithRequestID,
                                               size - vernier::HeaderSizeWithRequestID, answer.Room(OutputOffset),
                                               answer.Data() + OutputOffset, outputSize);
        }
        else
        {
            ParameterLogging::Write(
                m_pDataAPI, ParameterLogging::Debug,
                "Vernier queued Custom command received with no handler installed, sending result = 0\n");
        }
    }
    outputSize = std::min(outputSize, answer.Room(OutputOffset));
    answer.Put(ResultOffset, result);
    answer.SetLength(OutputOffset + outputSize);
    Queue(answer);
    ParameterLogging::Write(m_pDataAPI, ParameterLogging::Debug,
                            "Vernier queued command: Custom(%d), ID: %u, Payload: %s...\n",
                            static_cast<INT32>(Command::Custom), EchoedRequestID(pRequest, size),
                            Preview(answer.Data() + OutputOffset, outputSize).c_str());
}

VOID ParameterVernierWorker::ProcessModeTableIndex(const BYTE* pRequest, UINT32 size)
{
    const std::lock_guard<ParameterMutex> lock(m_pDataAPI->GetDataMutex());
    const RequestText                     text(pRequest, size, vernier::HeaderSize);
    bool                                  isNumber = false;
    const DOUBLE                          wanted   = ParameterUtils::StringToDouble(text.Rest(), isNumber);
    if (isNumber && wanted >= 0.0 && wanted < m_pDataAPI->GetModeTableCount())
    {
        m_tableIndex = ParameterUtils::ToInteger<BYTE>(wanted);
    }
    AnswerPacket answer(Command::ModeTableIndex, m_vernierID, SmallAnswer);
    std::snprintf(answer.Text(vernier::HeaderSize), answer.Room(vernier::HeaderSize), "%u", m_tableIndex);
    answer.EndAfterText(vernier::HeaderSize);
    Queue(answer);
    ParameterLogging::Write(m_pDataAPI, ParameterLogging::Debug,
                            "Vernier queued command (%d): Mode Index(%.127s), Version: %u.%u, Index: %s\n",
                            static_cast<INT32>(Command::ModeTableIndex), text.Rest(), vernier::VersionMajor,
                            vernier::VersionMinor, answer.Text(vernier::HeaderSize));
}
