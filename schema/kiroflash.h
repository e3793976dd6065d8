/// @file
/// Tuning module kiroflash.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kiroflash
{

/// One mix of the two LEDs, with the colour and light that it gives.
struct LEDMixType
{
    INT32 LED1Setting;
    INT32 LED2Setting;
    float RGRatio;
    float BGRatio;
    float flux;
};
TUNING_RECORD(LEDMixType)
    MEMBER(LED1Setting,
        .meaning = "Current of the first LED in this mix. The two currents of each mix of a row must have the same "
                   "sum, else no flash is driven at all, so what is added here comes off LED 2 and the colour moves "
                   "towards that of the first LED.",
        .unit = Unit::Milliampere, .range = {0, 65535})
    MEMBER(LED2Setting,
        .meaning = "Current of the second LED in this mix. What is added here comes off LED 1, since a row keeps its "
                   "power.",
        .unit = Unit::Milliampere, .range = {0, 65535})
    MEMBER(RGRatio,
        .meaning = "Red over green of the light of this mix, as the sensor sees it. The mix whose colour is nearest "
                   "to the white balance is taken, so a wrong ratio gives a tinted flash; between neighbours of the "
                   "same ratio there is no mixing.",
        .unit = Unit::ColourRatio, .range = Above(0), .odd = AtLeast(0))
    MEMBER(BGRatio,
        .meaning = "Blue over green of the light of this mix, as the sensor sees it. With RGRatio it decides between "
                   "which mixes the wanted colour lies.",
        .unit = Unit::ColourRatio, .range = Above(0), .odd = AtLeast(0))
    MEMBER(flux,
        .meaning = "Light output of this mix, in a unit of the table's own: only ratios count. Doubled in the rows of "
                   "the main flash but not in the first row, the picture is exposed as if the main flash gave twice "
                   "the light.",
        .range = Above(0), .odd = AtLeast(0))
TUNING_RECORD_END

/// One mix that the factory measures.
struct KIROLEDMixCalibType
{
    INT32        indexMix;
    INT32        indexPower;
    BOOL         enableScreening;
    StartEndType RGOKRange;
    StartEndType BGOKRange;
    UINT64       fixedExposure;
};
TUNING_RECORD(KIROLEDMixCalibType)
    MEMBER(indexMix,
        .meaning = "Column of the mix that the factory measures, from 0. The measured colour replaces that of this "
                   "mix and corrects those beside it; inline calibration takes no sample at these currents.",
        .unit = Unit::Index, .range = {0, 15})
    MEMBER(indexPower,
        .meaning = "Row of the mix that the factory measures, from 0. Rows without a measured mix are corrected by "
                   "the nearest rows that have one.",
        .unit = Unit::Index, .range = {0, 95})
    BOOLEAN(enableScreening,
        .meaning = "Meant to refuse, in the factory, a module whose colour lies outside RGOKRange or BGOKRange. Read "
                   "by no stage.",
        .acts = Acts::Never)
    MEMBER(RGOKRange,
        .meaning = "Red over green that the factory is meant to accept for this mix. Read by no stage.",
        .unit = Unit::ColourRatio, .range = AtLeast(0), .acts = Acts::Never, .when = "enableScreening")
    MEMBER(BGOKRange,
        .meaning = "Blue over green that the factory is meant to accept for this mix. Read by no stage.",
        .unit = Unit::ColourRatio, .range = AtLeast(0), .acts = Acts::Never, .when = "enableScreening")
    MEMBER(fixedExposure,
        .meaning = "Exposure at which the factory is meant to measure this mix. Read by no stage.",
        .unit = Unit::GainTimesNs, .range = AtLeast(0), .acts = Acts::Never)
TUNING_RECORD_END

/// How the mixes are measured.
struct KIROLEDMeasurementType
{
    UINT32       framesToSkip;
    UINT32       framesToAverage;
    StartEndType lumaOKRange;
};
TUNING_RECORD(KIROLEDMeasurementType)
    MEMBER(framesToSkip,
        .meaning = "Frames that a measurement of the mixes is meant to wait after a change of current. Read by no "
                   "stage.",
        .unit = Unit::Frames, .range = AtLeast(0), .acts = Acts::Never)
    MEMBER(framesToAverage,
        .meaning = "Frames whose colours are meant to be averaged for one mix. Read by no stage.",
        .unit = Unit::Frames, .range = AtLeast(0), .acts = Acts::Never)
    MEMBER(lumaOKRange,
        .meaning = "Luma that a frame is meant to have to count in a measurement. Read by no stage.",
        .unit = Unit::Luma, .range = AtLeast(0), .odd = Any, .acts = Acts::Never)
TUNING_RECORD_END

/// The mixes, in rows of equal total power and columns of mixes.
struct LEDMatchTableType
{
    BOOL                   enableDerating;
    float                  dualLEDIntersectSlope;
    INT32                  countPower;
    INT32                  countMix;
    KIROLEDMeasurementType LEDMeasConfig;
    UINT32                 tableCount;
    UINT32                 tableID;
    LEDMixType*            table;
    UINT32                 tableCalibrationCount;
    UINT32                 tableCalibrationID;
    KIROLEDMixCalibType*   tableCalibration;
};
TUNING_RECORD(LEDMatchTableType)
    BOOLEAN(enableDerating,
        .meaning = "Meant to switch scaling down of the currents. Read by no stage: a limit at or below the power of "
                   "the first row always scales that row down.",
        .acts = Acts::Never)
    MEMBER(dualLEDIntersectSlope,
        .meaning = "Slope, blue over green against red over green, along which a wanted colour is carried to the "
                   "straight line from the first to the last mix. It counts only where no segment between two "
                   "neighbouring mixes takes the colour, and must differ from the slope of that line.",
        .range = Any, .start = "1.0")
    MEMBER(countPower,
        .meaning = "Rows of the mix table, one for each total power in rising order. More rows add nothing between: "
                   "below the last row, currents lie on the line through the first two, and only the first six rows "
                   "are checked; 0 rows and 0 mixes stand for no table.",
        .unit = Unit::Count, .range = {1, 6}, .odd = {0, 96}, .start = "3")
    MEMBER(countMix,
        .meaning = "Columns of the mix table. With 1 no colour is matched; more columns follow the curve of colours "
                   "between the two LEDs more closely.",
        .unit = Unit::Count, .range = {1, 16}, .odd = {0, 16}, .start = "5")
    MEMBER(LEDMeasConfig,
        .meaning = "How the mixes are meant to be measured. Read by no stage.",
        .acts = Acts::Never)
    VARIABLE(table,
        .meaning = "The mixes, row after row: mix m of power p stands at p * countMix + m. All mixes of a row sum to "
                   "the row's power and powers rise; for inline calibration LED 1 must also fall from column to "
                   "column.",
        .entries = {0, 96})
    VARIABLE(tableCalibration,
        .meaning = "The mixes that the factory measures, as many and in the same order as its data. With another "
                   "number the factory calibration is left out and tuned colours stand.",
        .entries = {0, 96})
TUNING_RECORD_END

/// When the preflash starts and when it is done.
struct PreflashEnterExitType
{
    StartEndType enterLuxTrigger;
    UINT32       minFrameNum;
    UINT32       maxFrameNum;
};
TUNING_RECORD(PreflashEnterExitType)
    MEMBER(enterLuxTrigger,
        .meaning = "Range of the lux index meant to decide on a preflash: on above its end, off below its start. Read "
                   "by no stage.",
        .unit = Unit::LuxIndex, .range = AtLeast(0), .odd = Any, .acts = Acts::Never)
    MEMBER(minFrameNum,
        .meaning = "Frames meant as the shortest preflash. Read by no stage.",
        .unit = Unit::Frames, .range = AtLeast(0), .start = "1", .acts = Acts::Never)
    MEMBER(maxFrameNum,
        .meaning = "Frames after which the preflash is meant to end, settled or not. Read by no stage.",
        .unit = Unit::Frames, .range = AtLeast(0), .start = "20", .acts = Acts::Never)
TUNING_RECORD_END

/// Limits of a statistics channel, on the channel's scale.
struct PreflashYThresholds
{
    CHAR* statsNameOff;
    CHAR* statsNameLow;
    float absoluteThreshold;
    float differenceThreshold;
};
TUNING_RECORD(PreflashYThresholds)
    MEMBER(statsNameOff,
        .meaning = "Name under which the host hands over the grid channel of the frame without LED, of which the "
                   "first 256 regions count. If no channel has this name, metering of the preflash always goes on.",
        .acts = Acts::Never, .refers = {Reads(Thing::Channel)})
    MEMBER(statsNameLow,
        .meaning = "Name under which the host hands over the same grid channel under the preflash. If no channel has "
                   "this name, metering of the preflash always goes on.",
        .acts = Acts::Never, .refers = {Reads(Thing::Channel)})
    MEMBER(absoluteThreshold,
        .meaning = "Value of a region above which it counts, with its neighbours, as bright without LED; bright "
                   "regions have no say in how long the preflash is metered. Raised, more regions have a say, but "
                   "each may get brighter before metering must go on.",
        .unit = Unit::ChannelUnits, .range = AtLeast(0))
    MEMBER(differenceThreshold,
        .meaning = "Added to absoluteThreshold, it gives what a region that was not bright may reach under the "
                   "preflash before metering must go on. Raised, the preflash is metered for fewer frames and may "
                   "stay brighter.",
        .unit = Unit::ChannelUnits, .range = AtLeast(0), .odd = Any)
TUNING_RECORD_END

/// When metering under the preflash can stop: once no region is above its limits that was not bright before.
struct FlashStatsPreprocessingType
{
    PreflashYThresholds stopMeteringYLevel;
    PreflashYThresholds stopMeteringYSaturation;
};
TUNING_RECORD(FlashStatsPreprocessingType)
    MEMBER(stopMeteringYLevel,
        .meaning = "Channels and limits of the luma of regions.")
    MEMBER(stopMeteringYSaturation,
        .meaning = "Channels and limits of the clipped share of regions. A region is too bright by either.")
TUNING_RECORD_END

/// EV compensation under the preflash.
struct PreflashEvControlType
{
    BOOL enable;
};
TUNING_RECORD(PreflashEvControlType)
    BOOLEAN(enable,
        .meaning = "On, the user's EV also applies to the exposures of the preflash; off, the preflash is exposed as "
                   "if EV were 0.",
        .start = "false")
TUNING_RECORD_END

/// First and last tuned mix of a zone.
struct triggerPointType
{
    float start;
    float end;
};
TUNING_RECORD(triggerPointType)
    MEMBER(start,
        .meaning = "First mix of the zone, as column of the table, without its fraction. Before it, the shares run "
                   "over from those of the zone before; the first zone's is not read.",
        .unit = Unit::Index, .range = {0, 15}, .odd = Any, .acts = Acts::Creation)
    MEMBER(end,
        .meaning = "Last mix of the zone, as column of the table, without its fraction. Beyond it, the shares run "
                   "over to those of the next zone; the last zone's is not read.",
        .unit = Unit::Index, .range = {0, 15}, .odd = Any, .acts = Acts::Creation)
TUNING_RECORD_END

/// How far a sample of a zone is taken towards the estimate.
struct LEDInlineCalibTargetDataType
{
    float distancePCT;
    float angleShiftPCT;
};
TUNING_RECORD(LEDInlineCalibTargetDataType)
    MEMBER(distancePCT,
        .meaning = "How far a sample is moved from the measured colour to the distance from neutral at which the "
                   "table has it: 0 takes the measured distance, 1 the table's, twice the value goes twice as far. 0 "
                   "suits scenes that the flash alone lights.",
        .unit = Unit::Share, .range = {0, 1}, .start = "0.0", .acts = Acts::Creation)
    MEMBER(angleShiftPCT,
        .meaning = "How much of the measured direction from neutral is kept: 0 learns no change of hue against the "
                   "table, 1 all that was measured.",
        .unit = Unit::Share, .range = {0, 1}, .start = "1.0", .acts = Acts::Creation)
TUNING_RECORD_END

/// One zone of mixes.
struct LEDInlineCalibTargetType
{
    triggerPointType             zoneTrigger;
    LEDInlineCalibTargetDataType zoneData;
};
TUNING_RECORD(LEDInlineCalibTargetType)
    MEMBER(zoneTrigger,
        .meaning = "The mixes for which the zone holds.",
        .acts = Acts::Creation)
    MEMBER(zoneData,
        .meaning = "The shares that hold in the zone.",
        .acts = Acts::Creation)
TUNING_RECORD_END

/// Learning the colour of the LEDs from captures. Colours are red over green and blue over green.
struct LEDInlineCalibType
{
    float                     triggerIndex;
    float                     refRange;
    float                     refRegionPCT;
    INT32                     validRefCount;
    float                     distanceRatioMin;
    float                     distanceRatioMax;
    float                     angleShiftMax;
    INT32                     minKneeCnt;
    INT32                     maxZoneCnt;
    float                     confidencePctThr;
    INT32                     numOfFactoringRegions;
    UINT32                    LEDInlineCalibTargetCount;
    UINT32                    LEDInlineCalibTargetID;
    LEDInlineCalibTargetType* LEDInlineCalibTarget;
};
TUNING_RECORD(LEDInlineCalibType)
    MEMBER(triggerIndex,
        .meaning = "Lux index from which on a picture for which flash is needed is a sample. Raised, only darker "
                   "scenes count, where more of the light is the flash's and fewer pictures teach anything.",
        .unit = Unit::LuxIndex, .range = AtLeast(0), .odd = Any, .start = "300", .acts = Acts::Creation)
    MEMBER(refRange,
        .meaning = "How far red over green, and blue over green, of a grid cell may lie from neutral before flash for "
                   "it to be a reference cell. Doubled, more cells count, and less neutral ones.",
        .unit = Unit::ColourRatio, .range = Above(0), .odd = AtLeast(0), .start = "0.02", .acts = Acts::Creation)
    MEMBER(refRegionPCT,
        .meaning = "Part of the frame's width and height, about its centre, in which reference cells are looked for. "
                   "Doubled, four times the area is searched; from 1 on the whole frame is, and 0 leaves a single "
                   "cell.",
        .unit = Unit::Share, .range = Above(0, 1), .odd = AtLeast(0), .start = "0.4", .acts = Acts::Creation)
    MEMBER(validRefCount,
        .meaning = "Least reference cells; a picture with fewer is no sample. Doubled, only scenes with large neutral "
                   "areas teach.",
        .unit = Unit::Count, .range = {1, 3072}, .odd = {0, 3072}, .start = "100", .acts = Acts::Creation)
    MEMBER(distanceRatioMin,
        .meaning = "Least distance from neutral to which the flash must have moved the reference cells, against that "
                   "of the table's colour. Raised, pictures with much other light are left out.",
        .unit = Unit::Factor, .range = AtLeast(0), .start = "0.3", .acts = Acts::Creation)
    MEMBER(distanceRatioMax,
        .meaning = "Largest distance from neutral of the measured colour against that of the table's. Lowered, "
                   "pictures that the flash seems to have moved farther than its own colour are left out; below "
                   "distanceRatioMin all are.",
        .unit = Unit::Factor, .range = Above(0), .odd = AtLeast(0), .start = "2.0", .acts = Acts::Creation)
    MEMBER(angleShiftMax,
        .meaning = "Largest difference, in red over green and in blue over green, between the colour measured at the "
                   "table's distance and the table's colour. Doubled, LEDs that are twice as far off are still "
                   "learned, and wrong samples more easily.",
        .unit = Unit::ColourRatio, .range = Above(0), .odd = AtLeast(0), .start = "0.15", .acts = Acts::Creation)
    MEMBER(minKneeCnt,
        .meaning = "Least samples near a mix before its colour is learned. Doubled, learning takes about twice the "
                   "pictures and is steadier; above 150 nothing is learned.",
        .unit = Unit::Count, .range = {1, 150}, .odd = AtMost(150), .start = "4", .acts = Acts::Creation)
    MEMBER(maxZoneCnt,
        .meaning = "Most samples kept between two mixes, for preflash and for full flash each; a new one drops the "
                   "oldest. Doubled, learned colours follow a change of the LEDs half as fast; above 75 a mix with "
                   "two full zones ignores some of them, and below 1 no zone ever gets its first.",
        .unit = Unit::Count, .range = {1, 75}, .odd = Any, .start = "20", .acts = Acts::Creation)
    MEMBER(confidencePctThr,
        .meaning = "Share of a mix's samples that three neighbouring parts of their span must hold for its colour to "
                   "be learned. Raised, scattered samples teach nothing; above 1 none do.",
        .unit = Unit::Share, .range = {0, 1}, .odd = AtLeast(0), .start = "0.5", .acts = Acts::Creation)
    MEMBER(numOfFactoringRegions,
        .meaning = "Equal parts into which the span of a mix's samples is cut; three adjacent ones must agree. "
                   "Doubled, samples must lie twice as close together; below 3 and above 20 nothing is learned.",
        .unit = Unit::Count, .range = {3, 20}, .odd = AtMost(20), .start = "6", .acts = Acts::Creation)
    VARIABLE(LEDInlineCalibTarget,
        .meaning = "Zones of mixes, from the first column on, that say how far a sample is taken. Without zones both "
                   "shares are 1; those beyond the sixteenth are left out.",
        .entries = {0, 16}, .acts = Acts::Creation)
TUNING_RECORD_END

/// The module.
struct KIROFlashType
{
    UINT32                      SymbolTableID;
    module_versionStruct        module_version;
    parameter_versionStruct     parameter_version;
    LEDMatchTableType           LEDMatching;
    PreflashEnterExitType       preflashEnterExit;
    FlashStatsPreprocessingType preflashStatsPreProcessing;
    PreflashEvControlType       preflashEvControl;
    LEDInlineCalibType          LEDInlineCalibration;
};
TUNING_RECORD(KIROFlashType)
    MODULE_HEADER("LED mixes and their calibration, and metering under the preflash.")
    MEMBER(LEDMatching,
        .meaning = "The table of mixes and what the factory measures of it.")
    MEMBER(preflashEnterExit,
        .meaning = "When a preflash is meant to start and end. Read by no stage.",
        .acts = Acts::Never)
    MEMBER(preflashStatsPreProcessing,
        .meaning = "When metering under the preflash may stop: once no region that was dark without LED is above its "
                   "limit.")
    MEMBER(preflashEvControl,
        .meaning = "Whether the user's EV applies to the preflash.")
    MEMBER(LEDInlineCalibration,
        .meaning = "How the colours of the LEDs are learned from pictures, in sessions in which the host has switched "
                   "inline calibration on.",
        .acts = Acts::Creation)
TUNING_RECORD_END

} // namespace kiroflash
