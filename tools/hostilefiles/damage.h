/// @file
/// Damage to parameter files that gets past the checksum.
#pragma once

#include <random>
#include <vector>

#include "tools/hostilefiles/specimen.h"

namespace hostilefiles
{

enum class DamageKind : UINT32
{
    Bits,         ///< flipped, anywhere
    Sections,     ///< swapped, moved and resized
    Rows,         ///< offsets and sizes of modules and data, swapped and moved
    Counts,       ///< of arrays, huge
    Cycles,       ///< arrays that hold themselves, alone or by way of others
    Modes,        ///< links and parents in circles
    Definitions,  ///< structures that hold one another, foreign types
    Length,       ///< cut, or longer than it says
    Mixed,        ///< several of these
    Count
};

constexpr size_t DamageKinds = static_cast<size_t>(DamageKind::Count);

const CHAR* NameOf(DamageKind kind);

/// @return the damaged bytes, with a checksum that is right for them; the same for the same state of rRandom
std::vector<BYTE> Damage(const Specimen& rSpecimen, DamageKind kind, std::mt19937_64& rRandom);

}  // namespace hostilefiles
