/// @file
/// Requests as bytes, and answers out of bytes. Answers can hold anything: what does not fit the format is an Error.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "parameters/live/vernierprotocol.h"

namespace liveclient
{

/// Bytes that tell how long an answer is.
constexpr UINT32 LengthKnownAt = vernier::IDOffset;

struct Answer
{
    UINT16            command   = 0;
    UINT64            vernierID = 0;
    UINT32            requestID = 0;  ///< 0 for commands without one
    BYTE              major     = 0;  ///< protocol version, in the answer to DeviceInfo
    BYTE              minor     = 0;
    std::vector<BYTE> payload;
};

/// @throws Error if the request would be too long for the service to take
std::vector<BYTE> EncodeRequest(vernier::Command command, UINT64 vernierID, UINT32 requestID,
                                std::span<const BYTE> payload);

/// @param head the first LengthKnownAt bytes of an answer
/// @return length of the answer, at least that of its header @throws Error
UINT32 AnswerLength(std::span<const BYTE> head);

/// @param packet as long as AnswerLength says @throws Error
Answer DecodeAnswer(std::span<const BYTE> packet);

/// @return the text that the payload starts with; what stands behind its NUL does not count
/// @throws Error if there is no NUL
std::string TextOf(const Answer& rAnswer);

}  // namespace liveclient
