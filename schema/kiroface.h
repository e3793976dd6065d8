/// @file
/// Metering of faces. The host reads this, the core does not.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kiroface
{

/// Which faces count.
struct FaceROIOperationType
{
    BOOL   enable;
    UINT32 maxFaceCount;    ///< the largest faces first
    float  minSizeRatio;    ///< least width of a face as a fraction of the frame's, 0 to 1
    UINT32 lostFrameCount;  ///< frames for which a face that is no longer found still counts
};
TUNING_RECORD(FaceROIOperationType)
    BOOLEAN(enable)
    MEMBER(maxFaceCount)
    MEMBER(minSizeRatio)
    MEMBER(lostFrameCount)
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
    MODULE_HEADER
    MEMBER(faceROIOperation)
    MEMBER(statsROIProcess)
TUNING_RECORD_END

} // namespace kiroface
