/// What the service answers to commands about itself, the modes and the running camera, and to those of the host.
#include "parameters/live/parametervernierworker.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>

#include "parameters/live/requesttext.h"
#include "parameters/parameterdataapi.h"
#include "parameters/parameterutils.h"
#include "platform/tavocommonutils.h"

using vernier::Command;

namespace
{

constexpr UINT32 SmallAnswer  = 4096;   ///< bytes of the packets of commands 0, 1, 2 and 9
constexpr UINT32 ModesAnswer  = 16384;  ///< of command 3
constexpr UINT32 CustomOutput = 2;      ///< from the result to the output of a custom command

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
    RequestText::Field                    shorthand = {};
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

VOID ParameterVernierWorker::ProcessCustom(const BYTE* pRequest, UINT32 size)
{
    if (size < vernier::SmallestWithPayload)
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
