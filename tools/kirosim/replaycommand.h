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
    std::string              report;   ///< files that are empty are not wanted
    std::string              against;  ///< trace of another run, for the report
    std::string              command;  ///< line with which a person has asked for the replay
    bool                     isForced = false;
    bool                     isAll    = false;
};

/// Prints what the replay has found, one line each: differences, damage, and what was the same.
/// @return whether the recording is whole and nothing differs
/// @throws std::runtime_error if file or tuning cannot be read, the tuning is another one, or the report cannot be
/// written
bool Replay(const ReplayOptions& rOptions, StatsLogger logger);

}  // namespace kirosim
