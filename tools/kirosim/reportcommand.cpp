#include "tools/kirosim/reportcommand.h"

#include <optional>

#include "tools/kirosim/tracemeasures.h"
#include "tools/kirosim/tracepage.h"
#include "tools/program/commandfiles.h"

namespace kirosim
{

VOID MakeReport(const ReportOptions& rOptions)
{
    program::CommandFiles files;
    files.Reads("the trace", rOptions.trace);
    files.Reads("--against", rOptions.against);
    files.Writes("--output", rOptions.output);
    files.Check();
    const TraceTable          trace = TraceTable::Read(rOptions.trace);
    std::optional<TraceTable> against;
    if (!rOptions.against.empty())
    {
        against = TraceTable::Read(rOptions.against);
    }
    const TraceTable*           pAgainst = against.has_value() ? &*against : nullptr;
    tuningfile::FileReplacement file(rOptions.output);
    report::Page                page;
    page.title   = trace.Name();
    page.command = rOptions.command;
    page.notes.emplace_back("Made from a trace alone, which has no pictures, events or limits.");
    page.summary = MeasureTable(trace, pAgainst);
    AddTrace(trace, pAgainst, page);
    WritePageTo(file, page);
}

}  // namespace kirosim
