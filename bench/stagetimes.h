/// @file
/// Where the time of a frame goes, by the functions of the table that a host calls.
#pragma once

#include <functional>
#include <vector>

#include "interface/ikirocorealgo.h"

struct StageTime
{
    const CHAR* pName;
    UINT32      calls;  ///< in a frame
    DOUBLE      ns;     ///< median over frames of all its calls
};

/// Runs frames with a clock around each function of the table. The clock itself costs some tens of nanoseconds per
/// call.
/// @param rAlgo the table through which the frames run; as it was afterwards
/// @return the stages; behind them what the host takes, and the whole frame
std::vector<StageTime> MeasureStageTimes(IKIROCoreAlgo& rAlgo, const std::function<VOID()>& runFrame);

VOID PrintStageTimes(const CHAR* pTitle, const std::vector<StageTime>& rStages);
