/// @file
/// Tuning module kiroflashsnapshot.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kiroflashsnapshot
{

/// Which statistics a flash snapshot relies on.
struct FlashSnapshotStatsControl
{
    BOOL   enableFullFlashStats;
    UINT32 framesToSkip;
};
TUNING_RECORD(FlashSnapshotStatsControl)
    BOOLEAN(enableFullFlashStats,
        .meaning = "Meant to meter a frame under full flash instead of predicting it. Read by no stage.",
        .acts = Acts::Never)
    MEMBER(framesToSkip,
        .meaning = "Frames meant to be waited from the change of current to valid statistics. Read by no stage.",
        .unit = Unit::Frames, .range = AtLeast(0), .acts = Acts::Never)
TUNING_RECORD_END

/// Where the lux index under full flash comes from.
struct FlashSnapshotLux
{
    INT32                 lumaHighDataID;
    INT32                 defaultTarget;
    KIROExposureSelection exposureType;
};
TUNING_RECORD(FlashSnapshotLux)
    MEMBER(lumaHighDataID,
        .meaning = "Entry of the analyzers' bank whose start holds the luma expected under full flash. Where there is "
                   "no such entry, or its start is not above 0, the lux index of a flash picture stays that of the "
                   "frame without LED.",
        .unit = Unit::ID, .range = {1, 999}, .odd = {0, 999}, .start = "64", .acts = Acts::NextAnalysis,
        .refers = {ReadsBank(BankIDSceneAnalyzer).Unless(0)})
    MEMBER(defaultTarget,
        .meaning = "Luma under full flash at which the picture's lux index is that of the frame without LED. Doubled, "
                   "the picture counts as one stop darker, 23.4 steps of the index; 0 leaves the index as it is.",
        .unit = Unit::Luma, .range = {1, 255}, .odd = AtLeast(0), .start = "46", .acts = Acts::NextAnalysis)
    MEMBER(exposureType,
        .meaning = "Which exposure of the frame without LED the lux index of a flash picture starts from; "
                   "ExposureNone stands for long.",
        .start = "ExposureSafe", .acts = Acts::NextAnalysis)
TUNING_RECORD_END

/// The module.
struct KIROFlashSnapshotType
{
    UINT32                    SymbolTableID;
    module_versionStruct      module_version;
    parameter_versionStruct   parameter_version;
    FlashSnapshotStatsControl statsControl;
    FlashSnapshotLux          flashSnapshotLux;
};
TUNING_RECORD(KIROFlashSnapshotType)
    MODULE_HEADER("Statistics and lux index of a flash snapshot.")
    MEMBER(statsControl,
        .meaning = "Which statistics a flash picture is meant to rely on. Read by no stage.",
        .acts = Acts::Never)
    MEMBER(flashSnapshotLux,
        .meaning = "Where the lux index of a flash picture comes from.",
        .acts = Acts::NextAnalysis)
TUNING_RECORD_END

} // namespace kiroflashsnapshot
