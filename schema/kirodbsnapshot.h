/// @file
/// Tuning module kirodbsnapshot.
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
    ENUMERATOR(NoDRC, "The picture has no gains: short, safe and long are the same.")
    ENUMERATOR(DRCFromBaseExposureWithConstraints,
        "The picture keeps the preview's gains, up to baseExposureConstraints.")
    ENUMERATOR(FixedDRCFromTuning,
        "The gains are those of fixedDRC at the present lux index, whatever the preview has.")
TUNING_ENUM_END

/// Which values of the preview a snapshot starts from.
enum BaseExposureSourceType : INT32
{
    BaseExposureConverged = 0,
    BaseExposureTarget    = 1
};
TUNING_ENUM(BaseExposureSourceType)
    ENUMERATOR(BaseExposureConverged, "The exposure that convergence has reached; the user's EV is in it.")
    ENUMERATOR(BaseExposureTarget,
        "The metered target, which jumps with the scene and which the bracket lock can hold; the user's EV is not in "
        "it.")
TUNING_ENUM_END

/// The exposure that a snapshot starts from.
struct BaseExposureType
{
    BaseExposureSourceType source;
    KIROExposureSelection  exposureType;
};
TUNING_RECORD(BaseExposureType)
    MEMBER(source,
        .meaning = "Whether a picture is built around what the preview has reached or around what metering wants. "
                   "Only that of brackets is read.",
        .start = "BaseExposureTarget")
    MEMBER(exposureType,
        .meaning = "Which of the three exposures a picture is built around; ExposureNone stands for safe. Only that "
                   "of brackets is read.",
        .start = "ExposureSafe")
TUNING_RECORD_END

/// Upper limits of the gains that the base exposure brings along. Gains are ratios of two exposures, from 1.0.
struct BaseExposureConstraintType
{
    float maxADRCGain;
    float maxDarkBoostGain;
};
TUNING_RECORD(BaseExposureConstraintType)
    MEMBER(maxADRCGain,
        .meaning = "Most that the picture takes over of the preview's ADRC gain. Doubled, up to one stop more of the "
                   "highlights is kept where the preview keeps it; 1.0 or less takes over none.",
        .unit = Unit::Gain, .range = AtLeast(1), .odd = AtLeast(0), .start = "3.0",
        .when = "method=DRCFromBaseExposureWithConstraints & bApplyDRCWhenBracketing")
    MEMBER(maxDarkBoostGain,
        .meaning = "Most that the picture takes over of the preview's dark boost. Doubled, shadows are lifted by up "
                   "to one stop more where the preview lifts them; 1.0 or less takes over none.",
        .unit = Unit::Gain, .range = AtLeast(1), .odd = AtLeast(0), .start = "2.0",
        .when = "method=DRCFromBaseExposureWithConstraints & bApplyDRCWhenBracketing")
TUNING_RECORD_END

/// The gains of a zone.
struct DRCGainType
{
    float ADRCGain;
    float darkBoostGain;
};
TUNING_RECORD(DRCGainType)
    MEMBER(ADRCGain,
        .meaning = "Safe over short in this zone. Doubled, short gets half the exposure and keeps highlights that are "
                   "a stop brighter.",
        .unit = Unit::Gain, .range = AtLeast(1), .odd = AtLeast(0), .start = "1.6")
    MEMBER(darkBoostGain,
        .meaning = "Long over safe in this zone. Doubled, long gets twice the exposure and lifts shadows by a stop "
                   "more.",
        .unit = Unit::Gain, .range = AtLeast(1), .odd = AtLeast(0), .start = "1.2")
TUNING_RECORD_END

/// Zone of the lux index.
struct DRCGainTriggerSystemEndLevelType
{
    StartEndType triggerLux;
    DRCGainType  triggerData;
};
TUNING_RECORD(DRCGainTriggerSystemEndLevelType)
    MEMBER(triggerLux,
        .meaning = "Range of the lux index in which the gains hold. Between two zones gains are interpolated, beyond "
                   "the first and the last theirs hold.",
        .unit = Unit::LuxIndex, .range = AtLeast(0), .odd = Any)
    MEMBER(triggerData,
        .meaning = "The gains of the zone.")
TUNING_RECORD_END
static_assert(sizeof(DRCGainTriggerSystemEndLevelType) == sizeof(StartEndType) + sizeof(DRCGainType),
              "a leaf is read as a range followed at once by the core record");

/// Tuned gains over the lux index.
struct FixedDRCTriggerType
{
    UINT32                            triggerSystemCount;
    UINT32                            triggerSystemID;
    DRCGainTriggerSystemEndLevelType* triggerSystem;
};
TUNING_RECORD(FixedDRCTriggerType)
    VARIABLE(triggerSystem,
        .meaning = "Zones over the lux index, in rising order. Without zones a bracket has no gains, and a host that "
                   "asks the library gets zeros.",
        .entries = AtLeast(0))
