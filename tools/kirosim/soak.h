/// @file
/// Cameras that run for millions of frames while their tuning is edited and reloaded under them.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/kirosim/loadedtuning.h"
#include "tools/kirosim/simulation.h"

namespace kirosim
{

/// What is asked of a lap. A lap runs each scene for RoundsPerScene rounds on a fresh camera; the tuning store and the
/// process live through all laps.
struct SoakPlan
{
    UINT64                                  frames = 0;     ///< at least; laps are whole, and never fewer than two
    std::vector<std::string>                scenes;         ///< files
    std::string                             tuningFile;     ///< a parameter file, for file mode
    std::function<VOID(const std::string&)> progress = {};  ///< sees a line per lap; may be empty
};

struct SoakResult
{
    UINT64                   frames         = 0;
    UINT64                   laps           = 0;
    UINT64                   edits          = 0;  ///< live, there and back
    UINT64                   reloads        = 0;
    UINT64                   settles        = 0;  ///< steps of the light that the exposure followed
    INT64                    heapGrowth     = 0;  ///< bytes in use, last lap's end over first lap's
    INT64                    residentGrowth = 0;  ///< bytes, likewise
    std::vector<std::string> faults;              ///< one sentence each; the run ends with the first lap that has any
};

/// @throws std::exception if scenes or tuning cannot be read
SoakResult Soak(const SoakPlan& rPlan, StatsLogger logger);

}  // namespace kirosim
