/// @file
/// Random numbers, powers and waves whose bits do not depend on the machine: the same scene, tuning and seed give the
/// same trace.
#pragma once

#include "platform/tavotypes.h"

namespace kirosim
{

/// A stream of random numbers (xorshift64*, Vigna 2016).
class RandomStream
{
public:
    explicit RandomStream(UINT64 seed);

    UINT64 Next();

    /// Uniform in [0, 1).
    DOUBLE NextUniform();

    /// Mean 0, sigma 1: the sum of twelve uniform numbers less 6, which needs no function of the math library.
    DOUBLE NextGaussian();

private:
    UINT64 m_state;
};

/// 2 to an exponent, which ends at -126 and 127; to 2e-7 of it, by a polynomial of its own.
FLOAT PowerOfTwo(FLOAT exponent);

/// Cosine of an angle given in turns, by a polynomial of its own.
DOUBLE CosineOfTurns(DOUBLE turns);

/// The angle of a direction, in turns from the one ahead towards the one across: -0.5 to 0.5, 0 for {0, 0}. To 2e-6
/// turns, by a polynomial of its own.
DOUBLE TurnsOfDirection(DOUBLE ahead, DOUBLE across);

}  // namespace kirosim
