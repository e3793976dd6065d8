/// @file
/// Tuning module kiroconvergence.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kiroconvergence
{

/// Which of DRC and stretch moves the Short exposure when both want it below Safe.
enum AECConvDRCStretchAggType : INT32
{
    AggTypeDRCPrefParallel        = 0,
    AggTypeCascade                = 1,
    AggTypeDisableDRCInPredictive = 2,
    Res                           = 3
};
TUNING_ENUM(AECConvDRCStretchAggType)
    ENUMERATOR(AggTypeDRCPrefParallel,
        "The exposure that lies further below Safe becomes Short: that of the DRC, with a predictive gain of 1, or "
        "that of the stretch, with its predictive gain divided by the DRC's gain and at least 1.")
    ENUMERATOR(AggTypeCascade,
        "Short takes the DRC's exposure lowered further by as much as the stretch lowers Short below Safe; the "
        "predictive gain stays.")
    ENUMERATOR(AggTypeDisableDRCInPredictive,
        "Short, Safe and the predictive gain stay as the stretch set them; the DRC's Short is not used.")
    ENUMERATOR(Res, "Reserved; acts like AggTypeDisableDRCInPredictive.")
TUNING_ENUM_END

/// A span of DRC gains that is crossed in steps with hysteresis. Gains are ratios of two exposures, from 1.0.
struct SmoothNodeType
{
    float minNodeDRCGain;
    float maxNodeDRCGain;
    float nodeSize;
    float triggerPointUp;
    float triggerPointDown;
    float multiplierIncrement;
};
TUNING_RECORD(SmoothNodeType)
    MEMBER(minNodeDRCGain,
        .meaning = "Lower end of the node, below which the held gain does not fall within it; that of the first node "
                   "is the gain at the start. A node joins the one before where this equals that node's "
                   "maxNodeDRCGain.",
        .unit = Unit::Factor, .range = AtLeast(1), .odd = Above(0), .start = "1.0", .when = "enableSmoothDRC")
    MEMBER(maxNodeDRCGain,
        .meaning = "Upper end of the node, above which the held gain does not rise within it; that of the last node "
                   "is the most that the gain can reach.",
        .unit = Unit::Factor, .range = AtLeast(1), .odd = Above(0), .start = "4.0", .when = "enableSmoothDRC")
    MEMBER(nodeSize,
        .meaning = "Step by which the held gain moves once triggered: twice the size makes half as many, coarser "
                   "steps, and from the sum of both trigger points on the gain hunts up and down. 0 follows the "
                   "target at once, as soon as it is a trigger distance away.",
        .unit = Unit::Factor, .range = AtLeast(0), .start = "0.25", .when = "enableSmoothDRC")
    MEMBER(triggerPointUp,
        .meaning = "Distance of the target above the held gain from which on the gain rises; twice the distance holds "
                   "the gain against twice the wander. Also the distance above the border at which this node takes "
                   "over from the one below.",
        .unit = Unit::Factor, .range = AtLeast(0), .start = "0.3", .when = "enableSmoothDRC")
    MEMBER(triggerPointDown,
        .meaning = "Distance of the target below the held gain from which on the gain falls; twice the distance holds "
                   "the gain against twice the wander. Also the distance below the border at which this node takes "
                   "over from the one above.",
        .unit = Unit::Factor, .range = AtLeast(0), .start = "0.3", .when = "enableSmoothDRC")
    MEMBER(multiplierIncrement,
        .meaning = "Change of the gain per frame while it ramps over a step, so that twice the increment ramps in "
                   "half the frames. A ramp with 0 never ends; with nodeSize 0 it is not read.",
        .unit = Unit::Factor, .range = Above(0), .odd = AtLeast(0), .start = "0.05", .when = "enableSmoothDRC")
TUNING_RECORD_END

/// Holds a DRC gain on nodes and ramps between them.
struct DRCSmoothType
{
    BOOL            enableSmoothDRC;
    UINT32          nodesCount;
    UINT32          nodesID;
    SmoothNodeType* nodes;
};
TUNING_RECORD(DRCSmoothType)
    BOOLEAN(enableSmoothDRC,
        .meaning = "Switched on, the gain that is aimed at is held on steps with hysteresis and ramps between them; "
                   "off, it is the metered one. Short or Long moves to it at drcSpeed either way.",
        .start = "true")
    VARIABLE(nodes,
        .meaning = "Spans of gain in ascending order, each with steps of its own; without any the metered gain is "
                   "aimed at, as if switched off.",
        .entries = AtLeast(1), .when = "enableSmoothDRC")
TUNING_RECORD_END

/// The module.
struct KIROConvergenceType
{
    UINT32                   SymbolTableID;
    module_versionStruct     module_version;
    parameter_versionStruct  parameter_version;
    UINT32                   moduleID;
    float                    unitStepSize;
    AECConvDRCStretchAggType drcStretchAgg;
    DRCSmoothType            smoothADRC;
    DRCSmoothType            smoothDarkBoost;
};
TUNING_RECORD(KIROConvergenceType)
    MODULE_HEADER("Step grid, meeting of DRC and stretch, smooth changes of the DRC gains.")
    MEMBER(moduleID,
        .meaning = "Identifies the module to the tools; the camera keeps it and does nothing with it.",
        .unit = Unit::ID, .range = AtLeast(0), .acts = Acts::Never)
    MEMBER(unitStepSize,
        .meaning = "Smallest move of a frame, and the grid on which stretches, and exposures within their limits, "
                   "lie: twice the size lands half as exactly and creeps over the last steps twice as fast. For 0 or "
                   "above 1 the grid is 0.5, while the smallest move is taken as it stands.",
        .unit = Unit::LogStep, .range = Above(0, 1), .odd = AtLeast(0), .start = "0.25")
    MEMBER(drcStretchAgg,
        .meaning = "Selects what becomes of Short when the DRC and the stretch both want it below Safe; where one of "
                   "them alone does, it has its way.",
        .start = "AggTypeDRCPrefParallel")
    MEMBER(smoothADRC,
        .meaning = "Steps of the ADRC gain, Safe over Short.")
    MEMBER(smoothDarkBoost,
        .meaning = "Steps of the dark boost, Long over Safe.")
TUNING_RECORD_END

} // namespace kiroconvergence
