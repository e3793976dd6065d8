/// @file
/// Mutants of what a person writes and of what a run leaves: each must be refused, with place and reason, or be usable.
#pragma once

#include <string>
#include <vector>

#include "platform/tavotypes.h"
#include "tools/kirodamage/campaign.h"
#include "tools/kirosim/loadedtuning.h"

namespace kirodamage
{

enum class MutantKind : UINT32
{
    Tuning,  ///< text
    Scene,   ///< text
    Recording,
    DebugFile,
    Count
};

constexpr size_t MutantKinds = static_cast<size_t>(MutantKind::Count);

const CHAR* NameOf(MutantKind kind);

/// A good file.
struct Origin
{
    MutantKind        kind;
    std::string       name;
    std::vector<BYTE> bytes;
};

/// Reads texts, and runs the first frames of a scene for a recording and a file of debug records.
/// @param rTuning that the scenes run on
std::vector<Origin> ReadOrigins(const std::vector<std::string>& rTunings, const std::vector<std::string>& rScenes,
                                kirosim::LoadedTuning& rTuning);

/// A file of a campaign. Everything about it follows from the seed and the number.
struct Mutant
{
    MutantKind        kind;
    std::string       origin;
    std::vector<BYTE> bytes;
    UINT64            useSeed;  ///< of what is done with it
};

/// @param rOrigins of each kind at least one
Mutant MakeMutant(const std::vector<Origin>& rOrigins, UINT64 seed, UINT64 number);

/// Does what the programs do with such a file. @param rTuning of cameras, but for the mutant of a tuning
TrialResult TryMutant(const Mutant& rMutant, kirosim::LoadedTuning& rTuning);

}  // namespace kirodamage
