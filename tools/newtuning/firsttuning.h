/// @file
/// The tuning that a tuner begins with.
#pragma once

#include <string>

#include "tools/newtuning/answers.h"

namespace newtuning
{

/// A text tuning with comments, which controls a camera as the answers want it.
std::string FirstTuning(const Answers& rAnswers);

}  // namespace newtuning
