/// @file
/// Little-endian integers in arrays of bytes.
#pragma once

#include <bit>
#include <cstring>
#include <span>
#include <vector>

#include "platform/tavotypes.h"

namespace tuningfile
{

static_assert(std::endian::native == std::endian::little, "values go into files as they stand in memory");

/// @param position where all bytes of the value are already there
template <typename T> VOID StoreInteger(std::span<BYTE> bytes, size_t position, T value)
{
    std::memcpy(bytes.data() + position, &value, sizeof(value));
}

template <typename T> VOID AppendInteger(std::vector<BYTE>& rBytes, T value)
{
    rBytes.resize(rBytes.size() + sizeof(value));
    StoreInteger<T>(rBytes, rBytes.size() - sizeof(value), value);
}

/// @return the integer at the position, which must be wholly there
template <typename T> T LoadInteger(std::span<const BYTE> bytes, size_t position)
{
    T value;
    std::memcpy(&value, bytes.data() + position, sizeof(value));
    return value;
}

}  // namespace tuningfile
