#include "tools/tuningcheck/rules/calculators.h"

#include <fmt/format.h>

#include "schema/kirometeringstatscalculator.h"
#include "tools/meaning/wordtext.h"
#include "tools/tuningcheck/named.h"
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

tuning::Unit UnitOf(CalculatorAPIType api)
{
    switch (api)
    {
    case API05HistLumaRangeAverage:
    case API09GridStatsRoughness:
        return tuning::Unit::ChannelUnits;
    case API07RgbgDomainStatsCounter:
    case API08ExtremeColorRgBgStatsRatio:
        return tuning::Unit::None;
    default:
        return tuning::Unit::Share;
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
                 fmt::format("{} for {}", meaning::ExpectedText(scale, UnitOf(api)), EnumeratorText(api)),
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

/// The exposures of both histograms, and the bank of the value by which they are blended.
VOID CheckBlend(const FLOAT* pNumbers, const RecordJudge& rJudge)
{
    constexpr UINT32 bankIndex = 4;
    for (const UINT32 index : {0U, 1U})
    {
        if (!(pNumbers[index] >= 0.0F && pNumbers[index] < static_cast<FLOAT>(ExposureNone)))
        {
            rJudge.ErrorIn("extensionArray", index, fmt::format("is {}", pNumbers[index]),
                           "an exposure: 0 (Short), 1 (Long) or 2 (Safe)", "otherwise -1 is stored");
        }
    }
    const FLOAT bank = pNumbers[bankIndex];
    if (!(bank >= 0.0F && bank < static_cast<FLOAT>(BankIDMax) && IsValueBank(static_cast<INT32>(bank))))
    {
        rJudge.ErrorIn("extensionArray", bankIndex, fmt::format("is {}", bank),
                       fmt::format("a bank of values: {} (analyzers), {} (calculators) or {} (triggers)",
                                   static_cast<INT32>(BankIDSceneAnalyzer), static_cast<INT32>(BankIDStatsCalculator),
                                   static_cast<INT32>(BankIDTriggers)),
                       "otherwise -1 is stored");
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
    else if (isHDR)
    {
        CheckBlend(rCalculator.extensionArray, rJudge);
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
