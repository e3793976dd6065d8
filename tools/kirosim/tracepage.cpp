#include "tools/kirosim/tracepage.h"

#include <algorithm>
#include <cstdio>

#include <fmt/format.h>

#include "tools/kirosim/tracecharts.h"
#include "tools/kirosim/tracematch.h"

namespace kirosim
{

namespace
{

/// Takes from a page what was before the first frame that a trace has kept.
VOID DropBefore(DOUBLE time, report::Page& rPage)
{
    std::erase_if(rPage.marks, [time](const report::Mark& rMark) { return rMark.time < time; });
    for (report::Band& rBand : rPage.bands)
    {
        std::erase_if(rBand.stretches, [time](const report::Stretch& rStretch) { return rStretch.to <= time; });
        if (!rBand.stretches.empty())
        {
            rBand.stretches.front().from = std::max(rBand.stretches.front().from, time);
        }
    }
    std::erase_if(rPage.bands, [](const report::Band& rBand) { return rBand.stretches.empty(); });
}

/// How long the states of a page held, as shares of the trace.
report::Table StateTable(const std::vector<report::Band>& rBands, const TraceTable& rTrace)
{
    report::Table              table{"States", {"", "percent of the time", "first, s", "last, s", "which"}, {}};
    const std::vector<DOUBLE>& rTimes = rTrace.Get("time_s");
    const size_t               count  = rTimes.size();
    const DOUBLE               period = (count > 1) ? rTimes[count - 1] - rTimes[count - 2] : 0.0;
    const DOUBLE               whole  = rTimes.back() + period - rTimes.front();
    for (const report::Band& rBand : rBands)
    {
        DOUBLE      sum = 0.0;
        std::string words;
        for (const report::Stretch& rStretch : rBand.stretches)
        {
            sum += rStretch.to - rStretch.from;
            if (words.find(rStretch.words) == std::string::npos)
            {
                words += (words.empty() ? "" : "; ") + rStretch.words;
            }
        }
        const std::string percent = (whole > 0.0) ? fmt::format("{:.1f}", sum / whole * 100.0) : "none";
        table.rows.push_back({rBand.name, percent, fmt::format("{:.2f}", rBand.stretches.front().from),
                              fmt::format("{:.2f}", rBand.stretches.back().to), words});
    }
    return table;
}

VOID NoteDropped(const TraceTable& rTrace, report::Page& rPage)
{
    if (rTrace.DroppedCount() > 0)
    {
        rPage.notes.push_back(
            fmt::format("{}: the first {} frames are left out.", rTrace.Name(), rTrace.DroppedCount()));
    }
}

/// Told at once, too: who compares two scenes by a slip should not have to find out from the page.
VOID NoteMismatch(const TraceTable& rTrace, const TraceTable& rAgainst, report::Page& rPage)
{
    if (const std::string mismatch = SceneMismatch(rTrace, rAgainst); !mismatch.empty())
    {
        fmt::print(stderr, "kirosim: {}\n", mismatch);
        rPage.notes.push_back(mismatch + ".");
    }
}

}  // namespace

VOID AddTrace(const TraceTable& rTrace, const TraceTable* pAgainst, report::Page& rPage)
{
    DropBefore(rTrace.Get("time_s").front(), rPage);
    const std::vector<report::Band> bands = BandsOf(rTrace);
    rPage.bands.insert(rPage.bands.begin(), bands.begin(), bands.end());
    AddCharts(rTrace, rPage);
    NoteDropped(rTrace, rPage);
    if (pAgainst != nullptr)
    {
        AddCharts(*pAgainst, rPage);
        NoteDropped(*pAgainst, rPage);
        NoteMismatch(rTrace, *pAgainst, rPage);
    }
    if (!rPage.bands.empty())
    {
        rPage.tables.push_back(StateTable(rPage.bands, rTrace));
    }
}

VOID WritePageTo(tuningfile::FileReplacement& rFile, const report::Page& rPage)
{
    const std::string text = report::WritePage(rPage);
    rFile.Write({reinterpret_cast<const BYTE*>(text.data()), text.size()});
    rFile.Commit();
}

}  // namespace kirosim
