#include "parameters/live/requestframing.h"

#include <algorithm>

namespace
{

constexpr BYTE FirstTagByte = vernier::StartTag & 0xFF;

}  // namespace

VOID RequestFraming::Added(UINT32 count)
{
    m_fill += std::min(count, RoomSize());
    SkipOutstanding();
}

UINT32 RequestFraming::TakeRequest(BYTE* pBuffer, UINT32 size, UINT16 commandLimit)
{
    while (m_skip == 0 && m_fill >= vernier::HeaderSize)
    {
        const Verdict verdict = Judge(size, commandLimit);
        if (verdict == Verdict::Wait)
        {
            break;
        }
        if (verdict == Verdict::Deliver)
        {
            const UINT32 length = Word(vernier::LengthOffset);
            if (Word(vernier::CommandOffset) >= vernier::CommandCount)
            {
                LogNewCommand(length);
            }
            std::copy_n(Head(), length, pBuffer);
            DropHead(length);
            return length;
        }
    }
    MoveToFront();
    return 0;
}

RequestFraming::Verdict RequestFraming::Judge(UINT32 size, UINT16 commandLimit)
{
    const UINT32 tag     = Word(0);
    const UINT32 command = Word(vernier::CommandOffset);
    const UINT32 length  = Word(vernier::LengthOffset);
    const BYTE*  p       = Head();
    if (tag != vernier::StartTag)
    {
        ParameterLogging::Write(
            m_pLog, ParameterLogging::Error,
            "Vernier request missing start tag, Expected: %u, Received: %u: 0x%02x%02x%02x%02x%02x\n",
            vernier::StartTag, tag, p[0], p[1], p[2], p[3], p[4]);
        DropHead(m_fill);
        return Verdict::Drop;
    }
    if (command >= commandLimit)
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error, "Vernier request ID %u exceeds Max %u\n", command,
                                commandLimit);
        RefuseHead();
        return Verdict::Drop;
    }
    if (length == 0)
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                "Vernier request length is zero: 0x%02x%02x%02x%02x%02x\n", p[0], p[1], p[2], p[3],
                                p[4]);
        RefuseHead();
        return Verdict::Drop;
    }
    if (m_fill < length)
    {
        return Verdict::Wait;
    }
    if (length > size)
    {
        ParameterLogging::Write(
            m_pLog, ParameterLogging::Error,
            "Vernier request length (%u) is greater than packet size (%u): 0x%02x%02x%02x%02x%02x\n", length, size,
            p[0], p[1], p[2], p[3], p[4]);
        DropHead(length);
        return Verdict::Drop;
    }
    // A length below that of a header passes too: whoever serves the request refuses it.
    return Verdict::Deliver;
}

/// Left in place, the request would be judged and logged again and again and would shut out all behind it.
VOID RequestFraming::RefuseHead()
{
    const UINT32 length = Word(vernier::LengthOffset);
    if (length < vernier::HeaderSize)
    {
        DropHead(m_fill);
        return;
    }
    const UINT32 held = std::min(length, m_fill);
    DropHead(held);
    m_skip = length - held;
}

/// The length of a refused request may be a lie. So bytes that arrive with a start tag in front are taken for a new
/// request, even if the refused one should have more to come.
VOID RequestFraming::SkipOutstanding()
{
    if (m_skip == 0 || m_fill == 0 || (m_fill == 1 && *Head() == FirstTagByte))
    {
        return;
    }
    if (m_fill > 1 && Word(0) == vernier::StartTag)
    {
        m_skip = 0;
        return;
    }
    const UINT32 count = std::min(m_skip, m_fill);
    DropHead(count);
    m_skip -= count;
}

VOID RequestFraming::DropHead(UINT32 count)
{
    m_head += count;
    m_fill -= count;
}

/// Done once per read and not per request: a buffer can hold thousands of them.
VOID RequestFraming::MoveToFront()
{
    if (m_head == 0)
    {
        return;
    }
    std::copy(Head(), Head() + m_fill, m_bytes.begin());
    m_head = 0;
}

/// Traces a request of a command that came after the first ten. Callers that serve only those ten never get here.
VOID RequestFraming::LogNewCommand(UINT32 length) const
{
    const UINT32 payloadOffset = std::min(length, vernier::HeaderSizeWithRequestID);
    const UINT32 requestID     = (length >= vernier::HeaderSizeWithRequestID)
                                     ? Word(vernier::RequestIDOffset) | (Word(vernier::RequestIDOffset + 2) << 16)
                                     : 0;
    ParameterLogging::Write(m_pLog, ParameterLogging::Debug,
                            "Vernier recv %u bytes, Command %d, ID: %u, Payload: %.*s\n", length,
                            Word(vernier::CommandOffset), requestID, static_cast<INT32>(length - payloadOffset),
                            reinterpret_cast<const CHAR*>(Head() + payloadOffset));
    if (Head()[length - 1] != 0)
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error, "Vernier packet missing terminating nul character\n");
    }
}

/// Two bytes, low one first.
UINT32 RequestFraming::Word(UINT32 offset) const
{
    return Head()[offset] | (static_cast<UINT32>(Head()[offset + 1]) << 8);
}
