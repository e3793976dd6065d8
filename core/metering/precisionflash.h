/// @file
/// Precision flash: splits a flash exposure into two parts.
///
/// The LED lights the foreground more than the background. Part e1 sees the LED at high flash, part e2 sees the scene
/// without LED. With the right lengths the foreground reaches the luma that the main flash would give it, and the
/// background keeps the luma that it has without LED. Two linear equations give the lengths; where they have no usable
/// solution, the background gives way step by step.
#pragma once

#include "platform/tavotypes.h"

/// Lumas of foreground and background at one setting of the LED.
struct PrecisionFlashLumas
{
    FLOAT frGrd;
    FLOAT bkGrd;
};

/// What the two frames before the flash tell of the scene.
struct PrecisionFlashScene
{
    PrecisionFlashLumas off;
    PrecisionFlashLumas high;
    PrecisionFlashLumas main;
    FLOAT               expOff;  ///< exposure of the frame without LED
};

/// Limits to the parts, all in one unit of time.
struct PrecisionFlashTimes
{
    FLOAT maxExpoTime;     ///< of both parts together
    FLOAT miniFlashTime;   ///< shortest time of the part with LED
    FLOAT flashDelayTime;  ///< shortest time of the part without LED: the LED's delay
};

/// Limits to e1 as a share of e1 + e2, both excluded.
struct PrecisionFlashShares
{
    FLOAT min;
    FLOAT max;
};

/// The solver's result.
struct PrecisionFlashSplit
{
    bool  bFound;
    FLOAT e1;               ///< 0 if not found
    FLOAT e2;               ///< 0 if not found
    FLOAT bkGrdLumaTarget;  ///< of the last attempt
};

namespace precisionflash
{

/// What high flash would give at the exposure without LED, from a measurement at low flash.
/// @param expInc exposure without LED over exposure at low flash
/// @param flux   of high over low flash
FLOAT LumaAtHighFlash(FLOAT lumaOff, FLOAT lumaOn, FLOAT expInc, FLOAT flux);

/// @param safeCoff factor on the shortest flash time
PrecisionFlashShares SharesOf(const PrecisionFlashTimes& rTimes, FLOAT safeCoff);

PrecisionFlashSplit Solve(const PrecisionFlashScene& rScene, const PrecisionFlashShares& rShares);

/// @param hysteresis margin that favours a split
/// @return false where the plain flash leaves the background bright enough
bool IsSplitNeeded(const PrecisionFlashScene& rScene, const PrecisionFlashSplit& rSplit, FLOAT hysteresis);

/// How much brighter the LED makes the scene. Of the two parts only e1 sees it.
/// @param normalRatio of a plain flash, which stands where there is no split
FLOAT InfluenceRatio(FLOAT normalRatio, FLOAT e1, FLOAT e2);

}  // namespace precisionflash
