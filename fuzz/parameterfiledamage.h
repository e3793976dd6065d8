/// @file
/// Damages parameter files in ways that get past their checksum.
#pragma once

#include <cstddef>

#include "platform/tavotypes.h"

namespace fuzz
{

/// Makes the checksum that closes a file match its bytes. Bytes too few for a header stay as they are.
VOID SealFile(BYTE* pFile, size_t size);

/// Puts a number of the file in the place of another one, or a number that is apt to be too large or just too large:
/// how offsets get swapped, counts huge, and entries pointed at one another.
VOID DamageNumber(BYTE* pFile, size_t size, UINT32 seed);

}  // namespace fuzz
