/// @file
/// Damage to recordings that leaves chunks whole, so that what they hold is read.
#pragma once

#include <functional>

#include "platform/tavotypes.h"

namespace hostilefiles
{

/// Makes header, record layout and checksums fit what stands there, as far as chunks can be told apart.
VOID SealRecording(BYTE* pFile, size_t size);

/// Changes bytes in their place. @return how many there are then, at most maxSize
using BytesMutator = std::function<size_t(BYTE* pBytes, size_t size, size_t maxSize)>;

/// Changes a chunk or the order of chunks: bytes of a payload, one chunk again, one less, two in each other's place.
/// @return the new size, at most maxSize
size_t DamageChunk(BYTE* pFile, size_t size, size_t maxSize, UINT32 seed, const BytesMutator& rMutate);

}  // namespace hostilefiles
