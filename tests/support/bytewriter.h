/// @file
/// Little-endian bytes, written one value after the other.
#pragma once

#include <algorithm>
#include <cstring>
#include <string_view>
#include <vector>

#include "platform/tavotypes.h"

class ByteWriter
{
public:
    /// @param packing least size of a value's slot
    explicit ByteWriter(UINT32 packing = 1) : m_packing(packing)
    {
    }

    /// Values of the type of the first one, each in its slot.
    template <typename T, typename... More> ByteWriter& Add(T value, More... more)
    {
        Slot(&value, sizeof(value));
        (Add<T>(more), ...);
        return *this;
    }

    /// A text field of fixed size, cut or filled with NULs.
    ByteWriter& Field(std::string_view text, size_t size)
    {
        std::vector<BYTE> field(size, 0);
        std::copy_n(text.begin(), std::min(text.size(), size), field.begin());
        return Bytes(field);
    }

    ByteWriter& Bytes(const std::vector<BYTE>& rBytes)
    {
        m_bytes.insert(m_bytes.end(), rBytes.begin(), rBytes.end());
        return *this;
    }

    ByteWriter& Zeros(size_t count)
    {
        m_bytes.resize(m_bytes.size() + count, 0);
        return *this;
    }

    /// A value without a slot.
    template <typename T> ByteWriter& Raw(T value)
    {
        const size_t place = m_bytes.size();
        m_bytes.resize(place + sizeof(value));
        std::memcpy(m_bytes.data() + place, &value, sizeof(value));
        return *this;
    }

    /// Overwrites a value that stands at an offset.
    template <typename T> VOID Patch(size_t offset, T value)
    {
        std::memcpy(m_bytes.data() + offset, &value, sizeof(value));
    }

    size_t Size() const
    {
        return m_bytes.size();
    }

    const std::vector<BYTE>& Get() const
    {
        return m_bytes;
    }

private:
    ByteWriter& Slot(const VOID* pValue, size_t size)
    {
        const size_t place = m_bytes.size();
        m_bytes.resize(place + std::max<size_t>(size, m_packing), 0);
        std::memcpy(m_bytes.data() + place, pValue, size);
        return *this;
    }

    UINT32            m_packing;
    std::vector<BYTE> m_bytes;
};
