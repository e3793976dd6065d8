/// @file
/// Noise of the sensor's regions, in bulk: each deviate is a function of the place where it is needed, not of those
/// that were drawn before it.
#pragma once

#include <array>

#include "tools/kirosim/scenegrid.h"

namespace kirosim
{

/// Where in a run deviates are needed. Places that differ in anything have nothing in common.
struct NoisePlace
{
    UINT64 seed;
    UINT64 frame;
    UINT32 exposure;
    UINT32 kind;  ///< of the noise
};

/// One of each region.
using NoiseDeviates = std::array<FLOAT, GridSize>;

/// Normal deviates, mean 0 and sigma 1, by the method of Box and Muller (1958) from two hashes of 32 bits: exact to
/// 1e-6 of a sigma, but for tails that end at 5.77 sigma, where one of 10^8 lies. The bits do not depend on the
/// machine.
VOID DrawNoise(const NoisePlace& rPlace, NoiseDeviates& rDeviates);

}  // namespace kirosim
