/// @file
/// Tuning module kiroadvancedinfo.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kiroadvancedinfo
{

/// Distance of the object in focus.
struct DepthInfoType
{
    BOOL enable;
};
TUNING_RECORD(DepthInfoType)
    BOOLEAN(enable,
        .meaning = "Told in the system log of each frame beside the distance of the object in focus; nothing else "
                   "reads it.",
        .start = "false")
TUNING_RECORD_END

/// What draws the eye in the scene.
struct SaliencyInfoType
{
    BOOL enable;
};
TUNING_RECORD(SaliencyInfoType)
    BOOLEAN(enable,
        .meaning = "Told in the trace of each frame beside the saliency value; nothing else reads it.",
        .start = "false")
TUNING_RECORD_END

/// The module's record.
struct KIROAdvancedInfoType
{
    UINT32                  SymbolTableID;
    module_versionStruct    module_version;
    parameter_versionStruct parameter_version;
    DepthInfoType           depthInfo;
    SaliencyInfoType        saliencyInfo;
};
TUNING_RECORD(KIROAdvancedInfoType)
    MODULE_HEADER("Use of what other analyses know about the scene.")
    MEMBER(depthInfo,
        .meaning = "Use of the distance of the object in focus.")
    MEMBER(saliencyInfo,
        .meaning = "Use of what draws the eye in the scene.")
TUNING_RECORD_END

} // namespace kiroadvancedinfo
