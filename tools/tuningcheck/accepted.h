/// @file
/// Advice that a tuner has read and lives with.
#pragma once

#include <set>
#include <string_view>

#include "platform/tavotypes.h"

namespace tuningcheck
{

/// Lines for which a text gives a reason: "# accepted: why" at the end of the line, or on lines of its own right above.
/// A reason takes back advice, no error. @return lines from 1
std::set<UINT32> AcceptedLines(std::string_view text);

}  // namespace tuningcheck
