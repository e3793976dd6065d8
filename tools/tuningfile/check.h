/// @file
/// What a device would say to a tuning.
#pragma once

#include <string>
#include <vector>

namespace tuningfile
{

struct CheckReport
{
    bool                     accepted;
    std::string              reason;  ///< of a refusal
    std::vector<std::string> lines;   ///< the store's log; see StoreLog
};

/// Loads a parameter file and every mode in it, as a device does over time; or compiles a text (".yaml", ".yml") and
/// loads the result.
/// @throws InputError if a text cannot be compiled or the file cannot be read
CheckReport CheckFile(const std::string& rPath);

}  // namespace tuningfile
