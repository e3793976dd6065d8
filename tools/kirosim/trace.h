/// @file
/// What a person and a script see of a run: the trace of every frame, and the table as the run goes.
#pragma once

#include <string>

#include "tools/kirosim/simulation.h"

namespace kirosim
{

/// The trace as CSV, line by line. Numbers are written so that they read back exactly.
std::string CsvHeader();
std::string CsvLine(const FrameRecord& rRecord);

/// The table of a run.
std::string TableHeader();
std::string TableLine(const FrameRecord& rRecord);

}  // namespace kirosim
