/// @file
/// Packets of live tuning as bytes, made without the code that makes and reads them elsewhere.
#pragma once

#include <cstring>
#include <string_view>
#include <vector>

#include "parameters/live/vernierprotocol.h"

using Bytes = std::vector<BYTE>;

inline Bytes operator+(Bytes left, const Bytes& rRight)
{
    left.insert(left.end(), rRight.begin(), rRight.end());
    return left;
}

/// Bytes of a number, low one first.
template <typename T> inline Bytes Number(T value)
{
    Bytes bytes(sizeof(T));
    std::memcpy(bytes.data(), &value, sizeof(T));
    return bytes;
}

inline Bytes Text(std::string_view text)
{
    Bytes bytes(text.begin(), text.end());
    bytes.push_back(0);
    return bytes;
}

/// A request or an answer, with the command's own header.
inline Bytes Request(UINT16 command, const Bytes& rPayload = {}, UINT64 id = 0, UINT32 requestID = 0x01020304)
{
    Bytes body = Number(id);
    if (vernier::HasRequestID(command))
    {
        body = body + Number(requestID);
    }
    body = body + rPayload;
    return Number<UINT16>(19286) + Number(command) + Number(static_cast<UINT16>(6 + body.size())) + body;
}
