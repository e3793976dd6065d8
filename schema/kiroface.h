/// @file
/// Tuning module kiroface.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kiroface
{

/// Which faces count.
struct FaceROIOperationType
{
    BOOL   enable;
    UINT32 maxFaceCount;
    float  minSizeRatio;
    UINT32 lostFrameCount;
};
TUNING_RECORD(FaceROIOperationType)
    BOOLEAN(enable,
        .meaning = "Lets faces become regions that are metered. Read by no stage; for the host.",
        .acts = Acts::Never)
    MEMBER(maxFaceCount,
        .meaning = "Most faces that count, the largest first. Read by no stage; for the host.",
        .unit = Unit::Count, .range = AtLeast(0), .acts = Acts::Never, .when = "enable")
    MEMBER(minSizeRatio,
        .meaning = "Least width of a face that counts, against the frame's. Read by no stage; for the host.",
        .unit = Unit::Share, .range = {0, 1}, .acts = Acts::Never, .when = "enable")
    MEMBER(lostFrameCount,
        .meaning = "Frames for which a face that is no longer found still counts. Read by no stage; for the host.",
        .unit = Unit::Frames, .range = AtLeast(0), .acts = Acts::Never, .when = "enable")
TUNING_RECORD_END

/// The module's record.
struct KIROFaceType
{
    UINT32                  SymbolTableID;
    module_versionStruct    module_version;
    parameter_versionStruct parameter_version;
    FaceROIOperationType    faceROIOperation;
    StatsROIProcessType     statsROIProcess;
};
TUNING_RECORD(KIROFaceType)
    MODULE_HEADER("Metering of faces. The host reads this, the core does not.")
    MEMBER(faceROIOperation,
        .meaning = "Which faces count. Read by no stage; for the host.",
        .acts = Acts::Never)
    MEMBER(statsROIProcess,
        .meaning = "How the regions of faces are turned into statistics regions. Read by no stage; for the host.",
        .acts = Acts::Never)
TUNING_RECORD_END

} // namespace kiroface
