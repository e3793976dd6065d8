/// @file
/// Where the time of a frame goes, by the functions of the table that a host calls.
#pragma once

#include <functional>

#include "interface/ikirocorealgo.h"

/// Runs frames with a clock around each function of the table and prints the median of each. The clock itself costs
/// some tens of nanoseconds per call.
/// @param rAlgo the table through which the frames run; as it was afterwards
VOID PrintStageTimes(const CHAR* pTitle, IKIROCoreAlgo& rAlgo, const std::function<VOID()>& runFrame);
