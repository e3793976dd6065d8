/// @file
/// Holds a DRC gain on nodes with hysteresis and ramps between them, so that it does not follow every wobble of
/// metering.
#pragma once

#include "platform/tavotypes.h"
#include "schema/kiroconvergence.h"

enum SmoothNodeConvergenceState : INT32
{
    SmoothInitialize         = 0,
    SmoothTransitionNone     = 1,
    SmoothTransitionIncrease = 2,
    SmoothTransitionDecrease = 3
};

/// State of one gain, zero at the start.
struct SmoothNodeConvergenceContext
{
    SmoothNodeConvergenceState state;
    FLOAT                      gainNode;  ///< the gain that is held or ramped to
    FLOAT                      gain;      ///< the gain in force
    UINT                       nodeIndex;
};

/// One frame of the node machine.
/// @param rTuning    at least one node, otherwise nothing happens
/// @param gainTarget gain that metering wants; where it or the tuning leads to no finite gain, the frame before stands
VOID StepSmoothNode(SmoothNodeConvergenceContext& rContext, const kiroconvergence::DRCSmoothType& rTuning,
                    FLOAT gainTarget);