TUNING_RECORD_END

/// The gains of one kind of snapshot.
struct ExposureConfigType
{
    DRCConfigMethodType        method;
    BaseExposureConstraintType baseExposureConstraints;
    FixedDRCTriggerType        fixedDRC;
};
TUNING_RECORD(ExposureConfigType)
    MEMBER(method,
        .meaning = "Where the gains of this kind of picture come from. Only that of brackets is read; a host that "
                   "asks the library gets the gains of fixedDRC whatever it says.",
        .start = "FixedDRCFromTuning", .when = "bApplyDRCWhenBracketing")
    MEMBER(baseExposureConstraints,
        .meaning = "Limits of the preview's gains, with DRCFromBaseExposureWithConstraints.",
        .when = "method=DRCFromBaseExposureWithConstraints & bApplyDRCWhenBracketing")
    MEMBER(fixedDRC,
        .meaning = "Gains over the lux index, with FixedDRCFromTuning.")
TUNING_RECORD_END

/// A snapshot outside a bracket.
struct NonBracketingExposureType
{
    BaseExposureType   baseExposure;
    ExposureConfigType DRCConfig;
};
TUNING_RECORD(NonBracketingExposureType)
    MEMBER(baseExposure,
        .meaning = "The exposure that a picture outside a bracket is meant to be built around. Read by no stage.",
        .acts = Acts::Never)
    MEMBER(DRCConfig,
        .meaning = "Gains of a picture outside a bracket. The library answers a host with its fixedDRC; method and "
                   "limits are read by no stage.")
TUNING_RECORD_END

/// The frames of a bracket.
struct BracketingExposureType
{
    BaseExposureType   baseExposure;
    ExposureConfigType zeroEVDRCConfig;
    ExposureConfigType positiveEVDRCConfig;
    ExposureConfigType negativeEVDRCConfig;
    BOOL               bOverrideEVPositive;
    BOOL               bOverrideEVNegative;
};
TUNING_RECORD(BracketingExposureType)
    MEMBER(baseExposure,
        .meaning = "The exposure that the pictures of a bracket are built around.")
    MEMBER(zeroEVDRCConfig,
        .meaning = "Gains of the pictures at EV 0.")
    MEMBER(positiveEVDRCConfig,
        .meaning = "Gains of the pictures above EV 0, whose highlights need saving most.")
    MEMBER(negativeEVDRCConfig,
        .meaning = "Gains of the pictures below EV 0, whose shadows need lifting most.")
    BOOLEAN(bOverrideEVPositive,
        .meaning = "Meant to take the EV of pictures above EV 0 from TriggerCtrlEVPositiveOverride of the trigger "
                   "bank. Read by no stage.",
        .start = "false", .acts = Acts::Never)
    BOOLEAN(bOverrideEVNegative,
        .meaning = "Meant to take the EV of pictures below EV 0 from TriggerCtrlEVNegativeOverride of the trigger "
                   "bank. Read by no stage.",
        .start = "false", .acts = Acts::Never)
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
    BOOLEAN(bApplyBracketingOnTopOfPreviewEV,
        .meaning = "On, the EVs of a bracket count from the exposure with the user's EV in it; off, the user's EV is "
                   "left out.",
        .start = "true")
    BOOLEAN(bApplyDRCWhenBracketing,
        .meaning = "On, the pictures of a bracket have the gains that bracketingConfig gives; off, they have none, "
                   "and short, safe and long are the same.",
        .start = "true")
    MEMBER(nonBracketingConfig,
        .meaning = "Pictures outside a bracket.")
    MEMBER(bracketingConfig,
        .meaning = "Pictures of a bracket.")
TUNING_RECORD_END

/// One set of snapshot settings of the bank.
struct DBSnapshotPayload
{
    INT32              dataID;
    CHAR*              description;
    SnapshotTuningType value;
};
TUNING_RECORD(DBSnapshotPayload)
    MEMBER(dataID,
        .meaning = "Number by which the priority map of the bank, and a host, choose these settings; of entries with "
                   "the same number the last one counts. An entry numbered 0 can only be the fallback at the end of "
                   "data.",
        .unit = Unit::ID, .range = AtLeast(1), .odd = AtLeast(0), .start = "1", .acts = Acts::NewTuning,
        .refers = {DefinesBank(BankIDSnapshot)})
    MEMBER(description,
        .meaning = "Name of the settings, for people. Read by no stage.",
        .acts = Acts::Never)
    MEMBER(value,
        .meaning = "The settings.")
TUNING_RECORD_END

BANK_MODULE(KIRODBSnapshotType, DBSnapshotPayload,
    "The bank of snapshot settings, base exposure and DRC gains of each kind of snapshot.",
    .meaning = "The sets of settings, at most 1000; the last one holds where no priority applies. Without any, a "
               "bracket is built around the safe exposure that convergence has reached, and has no gains.",
    .entries = {0, 1000})

} // namespace kirodbsnapshot
