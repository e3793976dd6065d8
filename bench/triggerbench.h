/// @file
/// The interpolation of tuned values over triggers.
#pragma once

#include "bench/rounds.h"
#include "platform/tavotypes.h"

VOID RegisterTriggerBenchmark(Rounds& rRounds);
