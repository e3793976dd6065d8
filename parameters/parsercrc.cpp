#include "parameters/parsercrc.h"

#include <cstring>

#include "parameters/parameterlogging.h"

namespace
{

constexpr std::array<UINT32, 256> BuildTable()
{
    constexpr UINT32        ReflectedPolynomial = 0xEDB88320;
    std::array<UINT32, 256> table{};
    for (UINT32 index = 0; index < 256; ++index)
    {
        UINT32 value = index;
        for (UINT32 bit = 0; bit < 8; ++bit)
        {
            value = (value >> 1) ^ ((value & 1) != 0 ? ReflectedPolynomial : 0);
        }
        table[index] = value;
    }
    return table;
}

/// Compares the sum stored at the end of a file with the one of the bytes before it. Logs a mismatch.
/// @param compute the sum of so many bytes from the start
template <typename Sum, typename Compute>
bool ValidateSum(const BYTE* pBuffer, UINT32 length, const IParameterLoggingAPI* pLog, Compute compute)
{
    if (length <= sizeof(Sum))
    {
        ParameterLogging::Write(pLog, ParameterLogging::Error, "Binary file CRC validation failed. Buffer too small\n");
        return false;
    }
    constexpr INT32 Digits     = 2 * sizeof(Sum);
    const UINT32    dataLength = length - static_cast<UINT32>(sizeof(Sum));
    const UINT64    computed   = compute(dataLength);
    Sum             stored     = 0;
    std::memcpy(&stored, pBuffer + dataLength, sizeof(Sum));
    if (computed != stored)
    {
        ParameterLogging::Write(pLog, ParameterLogging::Error,
                                "Binary file CRC validation failed. Expected: %0*llx, Actual: %0*llx\n", Digits,
                                computed, Digits, UINT64{stored});
        return false;
    }
    return true;
}

}  // namespace

constexpr std::array<UINT32, 256> ParserCRC32::m_table = BuildTable();

UINT32 ParserCRC32::GetCRC(const BYTE* pData, UINT32 length, UINT32 seed)
{
    if (length == 0)
    {
        return seed;
    }
    UINT32 value = ~seed;
    for (UINT32 index = 0; index < length; ++index)
    {
        value = m_table[(pData[index] ^ value) & 0xFF] ^ (value >> 8);
    }
    return ~value;
}

bool ParserCRC32::Validate(const BYTE* pBuffer, UINT32 length, const IParameterLoggingAPI* pLog)
{
    return ValidateSum<UINT32>(pBuffer, length, pLog,
                               [pBuffer](UINT32 dataLength) { return GetCRC(pBuffer, dataLength, 0); });
}

bool ParserCRC64::Validate(const BYTE* pBuffer, UINT32 length, bool includeLength, const IParameterLoggingAPI* pLog)
{
    const CHAR* const pText = reinterpret_cast<const CHAR*>(pBuffer);
    return ValidateSum<UINT64>(pBuffer, length, pLog,
                               [&](UINT32 dataLength) { return GetCRC(pText, dataLength, includeLength, 0); });
}
