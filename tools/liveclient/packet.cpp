#include "tools/liveclient/packet.h"

#include <algorithm>

#include <fmt/format.h>

#include "tools/liveclient/error.h"

namespace liveclient
{

namespace
{

template <typename T> VOID Append(T value, std::vector<BYTE>& rBytes)
{
    for (size_t byte = 0; byte < sizeof(T); ++byte)
    {
        rBytes.push_back(static_cast<BYTE>(value >> (8 * byte)));
    }
}

template <typename T> T Read(std::span<const BYTE> bytes, size_t offset)
{
    T value = 0;
    for (size_t byte = 0; byte < sizeof(T); ++byte)
    {
        value = static_cast<T>(value | static_cast<T>(bytes[offset + byte]) << (8 * byte));
    }
    return value;
}

bool IsDeviceInfo(UINT16 command)
{
    return command == static_cast<UINT16>(vernier::Command::DeviceInfo);
}

UINT32 AnswerPayloadOffset(UINT16 command)
{
    return IsDeviceInfo(command) ? vernier::DevicePayloadOffset : vernier::PayloadOffset(command);
}

}  // namespace

std::vector<BYTE> EncodeRequest(vernier::Command command, UINT64 vernierID, UINT32 requestID,
                                std::span<const BYTE> payload)
{
    const UINT16 code   = static_cast<UINT16>(command);
    const size_t length = vernier::PayloadOffset(code) + payload.size();
    if (length >= vernier::PacketLimit)
    {
        throw Error(
            fmt::format("a request of {} bytes is too long, at most {} can be sent", length, vernier::PacketLimit - 1));
    }
    std::vector<BYTE> packet;
    packet.reserve(length);
    Append(vernier::StartTag, packet);
    Append(code, packet);
    Append(static_cast<UINT16>(length), packet);
    Append(vernierID, packet);
    if (vernier::HasRequestID(code))
    {
        Append(requestID, packet);
    }
    packet.insert(packet.end(), payload.begin(), payload.end());
    return packet;
}

UINT32 AnswerLength(std::span<const BYTE> head)
{
    const UINT16 tag = Read<UINT16>(head, 0);
    if (tag != vernier::StartTag)
    {
        throw Error(fmt::format("an answer starts with {}, expected {}: this is no live tuning service", tag,
                                vernier::StartTag));
    }
    const UINT16 command = Read<UINT16>(head, vernier::CommandOffset);
    const UINT32 length  = Read<UINT16>(head, vernier::LengthOffset);
    const UINT32 least   = AnswerPayloadOffset(command);
    if (length < least)
    {
        throw Error(fmt::format("an answer to command {} says that it has {} bytes, expected at least {}", command,
                                length, least));
    }
    return length;
}

Answer DecodeAnswer(std::span<const BYTE> packet)
{
    Answer answer;
    answer.command = Read<UINT16>(packet, vernier::CommandOffset);
    if (IsDeviceInfo(answer.command))
    {
        answer.major     = packet[vernier::DeviceVersionOffset];
        answer.minor     = packet[vernier::DeviceVersionOffset + 1];
        answer.vernierID = Read<UINT64>(packet, vernier::DeviceIDOffset);
    }
    else
    {
        answer.vernierID = Read<UINT64>(packet, vernier::IDOffset);
    }
    if (vernier::HasRequestID(answer.command))
    {
        answer.requestID = Read<UINT32>(packet, vernier::RequestIDOffset);
    }
    const auto payload = packet.subspan(AnswerPayloadOffset(answer.command));
    answer.payload.assign(payload.begin(), payload.end());
    return answer;
}

std::string TextOf(const Answer& rAnswer)
{
    const auto end = std::find(rAnswer.payload.begin(), rAnswer.payload.end(), BYTE{0});
    if (end == rAnswer.payload.end())
    {
        throw Error(fmt::format("the text of an answer to command {} has no end", rAnswer.command));
    }
    return std::string(rAnswer.payload.begin(), end);
}

}  // namespace liveclient
