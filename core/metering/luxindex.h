/// @file
/// The lux index and the influence of the LED, worked out from numbers alone.
///
/// Indices count steps of 3 percent; a lux index falls as light grows. Exposures are linear.
#pragma once

#include "platform/tavotypes.h"

namespace luxindex
{

/// The LED takes no light away.
constexpr FLOAT NoInfluence = 1.0f;

/// @return index steps from the exposure that the luma was measured at to the one that would bring it to its target
FLOAT StepsToTarget(FLOAT luma, FLOAT target);

/// The lux index of a flash snapshot.
/// @param offIndex of the frame without LED
/// @param luma     under full flash; one that is not above 0 leaves the index as it is
FLOAT SnapshotIndex(FLOAT offIndex, FLOAT luma, INT32 target);

/// Smooths over time.
/// @param previous the index of the frame before; near 0 there was none
/// @param share    of the previous index
FLOAT Filter(FLOAT luxIndex, FLOAT previous, FLOAT share);

/// How much brighter the LED makes the scene, both lumas being taken to the exposure without LED.
/// @param luma        of the frame with LED
/// @param exposure    that would bring it to its target
/// @param offLuma     of the frame without LED
/// @param offExposure of the frame without LED
/// @return at least NoInfluence
FLOAT FlashInfluence(FLOAT luma, FLOAT exposure, FLOAT offLuma, FLOAT offExposure);

}  // namespace luxindex
