/// @file
/// What this process has of memory.
#pragma once

#include "platform/tavotypes.h"

namespace kirosim
{

/// Bytes that are allocated and not freed; 0 under a sanitizer, which has a heap of its own.
INT64 HeapInUse();

/// @throws std::runtime_error if the system does not say
INT64 ResidentBytes();

}  // namespace kirosim
