/// @file
/// Whole frames, from the host's first input to the end of the frame.
#pragma once

#include <vector>

#include "bench/results.h"
#include "bench/rounds.h"

VOID RegisterFrameBenchmarks(Rounds& rRounds);

/// What a steady frame takes from the heap: nothing.
std::vector<BenchResult> MeasureAllocations(bool isPrinted);

/// Where the time of a frame goes.
std::vector<BenchResult> MeasureStages(bool isPrinted);
