/// @file
/// The least that a frame can be asked for: one mean decides one exposure by one table.
#pragma once

#include <vector>

#include "platform/tavotypes.h"

namespace leasttuning
{

/// @return the parameter file
std::vector<BYTE> Compile();

}  // namespace leasttuning
