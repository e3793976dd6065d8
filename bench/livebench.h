/// @file
/// Frames of a camera while a tuning tool asks for values all the time.
#pragma once

#include <vector>

#include "bench/results.h"
#include "tools/program/progress.h"

/// Runs heavy frames without a pause, by turns with a connected client that rests and with one that asks.
/// @param seconds   of asking, not 0; resting takes as long again
/// @param rProgress shows how far that is
/// @throws std::runtime_error if no port is free, liveclient::Error if the first connection fails
std::vector<BenchResult> MeasureLiveTuning(UINT32 seconds, program::Progress& rProgress);
