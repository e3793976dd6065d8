#include "parameters/parsercrc.h"

#include <array>
#include <cstring>
#include <utility>

#include "parameters/parameterlogging.h"

namespace
{

constexpr UINT32 SliceSize = 8;  ///< bytes that go into a sum at a time

/// For each byte value what it makes of a sum of zero, with 0 to 7 zero bytes behind it.
template <typename Sum> using SliceTables = std::array<std::array<Sum, 256>, SliceSize>;

template <typename Sum> constexpr SliceTables<Sum> BuildTables(Sum polynomial)
{
    SliceTables<Sum> tables{};
    for (UINT32 byte = 0; byte < 256; ++byte)
    {
        Sum value = byte;
        for (UINT32 bit = 0; bit < 8 * SliceSize; ++bit)
        {
            value = (value >> 1) ^ ((value & 1) != 0 ? polynomial : 0);
            if (bit % 8 == 7)
            {
                tables[bit / 8][byte] = value;
            }
        }
    }
    return tables;
}

constexpr UINT32              ReflectedPolynomial = 0xEDB88320;
constexpr SliceTables<UINT32> Tables32            = BuildTables<UINT32>(ReflectedPolynomial);
constexpr SliceTables<UINT64> Tables64            = BuildTables<UINT64>(namehash::Polynomial);

template <typename Sum, size_t... Byte>
Sum SumOfSlice(UINT64 slice, const SliceTables<Sum>& rTables, std::index_sequence<Byte...>)
{
    return (rTables[SliceSize - 1 - Byte][(slice >> (8 * Byte)) & 0xFF] ^ ...);
}

/// The sum is linear, so the bytes of a slice are looked up apart, and no lookup waits for another.
template <typename Sum> Sum AddSlice(Sum value, const BYTE* pData, const SliceTables<Sum>& rTables)
{
    UINT64 slice = 0;
    std::memcpy(&slice, pData, SliceSize);  // the first byte is the lowest, here as in a file
    return SumOfSlice(slice ^ value, rTables, std::make_index_sequence<SliceSize>());
}

template <typename Sum> Sum AddBytes(Sum value, const BYTE* pData, UINT32 length, const SliceTables<Sum>& rTables)
{
    for (; length >= SliceSize; length -= SliceSize, pData += SliceSize)
    {
        value = AddSlice(value, pData, rTables);
    }
    for (; length > 0; --length, ++pData)
    {
        value = rTables[0][(*pData ^ value) & 0xFF] ^ (value >> 8);
    }
    return value;
}

/// The product of two sums as polynomials, of which the highest bit is the constant term.
template <typename Sum> Sum Product(Sum first, Sum second, const SliceTables<Sum>& rTables)
{
    Sum product = 0;
    for (; first != 0; first <<= 1)
    {
        product ^= (first >> (8 * sizeof(Sum) - 1) != 0) ? second : 0;
        second = (second >> 1) ^ ((second & 1) != 0 ? rTables[0][0x80] : 0);
    }
    return product;
}

/// What a sum becomes by so many zero bytes.
template <typename Sum> Sum AddZeros(Sum value, UINT32 count, const SliceTables<Sum>& rTables)
{
    Sum factor = Sum{1} << (8 * sizeof(Sum) - 1 - 8);  // that of one byte
    for (; count > 0; count >>= 1)
    {
        value  = ((count & 1) != 0) ? Product(value, factor, rTables) : value;
        factor = Product(factor, factor, rTables);
    }
    return value;
}

/// A slice waits for the sum of the one before it. The halves of a long text are therefore summed side by side, and
/// neither waits for the other: the second begins with 0, and the first is led past it.
template <typename Sum> Sum Continue(Sum value, const BYTE* pData, UINT32 length, const SliceTables<Sum>& rTables)
{
    constexpr UINT32 MinHalf = 4096;  // below it, leading past costs more than waiting
    const UINT32     half    = length / 2 / SliceSize * SliceSize;
    if (half < MinHalf)
    {
        return AddBytes(value, pData, length, rTables);
    }
    Sum second = 0;
    for (UINT32 offset = 0; offset < half; offset += SliceSize)
    {
        value  = AddSlice(value, pData + offset, rTables);
        second = AddSlice(second, pData + half + offset, rTables);
    }
    const UINT32 rest = length - 2 * half;
    return AddBytes(AddZeros(value, half, rTables) ^ second, pData + length - rest, rest, rTables);
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

UINT32 ParserCRC32::GetCRC(const BYTE* pData, UINT32 length, UINT32 seed)
{
    return ~Continue<UINT32>(~seed, pData, length, Tables32);
}

bool ParserCRC32::Validate(const BYTE* pBuffer, UINT32 length, const IParameterLoggingAPI* pLog)
{
    return ValidateSum<UINT32>(pBuffer, length, pLog,
                               [pBuffer](UINT32 dataLength) { return GetCRC(pBuffer, dataLength, 0); });
}

bool ParserCRC64::Validate(const BYTE* pBuffer, UINT32 length, bool includeLength, const IParameterLoggingAPI* pLog)
{
    return ValidateSum<UINT64>(pBuffer, length, pLog,
                               [&](UINT32 dataLength)
                               {
                                   UINT64 value = Continue<UINT64>(~UINT64{0}, pBuffer, dataLength, Tables64);
                                   for (UINT32 shift = 0; includeLength && shift < 32; shift += 8)
                                   {
                                       const BYTE byte = static_cast<BYTE>(dataLength >> shift);
                                       value           = Continue<UINT64>(value, &byte, 1, Tables64);
                                   }
                                   return ~value;
                               });
}
