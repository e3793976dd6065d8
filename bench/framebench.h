/// @file
/// Whole frames, from the host's first input to the end of the frame.
#pragma once

#include "platform/tavotypes.h"

VOID RegisterFrameBenchmarks();

/// Prints what a steady frame takes from the heap: the history's node and nothing else.
VOID PrintAllocations();

/// Prints where the time of a frame goes.
VOID PrintStages();
