/// @file
/// Tuning module kirometeringstatscalculator.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirometeringstatscalculator
{

/// What a calculator computes. "Range" is the calculator's rangeTrigger at the present lux index.
enum CalculatorAPIType : INT32
{
    API00Invalid                       = 0,
    API01GridWeightedAverage           = 1,
    API02GridSatRatiosAverage          = 2,
    API03GridRGBGAverage               = 3,
    API04HistWeightedAverage           = 4,
    API05HistLumaRangeAverage          = 5,
    API06HistPercentileRangeAverage    = 6,
    API07RgbgDomainStatsCounter        = 7,
    API08ExtremeColorRgBgStatsRatio    = 8,
    API09GridStatsRoughness            = 9,
    API10HistPercentileRangeAverageHDR = 10,
    API11                              = 11,
    API12                              = 12
};
TUNING_ENUM(CalculatorAPIType)
    ENUMERATOR(API00Invalid, "Nothing is computed and nothing stored; a log line says so in each run.")
    ENUMERATOR(API01GridWeightedAverage,
        "Mean luma of grid channel1 over region ROIID, weighted by weightTable2D laid over that region; one output. "
        "extensionArray [0] above 0 counts grid regions that ROIID covers in part by their share.")
    ENUMERATOR(API02GridSatRatiosAverage, "Reserved: nothing is computed and nothing stored.")
    ENUMERATOR(API03GridRGBGAverage, "Reserved: nothing is computed and nothing stored.")
    ENUMERATOR(API04HistWeightedAverage,
        "Mean luma of histogram channel1, its bins weighted by weightTable1D; the range is a share of the bins, 0 to "
        "1, and one output is stored, 0 for a range without a bin.")
    ENUMERATOR(API05HistLumaRangeAverage,
        "Mean luma of the samples of histogram channel1 within the range, which is luma, 0 to 256, and their share of "
        "all samples; two outputs. The share counts whole bins, and the lowest of them only where the range starts at "
        "0.")
    ENUMERATOR(API06HistPercentileRangeAverage,
        "Mean luma of a slice of the samples of histogram channel1 from the darkest on; the range is a share of the "
        "samples, 0 to 1 (0.97 to 1 is the brightest 3 percent), and one output is stored.")
    ENUMERATOR(API07RgbgDomainStatsCounter,
        "Number of grid regions whose R/G and B/G, as delivered, lie in the box ROIID, borders included, each counted "
        "by its luma's weight; one output, which grows with the size of the grid.")
    ENUMERATOR(API08ExtremeColorRgBgStatsRatio,
        "Share of grid regions, 0 to 1, whose R/G and B/G lie in the box ROIID or near it, each counted by its luma's "
        "weight; box and fall-off are scaled to the white balance, so that grey lies at 1 if the channels are raw, "
        "and the one output is stored after all calculators have run. extensionArray [0] is the width of the fall-off "
        "around the box, at least 0.0001: doubled, twice as distant colours still count.")
    ENUMERATOR(API09GridStatsRoughness,
        "Mean roughness of grid channel1 (distance of each inner region from the mean of its 3 x 3 neighbourhood, "
        "over its value + 1), and the share of regions whose roughness is in the range; two outputs.")
    ENUMERATOR(API10HistPercentileRangeAverageHDR,
        "As API06, blended from histograms channel1 and channel2, the luma of channel1 taken to the exposure of "
        "channel2 first. extensionArray holds exactly six numbers: [0] and [1] the exposures of channel1 and channel2 "
        "(0 short, 1 long, 2 safe), [2] the bank value below which channel1 alone counts, [3] the one above which "
        "channel2 alone does, [4] bank ID and [5] data ID of that value.")
    ENUMERATOR(API11, "Reserved: nothing is computed and nothing stored.")
    ENUMERATOR(API12, "Reserved: nothing is computed and nothing stored.")
TUNING_ENUM_END

/// The channels that a calculator reads, by the names under which the host delivers them; case matters.
struct CalculatorStatsSelectionType
{
    CHAR* channel1;
    CHAR* channel2;
    CHAR* channel3;
    CHAR* channel4;
};
TUNING_RECORD(CalculatorStatsSelectionType)
    MEMBER(channel1,
        .meaning = "Channel of luma, or the only channel, by the name under which the host delivers it, case "
                   "included: a grid for API01 and API07 to API09, a histogram for API04 to API06 and API10. A name "
                   "that is not delivered stores -1.",
        .start = "SafeLuma", .acts = Acts::Never, .refers = {Reads(Thing::Channel)},
        .when = "APISelection=API01GridWeightedAverage|API04HistWeightedAverage|API05HistLumaRangeAverage|"
                "API06HistPercentileRangeAverage|API07RgbgDomainStatsCounter|API08ExtremeColorRgBgStatsRatio|"
                "API09GridStatsRoughness|API10HistPercentileRangeAverageHDR")
    MEMBER(channel2,
        .meaning = "Channel of R/G ratios (API07, API08), of the same size and bit depth as channel1, or histogram of "
                   "the second exposure (API10), needed only where that counts; other APIs do not read it.",
        .acts = Acts::Never, .refers = {Reads(Thing::Channel)},
        .when = "APISelection=API07RgbgDomainStatsCounter|API08ExtremeColorRgBgStatsRatio|"
                "API10HistPercentileRangeAverageHDR")
    MEMBER(channel3,
        .meaning = "Channel of B/G ratios (API07, API08), of the same size and bit depth as channel1; other APIs do "
                   "not read it.",
        .acts = Acts::Never, .refers = {Reads(Thing::Channel)},
        .when = "APISelection=API07RgbgDomainStatsCounter|API08ExtremeColorRgBgStatsRatio")
    MEMBER(channel4,
        .meaning = "Read by no stage.",
        .acts = Acts::Never)
TUNING_RECORD_END

/// Data IDs in the bank of calculator results, both ends included.
struct CalculatorIntegerRangeType
{
    INT32 start;
    INT32 end;
};
TUNING_RECORD(CalculatorIntegerRangeType)
    MEMBER(start,
        .meaning = "Entry of the bank of calculator results that takes the first output; the second one of API05 and "
                   "API09 goes to the entry behind it, so that these start at 998 at most.",
        .unit = Unit::ID, .range = {0, 999}, .acts = Acts::Rebuilt, .refers = {WritesBank(BankIDStatsCalculator)},
        .when = "APISelection=API01GridWeightedAverage|API04HistWeightedAverage|API05HistLumaRangeAverage|"
                "API06HistPercentileRangeAverage|API07RgbgDomainStatsCounter|API08ExtremeColorRgBgStatsRatio|"
                "API09GridStatsRoughness|API10HistPercentileRangeAverageHDR")
    MEMBER(end,
        .meaning = "Entry of the last output, start + 1 with two outputs; of the fixed dark and bright ratio "
                   "calculators this entry is published as a trigger. Elsewhere a smaller one only logs.",
        .unit = Unit::ID, .range = {0, 999}, .acts = Acts::Rebuilt, .refers = {WritesBank(BankIDStatsCalculator)})
TUNING_RECORD_END

/// Parameters that several calculations share.
struct CalculatorGeneralParameters
{
    UINT32                             weightTable1D;
    UINT32                             weightTable2D;
    UINT32                             subsampling;
    UINT32                             ROIID;
    UINT32                             rangeTriggerCount;
    UINT32                             rangeTriggerID;
    TriggerSystemEndLevelStartEndType* rangeTrigger;
};
TUNING_RECORD(CalculatorGeneralParameters)
    MEMBER(weightTable1D,
        .meaning = "Weight table for the bins, read by API04; 0 is the one that the context selects. Without such a "
                   "table bin 0 alone counts.",
        .unit = Unit::ID, .range = {0, 2147483647}, .start = "1", .acts = Acts::Rebuilt,
        .refers = {ReadsBank(BankIDMetering1D)}, .when = "APISelection=API04HistWeightedAverage")
    MEMBER(weightTable2D,
        .meaning = "Weight table laid over the region, read by API01; 0 is the one that the context selects. Without "
                   "such a table -1 is stored; an ID above 2147483647 keeps the weights of the calculator before.",
        .unit = Unit::ID, .range = {0, 2147483647}, .odd = AtLeast(0), .start = "1", .acts = Acts::Rebuilt,
        .refers = {ReadsBank(BankIDMetering2D)}, .when = "APISelection=API01GridWeightedAverage")
    MEMBER(subsampling,
        .meaning = "Read by no stage: every region of the ROI counts.",
        .range = AtLeast(0), .start = "0", .acts = Acts::Never)
    MEMBER(ROIID,
        .meaning = "Region to measure, read by API01, where 0 is the whole frame; for API07 and API08 the box in the "
                   "R/G-B/G plane, where 0 is a box of no size at 0, 0. An ID without a region stores -1.",
        .unit = Unit::ID, .range = {0, 2147483647}, .odd = AtLeast(0), .start = "0", .acts = Acts::Rebuilt,
        .refers = {ReadsBank(BankIDROITable).Unless(0)},
        .when = "APISelection=API01GridWeightedAverage|API07RgbgDomainStatsCounter|API08ExtremeColorRgBgStatsRatio")
    VARIABLE(rangeTrigger,
        .meaning = "Range of API04, API05, API06, API09 and API10 by lux index, zones in ascending order; a range "
                   "with its start above its end stores -1, of API09 a share of 0. For API07 and API08 rows map luma "
                   "(trigger) to weight (triggerData), linear within and between rows.",
        .entries = AtLeast(1), .acts = Acts::Rebuilt,
        .when = "APISelection=API04HistWeightedAverage|API05HistLumaRangeAverage|API06HistPercentileRangeAverage|"
                "API07RgbgDomainStatsCounter|API08ExtremeColorRgBgStatsRatio|API09GridStatsRoughness|"
                "API10HistPercentileRangeAverageHDR")
TUNING_RECORD_END

/// One calculator.
struct StatsCalculatorType
{
    UINT32                       calculatorID;
    CHAR*                        description;
    CalculatorAPIType            APISelection;
    CalculatorStatsSelectionType statsSelection;
    ExpRatioHandleType           expRatioHandle;
    CalculatorIntegerRangeType   outputStorage;
    CalculatorGeneralParameters  generalParameters;
    UINT32                       extensionArrayCount;
    UINT32                       extensionArrayID;

    /// API01: [0] above 0 counts regions that the ROI covers in part by their share.
    /// API08: [0] width of the fall-off around the box, before the white balance gains.
    /// API10, all six: [0] and [1] indices of the two exposures (short 0, long 1, safe 2); [2] trigger value below
    /// which the first alone counts; [3] above which the second alone counts; [4] bank ID, [5] data ID of the trigger.
    float* extensionArray;
};
TUNING_RECORD(StatsCalculatorType)
    MEMBER(calculatorID,
        .meaning = "Number by which run lists name the calculator; all calculators with the number run. For the four "
                   "fixed ones it is only a label of logs and debug data.",
        .unit = Unit::ID, .range = AtLeast(0), .acts = Acts::Rebuilt, .refers = {Defines(Thing::Calculator)})
    MEMBER(description,
        .meaning = "Text for logs, debug data and the bank entries that it writes.",
        .acts = Acts::Never)
    MEMBER(APISelection,
        .meaning = "What the calculator computes, and so how many entries it stores.",
        .start = "API01GridWeightedAverage", .acts = Acts::Rebuilt)
    MEMBER(statsSelection,
        .meaning = "Channels that the calculator reads.",
        .acts = Acts::Never)
    MEMBER(expRatioHandle,
        .meaning = "Whether the clamp of bright lumas, 0.98 of full scale, comes down as safe grows over short; API09 "
                   "has no clamp.",
        .start = "DoNotHandle", .acts = Acts::Rebuilt,
        .when = "APISelection=API01GridWeightedAverage|API04HistWeightedAverage|API05HistLumaRangeAverage|"
                "API06HistPercentileRangeAverage|API07RgbgDomainStatsCounter|API08ExtremeColorRgBgStatsRatio|"
                "API10HistPercentileRangeAverageHDR")
    MEMBER(outputStorage,
        .meaning = "Entries of the bank of calculator results that take the outputs.",
        .acts = Acts::Rebuilt)
    MEMBER(generalParameters,
        .meaning = "Region, weights and range that the calculation uses.",
        .acts = Acts::Rebuilt)
    VARIABLE(extensionArray,
        .meaning = "Further numbers of API01 (at most one), API08 (one) and API10 (exactly six); the enumerators of "
                   "APISelection say what each of them is. Other APIs do not read them.",
        .unit = Unit::Varies, .range = Any, .entries = AtLeast(0), .acts = Acts::Rebuilt,
        .when = "APISelection=API01GridWeightedAverage|API08ExtremeColorRgBgStatsRatio|"
                "API10HistPercentileRangeAverageHDR")
TUNING_RECORD_END

/// The module's record.
struct KIROMeteringStatsCalculatorType
{
    UINT32                  SymbolTableID;
    module_versionStruct    module_version;
    parameter_versionStruct parameter_version;
    StatsCalculatorType     averageStatsCalculator;
    StatsCalculatorType     centerWeightedStatsCalculator;
    StatsCalculatorType     darkRatioStatsCalculator;
    StatsCalculatorType     brightRatioStatsCalculator;
    UINT32                  statsCalculatorsCount;
    UINT32                  statsCalculatorsID;
    StatsCalculatorType*    statsCalculators;
};
TUNING_RECORD(KIROMeteringStatsCalculatorType)
    MODULE_HEADER("Stats calculators: which statistic to compute on which channels, and where in the bank of results "
                  "it goes.")
    MEMBER(averageStatsCalculator,
        .meaning = "First of the four calculators that run in every metered frame but a flash snapshot; meant for the "
                   "frame average, which analyzers read from its bank entry.",
        .acts = Acts::Rebuilt)
    MEMBER(centerWeightedStatsCalculator,
        .meaning = "Second of the four calculators that run in every metered frame but a flash snapshot; meant for "
                   "the centre-weighted average.",
        .acts = Acts::Rebuilt)
    MEMBER(darkRatioStatsCalculator,
        .meaning = "Third of the four calculators that run in every metered frame but a flash snapshot. The lux "
                   "analyzer publishes its entry outputStorage.end as trigger 5, the dark ratio.",
        .acts = Acts::Rebuilt)
    MEMBER(brightRatioStatsCalculator,
        .meaning = "Fourth of the four calculators that run in every metered frame but a flash snapshot. The lux "
                   "analyzer publishes its entry outputStorage.end as trigger 6, the bright ratio.",
        .acts = Acts::Rebuilt)
    VARIABLE(statsCalculators,
        .meaning = "Calculators that run after the lux analyzer, as the run list of active calculators names them. Of "
                   "those with API08 the first 64 of the array are measured, also ones that ran in an earlier frame "
                   "and are no longer listed.",
        .entries = AtLeast(0), .acts = Acts::Rebuilt)
TUNING_RECORD_END

} // namespace kirometeringstatscalculator
