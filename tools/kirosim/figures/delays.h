/// @file
/// How long what watches the scene takes to say that it has changed.
#pragma once

#include "tools/kirosim/figures/figure.h"
#include "tools/kirosim/figures/runsample.h"
#include "tools/kirosim/figures/spans.h"

namespace kirosim
{

/// Delays of the scene's detectors, and of the monitors' flags that change, behind a change of the scene.
/// @param rChange its frames, with those behind it up to the next change
/// @param rOf     the name of its stretch
VOID AddDelays(const Scene& rScene, const std::vector<RunSample>& rSamples, const SceneSpan& rChange,
               const std::string& rOf, std::vector<Figure>& rFigures);

}  // namespace kirosim
