/// @file
/// Tuning module kiroflashsnapshot: statistics and lux index of a flash snapshot.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kiroflashsnapshot
{

/// Which statistics a flash snapshot relies on.
struct FlashSnapshotStatsControl
{
    BOOL   enableFullFlashStats;  ///< meter the frame under full flash
    UINT32 framesToSkip;          ///< frames from the change of current to valid statistics
};
TUNING_RECORD(FlashSnapshotStatsControl)
    BOOLEAN(enableFullFlashStats)
    MEMBER(framesToSkip)
TUNING_RECORD_END

/// Where the lux index under full flash comes from.
struct FlashSnapshotLux
{
    INT32                 lumaHighDataID;  ///< entry of BankIDSceneAnalyzer: luma under full flash
    INT32                 defaultTarget;   ///< luma that leaves the lux index as it is
    KIROExposureSelection exposureType;    ///< exposure without LED that the index starts from
};
TUNING_RECORD(FlashSnapshotLux)
    MEMBER(lumaHighDataID)
    MEMBER(defaultTarget)
    MEMBER(exposureType)
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
    MODULE_HEADER
    MEMBER(statsControl)
    MEMBER(flashSnapshotLux)
TUNING_RECORD_END

} // namespace kiroflashsnapshot
