/// @file
/// Memory of tuning records and of blocks read from a parameter file.
#pragma once

#include <memory>

#include "platform/tavocommonutils.h"

/// Zero-filled memory for tuning data. @return null when no memory is left
inline VOID* AllocateTuningMemory(size_t size)
{
    return TavoCalloc(size, 8, 13, 0, nullptr, 0);
}

inline VOID FreeTuningMemory(VOID* pMemory)
{
    TavoFree(pMemory, 16, nullptr, 0);
}

struct TuningMemoryDeleter
{
    VOID operator()(VOID* pMemory) const
    {
        FreeTuningMemory(pMemory);
    }
};

/// An owned block of bytes.
using TuningBlock = std::unique_ptr<BYTE[], TuningMemoryDeleter>;

/// An owned, NUL-terminated text.
using TuningText = std::unique_ptr<CHAR[], TuningMemoryDeleter>;
