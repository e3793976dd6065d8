/// @file
/// Cuts the byte stream of a tuning tool into requests.
#pragma once

#include <array>

#include "parameters/live/vernierprotocol.h"
#include "parameters/parameterlogging.h"

/// Holds received bytes until they make up a request, and judges the request at their head:
/// - without the start tag nothing tells where the next request begins: all held bytes are dropped;
/// - a request that cannot be served is dropped as a whole if its length can be believed. What of it is still to come
///   is skipped, so that one bad request does not shut out those behind it.
class RequestFraming
{
public:
    explicit RequestFraming(const IParameterLoggingAPI* pLog) : m_pLog(pLog)
    {
    }

    /// Where received bytes go. There is always room for at least one byte after TakeRequest has answered 0.
    BYTE* Room()
    {
        return m_bytes.data() + m_head + m_fill;
    }

    UINT32 RoomSize() const
    {
        return static_cast<UINT32>(m_bytes.size()) - m_head - m_fill;
    }

    /// So many bytes, RoomSize at most, now stand in the room.
    VOID Added(UINT32 count);

    /// Copies the request at the head of the held bytes and drops it from there.
    /// @param size         of the buffer; a longer request is dropped
    /// @param commandLimit requests with this command or a higher one are dropped
    /// @return its length, 0 if there is no whole request
    UINT32 TakeRequest(BYTE* pBuffer, UINT32 size, UINT16 commandLimit);

private:
    /// What to do with the request at the head.
    enum class Verdict
    {
        Deliver,
        Drop,  ///< and judge what stands behind it
        Wait   ///< for the rest of it
    };

    Verdict Judge(UINT32 size, UINT16 commandLimit);
    VOID    SkipOutstanding();
    VOID    RefuseHead();
    VOID    DropHead(UINT32 count);
    VOID    MoveToFront();
    VOID    LogNewCommand(UINT32 length) const;

    UINT32 Word(UINT32 offset) const;

    const BYTE* Head() const
    {
        return m_bytes.data() + m_head;
    }

    const IParameterLoggingAPI* const      m_pLog;
    UINT32                                 m_head = 0;  ///< where the held bytes begin
    UINT32                                 m_fill = 0;
    UINT32                                 m_skip = 0;  ///< bytes of a refused request that are still to come
    std::array<BYTE, vernier::PacketLimit> m_bytes;
};
