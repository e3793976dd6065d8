/// @file
/// One damaged file, and all that a host and a tuning tool would do with it.
#pragma once

#include <string>
#include <vector>

#include "tools/hostilefiles/damage.h"
#include "tools/hostilefiles/specimen.h"
#include "tools/kirodamage/campaign.h"

namespace kirodamage
{

/// A file of a campaign. Everything about it follows from the seed and the number.
struct DamagedFile
{
    hostilefiles::DamageKind kind;
    std::string              specimen;
    bool                     isFileMode;
    std::vector<BYTE>        bytes;
    UINT64                   useSeed;  ///< of what is done with it
};

DamagedFile MakeFile(const std::vector<hostilefiles::Specimen>& rSpecimens, UINT64 seed, UINT64 number);

/// Loads the file and uses it; some of those that the store takes are given to a core, too.
TrialResult TryFile(const DamagedFile& rFile);

}  // namespace kirodamage
