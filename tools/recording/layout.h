/// @file
/// Which records a recording was made with.
#pragma once

#include "platform/tavotypes.h"

namespace recording
{

/// Version of the library that this program was built with.
extern const CHAR* const LibraryVersion;

/// @return a sum over names, types and counts of all recorded fields: recordings of another layout cannot be read
UINT32 LayoutChecksum();

}  // namespace recording
