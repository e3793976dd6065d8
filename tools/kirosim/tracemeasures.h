/// @file
/// What can be said of a run by its trace alone, in numbers that two runs can be compared by.
#pragma once

#include <optional>

#include "tools/kirosim/tracetable.h"
#include "tools/report/page.h"

namespace kirosim
{

struct TraceMeasure
{
    const CHAR*           pName;
    const CHAR*           pUnit;
    std::optional<DOUBLE> value;  ///< none if the trace lacks the column for it, or it was never reached
};

/// Always the same measures, in the same order.
std::vector<TraceMeasure> MeasuresOf(const TraceTable& rTrace);

/// @param pOther another run, measured alike; null for none
report::Table MeasureTable(const TraceTable& rTrace, const TraceTable* pOther);

}  // namespace kirosim
