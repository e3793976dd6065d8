/// @file
/// Whether a tuning makes sense.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/tuningcheck/channels.h"
#include "tools/tuningcheck/finding.h"

namespace tuningcheck
{

/// What a tuning is judged against.
struct Surroundings
{
    std::vector<std::string> channels = HostChannels();  ///< that the host delivers; none: they are not judged
    std::optional<FLOAT>     maxGain;                    ///< of the sensor, linear; none if it is not known
    std::optional<UINT64>    maxTime;                    ///< of the sensor, in ns
};

/// Judges values, references, shapes and completeness of all modes. The findings are in the order of the text.
std::vector<Finding> Judge(const tuningfile::Tuning& rTuning, const Surroundings& rSurroundings);

}  // namespace tuningcheck
