/// @file
/// The part of a scene that asks what the scene change detectors say.
#pragma once

#include <optional>
#include <vector>

#include "host/scenechangewatch.h"

namespace kirosim
{

/// A stretch of time over which the exposure should not move.
struct PassInterval
{
    DOUBLE begin;  ///< s
    DOUBLE end;    ///< s, included
};

struct DetectorScene
{
    std::vector<SceneChangeDetector> watched;
    std::optional<PassInterval>      pass;
};

}  // namespace kirosim
