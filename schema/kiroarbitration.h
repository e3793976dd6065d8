/// @file
/// Tuning module kiroarbitration.
#pragma once

#include "schema/kirodbarbitrationtable.h"

namespace kiroarbitration
{

using kirodbarbitrationtable::ExposureIncPrioType;

/// Sign of a bracket's EV.
enum EVOffsetType : INT32
{
    EVZero  = 0,
    EVPlus  = 1,
    EVMinus = 2
};
TUNING_ENUM(EVOffsetType)
    ENUMERATOR(EVZero, "Pictures with a bracket EV of 0, to which all pictures outside brackets belong.")
    ENUMERATOR(EVPlus, "Pictures with a bracket EV above 0.")
    ENUMERATOR(EVMinus, "Pictures with a bracket EV below 0.")
TUNING_ENUM_END

/// Which frames a reference is looked for in.
enum FrameType : INT32
{
    TypeSnapshot = 0,
    TypePreview  = 1
};
TUNING_ENUM(FrameType)
    ENUMERATOR(TypeSnapshot, "The reference is one of the last ten pictures, chosen by the settings of snapshot.")
    ENUMERATOR(TypePreview, "The reference is a past frame of the running mode, chosen by the settings of preview.")
TUNING_ENUM_END

/// How a snapshot frame is found.
enum class SnapshotSearchMethod : INT32
{
    SearchEVType  = 0,
    SearchEVUIVal = 1,
    SearchOffset  = 2
};
TUNING_ENUM(SnapshotSearchMethod)
    ENUMERATOR(SearchEVType, "The newest picture whose bracket EV has the sign of eVType.")
    ENUMERATOR(SearchEVUIVal, "The newest picture whose bracket EV is exactly value, in EV steps.")
    ENUMERATOR(SearchOffset,
        "The newest picture that is at least value frames old, or the oldest one stored; none if value is not below "
        "the number of stored pictures.")
TUNING_ENUM_END

/// How a preview frame is found.
enum class PreviewSearchMethod : INT32
{
    SearchLastNonSnapshotRequest = 0,
    SearchOffset                 = 1
};
TUNING_ENUM(PreviewSearchMethod)
    ENUMERATOR(SearchLastNonSnapshotRequest,
        "The last frame before the present one that was no picture, also one that pictures have pushed out of the "
        "history; none while the history holds fewer than two frames.")
    ENUMERATOR(SearchOffset, "The frame that lies value frames back, be it a picture or not.")
TUNING_ENUM_END

/// Where the other end of the way from the reference lies.
enum EndKneePointType : INT32
{
    EndFirstTableKneePoint = 0,
    EndLastTableKneePoint  = 1,
    EndManualSettings      = 2
};
TUNING_ENUM(EndKneePointType)
    ENUMERATOR(EndFirstTableKneePoint,
        "The way ends at the first knee of the exposure table tableID, for exposures below the reference.")
    ENUMERATOR(EndLastTableKneePoint,
        "The way ends at the last knee of the exposure table tableID, for exposures above the reference.")
    ENUMERATOR(EndManualSettings,
        "The way ends at manualGain and manualTime, for exposures between these and the reference.")
TUNING_ENUM_END

/// How an EV compensation is split into gain and time.
struct EVArbitrationType
{
    BOOL                enableEVArbitration;
    ExposureIncPrioType quantityToModifyFirst;
};
TUNING_RECORD(EVArbitrationType)
    BOOLEAN(enableEVArbitration,
        .meaning = "Would split an EV compensation into gain and time by a rule of its own; read by no stage.",
        .acts = Acts::Never)
    MEMBER(quantityToModifyFirst,
        .meaning = "Quantity that an EV compensation would change first; read by no stage.",
        .acts = Acts::Never)
TUNING_RECORD_END

/// Relation of gain and ISO.
struct ISOSettingType
{
    float ISO100Gain;
};
TUNING_RECORD(ISOSettingType)
    MEMBER(ISO100Gain,
        .meaning = "Gain that would stand for ISO 100; read by no stage.",
        .unit = Unit::Gain, .range = AtLeast(0), .acts = Acts::Never)
TUNING_RECORD_END

/// Chooses a snapshot frame.
struct SnapshotFrameSelectionType
{
    SnapshotSearchMethod searchMethod;
    EVOffsetType         eVType;
    INT32                value;
};
TUNING_RECORD(SnapshotFrameSelectionType)
    MEMBER(searchMethod,
        .meaning = "Selects how the picture is found: by the sign of its EV, by its EV, or by its age.",
        .start = "SearchEVType")
    MEMBER(eVType,
        .meaning = "Sign of the bracket EV that the picture must have; read with SearchEVType.",
        .start = "EVZero", .when = "searchMethod=SearchEVType")
    MEMBER(value,
        .meaning = "With SearchEVUIVal, bracket EV of the picture in EV steps; with SearchOffset, its least age in "
                   "frames, 0 to 9, since it must be below the number of stored pictures, of which there are ten at "
                   "most.",
        .unit = Unit::Varies, .range = Any, .start = "0", .when = "searchMethod=SearchEVUIVal|SearchOffset")
TUNING_RECORD_END

/// Chooses a preview frame.
struct PreviewFrameSelectionType
{
    PreviewSearchMethod searchMethod;
    INT32               value;
};
TUNING_RECORD(PreviewFrameSelectionType)
    MEMBER(searchMethod,
        .meaning = "Selects how the frame is found: the last one that was no picture, or one a given number of frames "
                   "back.",
        .start = "SearchLastNonSnapshotRequest")
    MEMBER(value,
        .meaning = "Frames back with SearchOffset, 1 is the previous frame and 0 the present one; a frame older than "
                   "the history counts as the oldest in it. Above 10 no reference is found.",
        .unit = Unit::Frames, .range = {1, 10}, .odd = {0, 10}, .start = "1", .when = "searchMethod=SearchOffset")
TUNING_RECORD_END

/// Chooses a frame of the history.
struct FrameSelectionType
{
    FrameType                  frameType;
    SnapshotFrameSelectionType snapshot;
    PreviewFrameSelectionType  preview;
};
TUNING_RECORD(FrameSelectionType)
    MEMBER(frameType,
        .meaning = "Selects whether the reference is a stored picture or a past frame of the running mode.",
        .start = "TypePreview")
    MEMBER(snapshot,
        .meaning = "Which stored picture is the reference; read with TypeSnapshot.",
        .when = "frameType=TypeSnapshot")
    MEMBER(preview,
        .meaning = "Which past frame is the reference; read with TypePreview.",
        .when = "frameType=TypePreview")
TUNING_RECORD_END

/// Gain and time to keep: tuned, or those of a frame.
struct ReferenceSourceType
{
    BOOL                  bUseStaticTuning;
    float                 staticTuningGain;
    UINT32                staticTuningTime;
    FrameSelectionType    frameSelection;
    KIROExposureSelection frameExposureTypeSelection;
};
TUNING_RECORD(ReferenceSourceType)
    BOOLEAN(bUseStaticTuning,
        .meaning = "Switched on, the reference is staticTuningGain and staticTuningTime; off, it is gain and time of "
                   "a past frame or picture.",
        .start = "false")
    MEMBER(staticTuningGain,
        .meaning = "Gain of a tuned reference, read with bUseStaticTuning. Exposures near it for which time gives way "
                   "first keep this gain: doubled, they get half the time.",
        .unit = Unit::Gain, .range = Above(0), .when = "bUseStaticTuning")
    MEMBER(staticTuningTime,
        .meaning = "Time of a tuned reference, read with bUseStaticTuning. Exposures near it for which gain gives way "
                   "first keep this time: doubled, they blur twice as much at half the gain.",
        .unit = Unit::Nanoseconds, .range = AtLeast(1), .when = "bUseStaticTuning")
    MEMBER(frameSelection,
        .meaning = "Which past frame or picture is the reference; read without bUseStaticTuning. Without such a frame "
                   "the control does not apply.",
        .when = "bUseStaticTuning=false")
    MEMBER(frameExposureTypeSelection,
        .meaning = "Which of the frame's exposures gives gain and time; all but short and safe mean long. Read "
                   "without bUseStaticTuning.",
        .start = "ExposureSafe", .when = "bUseStaticTuning=false")
TUNING_RECORD_END

/// Where gain and time go as the exposure leaves that of the reference.
struct ArbitrationEndType
{
    EndKneePointType    endSelection;
    INT32               tableID;
    ExposureIncPrioType quantityToModifyFirst;
    float               manualGain;
    UINT64              manualTime;
};
TUNING_RECORD(ArbitrationEndType)
    MEMBER(endSelection,
        .meaning = "Selects the other end of the way on which gain and time leave the reference. An exposure beyond "
                   "the end, or on the other side of the reference, is left as it was split before.")
    MEMBER(tableID,
        .meaning = "Exposure table whose first or last knee is the end of the way, 0 for the one that the context "
                   "selects; without it the control does not apply.",
        .unit = Unit::ID, .range = AtLeast(0), .odd = Any, .start = "1",
        .refers = {ReadsBank(BankIDArbitrationTable).Unless(0)},
        .when = "endSelection=EndFirstTableKneePoint|EndLastTableKneePoint")
    MEMBER(quantityToModifyFirst,
        .meaning = "Quantity that leaves the reference first, upwards and downwards; the other one is kept until this "
                   "one has reached the end. AECExpIncMax acts like AECExpIncTime.",
        .start = "AECExpIncGain")
    MEMBER(manualGain,
        .meaning = "Gain at the end of the way; read with EndManualSettings. Doubled, the way upwards reaches "
                   "exposures a stop brighter, the one downwards stops a stop earlier.",
        .unit = Unit::Gain, .range = Above(0), .when = "endSelection=EndManualSettings")
    MEMBER(manualTime,
        .meaning = "Time at the end of the way; read with EndManualSettings. Doubled, the way upwards reaches "
                   "exposures a stop brighter, the one downwards stops a stop earlier.",
        .unit = Unit::Nanoseconds, .range = AtLeast(1), .when = "endSelection=EndManualSettings")
TUNING_RECORD_END

/// One reference that a control of the order list can name.
struct ArbitrationReferenceType
{
    INT32               dataID;
    CHAR*               description;
    BOOL                bEnableOnlyForBracketedSnapshot;
    EVOffsetType        bracketedEVType;
    ReferenceSourceType referenceSource;
    ArbitrationEndType  endSettings;
};
TUNING_RECORD(ArbitrationReferenceType)
    MEMBER(dataID,
        .meaning = "Number by which a control ArbCtrlMatchHistory of the order names this reference; of equal ones "
                   "the first applies.",
        .unit = Unit::ID, .range = AtLeast(1), .odd = Any, .start = "1", .refers = {Defines(Thing::HistoryReference)})
    MEMBER(description,
        .meaning = "Name of the reference in logs.",
        .acts = Acts::Never)
    BOOLEAN(bEnableOnlyForBracketedSnapshot,
        .meaning = "Switched on, the reference applies only to pictures of a bracket whose EV has the sign of "
                   "bracketedEVType; off, to every frame.",
        .start = "true")
    MEMBER(bracketedEVType,
        .meaning = "Sign of the EV of the pictures that the reference applies to; read with "
                   "bEnableOnlyForBracketedSnapshot.",
        .when = "bEnableOnlyForBracketedSnapshot")
    MEMBER(referenceSource,
        .meaning = "Gain and time to be kept: tuned ones, or those of a past frame.")
    MEMBER(endSettings,
        .meaning = "Where gain and time go as the exposure leaves that of the reference.")
TUNING_RECORD_END

/// The module.
struct KIROArbitrationType
{
    UINT32                    SymbolTableID;
    module_versionStruct      module_version;
    parameter_versionStruct   parameter_version;
    UINT32                    moduleID;
    EVArbitrationType         EVArbitration;
    ISOSettingType            ISO;
    UINT32                    referenceArrayCount;
    UINT32                    referenceArrayID;
    ArbitrationReferenceType* referenceArray;
};
TUNING_RECORD(KIROArbitrationType)
    MODULE_HEADER("The reference frames whose gain and time a snapshot can keep, and settings around it.")
    MEMBER(moduleID,
        .meaning = "Identifies the module to the tools; read by no stage.",
        .unit = Unit::ID, .range = AtLeast(0), .acts = Acts::Never)
    MEMBER(EVArbitration,
        .meaning = "How an EV compensation would be split into gain and time; read by no stage.",
        .acts = Acts::Never)
    MEMBER(ISO,
        .meaning = "Relation of gain and ISO; read by no stage.",
        .acts = Acts::Never)
    VARIABLE(referenceArray,
        .meaning = "References that controls ArbCtrlMatchHistory can name; without the named one the control does not "
                   "apply.",
        .entries = AtLeast(0))
TUNING_RECORD_END

} // namespace kiroarbitration
