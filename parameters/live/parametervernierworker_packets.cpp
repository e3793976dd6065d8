/// Taking requests and answers apart and putting answers together.
#include "parameters/live/parametervernierworker.h"

#include <algorithm>

#include "parameters/parameterdataapi.h"
#include "parameters/parameterutils.h"

using vernier::Command;

namespace
{

constexpr UINT32 SmallestPacket     = 7;  ///< tag, command, length, and something behind
constexpr UINT32 SmallestAnswerRoom = 15;

bool HasPayload(UINT16 command)
{
    return command > static_cast<UINT16>(vernier::Command::ControlValues);
}

}  // namespace

bool ParameterVernierWorker::ReadHeader(const BYTE* pPacket, UINT32 size, UINT32 idOffset, UINT16& rCommand,
                                        UINT64& rVernierID) const
{
    UINT64 position = idOffset;
    if (!ParameterUtils::ReadField(rVernierID, pPacket, size, position, 1, m_pDataAPI) || size < SmallestPacket)
    {
        return false;
    }
    UINT16 tag = 0;
    std::memcpy(&tag, pPacket, sizeof(tag));
    std::memcpy(&rCommand, pPacket + vernier::CommandOffset, sizeof(rCommand));
    return tag == vernier::StartTag;
}

UINT32 ParameterVernierWorker::EchoedRequestID(const BYTE* pRequest, UINT32 size) const
{
    UINT32 requestID = 0;
    UINT64 position  = vernier::RequestIDOffset;
    (VOID) ParameterUtils::ReadField(requestID, pRequest, size, position, 1, m_pDataAPI);
    return requestID;
}

bool ParameterVernierWorker::ParseRequest(const BYTE* pPacket, UINT32 size, UINT16& rCommand, UINT64& rVernierID,
                                          UINT32& rRequestID, const BYTE*& rpPayload, UINT32& rPayloadSize) const
{
    rCommand     = 0;
    rVernierID   = 0;
    rRequestID   = 0;
    rpPayload    = nullptr;
    rPayloadSize = 0;
    if (!ReadHeader(pPacket, size, vernier::IDOffset, rCommand, rVernierID))
    {
        return false;
    }
    if (!HasPayload(rCommand))
    {
        return true;
    }
    if (size < vernier::SmallestWithPayload)
    {
        return false;
    }
    if (vernier::HasRequestID(rCommand))
    {
        std::memcpy(&rRequestID, pPacket + vernier::RequestIDOffset, sizeof(rRequestID));
    }
    rpPayload    = pPacket + vernier::PayloadOffset(rCommand);
    rPayloadSize = size - vernier::PayloadOffset(rCommand);
    return true;
}

bool ParameterVernierWorker::ParseResponse(const BYTE* pPacket, UINT32 size, UINT16& rCommand, UINT64& rVernierID,
                                           UINT32& rRequestID, const BYTE*& rpPayload, UINT32& rPayloadSize) const
{
    rCommand     = 0;
    rVernierID   = 0;
    rRequestID   = 0;
    rpPayload    = nullptr;
    rPayloadSize = 0;
    if (pPacket == nullptr || size < SmallestPacket)
    {
        return false;
    }
    std::memcpy(&rCommand, pPacket + vernier::CommandOffset, sizeof(rCommand));
    const bool   isDevice = rCommand == static_cast<UINT16>(Command::DeviceInfo);
    const UINT32 payload  = isDevice ? vernier::DevicePayloadOffset : vernier::PayloadOffset(rCommand);
    const UINT32 smallest = vernier::HasRequestID(rCommand) ? vernier::SmallestWithPayload : payload;
    if (!ReadHeader(pPacket, size, isDevice ? vernier::DeviceIDOffset : vernier::IDOffset, rCommand, rVernierID) ||
        size < smallest)
    {
        return false;
    }
    if (vernier::HasRequestID(rCommand))
    {
        std::memcpy(&rRequestID, pPacket + vernier::RequestIDOffset, sizeof(rRequestID));
    }
    if (size > payload)
    {
        rpPayload    = pPacket + payload;
        rPayloadSize = size - payload;
    }
    return true;
}

bool ParameterVernierWorker::BuildResponse(BYTE* pPacket, UINT32 packetSize, UINT32& rLength, UINT16 command,
                                           UINT64 vernierID, UINT32 requestID, const BYTE* pPayload, UINT32 payloadSize)
{
    constexpr UINT64 MaxLength = 0xFFFF;

    const bool hasRequestID = vernier::HasRequestID(command);
    if (pPacket == nullptr || packetSize < SmallestAnswerRoom || command == static_cast<UINT16>(Command::DeviceInfo))
    {
        return false;
    }
    // Tag, command and length; the room of the Vernier ID is not counted. So a caller that adds the whole header to its
    // payload's size gets a packet with ten zeros at its end, as the answer to Modes has them; counted otherwise, that
    // answer would lose them.
    const UINT64 length = UINT64{payloadSize} + vernier::IDOffset + (hasRequestID ? sizeof(requestID) : 0);
    const UINT32 header = vernier::PayloadOffset(command);
    rLength             = static_cast<UINT32>(std::min<UINT64>(length, 0xFFFFFFFF));
    if (length > packetSize || length > MaxLength || header > packetSize)
    {
        return false;
    }
    const UINT16 start[]    = {vernier::StartTag, command, static_cast<UINT16>(length)};
    const bool   hasPayload = command >= static_cast<UINT16>(Command::Modes) &&
                            command <= static_cast<UINT16>(Command::Custom) && pPayload != nullptr;
    std::memcpy(pPacket, start, sizeof(start));
    std::memcpy(pPacket + vernier::IDOffset, &vernierID, sizeof(vernierID));
    if (hasRequestID)
    {
        std::memcpy(pPacket + vernier::RequestIDOffset, &requestID, sizeof(requestID));
    }
    if (hasPayload)
    {
        std::memcpy(pPacket + header, pPayload, std::min(payloadSize, packetSize - header));
    }
    return true;
}
