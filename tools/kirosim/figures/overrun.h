/// @file
/// What the figures of a run's stretches come to for the whole of it.
#pragma once

#include "tools/kirosim/figures/figure.h"

namespace kirosim
{

/// What the figures call the whole of a run.
constexpr CHAR WholeRun[] = "run";

/// Appends the worst of each figure that has one, and how many stretches have not settled.
VOID AddWorst(std::vector<Figure>& rFigures);

}  // namespace kirosim
