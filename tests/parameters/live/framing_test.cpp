// How the stream is cut into requests, without a network: received pieces as they are written here.
#include <deque>

#include "parameters/live/parameterverniercombase.h"
#include "tests/parameters/live/livefixture.h"
#include "tests/support/systemlogcapture.h"

namespace
{

/// Hands out the pieces; an empty one stands for a client that leaves. Stops when there are no more.
class ScriptedCom final : public ParameterVernierComBase
{
public:
    explicit ScriptedCom(std::deque<Bytes> pieces) : ParameterVernierComBase(nullptr, true), m_pieces(std::move(pieces))
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

    UINT32 ReadData(BYTE* pBuffer, UINT32 size, INT32, const std::atomic<bool>&) override
    {
        if (m_pieces.empty())
        {
            m_end = true;
            return 0;
        }
        Bytes& rPiece = m_pieces.front();
        if (rPiece.empty())
        {
            m_pieces.pop_front();
            return Disconnected;
        }
        const UINT32 count = std::min(size, static_cast<UINT32>(rPiece.size()));
        std::copy_n(rPiece.begin(), count, pBuffer);
        rPiece.erase(rPiece.begin(), rPiece.begin() + count);
        if (rPiece.empty())
        {
            m_pieces.pop_front();
        }
        return count;
    }

    UINT32 WriteData(const BYTE*, UINT32 size) override
    {
        return size;
    }

    std::vector<Bytes> Requests(UINT32 size = vernier::PacketLimit, UINT16 commandLimit = vernier::CommandCount)
    {
        std::vector<Bytes> requests;
        Bytes              buffer(size);
        while (!m_end)
        {
            const UINT32 length = ReceiveVernierRequest(buffer.data(), size, commandLimit, -1, m_end);
            if (length > 0)
            {
                requests.emplace_back(buffer.begin(), buffer.begin() + length);
            }
        }
        return requests;
    }

private:
    std::deque<Bytes> m_pieces;
    std::atomic<bool> m_end{false};
};

const Bytes Good  = Packet(20, 1, 100);
const Bytes Other = Packet(31, 5, 200);

}  // namespace

TEST(FramingTest, CutsStreamIntoRequests)
{
    const Bytes bad       = Packet(40, 10);
    const Bytes zero      = WithLength(Packet(14), 0);
    const Bytes noTag     = Bytes(20, 0x33);
    const CHAR* pTag      = "missing start tag, Expected: 19286, Received: 13107: 0x3333333333\n";
    const CHAR* pCommand  = "Vernier request ID 10 exceeds Max 10\n";
    const CHAR* pZero     = "Vernier request length is zero: 0x564b010000\n";
    const Bytes lastHalf  = Bytes(Good.begin() + 9, Good.end());
    const Bytes firstHalf = Bytes(Good.begin(), Good.begin() + 9);
    const Bytes badHead   = Bytes(bad.begin(), bad.begin() + 17);
    const Bytes badTail   = Bytes(bad.begin() + 17, bad.end());
    const Bytes tagByte   = {Good[0]};
    const Bytes behindTag = Bytes(Good.begin() + 1, Good.end());
    const Bytes largest   = Packet(65535);
    // Name, pieces, requests, what is logged (null for nothing), and how often.
    const std::tuple<const CHAR*, std::deque<Bytes>, std::vector<Bytes>, const CHAR*, size_t> streams[] = {
        {"one after the other", {Good, Other}, {Good, Other}, nullptr, 0},
        {"in one piece", {Good + Other + Good}, {Good, Other, Good}, nullptr, 0},
        {"too short to judge", {Bytes(13, 0x33)}, {}, nullptr, 0},
        {"header alone", {Packet(14)}, {Packet(14)}, nullptr, 0},
        {"length below that of a header", {WithLength(Good, 5)}, {{0x56, 0x4b, 1, 0, 5}}, "missing start tag", 1},
        {"largest", {largest + Good}, {largest, Good}, nullptr, 0},
        {"client leaves half a request", {firstHalf, {}, lastHalf + Other}, {Good, Other}, nullptr, 0},
        {"wrong tag drops all that is held", {noTag + Good, Other}, {Other}, pTag, 1},
        {"length 0 drops all that is held", {zero + Good, Other}, {Other}, pZero, 1},
        {"bad command", {bad + Good}, {Good}, pCommand, 1},
        {"bad command in pieces", {badHead, badTail, Good}, {Good}, pCommand, 1},
        {"bad command, rest together with a good one", {badHead, badTail + Good}, {Good}, pCommand, 1},
        {"bad command, rest never comes", {badHead, Good, Other}, {Good, Other}, pCommand, 1},
        {"bad command, client leaves", {badHead, {}, tagByte, behindTag}, {Good}, pCommand, 1},
        {"bad command that says 65535", {WithLength(bad, 65535), Good + Other}, {Good, Other}, pCommand, 1},
        {"bad command that says 13", {WithLength(bad, 13) + Good, Other}, {Other}, pCommand, 1},
        {"highest command", {Packet(14, 65535) + Good}, {Good}, "Vernier request ID 65535 exceeds Max 10\n", 1},
        {"many bad ones", {bad + bad + Good + bad}, {Good}, pCommand, 3},
    };
    for (const auto& [pName, pieces, requests, pLog, lines] : streams)
    {
        SCOPED_TRACE(pName);
        SystemLogCapture log;
        EXPECT_EQ(ScriptedCom(pieces).Requests(), requests);
        if (pLog != nullptr)
        {
            EXPECT_EQ(log.Count(pLog, "E"), lines) << log.Text();
        }
        EXPECT_EQ(log.Size(), 1 + lines) << log.Text();
    }
}

