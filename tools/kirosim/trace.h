/// @file
/// What a person and a script see of a run: the trace of every frame, and the table as the run goes.
#pragma once

#include <string>

#include "tools/kirosim/simulation.h"

namespace kirosim
{

enum class TraceColumns
{
    All,
    Decided  ///< those that need no scene: what the core has decided
};

/// The trace as CSV, line by line. Numbers are written so that they read back exactly.
std::string CsvHeader(TraceColumns columns = TraceColumns::All);
std::string CsvLine(const FrameRecord& rRecord, TraceColumns columns = TraceColumns::All);

/// The table of a run.
std::string TableHeader();
std::string TableLine(const FrameRecord& rRecord);

}  // namespace kirosim
