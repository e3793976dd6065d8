/// @file
/// Modes by name, as in "Usecase.Preview", and paths of them, as in "Default|Sensor.0|Usecase.Preview".
#pragma once

#include <compare>
#include <string>
#include <string_view>
#include <vector>

#include "parameters/tuningmode.h"
#include "platform/tavotypes.h"
#include "tools/tuningfile/tuning.h"

namespace tuningfile
{

/// Mode and sub-mode, as a file stores them.
struct ModeName
{
    UINT16 mode    = 0;
    UINT16 subMode = 0;

    auto operator<=>(const ModeName&) const = default;
};

/// Reads "Default", or "<level>.<sub-mode>" with each part by name or by number.
/// @param rFault set on failure: what is wrong, and what was expected
bool ParseModeName(std::string_view text, ModeName& rName, std::string& rFault);

/// The text that ParseModeName reads, with names where there are any.
std::string FormatModeName(const ModeName& rName);

/// A regular expression for what ParseModeName reads, for schemas.
std::string ModePattern();

/// The path from the root to a mode. Entries of one mode count once.
std::string PathOf(const ModeTable& rTable, UINT32 index);

/// The selectors from the root to a mode, as the store takes them. Entries of one mode count once.
std::vector<TuningMode> BranchOf(const ModeTable& rTable, UINT32 index);

}  // namespace tuningfile
