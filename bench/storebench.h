/// @file
/// The tuning store: fetching a module's record, loading files.
#pragma once

#include "bench/rounds.h"
#include "platform/tavotypes.h"

VOID RegisterStoreBenchmarks(Rounds& rRounds);
