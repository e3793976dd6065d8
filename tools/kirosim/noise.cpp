#include "tools/kirosim/noise.h"

#include <bit>
#include <cmath>

#include "platform/tavoprocessors.h"

namespace kirosim
{

namespace
{

// The loops have constant lengths, no branches and no calls, so that compilers make vectors of them.
constexpr UINT32 BlockSize = 64;
constexpr UINT32 PairCount = GridSize / 2;

static_assert(PairCount % BlockSize == 0);

using Hashes = std::array<UINT32, BlockSize>;
using Block  = std::array<FLOAT, BlockSize>;

/// Spreads each bit over all of them (the finalizer of SplitMix64, Steele and others 2014).
UINT64 Mix(UINT64 value)
{
    value += 0x9E3779B97F4A7C15ULL;
    value = (value ^ value >> 30) * 0xBF58476D1CE4E5B9ULL;
    value = (value ^ value >> 27) * 0x94D049BB133111EBULL;
    return value ^ value >> 31;
}

/// Hashes of successive numbers, with the multipliers of Wellons' lowbias32 (2018). The second half of the key joins
/// between its rounds: keys whose first halves lie close together would only shift the hashes.
VOID HashBlock(UINT32 first, UINT64 key, Hashes& rHashes)
{
    const UINT32 begin  = first + static_cast<UINT32>(key);
    const UINT32 middle = static_cast<UINT32>(key >> 32);
    for (UINT32 index = 0; index < BlockSize; ++index)
    {
        UINT32 value   = (begin + index) * 0x9E3779B1U;
        value          = (value ^ value >> 16) * 0x7FEB352DU;
        value          = (value ^ value >> 15 ^ middle) * 0x846CA68BU;
        rHashes[index] = value ^ value >> 16;
    }
}

/// Distances from 0 of pairs of deviates: the roots of -2 ln(u), where u is above 0 and up to 1 in steps of 2^-24.
VOID RadiiOf(const Hashes& rHashes, Block& rRadii)
{
    constexpr FLOAT  step     = 1.0f / 16777216.0f;
    constexpr FLOAT  ln2      = 0.69314718f;
    constexpr UINT32 rootHalf = 0x3F3504F3;  // bits of the lowest mantissa, so that mantissas lie around 1

    Block mantissas;
    Block exponents;
    for (UINT32 index = 0; index < BlockSize; ++index)
    {
        const FLOAT  u        = static_cast<FLOAT>(static_cast<INT32>((rHashes[index] >> 8) + 1)) * step;
        const UINT32 bits     = std::bit_cast<UINT32>(u);
        const INT32  exponent = static_cast<INT32>(bits - rootHalf) >> 23;
        mantissas[index]      = std::bit_cast<FLOAT>(bits - (static_cast<UINT32>(exponent) << 23));
        exponents[index]      = static_cast<FLOAT>(exponent);
    }
    for (UINT32 index = 0; index < BlockSize; ++index)
    {
        // ln(m) = 2 artanh((m - 1) / (m + 1)), whose series to the 9th power is exact to 1e-9 here.
        const FLOAT ratio  = (mantissas[index] - 1.0f) / (mantissas[index] + 1.0f);
        const FLOAT square = ratio * ratio;
        FLOAT       series = std::fma(square, 1.0f / 9.0f, 1.0f / 7.0f);
        series             = std::fma(square, series, 1.0f / 5.0f);
        series             = std::fma(square, series, 1.0f / 3.0f);
        series             = std::fma(square, series, 1.0f);
        const FLOAT log    = std::fma(exponents[index], ln2, 2.0f * ratio * series);
        rRadii[index]      = std::sqrt(-2.0f * log);
    }
}

/// Directions of pairs of deviates, by their cosines and sines. Both come from those of half the angle, which is a
/// quarter turn at most, by Taylor series that are exact to 5e-7.
VOID DirectionsOf(const Hashes& rHashes, Block& rCosines, Block& rSines)
{
    constexpr FLOAT angleStep = 3.14159265f / 4294967296.0f;
    for (UINT32 index = 0; index < BlockSize; ++index)
    {
        const FLOAT half   = static_cast<FLOAT>(static_cast<INT32>(rHashes[index])) * angleStep;
        const FLOAT square = half * half;
        FLOAT       sine   = std::fma(square, -1.0f / 39916800.0f, 1.0f / 362880.0f);
        sine               = std::fma(square, sine, -1.0f / 5040.0f);
        sine               = std::fma(square, sine, 1.0f / 120.0f);
        sine               = std::fma(square, sine, -1.0f / 6.0f);
        sine               = half * std::fma(square, sine, 1.0f);
        FLOAT cosine       = std::fma(square, -1.0f / 3628800.0f, 1.0f / 40320.0f);
        cosine             = std::fma(square, cosine, -1.0f / 720.0f);
        cosine             = std::fma(square, cosine, 1.0f / 24.0f);
        cosine             = std::fma(square, cosine, -0.5f);
        cosine             = std::fma(square, cosine, 1.0f);
        rCosines[index]    = std::fma(-2.0f * sine, sine, 1.0f);
        rSines[index]      = 2.0f * sine * cosine;
    }
}

}  // namespace

TAVO_FOR_EACH_PROCESSOR
VOID DrawNoise(const NoisePlace& rPlace, NoiseDeviates& rDeviates)
{
    const UINT64 radiusKey = Mix(Mix(Mix(Mix(rPlace.seed) + rPlace.frame) + rPlace.exposure) + rPlace.kind);
    const UINT64 angleKey  = Mix(radiusKey);
    Hashes       hashes;
    Block        radii;
    Block        cosines;
    Block        sines;
    for (UINT32 first = 0; first < PairCount; first += BlockSize)
    {
        HashBlock(first, radiusKey, hashes);
        RadiiOf(hashes, radii);
        HashBlock(first, angleKey, hashes);
        DirectionsOf(hashes, cosines, sines);
        for (UINT32 index = 0; index < BlockSize; ++index)
        {
            rDeviates[first + index]             = radii[index] * cosines[index];
            rDeviates[PairCount + first + index] = radii[index] * sines[index];
        }
    }
}

}  // namespace kirosim
