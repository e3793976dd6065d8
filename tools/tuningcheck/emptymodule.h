/// @file
/// Modules that say nothing.
#pragma once

#include "tools/tuningfile/tuning.h"

namespace tuningcheck
{

/// @return whether a module holds what it held before its text: what it is for is off, and its values are not judged
bool IsEmpty(const tuningfile::Module& rModule);

}  // namespace tuningcheck
