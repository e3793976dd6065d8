#include "tools/kirosim/tracemeasures.h"

#include <algorithm>
#include <cmath>
#include <span>

#include <fmt/format.h>

#include "tools/kirosim/figures/movement.h"

namespace kirosim
{

namespace
{

constexpr size_t LastFrames = 100;

using TraceColumn = std::vector<DOUBLE>;

std::vector<DOUBLE> Log2Of(const TraceColumn& rValues)
{
    TraceColumn logs;
    for (const DOUBLE value : rValues)
    {
        logs.push_back(std::log2(std::max(value, 1.0)));
    }
    return logs;
}

std::span<const DOUBLE> LastOf(const TraceColumn& rValues)
{
    return std::span(rValues).last(std::min(LastFrames, rValues.size()));
}

TraceColumn DistancesFromTarget(const TraceColumn& rTargets, const TraceColumn& rExposures)
{
    TraceColumn distances;
    for (size_t frame = 0; frame < rTargets.size(); ++frame)
    {
        distances.push_back(rTargets[frame] - rExposures[frame]);
    }
    return distances;
}

/// @param measure of the column's numbers @return none if there is no such column
template <typename Measure>
std::optional<DOUBLE> Of(const TraceTable& rTrace, const CHAR* pColumn, const Measure& measure)
{
    const TraceColumn* pValues = rTrace.Find(pColumn);
    return (pValues != nullptr) ? std::optional<DOUBLE>(measure(*pValues)) : std::nullopt;
}

std::optional<DOUBLE> FirstSettled(const TraceTable& rTrace)
{
    const TraceColumn* pSettled = rTrace.Find("settled");
    if (pSettled == nullptr)
    {
        return std::nullopt;
    }
    const auto found = std::find_if(pSettled->begin(), pSettled->end(), [](DOUBLE value) { return value != 0.0; });
    if (found == pSettled->end())
    {
        return std::nullopt;
    }
    return rTrace.Get("time_s")[static_cast<size_t>(found - pSettled->begin())];
}

std::string TextOf(const std::optional<DOUBLE>& rValue, bool isSigned = false)
{
    if (!rValue.has_value() || !std::isfinite(*rValue))
    {
        return "none";
    }
    return isSigned ? fmt::format("{:+.4g}", *rValue) : fmt::format("{:.4g}", *rValue);
}

}  // namespace

std::vector<TraceMeasure> MeasuresOf(const TraceTable& rTrace)
{
    const auto swing   = [](const TraceColumn& rValues) { return SwingOf(LastOf(rValues)); };
    const auto swingEV = [](const TraceColumn& rValues) { return SwingOf(LastOf(Log2Of(rValues))); };
    const auto percent = [](const TraceColumn& rValues) { return MeanOf(rValues) * 100.0; };
    const auto worst   = [](const TraceColumn& rValues)
    {
        const auto last = LastOf(rValues);
        return *std::max_element(last.begin(), last.end()) * 100.0;
    };
    const auto highest = [](const TraceColumn& rValues) { return *std::max_element(rValues.begin(), rValues.end()); };
    const TraceColumn* pTargets = rTrace.Find("target_safe");
    const auto         distance = [pTargets](const TraceColumn& rValues)
    { return MeanOf(LastOf(DistancesFromTarget(Log2Of(*pTargets), Log2Of(rValues)))); };
    const CHAR* pExposure = "exposure_safe";
    return {{"frames", "", static_cast<DOUBLE>(rTrace.FrameCount())},
            {"settled for the first time", "s", FirstSettled(rTrace)},
            {"settled frames", "percent", Of(rTrace, "settled", percent)},
            {"ripple of the safe exposure, last 100 frames", "EV", Of(rTrace, pExposure, swingEV)},
            {"mean distance from the metered target, last 100 frames", "EV",
             (pTargets != nullptr) ? Of(rTrace, pExposure, distance) : std::nullopt},
            {"swing of the picture, last 100 frames", "EV", Of(rTrace, "picture_ev", swing)},
            {"largest change of the safe exposure between two frames", "EV",
             Of(rTrace, pExposure, [](const TraceColumn& rValues) { return LargestChange(Log2Of(rValues)); })},
            {"reversals of the safe exposure, of at least 0.01 EV", "",
             Of(rTrace, pExposure,
                [](const TraceColumn& rValues) { return static_cast<DOUBLE>(Reversals(Log2Of(rValues))); })},
            {"highest ADRC gain", "times", Of(rTrace, "adrc_gain", highest)},
            {"frames without metering", "percent", Of(rTrace, "metering_skipped", percent)},
            {"banding, last 100 frames, worst", "percent", Of(rTrace, "banding", worst)}};
}

report::Table MeasureTable(const TraceTable& rTrace, const TraceTable* pOther)
{
    report::Table                   table{"Measured from the trace", {"", rTrace.Name()}, {}};
    const std::vector<TraceMeasure> measures = MeasuresOf(rTrace);
    std::vector<TraceMeasure>       others;
    if (pOther != nullptr)
    {
        others = MeasuresOf(*pOther);
        table.columns.insert(table.columns.end(), {pOther->Name(), "difference"});
    }
    for (size_t index = 0; index < measures.size(); ++index)
    {
        const TraceMeasure&      rMeasure = measures[index];
        std::vector<std::string> row      = {std::string(rMeasure.pName) +
                                                 (*rMeasure.pUnit != '\0' ? std::string(", ") + rMeasure.pUnit : ""),
                                             TextOf(rMeasure.value)};
        if (pOther != nullptr)
        {
            const auto& rOther     = others[index].value;
            const bool  isComplete = rMeasure.value.has_value() && rOther.has_value();
            row.push_back(TextOf(rOther));
            row.push_back(TextOf(isComplete ? std::optional<DOUBLE>(*rMeasure.value - *rOther) : std::nullopt, true));
        }
        table.rows.push_back(std::move(row));
    }
    return table;
}

}  // namespace kirosim
