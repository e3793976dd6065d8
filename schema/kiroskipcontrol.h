/// @file
/// Tuning module kiroskipcontrol: on which frames the control layer may leave auto-exposure out.
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
    BOOL                    DFSEnable;                ///< dynamic frame skipping
    BOOL                    SkipOnlyWhenAECSettled;
    BOOL                    SkipWhenMaster;           ///< also on the master of a camera group
    BOOL                    SkipWhenSlave;            ///< also on a slave of a camera group
    UINT32                  ExpHistoryBufferSize;     ///< frames
    float                   ExpSettleTolerance;       ///< steps of 3 percent
    UINT32                  ExpSettleCountThreshold;  ///< frames within tolerance before skipping starts
    UINT32                  FrameSkipNum;             ///< frames left out after each one that runs
};
TUNING_RECORD(KIROSkipControlType)
    MODULE_HEADER
    BOOLEAN(DFSEnable)
    BOOLEAN(SkipOnlyWhenAECSettled)
    BOOLEAN(SkipWhenMaster)
    BOOLEAN(SkipWhenSlave)
    MEMBER(ExpHistoryBufferSize)
    MEMBER(ExpSettleTolerance)
    MEMBER(ExpSettleCountThreshold)
    MEMBER(FrameSkipNum)
TUNING_RECORD_END

} // namespace kiroskipcontrol
