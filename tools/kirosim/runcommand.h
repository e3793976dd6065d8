/// @file
/// kirosim run: a scene through the library, and how its exposure was controlled.
#pragma once

#include "tools/kirosim/runoptions.h"

namespace kirosim
{

/// Status of a run in which a camera never controlled its exposure.
constexpr int ExitNoControl = 3;

/// Runs a scene, prints its table and summary, and leaves the files that are asked for.
/// @throws std::exception whose text is one line for the person: a faulty input, a file that cannot be written, a run
/// that was interrupted
/// @return whether every camera has controlled its exposure in some frame
bool Run(const RunOptions& rOptions);

}  // namespace kirosim
