/// @file
/// What is taken from the heap, whoever asks for it. A program that has heapwatch.cpp among its sources is watched.
#pragma once

#include "platform/tavotypes.h"

namespace heapwatch
{

struct Report
{
    UINT64 largest = 0;  ///< bytes of the largest single request
    UINT64 most =
        0;  ///< bytes held at one time, on top of what was held at the start; a block that realloc moves counts once
    INT64 kept = 0;  ///< bytes held now, on top of what was held at the start
};

/// Begins anew.
VOID Start();

/// Bytes as they were asked for: what the allocator adds or rounds up is not in it.
/// @return since Start
Report Read();

/// Calls of malloc and its relatives since the process started, those of operator new and TavoCalloc among them; under
/// a sanitizer, since the first Start.
UINT64 Requests();

/// Whether what was taken before the first Start is counted, too, when it is given back; not under a sanitizer, which
/// has an allocator of its own.
bool IsCounting();

}  // namespace heapwatch
