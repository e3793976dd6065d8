/// @file
/// What this process has of memory.
#pragma once

#include "platform/tavotypes.h"

namespace kirosim
{

/// Begins the program again without the caches that the C library's allocator has for each thread, unless it runs so:
/// what lies in them counts as in use, and over hours they fill. Where that is not possible it goes on with them.
/// @param pArguments of main
VOID RestartWithoutHeapCaches(CHAR* const* pArguments);

/// Bytes that are allocated and not freed; 0 under a sanitizer, which has a heap of its own.
INT64 HeapInUse();

/// @throws std::runtime_error if the system does not say
INT64 ResidentBytes();

}  // namespace kirosim
