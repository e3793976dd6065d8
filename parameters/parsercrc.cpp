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

/// Splits a file into its data and the stored sum behind it. @return false, with a log, if it is too short to hold both
template <typename Sum>
bool TakeStoredSum(const BYTE* pBuffer, UINT32 length, Sum& rStored, const IParameterLoggingAPI* pLog)
{
    if (length <= sizeof(Sum))
    {
        ParameterLogging::Write(pLog, ParameterLogging::Error, "Binary file CRC validation failed. Buffer too small\n");
        return false;
    }
    std::memcpy(&rStored, pBuffer + length - sizeof(Sum), sizeof(Sum));
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
    UINT32 stored = 0;
    if (!TakeStoredSum(pBuffer, length, stored, pLog))
    {
        return false;
    }
    const UINT32 computed = GetCRC(pBuffer, length - static_cast<UINT32>(sizeof(stored)), 0);
    if (computed != stored)
    {
        ParameterLogging::Write(pLog, ParameterLogging::Error,
                                "Binary file CRC validation failed. Expected: %08x, Actual: %08x\n", computed, stored);
        return false;
    }
    return true;
}

bool ParserCRC64::Validate(const BYTE* pBuffer, UINT32 length, bool includeLength, const IParameterLoggingAPI* pLog)
{
    UINT64 stored = 0;
    if (!TakeStoredSum(pBuffer, length, stored, pLog))
    {
        return false;
    }
    const UINT64 computed =
        GetCRC(reinterpret_cast<const CHAR*>(pBuffer), length - static_cast<UINT32>(sizeof(stored)), includeLength, 0);
    if (computed != stored)
    {
        ParameterLogging::Write(pLog, ParameterLogging::Error,
                                "Binary file CRC validation failed. Expected: %016llx, Actual: %016llx\n", computed,
                                stored);
        return false;
    }
    return true;
}
