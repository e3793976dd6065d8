/// @file
/// What a page shows of traces: charts and states.
#pragma once

#include "tools/kirosim/tracetable.h"
#include "tools/report/page.h"
#include "tools/tuningfile/filereplacement.h"

namespace kirosim
{

/// Adds to a page what stands in a trace, its states in front of those that the page has.
/// @param pAgainst another run, as thin lines; null for none. One of another scene is told of on stderr
VOID AddTrace(const TraceTable& rTrace, const TraceTable* pAgainst, report::Page& rPage);

/// Writes the page and puts the file in its place. @throws tuningfile::InputError
VOID WritePageTo(tuningfile::FileReplacement& rFile, const report::Page& rPage);

}  // namespace kirosim
