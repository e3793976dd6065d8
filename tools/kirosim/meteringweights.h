/// @file
/// Where a camera measures the mean luma of its frame, and with which weights.
#pragma once

#include <string>
#include <vector>

#include "host/kirohost.h"
#include "tools/report/page.h"

namespace kirosim
{

/// A calculator of the tuning that ran in the last frame.
struct WeightedMean
{
    std::string     name;
    report::Box     box;
    report::Weights weights;
};

/// The fixed calculators of the frame's mean, then those of the run list that the context selects; each name
/// once. Empty without a tuning of calculators.
std::vector<WeightedMean> WeightedMeansOf(KiroHost& rHost);

}  // namespace kirosim
