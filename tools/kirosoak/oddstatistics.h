/// @file
/// Statistics that no light makes, in the place of a frame's own.
#pragma once

#include "interface/ikirocorealgo.h"

namespace kirosoak
{

enum class Disturbance : UINT32
{
    None,
    Black,
    White,
    NotANumber,
    Huge,
    OffChannels,   ///< every other channel is not enabled
    InvalidStart,  ///< the frame counts as one of start-up
    Count
};

/// Makes the frames of an instance odd on their way into the core. Fits as a KiroTableDecorator.
IKIROCoreAlgo* MakeStatisticsOdd(IKIROCoreAlgo* pAlgo);

/// What the next frames of all such instances are like.
VOID SetDisturbance(Disturbance disturbance);

}  // namespace kirosoak
