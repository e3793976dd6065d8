/// @file
/// The light of a scene's pattern on the sensor's samples.
#pragma once

#include "tools/kirosim/regionsamples.h"
#include "tools/kirosim/scene.h"

namespace kirosim
{

/// Samples of a region that differ.
UINT32 PatternSampleCount(const Pattern& rPattern);

/// @param rSamples has PatternSampleCount of each region; its mean is 1
VOID FillWithPattern(const Pattern& rPattern, RegionSamples& rSamples);

}  // namespace kirosim
