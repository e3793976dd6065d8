/// @file
/// Tuning module kirodbsnapshot: the bank of snapshot settings, base exposure and DRC gains of each kind of snapshot.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirodbsnapshot
{

/// Where the gains of a snapshot come from.
enum DRCConfigMethodType : INT32
{
    NoDRC                              = 0,
    DRCFromBaseExposureWithConstraints = 1,
    FixedDRCFromTuning                 = 2
};
TUNING_ENUM(DRCConfigMethodType)
    ENUMERATOR(NoDRC)
    ENUMERATOR(DRCFromBaseExposureWithConstraints)
    ENUMERATOR(FixedDRCFromTuning)
TUNING_ENUM_END

/// Which values of the preview a snapshot starts from.
enum BaseExposureSourceType : INT32
{
    BaseExposureConverged = 0,
    BaseExposureTarget    = 1
};
TUNING_ENUM(BaseExposureSourceType)
    ENUMERATOR(BaseExposureConverged)
    ENUMERATOR(BaseExposureTarget)
TUNING_ENUM_END

/// The exposure that a snapshot starts from.
struct BaseExposureType
{
    BaseExposureSourceType source;
    KIROExposureSelection  exposureType;
};
TUNING_RECORD(BaseExposureType)
    MEMBER(source)
    MEMBER(exposureType)
TUNING_RECORD_END

/// Upper limits of the gains that the base exposure brings along. Gains are ratios of two exposures, from 1.0.
struct BaseExposureConstraintType
{
    float maxADRCGain;
    float maxDarkBoostGain;
};
TUNING_RECORD(BaseExposureConstraintType)
    MEMBER(maxADRCGain)
    MEMBER(maxDarkBoostGain)
TUNING_RECORD_END

/// The gains of a zone.
struct DRCGainType
{
    float ADRCGain;       ///< Safe over Short, from 1.0
    float darkBoostGain;  ///< Long over Safe, from 1.0
};
TUNING_RECORD(DRCGainType)
    MEMBER(ADRCGain)
    MEMBER(darkBoostGain)
TUNING_RECORD_END

/// Zone of the lux index.
struct DRCGainTriggerSystemEndLevelType
{
    StartEndType triggerLux;
    DRCGainType  triggerData;
};
TUNING_RECORD(DRCGainTriggerSystemEndLevelType)
    MEMBER(triggerLux)
    MEMBER(triggerData)
TUNING_RECORD_END
static_assert(sizeof(DRCGainTriggerSystemEndLevelType) == sizeof(StartEndType) + sizeof(DRCGainType),
              "a leaf is read as a range followed at once by the core record");

/// Tuned gains over the lux index.
struct FixedDRCTriggerType
{
    UINT32                            triggerSystemCount;  ///< at least 1
    UINT32                            triggerSystemID;
    DRCGainTriggerSystemEndLevelType* triggerSystem;       ///< in ascending trigger
};
TUNING_RECORD(FixedDRCTriggerType)
    VARIABLE(triggerSystem)
TUNING_RECORD_END

/// The gains of one kind of snapshot.
struct ExposureConfigType
{
    DRCConfigMethodType        method;
    BaseExposureConstraintType baseExposureConstraints;  ///< with DRCFromBaseExposureWithConstraints
    FixedDRCTriggerType        fixedDRC;                 ///< with FixedDRCFromTuning
};
TUNING_RECORD(ExposureConfigType)
    MEMBER(method)
    MEMBER(baseExposureConstraints)
    MEMBER(fixedDRC)
TUNING_RECORD_END

/// A snapshot outside a bracket.
struct NonBracketingExposureType
{
    BaseExposureType   baseExposure;
    ExposureConfigType DRCConfig;
};
TUNING_RECORD(NonBracketingExposureType)
    MEMBER(baseExposure)
    MEMBER(DRCConfig)
TUNING_RECORD_END

/// The frames of a bracket.
struct BracketingExposureType
{
    BaseExposureType   baseExposure;
    ExposureConfigType zeroEVDRCConfig;
    ExposureConfigType positiveEVDRCConfig;
    ExposureConfigType negativeEVDRCConfig;
    BOOL               bOverrideEVPositive;  ///< take the EV of frames above 0 from the trigger bank
    BOOL               bOverrideEVNegative;  ///< take the EV of frames below 0 from the trigger bank
};
TUNING_RECORD(BracketingExposureType)
    MEMBER(baseExposure)
    MEMBER(zeroEVDRCConfig)
    MEMBER(positiveEVDRCConfig)
    MEMBER(negativeEVDRCConfig)
    BOOLEAN(bOverrideEVPositive)
    BOOLEAN(bOverrideEVNegative)
TUNING_RECORD_END

/// Settings of snapshots.
struct SnapshotTuningType
{
    BOOL                      bApplyBracketingOnTopOfPreviewEV;
    BOOL                      bApplyDRCWhenBracketing;
    NonBracketingExposureType nonBracketingConfig;
    BracketingExposureType    bracketingConfig;
};
TUNING_RECORD(SnapshotTuningType)
    BOOLEAN(bApplyBracketingOnTopOfPreviewEV)
    BOOLEAN(bApplyDRCWhenBracketing)
    MEMBER(nonBracketingConfig)
    MEMBER(bracketingConfig)
TUNING_RECORD_END

/// One set of snapshot settings of the bank.
struct DBSnapshotPayload
{
    INT32              dataID;       ///< from 1; 0 stands for the entry that the context selects
    CHAR*              description;  ///< name in logs
    SnapshotTuningType value;
};
TUNING_RECORD(DBSnapshotPayload)
    MEMBER(dataID)
    MEMBER(description)
    MEMBER(value)
TUNING_RECORD_END

BANK_MODULE(KIRODBSnapshotType, DBSnapshotPayload)

} // namespace kirodbsnapshot