TEST(FramingTest, ToleratesEveryCut)
{
    const SystemLogCapture log;
    const Bytes            bad    = Packet(40, 4711);
    const Bytes            stream = Good + bad + Other;
    for (size_t cut = 1; cut < stream.size(); ++cut)
    {
        SCOPED_TRACE(cut);
        const Bytes first(stream.begin(), stream.begin() + cut);
        const Bytes second(stream.begin() + cut, stream.end());
        EXPECT_EQ(ScriptedCom({first, second}).Requests(), (std::vector<Bytes>{Good, Other}));
    }
    std::deque<Bytes> single;
    for (BYTE byte : stream)
    {
        single.push_back({byte});
    }
    EXPECT_EQ(ScriptedCom(single).Requests(), (std::vector<Bytes>{Good, Other}));
}

// A caller that serves more commands than the first ten sees what came, also without a terminator.
TEST(FramingTest, TracesNewCommands)
{
    SystemLogCapture log;
    Bytes            request = Packet(20, 12);
    std::copy_n("\1\2\0\0a\0", 6, request.begin() + 14);
    EXPECT_EQ(ScriptedCom({request + WithLength(Packet(14, 11), 3)}).Requests(100, 13).size(), 2u);
    EXPECT_TRUE(log.Has("Vernier recv 20 bytes, Command 12, ID: 513, Payload: a\n", "V")) << log.Text();
    EXPECT_TRUE(log.Has("Vernier recv 3 bytes, Command 11, ID: 0, Payload: \n", "V")) << log.Text();
    EXPECT_EQ(log.Count("Vernier packet missing terminating nul character\n", "E"), 1u) << log.Text();

    // Requests that the buffer cannot hold are left out.
    EXPECT_EQ(ScriptedCom({Other + Good}).Requests(30), std::vector<Bytes>{Good});
    EXPECT_TRUE(log.Has("Vernier request length (31) is greater than packet size (30): 0x564b05001f\n", "E"));
}

TEST(FramingTest, QueuesOnlyPacketsThatThereCanBe)
{
    const SystemLogCapture log;
    ScriptedCom            com({});
    const Bytes            bytes(65536, 7);
    com.QueueReadData(nullptr, 5);
    com.QueueReadData(bytes.data(), 0);
    com.QueueReadData(bytes.data(), -1);
    for (const auto& [size, queued] : {std::pair<INT32, UINT32>{1, 1}, {65534, 65534}, {65535, 0}, {65536, 0}})
    {
        com.QueueReadData(bytes.data(), size);
        EXPECT_EQ(com.Read()->size, queued);
    }
    com.Stop();
    EXPECT_EQ(com.Read(), nullptr);
    com.QueueReadData(bytes.data(), 5);
    com.Stop();
    EXPECT_EQ(com.Read(), nullptr);
}
