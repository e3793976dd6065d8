/// @file
/// What this process has of the machine's memory.
#pragma once

#include "platform/tavotypes.h"

namespace kirosoak
{

/// Bytes. @throws std::runtime_error if the system does not say
INT64 ResidentBytes();

}  // namespace kirosoak
