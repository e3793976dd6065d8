/// @file
/// One damaged file, and all that a host and a tuning tool would do with it.
#pragma once

#include <string>
#include <vector>

#include "tools/kirodamage/campaign.h"
#include "tools/kirodamage/specimen.h"

namespace kirodamage
{

/// What a file may cost, in one request and in all.
constexpr UINT64 MaxAllocation = UINT64{64} << 20;

/// A file of a campaign. Everything about it follows from the seed and the number.
struct DamagedFile
{
    DamageKind        kind;
    std::string       specimen;
    bool              isFileMode;
    std::vector<BYTE> bytes;
    UINT64            useSeed;  ///< of what is done with it
};

DamagedFile MakeFile(const std::vector<Specimen>& rSpecimens, UINT64 seed, UINT64 number);

/// Loads the file and uses it; some of those that the store takes are given to a core, too.
/// @param rPath where it is put for file mode
TrialResult TryFile(const DamagedFile& rFile, const std::string& rPath);

}  // namespace kirodamage
