/// @file
/// Tuning module kiroscenechangedetector.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kiroscenechangedetector
{

/// Where in a frame a detector runs.
enum SCDetectionRunPriority : INT32
{
    MeteringStart    = 0,
    ConvergenceStart = 1,
    ExtensionStart   = 2,
    ExtensionEnd     = 3,
    EndOfFrame       = 4,
    Invalid          = 5
};
TUNING_ENUM(SCDetectionRunPriority)
    ENUMERATOR(MeteringStart, "Before metering, in frames with valid statistics.")
    ENUMERATOR(ConvergenceStart,
        "Before convergence, in frames that were metered; the exposure can rest in the same frame.")
    ENUMERATOR(ExtensionStart, "Before the extension, in frames whose statistics are past those of the start.")
    ENUMERATOR(ExtensionEnd, "After the extension, in frames whose statistics are past those of the start.")
    ENUMERATOR(EndOfFrame, "At the end of frames that were metered, pictures excepted.")
    ENUMERATOR(Invalid, "The detector never runs.")
TUNING_ENUM_END

/// How the watched value is smoothed.
enum SCDetectionDataFilterType : INT32
{
    Disable = 0,
    Average = 1,
    Median  = 2
};
TUNING_ENUM(SCDetectionDataFilterType)
    ENUMERATOR(Disable, "The value as it is read.")
    ENUMERATOR(Average, "Mean of the newest windowSize values.")
    ENUMERATOR(Median, "Median of the newest windowSize values; of an even number the lower of the two in the middle.")
TUNING_ENUM_END

/// What the watched value is compared with.
enum SCDetectionBaselineType : INT32
{
    UseRebasedData   = 0,
    UseFixedBaseline = 1
};
TUNING_ENUM(SCDetectionBaselineType)
    ENUMERATOR(UseRebasedData, "The watched value when the detector was last rebased.")
    ENUMERATOR(UseFixedBaseline, "The tuned fixedBaselineValue.")
TUNING_ENUM_END

/// How the hold time is followed while it runs.
enum HoldTimeFilterType : INT32
{
    MinHoldTime     = 0,
    MaxHoldTime     = 1,
    CurrentHoldTime = 2
};
TUNING_ENUM(HoldTimeFilterType)
    ENUMERATOR(MinHoldTime, "The shortest hold time that the tree has yielded during the hold.")
    ENUMERATOR(MaxHoldTime, "The longest hold time that the tree has yielded during the hold.")
    ENUMERATOR(CurrentHoldTime, "The hold time of the present frame.")
TUNING_ENUM_END

/// The value that a detector watches.
struct SCDetectionInputDataType
{
    DataBankType              inputDataSource;
    UINT32                    windowSize;
    SCDetectionDataFilterType filterType;
};
TUNING_RECORD(SCDetectionInputDataType)
    MEMBER(inputDataSource,
        .meaning = "Value that the detector watches, an entry of the trigger bank; with any other bank the detector "
                   "stands still.",
        .acts = Acts::Rebuilt, .refers = {ReadsBank(BankIDTriggers)}, .when = "enable")
    MEMBER(windowSize,
        .meaning = "Newest values that the filter looks at: twice as many let less noise through and detect later. "
                   "Above 10 it acts like 10; 0 makes the filtered value 0.",
        .unit = Unit::Frames, .range = {1, 10}, .odd = AtLeast(0), .start = "3", .acts = Acts::Rebuilt,
        .when = "enable & filterType=Average|Median")
    MEMBER(filterType,
        .meaning = "Selects how the watched value is smoothed.",
        .start = "Disable", .acts = Acts::Rebuilt, .when = "enable")
TUNING_RECORD_END

/// When a difference is a change.
struct SCThresCoreDataType
{
    float  valueThres;
    UINT32 countThres;
};
TUNING_RECORD(SCThresCoreDataType)
    MEMBER(valueThres,
        .meaning = "Least difference from the baseline that counts as a change, in units of the value, or in percent "
                   "of the baseline with bUsePercentageError: twice the threshold misses changes of less than twice "
                   "the size. With 0 every value is a change.",
        .unit = Unit::Varies, .range = Above(0), .odd = AtLeast(0), .start = "35", .acts = Acts::Rebuilt,
        .when = "enable")
    MEMBER(countThres,
        .meaning = "Frames in a row for which the difference must last: twice as many detect as much later and miss "
                   "shorter changes; 0 detects at once, whatever the difference. Between zones it is interpolated and "
                   "truncated.",
        .unit = Unit::Frames, .range = AtLeast(1), .odd = AtLeast(0), .start = "1", .acts = Acts::Rebuilt,
        .when = "enable")
TUNING_RECORD_END

/// Last level of the tree of thresholds.
LEAF_ZONE(SCThresLevel3DataType, SCThresCoreDataType, triggerData,
    .meaning = "Threshold of the zone.",
    .acts = Acts::Rebuilt)

/// Second level of the tree of thresholds.
INNER_ZONE(SCThresLevel2DataType, SCThresLevel3DataType, trigger3,
    .meaning = "Zones of the third level, in ascending order; since the second trigger drives them too, a single one "
               "is the rule.",
    .entries = AtLeast(1), .acts = Acts::Rebuilt, .when = "enable")

/// First level of the tree of thresholds.
INNER_ZONE(SCThresLevel1DataType, SCThresLevel2DataType, trigger2,
    .meaning = "Zones of the second trigger, in ascending order; a single one makes the threshold independent of that "
               "trigger.",
    .entries = AtLeast(1), .acts = Acts::Rebuilt, .when = "enable")

/// The tree of thresholds and the bank entries that drive it.
struct SCThresTriggerDataType
{
    DataBankType           trigger1DataBank;
    DataBankType           trigger2DataBank;
    DataBankType           trigger3DataBank;
    UINT32                 trigger1Count;
    UINT32                 trigger1ID;
    SCThresLevel1DataType* trigger1;
};
TUNING_RECORD(SCThresTriggerDataType)
    MEMBER(trigger1DataBank,
        .meaning = "Trigger that drives the first level; with any other bank than that of triggers the detector "
                   "stands still.",
        .acts = Acts::Rebuilt, .refers = {ReadsBank(BankIDTriggers).Unless(0)}, .when = "enable")
    MEMBER(trigger2DataBank,
        .meaning = "Trigger that drives the second level and the third; with any other bank than that of triggers the "
                   "detector stands still.",
        .acts = Acts::Rebuilt, .refers = {ReadsBank(BankIDTriggers).Unless(0)}, .when = "enable")
    MEMBER(trigger3DataBank,
        .meaning = "Read by no stage; trigger2DataBank drives the third level.",
        .acts = Acts::Never)
    VARIABLE(trigger1,
        .meaning = "Zones of the first trigger, in ascending order; the tree below them holds the thresholds. Without "
                   "any, every frame counts as a change.",
        .entries = AtLeast(1), .acts = Acts::Rebuilt, .when = "enable")
TUNING_RECORD_END

/// When the watched value means a scene change.
struct SCDetectionThresConfigType
{
    SCThresTriggerDataType  thresData;
    SCDetectionBaselineType baselineType;
    float                   fixedBaselineValue;
    BOOL                    bUsePercentageError;
};
TUNING_RECORD(SCDetectionThresConfigType)
    MEMBER(thresData,
        .meaning = "Thresholds over two triggers; the detector stands still while one of them cannot be read.",
        .acts = Acts::Rebuilt, .when = "enable")
    MEMBER(baselineType,
        .meaning = "Selects what the watched value is compared with: itself at the last rebase, or a fixed value.",
        .start = "UseRebasedData", .acts = Acts::Rebuilt, .when = "enable")
    MEMBER(fixedBaselineValue,
        .meaning = "Value, in units of the watched one, from which differences count; read with UseFixedBaseline.",
        .unit = Unit::Varies, .range = Any, .acts = Acts::Rebuilt, .when = "enable & baselineType=UseFixedBaseline")
    BOOLEAN(bUsePercentageError,
        .meaning = "Switched on, differences count in percent of the baseline, if that is above 0; off, in units of "
                   "the value. Holds for valueThres and settleThres.",
        .start = "false", .acts = Acts::Rebuilt, .when = "enable")
TUNING_RECORD_END

/// When the scene is stable again after a change.
struct SCPostStableConfigType
{
    UINT32 windowSize;
    float  variationThres;
};
TUNING_RECORD(SCPostStableConfigType)
    MEMBER(windowSize,
        .meaning = "Newest values that must lie close together for the scene to be stable again: twice as many find "
                   "it stable later. Above 10 it acts like 10; below 2 the scene is stable one frame after the "
                   "change.",
        .unit = Unit::Frames, .range = {2, 10}, .odd = AtLeast(0), .start = "8", .acts = Acts::Rebuilt,
        .when = "enable")
    MEMBER(variationThres,
        .meaning = "Percentage of their mean by which the values may vary and still be stable: twice as much finds "
                   "the scene stable sooner. With 0 it never is.",
        .unit = Unit::Percent, .range = Above(0, 200), .odd = AtLeast(0), .start = "2.0", .acts = Acts::Rebuilt,
        .when = "enable")
TUNING_RECORD_END

/// Detection of a scene change.
struct SCDetectionConfigType
{
    SCDetectionInputDataType   inputDataConfig;
    SCDetectionThresConfigType thresConfig;
    SCPostStableConfigType     SCPostStableConfig;
};
TUNING_RECORD(SCDetectionConfigType)
    MEMBER(inputDataConfig,
        .meaning = "The watched value and its smoothing.",
        .acts = Acts::Rebuilt, .when = "enable")
    MEMBER(thresConfig,
        .meaning = "When a difference of the value is a scene change.",
        .acts = Acts::Rebuilt, .when = "enable")
    MEMBER(SCPostStableConfig,
        .meaning = "When the scene is stable again after a change.",
        .acts = Acts::Rebuilt, .when = "enable")
TUNING_RECORD_END

/// Settling that must come before a hold time may begin.
struct HoldTimeEnterConfigType
{
    BOOL  enable;
    float settleThres;
    float settleTimeThres;
};
TUNING_RECORD(HoldTimeEnterConfigType)
    BOOLEAN(enable,
        .meaning = "Switched on, a hold may begin only after the value has stayed near its baseline for "
                   "settleTimeThres; off, with any change.",
        .start = "false", .acts = Acts::Rebuilt)
    MEMBER(settleThres,
        .meaning = "Difference from the baseline below which the value is near, in units of the value, or in percent "
                   "with bUsePercentageError; twice the difference lets a less quiet scene begin holds, and with 0 no "
                   "value is near.",
        .unit = Unit::Varies, .range = Above(0), .acts = Acts::Rebuilt, .when = "enable")
    MEMBER(settleTimeThres,
        .meaning = "Time without interruption for which the value must be near before holds may begin; twice the time "
                   "allows the first hold after a rebase as much later.",
        .unit = Unit::Seconds, .range = AtLeast(0), .acts = Acts::Rebuilt, .when = "enable")
TUNING_RECORD_END

/// The time for which a scene change is held.
struct HoldTimeConfigType
{
    BOOL                                enable;
    ThreeLevelDataBankTriggerSystemType holdTimeData;
    HoldTimeFilterType                  holdTimeFilterType;
    BOOL                                strictHoldTimeEn;
    HoldTimeEnterConfigType             holdTimeEnterConfig;
};
TUNING_RECORD(HoldTimeConfigType)
    BOOLEAN(enable,
        .meaning = "Switched on, a change is held for the hold time, during which a convergence that heeds the "
                   "detector rests; off, changes are told but not held.",
        .start = "true", .acts = Acts::Rebuilt)
    MEMBER(holdTimeData,
        .meaning = "Hold time in seconds over two triggers of the trigger bank, the second of which drives the third "
                   "level too; twice the time makes the exposure wait twice as long. Its triggers must be readable "
                   "even with enable off, or the detector stands still.",
        .acts = Acts::Rebuilt)
    MEMBER(holdTimeFilterType,
        .meaning = "Selects whether the shortest, the longest or the present hold time counts while it changes during "
                   "a hold.",
        .start = "MaxHoldTime", .acts = Acts::Rebuilt, .when = "enable")
    BOOLEAN(strictHoldTimeEn,
        .meaning = "Switched on, a hold lasts for the whole hold time; off, it ends as soon as the scene is stable "
                   "again.",
        .start = "true", .acts = Acts::Rebuilt, .when = "enable")
    MEMBER(holdTimeEnterConfig,
        .meaning = "Settling that must come before a hold.",
        .acts = Acts::Rebuilt, .when = "enable")
TUNING_RECORD_END

/// One detector.
struct AECSCDType
{
    BOOL                   enable;
    SCDetectionRunPriority priority;
    UINT32                 SCDId;
    CHAR*                  SCDName;
    SCDetectionConfigType  SCDetectionConfig;
    HoldTimeConfigType     holdTimeConfig;
};
TUNING_RECORD(AECSCDType)
    BOOLEAN(enable,
        .meaning = "Switched off, the detector does not run and tells of no change and no hold.",
        .start = "true", .acts = Acts::Rebuilt)
    MEMBER(priority,
        .meaning = "Selects where in a frame the detector runs; a later place sees values of the same frame. A frame "
                   "that lacks what the place asks for makes the detector wait until the exposure is settled again.",
        .start = "ConvergenceStart", .acts = Acts::Rebuilt, .when = "enable")
    MEMBER(SCDId,
        .meaning = "Number by which convergence, camera sync and hosts ask for the detector; of equal ones the last "
                   "answers.",
        .unit = Unit::ID, .range = AtLeast(1), .odd = AtLeast(0), .start = "1", .acts = Acts::Rebuilt,
        .refers = {Defines(Thing::Detector)})
    MEMBER(SCDName,
        .meaning = "Name of the detector in logs and in its answer.",
        .acts = Acts::Never)
    MEMBER(SCDetectionConfig,
        .meaning = "What is watched, what counts as a change, and when the scene is stable again.",
        .acts = Acts::Rebuilt, .when = "enable")
    MEMBER(holdTimeConfig,
        .meaning = "For how long a change is held.",
        .acts = Acts::Rebuilt, .when = "enable")
TUNING_RECORD_END

/// The module's record.
struct KIROSceneChangeDetectorType
{
    UINT32                  SymbolTableID;
    module_versionStruct    module_version;
    parameter_versionStruct parameter_version;
    UINT32                  moduleID;
    UINT32                  scdBankCount;
    UINT32                  scdBankID;
    AECSCDType*             scdBank;
};
TUNING_RECORD(KIROSceneChangeDetectorType)
    MODULE_HEADER("Scene change detectors: each watches one trigger over time.")
    MEMBER(moduleID,
        .meaning = "Identifies the module to the tools; read by no stage.",
        .unit = Unit::ID, .range = AtLeast(0), .acts = Acts::Never)
    VARIABLE(scdBank,
        .meaning = "Detectors, run in this order within a place of the frame. An edit anywhere in them builds all of "
                   "them anew, and each waits until the exposure is settled.",
        .entries = AtLeast(0), .acts = Acts::Rebuilt)
TUNING_RECORD_END

} // namespace kiroscenechangedetector
