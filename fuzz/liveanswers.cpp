/// Answers of whatever listens where a live tuning service should: taken apart as the tool does, each text is read as
/// any of the kinds that answers have.
#include <functional>
#include <span>
#include <string>

#include "tools/liveclient/error.h"
#include "tools/liveclient/packet.h"
#include "tools/liveclient/texts.h"

namespace
{

/// What does not fit the format is refused by an Error, and by nothing else.
VOID Try(const std::function<VOID()>& rReading)
{
    try
    {
        rReading();
    }
    catch (const liveclient::Error&)
    {
    }
}

VOID ReadText(const std::string& rText)
{
    liveclient::DeviceInfo device;
    Try([&] { liveclient::ParseDevice(rText, device); });
    Try([&] { (VOID) liveclient::ParseControlValues(rText); });
    Try([&] { (VOID) liveclient::ParseMemberInfos(rText); });
    Try([&] { (VOID) liveclient::ParseValues(rText); });
    Try([&] { (VOID) liveclient::NamedPath(rText); });
    (VOID) liveclient::Split(rText, ',');
    (VOID) liveclient::IsNumber(rText);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const BYTE* pData, size_t size)
{
    const std::span<const BYTE> bytes(pData, size);
    ReadText(std::string(reinterpret_cast<const CHAR*>(pData), size));
    if (size >= liveclient::LengthKnownAt)
    {
        Try(
            [&]
            {
                const UINT32 length = liveclient::AnswerLength(bytes.first(liveclient::LengthKnownAt));
                if (length <= size)
                {
                    ReadText(liveclient::TextOf(liveclient::DecodeAnswer(bytes.first(length))));
                }
            });
    }
    return 0;
}
