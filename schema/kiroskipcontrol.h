/// @file
/// Tuning module kiroskipcontrol.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kiroskipcontrol
{

/// The module.
struct KIROSkipControlType
{
    UINT32                  SymbolTableID;
    module_versionStruct    module_version;
    parameter_versionStruct parameter_version;
    BOOL                    DFSEnable;
    BOOL                    SkipOnlyWhenAECSettled;
    BOOL                    SkipWhenMaster;
    BOOL                    SkipWhenSlave;
    UINT32                  ExpHistoryBufferSize;
    float                   ExpSettleTolerance;
    UINT32                  ExpSettleCountThreshold;
    UINT32                  FrameSkipNum;
};
TUNING_RECORD(KIROSkipControlType)
    MODULE_HEADER("On which frames the control layer may leave auto-exposure out.")
    BOOLEAN(DFSEnable,
        .meaning = "Lets the control layer leave auto-exposure out of some frames; read by no stage of this library.",
        .acts = Acts::Never)
    BOOLEAN(SkipOnlyWhenAECSettled,
        .meaning = "Confines the leaving out to settled exposure; read by no stage of this library.",
        .acts = Acts::Never)
    BOOLEAN(SkipWhenMaster,
        .meaning = "Allows the leaving out on the master of a camera group; read by no stage of this library.",
        .acts = Acts::Never)
    BOOLEAN(SkipWhenSlave,
        .meaning = "Allows the leaving out on a slave of a camera group; read by no stage of this library.",
        .acts = Acts::Never)
    MEMBER(ExpHistoryBufferSize,
        .meaning = "Frames whose exposures the control layer compares; read by no stage of this library.",
        .unit = Unit::Frames, .range = AtLeast(0), .acts = Acts::Never)
    MEMBER(ExpSettleTolerance,
        .meaning = "Tolerance within which these exposures count as settled; read by no stage of this library.",
        .unit = Unit::LogStep, .range = Any, .acts = Acts::Never)
    MEMBER(ExpSettleCountThreshold,
        .meaning = "Frames within tolerance before frames are left out; read by no stage of this library.",
        .unit = Unit::Frames, .range = AtLeast(0), .acts = Acts::Never)
    MEMBER(FrameSkipNum,
        .meaning = "Frames left out after each one that runs; read by no stage of this library.",
        .unit = Unit::Frames, .range = AtLeast(0), .acts = Acts::Never)
TUNING_RECORD_END

} // namespace kiroskipcontrol
