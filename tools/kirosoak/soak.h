/// @file
/// Cameras that run for millions of frames while their tuning is edited and reloaded under them.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/kirosim/simulation.h"

namespace kirosoak
{

/// What is asked of a run. In a lap the camera of each scene goes on for SoakCamera::RoundsPerLap rounds. With each lap
/// but the first another scene gets a new camera; the scenes' tuning stores live through all laps.
struct SoakPlan
{
    UINT64                                  frames = 0;      ///< at least; laps are whole, and never fewer than three
    std::vector<std::string>                scenes;          ///< files
    std::string                             tuningFile;      ///< a parameter file, for file mode
    std::function<VOID(const std::string&)> progress  = {};  ///< sees a line per lap; may be empty
    std::function<bool()>                   isStopped = {};  ///< asked before each frame; may be empty
};

struct SoakResult
{
    UINT64 frames         = 0;
    UINT64 laps           = 0;  ///< full ones
    UINT64 cameras        = 0;  ///< instances of the core
    UINT64 settles        = 0;  ///< steps of the light that the exposure followed
    UINT64 edits          = 0;  ///< values set by a tool, there and back
    UINT64 reloads        = 0;
    UINT64 modeChanges    = 0;  ///< there and back
    UINT64 modeEffects    = 0;  ///< changes there that the frames showed
    UINT64 snapshots      = 0;  ///< with flash or in brackets
    INT64  heapGrowth     = 0;  ///< bytes held since the second lap, but those known to stay; 0 if nobody counts
    INT64  residentGrowth = 0;  ///< bytes since then

    std::vector<std::string> faults;  ///< one sentence each; the run ends with the first lap that has any
    bool                     isStopped = false;
};

/// @throws std::exception if scenes or tuning cannot be read or used, and when the tuning service does not answer
SoakResult Soak(const SoakPlan& rPlan, StatsLogger logger);

}  // namespace kirosoak
