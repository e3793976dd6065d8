/// @file
/// Counts what a piece of code takes from the heap, whoever asks for it.
#pragma once

#include "platform/tavotypes.h"

struct HeapCounters
{
    UINT64 framework;  ///< calls of TavoCalloc
    UINT64 all;        ///< calls of malloc and its relatives, those of TavoCalloc and operator new among them
};

/// @return calls since the process started
HeapCounters GetHeapCounters();
