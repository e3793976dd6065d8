/// @file
/// The 64-bit checksum that identifies names in a parameter file, usable at compile time.
#pragma once

#include <array>

#include "platform/tavotypes.h"

namespace namehash
{

/// The ECMA-182 polynomial in its normal form, used in a right-shifting register without bit reversal.
/// This is not the published reflected CRC-64; every file in the field carries sums and name hashes of this form.
constexpr UINT64 Polynomial = 0x42F0E1EBA9EA3693ULL;

constexpr std::array<UINT64, 256> BuildTable()
{
    std::array<UINT64, 256> table{};
    for (UINT32 index = 0; index < 256; ++index)
    {
        UINT64 value = index;
        for (UINT32 bit = 0; bit < 8; ++bit)
        {
            value = (value >> 1) ^ ((value & 1) != 0 ? Polynomial : 0);
        }
        table[index] = value;
    }
    return table;
}

inline constexpr std::array<UINT64, 256> Table = BuildTable();

/// @param includeLength fold the four bytes of length, least significant first, behind the data
constexpr UINT64 Checksum(const CHAR* pData, UINT32 length, bool includeLength, UINT64 seed)
{
    UINT64 value = ~seed;
    for (UINT32 index = 0; index < length; ++index)
    {
        value = Table[(static_cast<BYTE>(pData[index]) ^ value) & 0xFF] ^ (value >> 8);
    }
    if (includeLength)
    {
        for (UINT32 shift = 0; shift < 32; shift += 8)
        {
            value = Table[((length >> shift) ^ value) & 0xFF] ^ (value >> 8);
        }
    }
    return ~value;
}

/// Hash of a member, structure or module name, as stored in parameter files.
constexpr UINT64 OfName(const CHAR* pName)
{
    UINT32 length = 0;
    while (pName[length] != '\0')
    {
        ++length;
    }
    return Checksum(pName, length, true, 0);
}

static_assert(OfName("123456789") == 0xAB8C87CA648D9480ULL);
static_assert(Checksum("123456789", 9, false, 0) == 0xB86883E6FA710A9FULL);
static_assert(OfName("major_revision") == 0xCD66249477636693ULL);

} // namespace namehash
