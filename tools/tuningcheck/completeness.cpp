#include "tools/tuningcheck/completeness.h"

#include <algorithm>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tools/tuningcheck/emptymodule.h"
#include "tools/tuningcheck/modeview.h"

namespace tuningcheck
{

namespace
{

/// A module without which the loop from statistics to exposure is open.
struct Need
{
    const CHAR* pModule;
    const CHAR* pLoss;  ///< what does not work without it
};

/// In the order in which a frame uses them. All else may be left out: a feature is off then.
constexpr Need Needs[] = {
    {"kirometeringstatscalculator", "nothing is measured"},
    {"kirometeringsceneanalyzer", "no target is metered"},
    {"kirodbactiveanalyzers", "no analyzer runs, so that no target is metered"},
    {"kirodbarbitrationtable", "no exposure is split into gain and time"},
    {"kirodbarbitrationorder", "nothing is arbitrated: no gain, no time"},
    {"kiroconvergence", "the smallest move is 0, so that moves do not end on their target"},
    {"kirodbconvbase", "the exposure does not move"},
    {"kirodbconvstretch", "the exposure does not move"},
    {"kirodbconvsettle", "the exposure does not move, and never settles"},
    {"kiroev", "EV compensation has no factors"},
};

/// @return null if the mode has no such module
const tuningfile::Module* Find(const tuningfile::Mode& rMode, const Need& rNeed)
{
    const auto found = std::find_if(rMode.modules.begin(), rMode.modules.end(),
                                    [&rNeed](const auto& rModule)
                                    { return rModule.pDescription->pName == std::string_view(rNeed.pModule); });
    return (found != rMode.modules.end()) ? &*found : nullptr;
}

bool IsThere(const tuningfile::Mode& rMode, const Need& rNeed)
{
    const tuningfile::Module* pModule = Find(rMode, rNeed);
    return pModule != nullptr && !IsEmpty(*pModule);
}

VOID Tell(const tuningfile::Tuning& rTuning, const tuningfile::ModeTable& rTable, const Need& rNeed,
          Findings& rFindings)
{
    const std::string advice = fmt::format("without it {}", rNeed.pLoss);
    if (const tuningfile::Module* pModule = Find(rTable.modes.front(), rNeed))
    {
        rFindings.Add(Severity::Error, PlaceOf(rTuning, rTable, 0, *pModule), "is empty", "values", advice);
    }
    else
    {
        rFindings.Add(Severity::Error, rTable, 0, rNeed.pModule, "is missing", "the module", advice);
    }
}

}  // namespace

VOID CheckCompleteness(const tuningfile::Tuning& rTuning, const tuningfile::ModeTable& rTable, Findings& rFindings)
{
    if (rTable.modes.empty())
    {
        return;
    }
    std::vector<Need> missing;
    std::copy_if(std::begin(Needs), std::end(Needs), std::back_inserter(missing),
                 [&rTable](const Need& rNeed) { return !IsThere(rTable.modes.front(), rNeed); });
    if (missing.size() == std::size(Needs))
    {
        std::vector<std::string_view> names;
        std::transform(missing.begin(), missing.end(), std::back_inserter(names),
                       [](const Need& rNeed) { return rNeed.pModule; });
        rFindings.Add(Severity::Error, rTable, 0, "modules", "hold none of those that a camera needs",
                      fmt::format("{}", fmt::join(names, ", ")), "kirotune new writes a tuning that has them all");
        return;
    }
    for (const Need& rNeed : missing)
    {
        Tell(rTuning, rTable, rNeed, rFindings);
    }
}

}  // namespace tuningcheck
