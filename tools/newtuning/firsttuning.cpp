#include "tools/newtuning/firsttuning.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "tools/newtuning/firsttuningtext.h"
#include "tools/newtuning/template.h"

namespace newtuning
{

namespace
{

/// How a part of the picture is metered.
struct MeteredRegion
{
    const CHAR* pMetering;
    const CHAR* pRegion;
    const CHAR* pDescription;
    const CHAR* pWeight;  ///< against 1 of the whole frame
    const CHAR* pCoords;
};

MeteredRegion RegionOf(Metering metering)
{
    switch (metering)
    {
    case Metering::Centre:
        return {"centre", "centre", "Centre", "1.0", "0.25, 0.25, 0.5, 0.5"};
    case Metering::Spot:
        return {"spot", "spot", "Spot", "9.0", "0.45, 0.45, 0.1, 0.1"};
    case Metering::Faces:
        return {"faces", "face", "Face", "4.0", "0.4, 0.4, 0.2, 0.2"};
    default:
        return {"average", "", "", "", ""};
    }
}

VOID FillMetering(const Answers& rAnswers, Filling& rFilling)
{
    const MeteredRegion region        = RegionOf(rAnswers.metering);
    rFilling.texts["metering"]        = region.pMetering;
    rFilling.texts["region"]          = region.pRegion;
    rFilling.texts["Region"]          = region.pDescription;
    rFilling.texts["regionWeight"]    = region.pWeight;
    rFilling.texts["coords"]          = region.pCoords;
    rFilling.texts["calculators"]     = rAnswers.isHDR ? "5, 6, 7" : "5, 6";
    rFilling.switches["average"]      = rAnswers.metering == Metering::Average;
    rFilling.switches["region"]       = rAnswers.metering != Metering::Average;
    rFilling.switches["alwaysRegion"] = rAnswers.metering == Metering::Centre || rAnswers.metering == Metering::Spot;
    rFilling.switches["faces"]        = rAnswers.metering == Metering::Faces;
    rFilling.switches["faceless"]     = rAnswers.metering != Metering::Faces;
}

/// A part of the time of a frame, in whole tenths of a millisecond.
std::string PartOf(UINT64 frameTime, DOUBLE share)
{
    constexpr DOUBLE grid = 1e5;
    return fmt::format("{:.0f}", std::max(std::round(static_cast<DOUBLE>(frameTime) * share / grid), 1.0) * grid);
}

/// @return 0 where no lamp flickers
UINT64 FlickerPeriod(Mains mains)
{
    switch (mains)
    {
    case Mains::Hz50:
        return 10000000;
    case Mains::Hz60:
        return 8333333;
    default:
        return 0;
    }
}

/// The highest gain of the table. The grid of flicker periods comes behind it and makes up with gain for what it cuts
/// from the time of a frame: above the highest that is allowed, unless the table ends as much below.
DOUBLE CappedGain(const Answers& rAnswers, UINT64 frameTime)
{
    const UINT64 period = FlickerPeriod(rAnswers.mains);
    const UINT64 onGrid = (period == 0 || frameTime < period) ? frameTime : frameTime - frameTime % period;
    const DOUBLE gain   = rAnswers.topGain * static_cast<DOUBLE>(onGrid) / static_cast<DOUBLE>(frameTime);
    return std::max(std::floor(gain * 1000.0) / 1000.0, rAnswers.gainMin);
}

/// From gain and time at their least to both at their most, each knee brighter than the one before.
VOID FillExposures(const Answers& rAnswers, Filling& rFilling)
{
    const UINT64 frameTime  = std::min(static_cast<UINT64>(NsPerSecond / rAnswers.FPS), rAnswers.timeMax);
    const DOUBLE cappedGain = CappedGain(rAnswers, frameTime);
    const DOUBLE middleGain = 2 * rAnswers.gainMin;
    auto&        rTexts     = rFilling.texts;

    rTexts["gainMin"]         = fmt::format("{:g}", rAnswers.gainMin);
    rTexts["gainMax"]         = fmt::format("{:g}", rAnswers.gainMax);
    rTexts["middleGain"]      = fmt::format("{:g}", middleGain);
    rTexts["topGain"]         = fmt::format("{:g}", rAnswers.topGain);
    rTexts["cappedGain"]      = fmt::format("{:g}", cappedGain);
    rTexts["lineTime"]        = std::to_string(rAnswers.lineTime);
    rTexts["halfTime"]        = std::to_string(frameTime / 2);
    rTexts["frameTime"]       = std::to_string(frameTime);
    rTexts["timeMax"]         = std::to_string(rAnswers.timeMax);
    rTexts["fps"]             = fmt::format("{:g}", rAnswers.FPS);
    rTexts["hdr"]             = rAnswers.isHDR ? "yes" : "no";
    rTexts["longPart"]        = PartOf(frameTime, 0.81);
    rTexts["shortPart"]       = PartOf(frameTime, 0.18);
    rTexts["shortPartAtMost"] = PartOf(frameTime, 0.72);

    rFilling.switches["hdr"]        = rAnswers.isHDR;
    rFilling.switches["middle"]     = cappedGain > middleGain;
    rFilling.switches["straight"]   = cappedGain <= middleGain;
    rFilling.switches["gainRises"]  = cappedGain > rAnswers.gainMin;
    rFilling.switches["gridTakes"]  = cappedGain < rAnswers.topGain;
    rFilling.switches["slowFrames"] = rAnswers.timeMax > frameTime;
}

/// A zone for each number of flicker periods up to the longest time.
std::string FlickerRows(UINT64 period, UINT64 timeMax)
{
    std::string rows;
    for (UINT64 time = period; time == period || time < timeMax; time += period)
    {
        rows += fmt::format("{}                - {{trigger: {{start: {}, end: {}}}, trigger2Data: "
                            "[{{trigger: *everywhere, triggerData: {}}}]}}",
                            rows.empty() ? "" : "\n", time, time + period, time);
    }
    return rows;
}

VOID FillFlicker(const Answers& rAnswers, Filling& rFilling)
{
    const UINT64 period          = FlickerPeriod(rAnswers.mains);
    rFilling.switches["flicker"] = period != 0;
    rFilling.texts["mains"] = (rAnswers.mains == Mains::Off) ? "off" : (rAnswers.mains == Mains::Hz50) ? "50" : "60";
    if (period != 0)
    {
        rFilling.texts["flickerRows"] = FlickerRows(period, rAnswers.timeMax);
    }
}

}  // namespace

std::string FirstTuning(const Answers& rAnswers)
{
    Filling filling;
    FillMetering(rAnswers, filling);
    FillExposures(rAnswers, filling);
    FillFlicker(rAnswers, filling);
    return Fill(FirstTuningText, filling);
}

}  // namespace newtuning
