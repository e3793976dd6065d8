/// @file
/// Scene change detectors: each watches one trigger over time.
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
    Invalid          = 5  ///< never
};
TUNING_ENUM(SCDetectionRunPriority)
    ENUMERATOR(MeteringStart)
    ENUMERATOR(ConvergenceStart)
    ENUMERATOR(ExtensionStart)
    ENUMERATOR(ExtensionEnd)
    ENUMERATOR(EndOfFrame)
    ENUMERATOR(Invalid)
TUNING_ENUM_END

/// How the watched value is smoothed.
enum SCDetectionDataFilterType : INT32
{
    Disable = 0,
    Average = 1,
    Median  = 2  ///< of an even number of values the lower of the two in the middle
};
TUNING_ENUM(SCDetectionDataFilterType)
    ENUMERATOR(Disable)
    ENUMERATOR(Average)
    ENUMERATOR(Median)
TUNING_ENUM_END

/// What the watched value is compared with.
enum SCDetectionBaselineType : INT32
{
    UseRebasedData   = 0,  ///< its own value when the detector was last brought back to rest
    UseFixedBaseline = 1   ///< fixedBaselineValue
};
TUNING_ENUM(SCDetectionBaselineType)
    ENUMERATOR(UseRebasedData)
    ENUMERATOR(UseFixedBaseline)
TUNING_ENUM_END

/// How the hold time is followed while it runs.
enum HoldTimeFilterType : INT32
{
    MinHoldTime     = 0,  ///< the shortest so far
    MaxHoldTime     = 1,  ///< the longest so far
    CurrentHoldTime = 2
};
TUNING_ENUM(HoldTimeFilterType)
    ENUMERATOR(MinHoldTime)
    ENUMERATOR(MaxHoldTime)
    ENUMERATOR(CurrentHoldTime)
TUNING_ENUM_END

/// The value that a detector watches.
struct SCDetectionInputDataType
{
    DataBankType              inputDataSource;  ///< in BankIDTriggers
    UINT32                    windowSize;       ///< values that the filter looks at, 1 to 10
    SCDetectionDataFilterType filterType;
};
TUNING_RECORD(SCDetectionInputDataType)
    MEMBER(inputDataSource)
    MEMBER(windowSize)
    MEMBER(filterType)
TUNING_RECORD_END

/// When a difference is a change.
struct SCThresCoreDataType
{
    float  valueThres;  ///< least difference from the baseline, in units of the value or in percent of the baseline
    UINT32 countThres;  ///< consecutive frames that it must last; 0 detects at once
};
TUNING_RECORD(SCThresCoreDataType)
    MEMBER(valueThres)
    MEMBER(countThres)
TUNING_RECORD_END

/// Last level of the tree of thresholds.
LEAF_ZONE(SCThresLevel3DataType, SCThresCoreDataType, triggerData)

/// Second level of the tree of thresholds.
INNER_ZONE(SCThresLevel2DataType, SCThresLevel3DataType, trigger3)

/// First level of the tree of thresholds.
INNER_ZONE(SCThresLevel1DataType, SCThresLevel2DataType, trigger2)

/// The tree of thresholds and the bank entries that drive it.
struct SCThresTriggerDataType
{
    DataBankType           trigger1DataBank;
    DataBankType           trigger2DataBank;  ///< drives the third level too
    DataBankType           trigger3DataBank;  ///< not used
    UINT32                 trigger1Count;
    UINT32                 trigger1ID;
    SCThresLevel1DataType* trigger1;
};
TUNING_RECORD(SCThresTriggerDataType)
    MEMBER(trigger1DataBank)
    MEMBER(trigger2DataBank)
    MEMBER(trigger3DataBank)
    VARIABLE(trigger1)
TUNING_RECORD_END

/// When the watched value means a scene change.
struct SCDetectionThresConfigType
{
    SCThresTriggerDataType  thresData;
    SCDetectionBaselineType baselineType;
    float                   fixedBaselineValue;   ///< for UseFixedBaseline, in units of the value
    BOOL                    bUsePercentageError;  ///< compare in percent of the baseline, if that is above 0
};
TUNING_RECORD(SCDetectionThresConfigType)
    MEMBER(thresData)
    MEMBER(baselineType)
    MEMBER(fixedBaselineValue)
    BOOLEAN(bUsePercentageError)
TUNING_RECORD_END

/// When the scene is stable again after a change.
struct SCPostStableConfigType
{
    UINT32 windowSize;      ///< frames that are looked at, 2 to 10; below 2 the scene is stable at once
    float  variationThres;  ///< percent of the mean that the value may vary by
};
TUNING_RECORD(SCPostStableConfigType)
    MEMBER(windowSize)
    MEMBER(variationThres)
TUNING_RECORD_END

/// Detection of a scene change.
struct SCDetectionConfigType
{
    SCDetectionInputDataType   inputDataConfig;
    SCDetectionThresConfigType thresConfig;
    SCPostStableConfigType     SCPostStableConfig;
};
TUNING_RECORD(SCDetectionConfigType)
    MEMBER(inputDataConfig)
    MEMBER(thresConfig)
    MEMBER(SCPostStableConfig)
TUNING_RECORD_END

/// Settling that must come before a hold time may begin.
struct HoldTimeEnterConfigType
{
    BOOL  enable;
    float settleThres;      ///< difference from the baseline below which the value is settled
    float settleTimeThres;  ///< seconds
};
TUNING_RECORD(HoldTimeEnterConfigType)
    BOOLEAN(enable)
    MEMBER(settleThres)
    MEMBER(settleTimeThres)
TUNING_RECORD_END

/// The time for which a scene change is held.
struct HoldTimeConfigType
{
    BOOL                                enable;
    ThreeLevelDataBankTriggerSystemType holdTimeData;  ///< seconds; trigger2DataBank drives the third level too
    HoldTimeFilterType                  holdTimeFilterType;
    BOOL                                strictHoldTimeEn;  ///< if not, the hold ends as soon as the scene is stable
    HoldTimeEnterConfigType             holdTimeEnterConfig;
};
TUNING_RECORD(HoldTimeConfigType)
    BOOLEAN(enable)
    MEMBER(holdTimeData)
    MEMBER(holdTimeFilterType)
    BOOLEAN(strictHoldTimeEn)
    MEMBER(holdTimeEnterConfig)
TUNING_RECORD_END

/// One detector.
struct AECSCDType
{
    BOOL                   enable;
    SCDetectionRunPriority priority;
    UINT32                 SCDId;  ///< what other modules ask for it by
    CHAR*                  SCDName;
    SCDetectionConfigType  SCDetectionConfig;
    HoldTimeConfigType     holdTimeConfig;
};
TUNING_RECORD(AECSCDType)
    BOOLEAN(enable)
    MEMBER(priority)
    MEMBER(SCDId)
    MEMBER(SCDName)
    MEMBER(SCDetectionConfig)
    MEMBER(holdTimeConfig)
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
    MODULE_HEADER
    MEMBER(moduleID)
    VARIABLE(scdBank)
TUNING_RECORD_END

} // namespace kiroscenechangedetector
