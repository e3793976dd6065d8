/// @file
/// Use of what other analyses know about the scene.
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
    BOOLEAN(enable)
TUNING_RECORD_END

/// What draws the eye in the scene.
struct SaliencyInfoType
{
    BOOL enable;
};
TUNING_RECORD(SaliencyInfoType)
    BOOLEAN(enable)
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
    MODULE_HEADER
    MEMBER(depthInfo)
    MEMBER(saliencyInfo)
TUNING_RECORD_END

} // namespace kiroadvancedinfo
