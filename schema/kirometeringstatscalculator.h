/// @file
/// Stats calculators: which statistic to compute on which channels, and where in the bank of results it goes.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirometeringstatscalculator
{

/// What a calculator computes. "Range" is the calculator's rangeTrigger at the present lux index.
enum CalculatorAPIType : INT32
{
    API00Invalid                       = 0,   ///< no output
    API01GridWeightedAverage           = 1,   ///< mean luma over ROIID with weightTable2D
    API02GridSatRatiosAverage          = 2,   ///< reserved; no output
    API03GridRGBGAverage               = 3,   ///< reserved; no output
    API04HistWeightedAverage           = 4,   ///< mean luma with weightTable1D; range is a share of the bins, 0 to 1
    API05HistLumaRangeAverage          = 5,   ///< mean luma and share of samples; range is luma, 0 to 256
    API06HistPercentileRangeAverage    = 6,   ///< mean luma; range is a share of the samples, 0 to 1
    API07RgbgDomainStatsCounter        = 7,   ///< weighted count of regions in the R/G-B/G box ROIID
    API08ExtremeColorRgBgStatsRatio    = 8,   ///< weighted share of regions near the R/G-B/G box ROIID
    API09GridStatsRoughness            = 9,   ///< mean roughness, and share of regions whose roughness is in range
    API10HistPercentileRangeAverageHDR = 10,  ///< as API06, blended from channel1 and channel2
    API11                              = 11,  ///< reserved; no output
    API12                              = 12   ///< reserved; no output
};
TUNING_ENUM(CalculatorAPIType)
    ENUMERATOR(API00Invalid)
    ENUMERATOR(API01GridWeightedAverage)
    ENUMERATOR(API02GridSatRatiosAverage)
    ENUMERATOR(API03GridRGBGAverage)
    ENUMERATOR(API04HistWeightedAverage)
    ENUMERATOR(API05HistLumaRangeAverage)
    ENUMERATOR(API06HistPercentileRangeAverage)
    ENUMERATOR(API07RgbgDomainStatsCounter)
    ENUMERATOR(API08ExtremeColorRgBgStatsRatio)
    ENUMERATOR(API09GridStatsRoughness)
    ENUMERATOR(API10HistPercentileRangeAverageHDR)
    ENUMERATOR(API11)
    ENUMERATOR(API12)
TUNING_ENUM_END

/// The channels that a calculator reads, by the names under which the host delivers them; case matters.
struct CalculatorStatsSelectionType
{
    CHAR* channel1;  ///< luma, or the only channel
    CHAR* channel2;  ///< R/G ratio, or the histogram of the second exposure
    CHAR* channel3;  ///< B/G ratio
    CHAR* channel4;  ///< not used at present
};
TUNING_RECORD(CalculatorStatsSelectionType)
    MEMBER(channel1)
    MEMBER(channel2)
    MEMBER(channel3)
    MEMBER(channel4)
TUNING_RECORD_END

/// Data IDs in the bank of calculator results, both ends included.
struct CalculatorIntegerRangeType
{
    INT32 start;  ///< 0 to 999; the first output
    INT32 end;    ///< 0 to 999; start + 1 for calculators with two outputs
};
TUNING_RECORD(CalculatorIntegerRangeType)
    MEMBER(start)
    MEMBER(end)
TUNING_RECORD_END

/// Parameters that several calculations share.
struct CalculatorGeneralParameters
{
    UINT32                             weightTable1D;  ///< data ID in the bank of one-dimensional weights
    UINT32                             weightTable2D;  ///< data ID in the bank of two-dimensional weights
    UINT32                             subsampling;    ///< not used: every region of the ROI counts
    UINT32                             ROIID;          ///< data ID in the bank of regions; 0 is the whole frame
    UINT32                             rangeTriggerCount;
    UINT32                             rangeTriggerID;
    TriggerSystemEndLevelStartEndType* rangeTrigger;  ///< range by lux index; for API07 and API08 weight by luma
};
TUNING_RECORD(CalculatorGeneralParameters)
    MEMBER(weightTable1D)
    MEMBER(weightTable2D)
    MEMBER(subsampling)
    MEMBER(ROIID)
    VARIABLE(rangeTrigger)
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
    MEMBER(calculatorID)
    MEMBER(description)
    MEMBER(APISelection)
    MEMBER(statsSelection)
    MEMBER(expRatioHandle)
    MEMBER(outputStorage)
    MEMBER(generalParameters)
    VARIABLE(extensionArray)
TUNING_RECORD_END

/// The module's record.
struct KIROMeteringStatsCalculatorType
{
    UINT32                  SymbolTableID;
    module_versionStruct    module_version;
    parameter_versionStruct parameter_version;
    StatsCalculatorType     averageStatsCalculator;  ///< these four run in every frame but flash snapshots
    StatsCalculatorType     centerWeightedStatsCalculator;
    StatsCalculatorType     darkRatioStatsCalculator;    ///< published from outputStorage.end as a trigger
    StatsCalculatorType     brightRatioStatsCalculator;  ///< published from outputStorage.end as a trigger
    UINT32                  statsCalculatorsCount;
    UINT32                  statsCalculatorsID;
    StatsCalculatorType*    statsCalculators;  ///< run as the bank of active calculators lists them
};
TUNING_RECORD(KIROMeteringStatsCalculatorType)
    MODULE_HEADER
    MEMBER(averageStatsCalculator)
    MEMBER(centerWeightedStatsCalculator)
    MEMBER(darkRatioStatsCalculator)
    MEMBER(brightRatioStatsCalculator)
    VARIABLE(statsCalculators)
TUNING_RECORD_END

} // namespace kirometeringstatscalculator
