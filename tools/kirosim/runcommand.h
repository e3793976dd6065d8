/// @file
/// kirosim run: scenes through the library, and how its exposure was controlled.
#pragma once

#include <vector>

#include "tools/kirosim/runoptions.h"

namespace kirosim
{

/// Status of a run in which a camera never controlled its exposure.
constexpr int ExitNoControl = 3;

/// Runs scenes one after the other on one tuning, prints their tables and summaries, and leaves the files that are
/// asked for. Of several runs, one that fails says so on stderr, and the others go on.
/// @param rRuns at least one; all of them have the same tuning
/// @throws std::exception whose text is one line for the person: a faulty input, a file that cannot be written, a run
/// that was interrupted
/// @return status of the program, the worst of all runs: 0, program::ExitBadInput, or ExitNoControl if a camera never
/// controlled its exposure
int Run(const std::vector<RunOptions>& rRuns);

}  // namespace kirosim
