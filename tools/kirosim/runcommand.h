/// @file
/// kirosim run: a scene through the library, and how its exposure was controlled.
#pragma once

#include "tools/kirosim/runoptions.h"

namespace kirosim
{

/// Runs a scene, prints its table and summary, and leaves the files that are asked for.
/// @throws std::exception whose text is one line for the person: a faulty input, a file that cannot be written, a run
/// that was interrupted
VOID Run(const RunOptions& rOptions);

}  // namespace kirosim
