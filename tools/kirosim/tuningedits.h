/// @file
/// Numbers of a tuning that a command line changes for its runs: a search tries thousands and compiles nothing.
#pragma once

#include <string>
#include <vector>

#include "tools/kirosim/loadedtuning.h"

namespace kirosim
{

/// Sets numbers as an edit of a running camera does: a mode without the module has that of a mode above it, so that one
/// changes, and arrays that are alike change together.
/// @param rEdits each MODE/MODULE/MEMBER=VALUE, such as
///               "Default|Usecase.Video/kirodbconvbase/data[0].value.tolerance=4"; the last one of a member wins
/// @throws tuningfile::InputError at the first edit that cannot be done
VOID ApplyEdits(const std::vector<std::string>& rEdits, LoadedTuning& rTuning);

}  // namespace kirosim
