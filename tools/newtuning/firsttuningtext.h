/// @file
/// The text that first tunings are made from: firsttuning.yaml.in, which the build puts into the program.
#pragma once

#include <string_view>

namespace newtuning
{

extern const std::string_view FirstTuningText;

}  // namespace newtuning
