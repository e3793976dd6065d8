/// @file
/// A trace as charts: which columns belong together, and in which unit a person reads them.
#pragma once

#include "tools/kirosim/tracetable.h"
#include "tools/report/page.h"

namespace kirosim
{

/// Adds a trace to a page: a timeline of its own, and its lines to the charts that the page has or that are made for
/// them. What a trace does not have, or what never differs from doing nothing, is not drawn.
VOID AddCharts(const TraceTable& rTrace, report::Page& rPage);

/// The states that stand in the trace itself, of frames between its first and its last.
std::vector<report::Band> BandsOf(const TraceTable& rTrace);

}  // namespace kirosim
