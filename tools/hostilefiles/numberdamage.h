/// @file
/// Damage to parameter files of which nothing is known but that they may be some.
#pragma once

#include <span>

#include "platform/tavotypes.h"

namespace hostilefiles
{

/// Makes the checksum that closes a file match its bytes, by the version in its header. Bytes too few for a header stay
/// as they are.
VOID SealFile(std::span<BYTE> file);

/// Puts a number of the file in the place of another one, or a number that is apt to be too large or just too large:
/// how offsets get swapped, counts huge, and entries pointed at one another.
VOID DamageNumber(std::span<BYTE> file, UINT32 seed);

}  // namespace hostilefiles
