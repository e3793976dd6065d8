#include "tools/liveclient/liveclient.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <random>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tools/liveclient/connection.h"
#include "tools/liveclient/packet.h"
#include "tools/liveclient/texts.h"

namespace liveclient
{

namespace
{

using vernier::Command;

constexpr const char* CommandNames[] = {"DeviceInfo", "ActiveModes", "ControlValues", "Modes",  "Info",
                                        "GetValues",  "SetValues",   "TriggerValues", "Custom", "ModeTableIndex"};

/// How long the service may take for an answer that costs it nothing, before it is asked again.
constexpr std::chrono::milliseconds SynchronizeSlice{250};

/// Bytes of a text with its NUL.
std::span<const BYTE> BytesOf(const std::string& rText)
{
    return {reinterpret_cast<const BYTE*>(rText.c_str()), rText.size() + 1};
}

VOID RequireLength(const char* pWhat, const std::string& rText)
{
    if (rText.size() > MaxText)
    {
        throw Error(
            fmt::format("{} of {} characters is too long, at most {} can be sent", pWhat, rText.size(), MaxText));
    }
}

/// Refuses what would be taken for a separator, or for the end of the request.
const std::string& Checked(const char* pWhat, const std::string& rText)
{
    const std::string_view separators(":;=,|\0", 6);
    if (rText.empty() || rText.find_first_of(separators) != std::string::npos)
    {
        throw Error(fmt::format("{} '{}': expected a name without any of : ; = , |", pWhat, rText.c_str()));
    }
    RequireLength(pWhat, rText);
    return rText;
}

/// What requests about values start with.
std::string Address(const std::string& rPath, const std::string& rModule)
{
    const std::string path = NamedPath(rPath);
    RequireLength("a mode path", path);
    return path + ':' + Checked("module", rModule);
}

}  // namespace

Client::Client(const Options& rOptions)
    : m_timeout(rOptions.timeout),
      m_pConnection(std::make_unique<Connection>(rOptions.host, rOptions.port, Clock::now() + rOptions.timeout)),
      m_requestID(std::random_device{}())
{
    Synchronize();
}

Client::~Client() = default;

/// Answers to a client that has left are sent to the next one, and those without a request ID look like its own. They
/// come in order, so whatever comes before the first answer to a request with an ID of ours is of that kind.
///
/// The service also keeps half a request of a client that has left, which the first bytes of the next client complete.
/// So the first request may be swallowed; it also spoils the value that half a request to set ends in. Then zeros: as
/// many as any request can lack, and behind it they are no request, so that they are dropped. The last few may stay
/// until a request comes that is dropped with them, so it takes another one. Any of those behind the zeros will do: a
/// service that is slow answers each of them late.
VOID Client::Synchronize()
{
    const auto                     end   = Clock::now() + m_timeout;
    const Clock::duration          slice = std::min<Clock::duration>(SynchronizeSlice, m_timeout / 4);
    const std::array<BYTE, 0xFFFF> zeros{};
    const UINT32                   firstID  = m_requestID + 1;
    UINT32                         oldestID = firstID;
    while (Clock::now() < end)
    {
        // A request for values that names no module: nothing to do for the service.
        const auto request = EncodeRequest(Command::GetValues, m_vernierID, ++m_requestID, BytesOf(""));
        Answer     answer;
        if (!m_pConnection->TrySend(request, end))
        {
            break;
        }
        if (Await(Command::GetValues, oldestID, std::min(Clock::now() + slice, end), end, answer))
        {
            return;
        }
        if (m_requestID == firstID)
        {
            if (!m_pConnection->TrySend(zeros, end))
            {
                break;
            }
            oldestID = firstID + 1;
        }
    }
    throw Error(fmt::format("{} takes the connection but does not answer within {} ms: another tool may be connected, "
                            "one is served at a time",
                            m_pConnection->Peer(), m_timeout.count()));
}

/// Waits for an answer to one of the requests from the oldest to the latest, and skips all others.
/// @param deadline for the answer to begin @param end for all of it
/// @return false if none has begun until the deadline @throws Error if what comes is no answer
bool Client::Await(Command command, UINT32 oldestID, Clock::time_point deadline, Clock::time_point end, Answer& rAnswer)
{
    std::vector<BYTE> packet;
    do
    {
        packet.resize(LengthKnownAt);
        size_t held = m_pConnection->Receive(packet, deadline);
        if (held == 0)
        {
            return false;
        }
        held += m_pConnection->Receive(std::span(packet).subspan(held), end);
        if (held == LengthKnownAt)
        {
            packet.resize(AnswerLength(packet));
            held += m_pConnection->Receive(std::span(packet).subspan(LengthKnownAt), end);
        }
        if (held < packet.size())
        {
            throw Error(
                fmt::format("{}: an answer ends after {} of {} bytes", m_pConnection->Peer(), held, packet.size()));
        }
        rAnswer = DecodeAnswer(packet);
        if (rAnswer.command == static_cast<UINT16>(command) &&
            (!vernier::HasRequestID(rAnswer.command) || m_requestID - rAnswer.requestID <= m_requestID - oldestID))
        {
            return true;
        }
    } while (Clock::now() < deadline);
    return false;
}

Answer Client::Exchange(Command command, std::span<const BYTE> payload)
{
    const std::vector<BYTE> request = EncodeRequest(command, m_vernierID, ++m_requestID, payload);
    try
    {
        const auto deadline = Clock::now() + m_timeout;
        Answer     answer;
        m_pConnection->Send(request, deadline);
        if (!Await(command, m_requestID, deadline, deadline, answer))
        {
            throw Error(fmt::format("{}: no answer to {} within {} ms", m_pConnection->Peer(),
                                    CommandNames[static_cast<UINT16>(command)], m_timeout.count()));
        }
        return answer;
    }
    catch (const Error&)
    {
        // What may still come cannot be told from answers to later requests.
        m_pConnection->Close();
        throw;
    }
}

Answer Client::Exchange(Command command, const std::string& rText)
{
    return Exchange(command, BytesOf(rText));
}

DeviceInfo Client::Device()
{
    const Answer answer = Exchange(Command::DeviceInfo, std::span<const BYTE>());
    DeviceInfo   info;
    info.major  = answer.major;
    info.minor  = answer.minor;
    info.id     = answer.vernierID;
    m_vernierID = answer.vernierID;
    ParseDevice(TextOf(answer), info);
    return info;
}

std::vector<std::string> Client::ActiveModes()
{
    return Split(TextOf(Exchange(Command::ActiveModes, std::span<const BYTE>())), ';');
}

std::vector<ControlValue> Client::ControlValues()
{
    return ParseControlValues(TextOf(Exchange(Command::ControlValues, std::span<const BYTE>())));
}

std::vector<std::string> Client::ChildModes(const std::string& rPath)
{
    const std::string path = NamedPath(rPath);
    RequireLength("a mode path", path);
    if (m_vernierID == 0)
    {
        (VOID) Device();  // the service complains in its log if this request does not carry its token
    }
    return Split(TextOf(Exchange(Command::Modes, path)), ',');
}

std::vector<MemberInfo> Client::Info(const std::string& rPath, const std::string& rModule)
{
    return ParseMemberInfos(TextOf(Exchange(Command::Info, Address(rPath, rModule))));
}

std::vector<Value> Client::Get(const std::string& rPath, const std::string& rModule,
                               const std::vector<std::string>& rMembers)
{
    std::string text = Address(rPath, rModule);
    for (size_t index = 0; index < rMembers.size(); ++index)
    {
        text += ((index == 0) ? ':' : ',') + Checked("member", rMembers[index]);
    }
    return ParseValues(TextOf(Exchange(Command::GetValues, text)));
}

VOID RequireNumber(const Value& rValue)
{
    if (!IsNumber(rValue.text))
    {
        throw Error(fmt::format("value '{}' of {}: expected a decimal number such as -12.5, without an exponent",
                                rValue.text, rValue.name));
    }
}

std::vector<Value> Client::Set(const std::string& rPath, const std::string& rModule, const std::vector<Value>& rValues)
{
    std::string text      = Address(rPath, rModule);
    char        separator = ':';
    for (const Value& rValue : rValues)
    {
        RequireNumber(rValue);
        const std::string item = Checked("member", rValue.name) + '=' + rValue.text;
        RequireLength("an item to set", item);
        text += separator + item;
        separator = ';';
    }
    return ParseValues(TextOf(Exchange(Command::SetValues, text)));
}

UINT32 Client::AskTableIndex(const std::string& rText)
{
    const std::string text  = TextOf(Exchange(Command::ModeTableIndex, rText));
    UINT32            index = 0;
    const auto        end   = text.data() + text.size();
    const auto        read  = std::from_chars(text.data(), end, index);
    if (read.ec != std::errc() || read.ptr != end)
    {
        throw Error(fmt::format("the index of a mode table does not read: '{}', expected a number", text));
    }
    return index;
}

/// A text that is no number changes nothing, and is answered all the same.
UINT32 Client::TableIndex()
{
    return AskTableIndex("");
}

UINT32 Client::SelectTable(UINT32 index)
{
    return AskTableIndex(std::to_string(index));
}

CustomResult Client::Custom(std::span<const BYTE> bytes)
{
    if (bytes.empty())
    {
        throw Error("a custom command without bytes: expected one at least");
    }
    const Answer answer = Exchange(Command::Custom, bytes);
    if (answer.payload.size() < 2)
    {
        throw Error(fmt::format("{}: an answer to Custom holds no result", m_pConnection->Peer()));
    }
    CustomResult result;
    result.result = static_cast<UINT16>(answer.payload[0] | answer.payload[1] << 8);
    result.bytes.assign(answer.payload.begin() + 2, answer.payload.end());
    return result;
}

}  // namespace liveclient
