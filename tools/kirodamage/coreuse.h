/// @file
/// A camera on a tuning from a damaged file.
#pragma once

#include <random>

#include "parameters/tuningsetmanager.h"

namespace kirodamage
{

struct CoreUse
{
    UINT64 frames;
    INT64  bytesLeft;  ///< of the function table, which outlives its instance
};

/// Runs some frames, some more in another mode and, in file mode, some more after a reload.
CoreUse RunCore(TuningSetManager& rStore, std::mt19937_64& rRandom);

}  // namespace kirodamage
