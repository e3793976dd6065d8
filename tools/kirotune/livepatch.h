/// @file
/// Edits of a running camera as a patch of its tuning, which `kirotune compile --patch` reads.
#pragma once

#include <string>
#include <vector>

namespace kirotune
{

/// A number that a patch sets.
struct PatchedNumber
{
    std::string path;  ///< of the mode, by names
    std::string module;
    std::string member;  ///< path within the module
    std::string text;    ///< as text tunings have it
};

/// @param rTable name of the mode table that the paths refer to; empty if the tuning has one table only
std::string PatchText(const std::string& rTable, const std::vector<PatchedNumber>& rNumbers);

}  // namespace kirotune
