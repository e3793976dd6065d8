/// @file
/// How often the store and the core have complained.
#pragma once

#include "platform/tavotypes.h"

namespace kirodamage::errorlines
{

/// Takes the lines of the system log from now on: they are put together, as on a device, and counted.
VOID Watch();

/// @return error lines since then
UINT64 Count();

}  // namespace kirodamage::errorlines
