#include "tools/report/datauri.h"

namespace report
{

std::string DataUri(const CHAR* pType, std::span<const BYTE> bytes)
{
    constexpr CHAR   letters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    constexpr size_t group     = 3;
    std::string      text      = std::string("data:") + pType + ";base64,";
    text.reserve(text.size() + (bytes.size() + 2) / group * 4);
    for (size_t start = 0; start < bytes.size(); start += group)
    {
        const size_t count = std::min(group, bytes.size() - start);
        UINT32       bits  = 0;
        for (size_t index = 0; index < group; ++index)
        {
            bits = (bits << 8U) | ((index < count) ? bytes[start + index] : 0U);
        }
        for (size_t letter = 0; letter <= group; ++letter)
        {
            text += (letter <= count) ? letters[(bits >> (18U - 6U * letter)) & 63U] : '=';
        }
    }
    return text;
}

}  // namespace report
