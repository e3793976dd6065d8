#include "tools/tuningcheck/rules/calculators.h"

#include <fmt/format.h>

#include "schema/kirometeringstatscalculator.h"
#include "tools/meaning/wordtext.h"
#include "tools/tuningcheck/recordjudge.h"

namespace tuningcheck
{

namespace
{

using namespace kirometeringstatscalculator;

constexpr UINT32 NumbersOfHDR = 6;  ///< exposures, thresholds, trigger

/// @return the scale of a calculation's range, not given if it has none or any will do
tuning::Range ScaleOf(CalculatorAPIType api)
{
    switch (api)
    {
    case API04HistWeightedAverage:
    case API06HistPercentileRangeAverage:
    case API10HistPercentileRangeAverageHDR:
        return {0.0, 1.0};
    case API05HistLumaRangeAverage:
        return {0.0, 256.0};
    case API07RgbgDomainStatsCounter:
    case API08ExtremeColorRgBgStatsRatio:
    case API09GridStatsRoughness:
        return tuning::RowTerms::AtLeast(0.0);
    default:
        return {};
    }
}

VOID CheckScale(const kiroglobalelements::TriggerSystemEndLevelStartEndType& rZone, const RecordJudge& rJudge)
{
    const CalculatorAPIType api   = rJudge.Around<StatsCalculatorType>()->APISelection;
    const tuning::Range     scale = ScaleOf(api);
    const StartEndType&     rData = rZone.triggerData;
    if (!scale.IsGiven() || (scale.Holds(rData.start) && scale.Holds(rData.end)))
    {
        return;
    }
    const bool isShare = scale.high == 1.0;
    rJudge.Error("triggerData", fmt::format("is {} to {}", rData.start, rData.end),
                 fmt::format("{} for {}",
                             meaning::ExpectedText(scale, isShare ? tuning::Unit::Share : tuning::Unit::ChannelUnits),
                             EnumeratorText(api)),
                 isShare ? "the brightest 5 percent of the samples are 0.95 to 1" : "");
}

bool StoresTwo(CalculatorAPIType api)
{
    return api == API05HistLumaRangeAverage || api == API09GridStatsRoughness;
}

/// The last entry of two calculators is published as a trigger; that of the others is for logs.
bool IsEndRead(const StatsCalculatorType& rCalculator, const RecordJudge& rJudge)
{
    const auto& rModule = *rJudge.Around<KIROMeteringStatsCalculatorType>();
    return &rCalculator == &rModule.darkRatioStatsCalculator || &rCalculator == &rModule.brightRatioStatsCalculator;
}

VOID CheckStorage(const StatsCalculatorType& rCalculator, const RecordJudge& rJudge)
{
    const CalculatorIntegerRangeType& rStorage = rCalculator.outputStorage;
    const INT64                       last     = INT64{rStorage.start} + (StoresTwo(rCalculator.APISelection) ? 1 : 0);
    if (rCalculator.APISelection == API00Invalid || rStorage.end >= last)
    {
        return;
    }
    const std::string found = fmt::format("ends at {}", rStorage.end);
    const std::string expected =
        fmt::format("an end of {} or more for {}", last, EnumeratorText(rCalculator.APISelection));
    if (IsEndRead(rCalculator, rJudge))
    {
        rJudge.Error("outputStorage", found, expected, "the ratio is read from the end");
    }
    else
    {
        rJudge.Advise("outputStorage", found, expected, "what lies beyond is stored, too, and logged in each frame");
    }
}

VOID CheckNumbers(const StatsCalculatorType& rCalculator, const RecordJudge& rJudge)
{
    const bool isHDR    = rCalculator.APISelection == API10HistPercentileRangeAverageHDR;
    const bool isColour = rCalculator.APISelection == API08ExtremeColorRgBgStatsRatio;
    if (isHDR && rCalculator.extensionArrayCount != NumbersOfHDR)
    {
        rJudge.Error("extensionArray", fmt::format("has {} numbers", rCalculator.extensionArrayCount),
                     fmt::format("{} numbers for {}", NumbersOfHDR, EnumeratorText(rCalculator.APISelection)));
    }
    if (isColour && rCalculator.extensionArrayCount == 0)
    {
        rJudge.Advise("extensionArray", "is empty",
                      fmt::format("the width of the fall-off for {}", EnumeratorText(rCalculator.APISelection)),
                      "without it the region has a hard edge");
    }
}

}  // namespace

VOID CheckStatsCalculators(const ModulePlace& rModule, Findings& rFindings)
{
    JudgeEach<kiroglobalelements::TriggerSystemEndLevelStartEndType>(rModule, rFindings, CheckScale);
    JudgeEach<StatsCalculatorType>(rModule, rFindings, CheckStorage);
    JudgeEach<StatsCalculatorType>(rModule, rFindings, CheckNumbers);
}

}  // namespace tuningcheck
