/// @file
/// What an estimate of the flash currents yields.
#pragma once

#include "interface/kiroflash.h"

struct FlashCurrentEstimate
{
    KIROAlgoFlashOutput LEDCombination;
    INT32               powIdx1;  ///< rows of the table between which the mixes lie; the same for one row
    INT32               powIdx2;
    INT32               mixIdx1;  ///< mixes between which the currents lie; the same for one mix
    INT32               mixIdx2;
};
