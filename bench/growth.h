/// @file
/// How a frame's cost grows with what a tuning asks for.
#pragma once

#include <vector>

#include "bench/results.h"
#include "tools/program/progress.h"

/// Runs the minimal example with more and more of one thing at a time: regions, calculators, analyzers, detectors,
/// modes.
/// @return the processor time of each frame; behind them, for each series, how much steeper its upper half is than its
/// lower half, which has a bar
std::vector<BenchResult> MeasureGrowth(bool isPrinted, program::Progress& rProgress);
