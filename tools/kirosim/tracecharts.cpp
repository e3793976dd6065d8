#include "tools/kirosim/tracecharts.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "tools/kirosim/statebands.h"

namespace kirosim
{

namespace
{

/// From a column's number to what a chart shows.
enum class Scale
{
    AsIs,
    ExposureEV,    ///< gain times ns to EV
    Milliseconds,  ///< from ns
    Percent        ///< from a share
};

DOUBLE Scaled(DOUBLE value, Scale scale)
{
    constexpr DOUBLE nsPerMs = 1e6;
    switch (scale)
    {
    case Scale::ExposureEV:
        return (value > 0.0) ? std::log2(value / nsPerMs) : std::nan("");
    case Scale::Milliseconds:
        return value / nsPerMs;
    case Scale::Percent:
        return value * 100.0;
    default:
        return value;
    }
}

/// A line of a chart.
struct LineForm
{
    const CHAR*    pColumn;
    const CHAR*    pName;
    report::Colour colour   = report::Colour::Other;
    bool           isDashed = false;
    const CHAR*    pLike    = nullptr;  ///< not drawn where it is the same as this column throughout
};

struct ChartForm
{
    const CHAR*           pTitle;
    const CHAR*           pUnit;
    bool                  isLog;
    Scale                 scale;
    std::optional<DOUBLE> idle;  ///< of what does nothing: a line that never differs from it is not drawn
    std::vector<LineForm> lines;
    bool                  isOfChange = false;  ///< a line that stays as it begins makes no chart
};

const std::vector<ChartForm>& ChartForms()
{
    using enum report::Colour;
    static const std::vector<ChartForm> forms = {
        {"Luma and what metering wants",
         "0 to 255",
         false,
         Scale::AsIs,
         {},
         {{"luma", "luma", Safe}, {"luma_target", "target", Safe, true}}},
        {"Targets and exposures",
         "EV, 0 is 1 ms at gain 1",
         false,
         Scale::ExposureEV,
         {},
         {{"target_safe", "safe target", Safe, true},
          {"exposure_safe", "safe exposure", Safe},
          {"target_short", "short target", Short, true, "target_safe"},
          {"exposure_short", "short exposure", Short, false, "exposure_safe"},
          {"target_long", "long target", Long, true, "target_safe"},
          {"exposure_long", "long exposure", Long, false, "exposure_safe"}}},
        {"Gain",
         "times, log",
         true,
         Scale::AsIs,
         {},
         {{"gain_safe", "safe", Safe},
          {"gain_short", "short", Short, false, "gain_safe"},
          {"gain_long", "long", Long, false, "gain_safe"}}},
        {"Exposure time",
         "ms, log",
         true,
         Scale::Milliseconds,
         {},
         {{"time_ns_safe", "safe", Safe},
          {"time_ns_short", "short", Short, false, "time_ns_safe"},
          {"time_ns_long", "long", Long, false, "time_ns_safe"}}},
        {"ADRC and dark boost",
         "times",
         false,
         Scale::AsIs,
         1.0,
         {{"adrc_gain", "ADRC, safe over short", Short},
          {"dark_boost", "dark boost, long over safe", Long},
          {"predictive_gain", "predictive gain", Other}}},
        {"Clipped",
         "percent of the picture",
         false,
         Scale::Percent,
         {},
         {{"clipped_safe", "safe", Safe},
          {"clipped_short", "short", Short, false, "clipped_safe"},
          {"clipped_long", "long", Long, false, "clipped_safe"}}},
        {"Mean of the picture", "EV of full scale", false, Scale::AsIs, {}, {{"picture_ev", "safe exposure", Safe}}},
        {"Lux index", "steps of 3 percent, more is darker", false, Scale::AsIs, {}, {{"lux_index", "lux index"}}},
        {"Light of the scene", "lux, log", true, Scale::AsIs, {}, {{"scene_lux", "light"}}, true},
        {"Banding", "percent of the mean", false, Scale::Percent, 0.0, {{"banding", "peak to peak", Safe}}},
        {"Frame rate", "frames per second", false, Scale::AsIs, {}, {{"fps", "frame rate"}}}};
    return forms;
}

/// @return the chart of a form; null if the page has none yet
report::Chart* FindChart(const ChartForm& rForm, report::Page& rPage)
{
    const auto found = std::find_if(rPage.charts.begin(), rPage.charts.end(),
                                    [&rForm](const report::Chart& rChart) { return rChart.title == rForm.pTitle; });
    return (found != rPage.charts.end()) ? &*found : nullptr;
}

/// @return the chart of a form, which is added to the page if there is none yet
report::Chart& ChartOf(const ChartForm& rForm, report::Page& rPage)
{
    report::Chart* pChart = FindChart(rForm, rPage);
    return (pChart != nullptr) ? *pChart
                               : rPage.charts.emplace_back(report::Chart{rForm.pTitle, rForm.pUnit, rForm.isLog, {}});
}

/// @param rValues at least one
bool IsIdle(const std::vector<DOUBLE>& rValues, const ChartForm& rForm, report::Page& rPage)
{
    const bool                  isFlatIdle = rForm.isOfChange && FindChart(rForm, rPage) == nullptr;
    const std::optional<DOUBLE> idle       = isFlatIdle ? rValues.front() : rForm.idle;
    return idle.has_value() &&
           std::all_of(rValues.begin(), rValues.end(), [&idle](DOUBLE value) { return value == *idle; });
}

VOID AddLine(const TraceTable& rTrace, const ChartForm& rForm, const LineForm& rLine, report::Page& rPage)
{
    const std::vector<DOUBLE>* pValues = rTrace.Find(rLine.pColumn);
    const std::vector<DOUBLE>* pLike   = (rLine.pLike != nullptr) ? rTrace.Find(rLine.pLike) : nullptr;
    if (pValues == nullptr || IsIdle(*pValues, rForm, rPage) || (pLike != nullptr && *pLike == *pValues))
    {
        return;
    }
    report::Series series{rLine.pName, rLine.colour, rLine.isDashed, rPage.timelines.size() - 1, {}};
    series.values.reserve(pValues->size());
    for (const DOUBLE value : *pValues)
    {
        series.values.push_back(Scaled(value, rForm.scale));
    }
    ChartOf(rForm, rPage).series.push_back(std::move(series));
}

}  // namespace

VOID AddCharts(const TraceTable& rTrace, report::Page& rPage)
{
    const std::string name = std::filesystem::path(rTrace.Name()).filename().string();  // legends have little room
    rPage.timelines.push_back({name, rTrace.Get("frame"), rTrace.Get("time_s")});
    for (const ChartForm& rForm : ChartForms())
    {
        for (const LineForm& rLine : rForm.lines)
        {
            AddLine(rTrace, rForm, rLine, rPage);
        }
    }
}

std::vector<report::Band> BandsOf(const TraceTable& rTrace)
{
    StateBands                 bands;
    const std::vector<DOUBLE>& rTimes   = rTrace.Get("time_s");
    const std::vector<DOUBLE>* pSettled = rTrace.Find("settled");
    const std::vector<DOUBLE>* pBright  = rTrace.Find("brightness_settled");
    const std::vector<DOUBLE>* pSkipped = rTrace.Find("metering_skipped");
    const auto                 isSet    = [](const std::vector<DOUBLE>* pFlags, size_t frame)
    { return pFlags != nullptr && (*pFlags)[frame] != 0.0; };
    for (size_t frame = 0; frame < rTimes.size(); ++frame)
    {
        bands.BeginFrame(rTimes[frame]);
        bands.Set("settled", isSet(pSettled, frame));
        bands.Set("safe settled", isSet(pBright, frame));
        bands.Set("metering skipped", isSet(pSkipped, frame));
    }
    return bands.Finish();
}

}  // namespace kirosim
