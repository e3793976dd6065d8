/// @file
/// Keeps what cannot be meant out of a running camera.
#pragma once

#include <string>

#include "tools/kirotune/livejournaltext.h"

namespace kirotune
{

/// Judges the numbers of a command by what the tunables say of themselves. A member that this program's schema does not
/// know is not judged.
/// @return a text that names each number out of its range of sense, the range and the unit; empty if there is none
std::string SenselessIn(const EditCommand& rCommand);

/// @throws liveclient::Error with that text
VOID RequireSense(const EditCommand& rCommand);

}  // namespace kirotune
