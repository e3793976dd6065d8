/// @file
/// The interpolation of tuned values over triggers.
#pragma once

#include "platform/tavotypes.h"

VOID RegisterTriggerBenchmark();
