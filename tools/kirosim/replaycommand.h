/// @file
/// kirosim replay: the library driven from a recording.
#pragma once

#include <string>
#include <vector>

#include "interface/ikirocorealgo.h"

namespace kirosim
{

struct ReplayOptions
{
    std::string              file;
    std::vector<std::string> tunings;  ///< in the order of the recording's; those beyond are read from where they were
    bool                     isForced = false;
    bool                     isAll    = false;
};

/// Prints what the replay has found, one line each: differences, damage, and what was the same.
/// @return whether the recording is whole and nothing differs
/// @throws std::runtime_error if file or tuning cannot be read, or the tuning is another one
bool Replay(const ReplayOptions& rOptions, StatsLogger logger);

}  // namespace kirosim
