/// @file
/// All that can be said about a tuning in a file.
#pragma once

#include <string>
#include <vector>

#include "tools/tuningcheck/judgement.h"

namespace tuningcheck
{

struct CheckedFile
{
    std::vector<std::string> deviceLines;  ///< what the store of a device logs when it loads the tuning
    std::vector<Finding>     findings;
};

UINT32 Count(const std::vector<Finding>& rFindings, Severity severity);

/// @return "2 errors and 1 piece of advice"; empty if there is nothing to say
std::string Summary(const std::vector<Finding>& rFindings);

/// Judges a text tuning. @param text that rTuning was read from: it may give reasons for what is odd
std::vector<Finding> JudgeText(const tuningfile::Tuning& rTuning, std::string_view text,
                               const Surroundings& rSurroundings);

/// Reads and judges a text tuning or a parameter file.
/// @throws tuningfile::InputError if it cannot be read or compiled, or if a device refuses it
CheckedFile CheckFile(const std::string& rPath, const Surroundings& rSurroundings);

}  // namespace tuningcheck
