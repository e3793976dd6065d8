/// @file
/// A bracket that a scene's event asks for.
#pragma once

#include <vector>

#include "platform/tavotypes.h"

namespace kirosim
{

/// EV steps of the pictures, one per frame.
using BracketRequest = std::vector<INT32>;

}  // namespace kirosim
