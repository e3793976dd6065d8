/// @file
/// Tuning module kiroconvergence: step grid, meeting of DRC and stretch, smooth changes of the DRC gains.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kiroconvergence
{

/// Which of DRC and stretch moves the Short exposure when both want it below Safe.
enum AECConvDRCStretchAggType : INT32
{
    AggTypeDRCPrefParallel        = 0,  ///< the larger of the two
    AggTypeCascade                = 1,  ///< both, one on top of the other
    AggTypeDisableDRCInPredictive = 2,  ///< the stretch
    Res                           = 3   ///< reserved
};
TUNING_ENUM(AECConvDRCStretchAggType)
    ENUMERATOR(AggTypeDRCPrefParallel)
    ENUMERATOR(AggTypeCascade)
    ENUMERATOR(AggTypeDisableDRCInPredictive)
    ENUMERATOR(Res)
TUNING_ENUM_END

/// A span of DRC gains that is crossed in steps with hysteresis. Gains are ratios of two exposures, from 1.0.
struct SmoothNodeType
{
    float minNodeDRCGain;       ///< lower end of the node
    float maxNodeDRCGain;       ///< upper end of the node, the lower end of the next
    float nodeSize;             ///< step of the held gain; 0 follows the target at once
    float triggerPointUp;       ///< distance of the target above the held gain that starts a rise
    float triggerPointDown;     ///< distance of the target below the held gain that starts a fall
    float multiplierIncrement;  ///< change of the gain per frame within a step
};
TUNING_RECORD(SmoothNodeType)
    MEMBER(minNodeDRCGain)
    MEMBER(maxNodeDRCGain)
    MEMBER(nodeSize)
    MEMBER(triggerPointUp)
    MEMBER(triggerPointDown)
    MEMBER(multiplierIncrement)
TUNING_RECORD_END

/// Holds a DRC gain on nodes and ramps between them.
struct DRCSmoothType
{
    BOOL            enableSmoothDRC;
    UINT32          nodesCount;       ///< at least 1 when enabled
    UINT32          nodesID;
    SmoothNodeType* nodes;            ///< in ascending gain
};
TUNING_RECORD(DRCSmoothType)
    BOOLEAN(enableSmoothDRC)
    VARIABLE(nodes)
TUNING_RECORD_END

/// The module.
struct KIROConvergenceType
{
    UINT32                   SymbolTableID;
    module_versionStruct     module_version;
    parameter_versionStruct  parameter_version;
    UINT32                   moduleID;         ///< identifies the module to the tools
    float                    unitStepSize;     ///< smallest move and grid of the output, steps of 3 percent, (0, 1]
    AECConvDRCStretchAggType drcStretchAgg;
    DRCSmoothType            smoothADRC;       ///< of Safe over Short
    DRCSmoothType            smoothDarkBoost;  ///< of Long over Safe
};
TUNING_RECORD(KIROConvergenceType)
    MODULE_HEADER
    MEMBER(moduleID)
    MEMBER(unitStepSize)
    MEMBER(drcStretchAgg)
    MEMBER(smoothADRC)
    MEMBER(smoothDarkBoost)
TUNING_RECORD_END

} // namespace kiroconvergence
