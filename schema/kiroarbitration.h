/// @file
/// Tuning module kiroarbitration: the reference frames whose gain and time a snapshot can keep, and settings around it.
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
    ENUMERATOR(EVZero)
    ENUMERATOR(EVPlus)
    ENUMERATOR(EVMinus)
TUNING_ENUM_END

/// Which frames a reference is looked for in.
enum FrameType : INT32
{
    TypeSnapshot = 0,
    TypePreview  = 1
};
TUNING_ENUM(FrameType)
    ENUMERATOR(TypeSnapshot)
    ENUMERATOR(TypePreview)
TUNING_ENUM_END

/// How a snapshot frame is found.
enum class SnapshotSearchMethod : INT32
{
    SearchEVType  = 0,
    SearchEVUIVal = 1,
    SearchOffset  = 2
};
TUNING_ENUM(SnapshotSearchMethod)
    ENUMERATOR(SearchEVType)
    ENUMERATOR(SearchEVUIVal)
    ENUMERATOR(SearchOffset)
TUNING_ENUM_END

/// How a preview frame is found.
enum class PreviewSearchMethod : INT32
{
    SearchLastNonSnapshotRequest = 0,
    SearchOffset                 = 1
};
TUNING_ENUM(PreviewSearchMethod)
    ENUMERATOR(SearchLastNonSnapshotRequest)
    ENUMERATOR(SearchOffset)
TUNING_ENUM_END

/// Where the other end of the way from the reference lies.
enum EndKneePointType : INT32
{
    EndFirstTableKneePoint = 0,
    EndLastTableKneePoint  = 1,
    EndManualSettings      = 2
};
TUNING_ENUM(EndKneePointType)
    ENUMERATOR(EndFirstTableKneePoint)
    ENUMERATOR(EndLastTableKneePoint)
    ENUMERATOR(EndManualSettings)
TUNING_ENUM_END

/// How an EV compensation is split into gain and time.
struct EVArbitrationType
{
    BOOL                enableEVArbitration;
    ExposureIncPrioType quantityToModifyFirst;
};
TUNING_RECORD(EVArbitrationType)
    BOOLEAN(enableEVArbitration)
    MEMBER(quantityToModifyFirst)
TUNING_RECORD_END

/// Relation of gain and ISO.
struct ISOSettingType
{
    float ISO100Gain;  ///< linear gain of ISO 100, above 0
};
TUNING_RECORD(ISOSettingType)
    MEMBER(ISO100Gain)
TUNING_RECORD_END

/// Chooses a snapshot frame.
struct SnapshotFrameSelectionType
{
    SnapshotSearchMethod searchMethod;
    EVOffsetType         eVType;  ///< read with SearchEVType
    INT32                value;   ///< EV in steps with SearchEVUIVal, frames back with SearchOffset
};
TUNING_RECORD(SnapshotFrameSelectionType)
    MEMBER(searchMethod)
    MEMBER(eVType)
    MEMBER(value)
TUNING_RECORD_END

/// Chooses a preview frame.
struct PreviewFrameSelectionType
{
    PreviewSearchMethod searchMethod;
    INT32               value;  ///< frames back with SearchOffset, 1 is the previous frame
};
TUNING_RECORD(PreviewFrameSelectionType)
    MEMBER(searchMethod)
    MEMBER(value)
TUNING_RECORD_END

/// Chooses a frame of the history.
struct FrameSelectionType
{
    FrameType                  frameType;
    SnapshotFrameSelectionType snapshot;
    PreviewFrameSelectionType  preview;
};
TUNING_RECORD(FrameSelectionType)
    MEMBER(frameType)
    MEMBER(snapshot)
    MEMBER(preview)
TUNING_RECORD_END

/// Gain and time to keep: tuned, or those of a frame.
struct ReferenceSourceType
{
    BOOL                  bUseStaticTuning;
    float                 staticTuningGain;  ///< linear, 1.0 is unity
    UINT32                staticTuningTime;  ///< ns
    FrameSelectionType    frameSelection;
    KIROExposureSelection frameExposureTypeSelection;
};
TUNING_RECORD(ReferenceSourceType)
    BOOLEAN(bUseStaticTuning)
    MEMBER(staticTuningGain)
    MEMBER(staticTuningTime)
    MEMBER(frameSelection)
    MEMBER(frameExposureTypeSelection)
TUNING_RECORD_END

/// Where gain and time go as the exposure leaves that of the reference.
struct ArbitrationEndType
{
    EndKneePointType    endSelection;
    INT32               tableID;                ///< entry of BankIDArbitrationTable; read for the table's knees
    ExposureIncPrioType quantityToModifyFirst;
    float               manualGain;             ///< linear; read with EndManualSettings
    UINT64              manualTime;             ///< ns; read with EndManualSettings
};
TUNING_RECORD(ArbitrationEndType)
    MEMBER(endSelection)
    MEMBER(tableID)
    MEMBER(quantityToModifyFirst)
    MEMBER(manualGain)
    MEMBER(manualTime)
TUNING_RECORD_END

/// One reference that a control of the order list can name.
struct ArbitrationReferenceType
{
    INT32               dataID;                           ///< data ID of the control
    CHAR*               description;                      ///< name in logs
    BOOL                bEnableOnlyForBracketedSnapshot;
    EVOffsetType        bracketedEVType;                  ///< the bracket that it applies to
    ReferenceSourceType referenceSource;
    ArbitrationEndType  endSettings;
};
TUNING_RECORD(ArbitrationReferenceType)
    MEMBER(dataID)
    MEMBER(description)
    BOOLEAN(bEnableOnlyForBracketedSnapshot)
    MEMBER(bracketedEVType)
    MEMBER(referenceSource)
    MEMBER(endSettings)
TUNING_RECORD_END

/// The module.
struct KIROArbitrationType
{
    UINT32                    SymbolTableID;
    module_versionStruct      module_version;
    parameter_versionStruct   parameter_version;
    UINT32                    moduleID;  ///< identifies the module to the tools
    EVArbitrationType         EVArbitration;
    ISOSettingType            ISO;
    UINT32                    referenceArrayCount;
    UINT32                    referenceArrayID;
    ArbitrationReferenceType* referenceArray;
};
TUNING_RECORD(KIROArbitrationType)
    MODULE_HEADER
    MEMBER(moduleID)
    MEMBER(EVArbitration)
    MEMBER(ISO)
    VARIABLE(referenceArray)
TUNING_RECORD_END

} // namespace kiroarbitration
