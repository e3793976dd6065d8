/// @file
/// What a device would say to a tuning.
#pragma once

#include <string>
#include <vector>

#include "tools/tuningfile/tuning.h"

namespace tuningfile
{

struct CheckReport
{
    bool                     accepted;
    std::string              reason;  ///< of a refusal
    std::vector<std::string> lines;   ///< the store's log; see StoreLog
};

/// Loads a parameter file and every mode in it, as a device does over time.
/// @throws InputError if the file cannot be read
CheckReport CheckParameterFile(const std::string& rPath);

/// Compiles a tuning and loads the result. @throws InputError if it cannot be compiled
CheckReport CheckTuning(const Tuning& rTuning);

}  // namespace tuningfile
