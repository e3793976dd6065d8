/// @file
/// The command that shows files of debug records.
#pragma once

#include <optional>
#include <string>

#include "platform/tavotypes.h"

namespace kirotune
{

/// Prints one record, or a line for each.
/// @param frame  the frame whose record is printed; the last one's by default
/// @param isList a line for each record instead
/// @return the exit status @throws tuningfile::InputError on bad input or if there is no such frame
int Debug(const std::string& rInput, std::optional<UINT32> frame, bool isList);

}  // namespace kirotune
