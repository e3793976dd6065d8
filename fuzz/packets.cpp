/// The byte stream of a tuning tool, in pieces as a network delivers them: requests are cut out of it and taken apart.
///
/// The first byte of an input chooses buffer and commands of the receiver. The rest is pieces, each a byte that says
/// how long it is and the bytes themselves.
#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <span>
#include <vector>

#include "parameters/live/parametervernierworker.h"

namespace
{

constexpr BYTE ClientLeaves = 0xFF;  ///< in the place of a length
constexpr BYTE LongPiece    = 0xF0;  ///< lengths from here on count in kilobytes

class Stream final : public ParameterVernierComBase
{
public:
    explicit Stream(std::span<const BYTE> bytes) : ParameterVernierComBase(nullptr, true), m_bytes(bytes)
    {
    }

    VOID StartCom() override
    {
    }

    VOID StopCom() override
    {
    }

    VOID ShutDownCom() override
    {
    }

    UINT32 WriteData(const BYTE*, UINT32 size) override
    {
        return size;
    }

    UINT32 ReadData(BYTE* pBuffer, UINT32 size, INT32, const std::atomic<bool>&) override
    {
        if (size == 0)
        {
            std::abort();  // a full receiver could never make progress
        }
        if (m_bytes.empty())
        {
            m_ended = true;
            return 0;
        }
        const BYTE length = m_bytes[0];
        m_bytes           = m_bytes.subspan(1);
        if (length == ClientLeaves)
        {
            return Disconnected;
        }
        const size_t wanted = (length >= LongPiece) ? (length - LongPiece + 1) * size_t{4096} : length;
        const size_t count  = std::min({wanted, m_bytes.size(), static_cast<size_t>(size)});
        std::copy_n(m_bytes.begin(), count, pBuffer);
        m_bytes = m_bytes.subspan(count);
        return static_cast<UINT32>(count);
    }

    const std::atomic<bool>& Ended() const
    {
        return m_ended;
    }

private:
    std::span<const BYTE> m_bytes;
    std::atomic<bool>     m_ended = false;
};

VOID TakeApart(const ParameterVernierWorker& rWorker, const Stream::Packet& rPacket)
{
    UINT16      command     = 0;
    UINT64      vernierID   = 0;
    UINT32      requestID   = 0;
    const BYTE* pPayload    = nullptr;
    UINT32      payloadSize = 0;
    const BYTE* pData       = rPacket.data.get();
    if (rWorker.ParseRequest(pData, rPacket.size, command, vernierID, requestID, pPayload, payloadSize))
    {
        (VOID) ParameterVernierWorker::IsPrintable(pPayload, payloadSize);
        std::vector<BYTE> answer(512);
        UINT32            length = 0;
        (VOID) ParameterVernierWorker::BuildResponse(answer.data(), static_cast<UINT32>(answer.size()), length, command,
                                                     vernierID, requestID, pPayload, payloadSize);
    }
    (VOID) rWorker.ParseResponse(pData, rPacket.size, command, vernierID, requestID, pPayload, payloadSize);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const BYTE* pData, size_t size)
{
    if (size < 1)
    {
        return 0;
    }
    const UINT32 room         = ((pData[0] & 1) != 0) ? 64 : vernier::PacketLimit;
    const UINT16 commandLimit = ((pData[0] & 2) != 0) ? UINT16{0xFFFF} : vernier::CommandCount;

    const ParameterVernierWorker worker(nullptr);
    Stream                       stream({pData + 1, size - 1});
    std::vector<BYTE>            request(room);
    while (!stream.Ended())
    {
        const UINT32 length = stream.ReceiveVernierRequest(request.data(), room, commandLimit, -1, stream.Ended());
        if (length > 0)
        {
            stream.QueueReadData(request.data(), static_cast<INT32>(length));
            // The longest request of all comes out empty, and the service passes over it.
            const auto pPacket = stream.Read();
            if (pPacket->size > 0)
            {
                TakeApart(worker, *pPacket);
            }
        }
    }
    return 0;
}
