/// @file
/// An answer of the live tuning service under construction.
#pragma once

#include <algorithm>
#include <bit>
#include <cstring>
#include <vector>

#include "parameters/live/vernierprotocol.h"

static_assert(std::endian::native == std::endian::little, "numbers are put on the wire as they stand in memory");

/// A zero-filled packet whose header is in place from the start, but for the length.
class AnswerPacket
{
public:
    /// @param capacity bytes that the packet may have, header included
    AnswerPacket(vernier::Command command, UINT64 vernierID, UINT32 capacity) : m_bytes(capacity)
    {
        Put(0, vernier::StartTag);
        Put(vernier::CommandOffset, static_cast<UINT16>(command));
        Put((command == vernier::Command::DeviceInfo) ? vernier::DeviceIDOffset : vernier::IDOffset, vernierID);
    }

    /// An answer that repeats the header of its request, whatever IDs it has.
    /// @param size of pRequest; what the request lacks of a header with a request ID is zero
    AnswerPacket(const BYTE* pRequest, UINT32 size, UINT32 capacity) : m_bytes(capacity)
    {
        std::memcpy(m_bytes.data(), pRequest, std::min(size, vernier::HeaderSizeWithRequestID));
    }

    template <typename T> VOID Put(UINT32 offset, T value)
    {
        std::memcpy(m_bytes.data() + offset, &value, sizeof(value));
    }

    /// Where a text of the packet begins.
    CHAR* Text(UINT32 offset)
    {
        return reinterpret_cast<CHAR*>(m_bytes.data() + offset);
    }

    BYTE* Data()
    {
        return m_bytes.data();
    }

    const BYTE* Data() const
    {
        return m_bytes.data();
    }

    UINT32 Capacity() const
    {
        return static_cast<UINT32>(m_bytes.size());
    }

    /// Room behind an offset.
    UINT32 Room(UINT32 offset) const
    {
        return Capacity() - offset;
    }

    /// Writes the length of the whole packet. @param length at most Capacity()
    VOID SetLength(UINT32 length)
    {
        m_length = length;
        Put(vernier::LengthOffset, static_cast<UINT16>(length));
    }

    /// The same for a packet that ends with the NUL of a text.
    VOID EndAfterText(UINT32 offset)
    {
        SetLength(offset + static_cast<UINT32>(std::strlen(Text(offset))) + 1);
    }

    UINT32 Length() const
    {
        return m_length;
    }

private:
    std::vector<BYTE> m_bytes;
    UINT32            m_length = 0;
};
