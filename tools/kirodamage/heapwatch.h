/// @file
/// What is taken from the heap, whoever asks for it.
#pragma once

#include "platform/tavotypes.h"

namespace heapwatch
{

struct Report
{
    UINT64 largest = 0;  ///< bytes of the largest single request
    UINT64 most    = 0;  ///< bytes held at one time, on top of what was held at the start
    INT64  kept    = 0;  ///< bytes held now, on top of what was held at the start
};

/// Begins anew.
VOID Start();

/// @return since Start. All zero under a sanitizer, which has an allocator of its own; it ends the process at a request
///         above the campaign's limit
Report Read();

/// Whether Read counts.
bool IsCounting();

}  // namespace heapwatch
