/// @file
/// Which records a recording was made with.
#pragma once

#include "tools/recording/fieldreader.h"

namespace recording
{

/// Version of the library that this program was built with.
extern const CHAR* const LibraryVersion;

/// @return a sum over names, types and counts of all recorded fields: recordings of another layout cannot be read
UINT32 LayoutChecksum();

/// Writes the version of the library, the sum of each record, and LayoutChecksum at the end.
VOID WriteLayout(FieldWriter& rWriter);

/// Reads what WriteLayout has written. @throws MalformedError, with the first record that differs, for another layout
VOID CheckLayout(FieldReader& rReader);

}  // namespace recording
