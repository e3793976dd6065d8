/// @file
/// Fields of a parameter file outside its header.
#pragma once

#include <algorithm>
#include <string_view>

#include "tools/tuningfile/bytes.h"

namespace tuningfile
{

/// Appends fields by the packing rule: a field of W bytes takes a slot of max(W, packing) bytes and stands in its first
/// bytes; a text takes its declared size, rounded up to a multiple of the packing.
class SlotWriter
{
public:
    explicit SlotWriter(UINT32 packing) : m_packing(packing)
    {
    }

    template <typename T> VOID Add(T value)
    {
        const size_t start = bytes.size();
        AppendInteger(bytes, value);
        bytes.resize(start + std::max<size_t>(sizeof(T), m_packing));
    }

    /// @param text at most size bytes
    VOID AddText(std::string_view text, UINT32 size)
    {
        const size_t start = bytes.size();
        bytes.insert(bytes.end(), text.begin(), text.end());
        const size_t slots = (static_cast<size_t>(size) + m_packing - 1) / m_packing;
        bytes.resize(start + slots * m_packing);
    }

    std::vector<BYTE> bytes;

private:
    const UINT32 m_packing;
};

}  // namespace tuningfile
