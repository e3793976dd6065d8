/// @file
/// Tunings as text.
#pragma once

#include <string>

#include "tools/tuningfile/tuning.h"

namespace tuningfile
{

/// Writes a tuning as the YAML that ParseText reads. A module of a deeper mode lists only what differs from the same
/// module of the nearest mode above it.
std::string WriteText(const Tuning& rTuning);

}  // namespace tuningfile
