/// @file
/// Sums that come out the same in any order, since none of their additions rounds.
///
/// Hardware delivers whole numbers, or fixed point: multiples of a quantum that all together still fit the 24 bits of a
/// FLOAT. Such values need not be added one after another.
#pragma once

#include "platform/tavotypes.h"

namespace exactsum
{

constexpr INT32 BitDepthMax = 16;

/// Adds the lesser of each value and the clamp, as far as this can be told to be exact: if 2^bitDepth times the least
/// power of 2 that is not below the count fits 24 bits of a quantum of which every value is a multiple, and all values
/// lie within 2^bitDepth.
/// @param bitDepth any; none but 1 to BitDepthMax are tried
/// @return whether rSum is what a chain of additions from 0 comes to, the same bits; otherwise it is anything
bool Add(const FLOAT* pValues, UINT32 count, FLOAT clamp, INT32 bitDepth, FLOAT& rSum);

}  // namespace exactsum
