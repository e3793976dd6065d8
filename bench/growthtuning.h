/// @file
/// The minimal example with as much of one thing as is wanted.
#pragma once

#include <vector>

#include "platform/tavotypes.h"

struct GrowthTuning
{
    UINT32 regions     = 1024;  ///< of the grid: 256 to 3072, a multiple of 256
    UINT32 channels    = 1;     ///< the first ones of LightFrame::ChannelNames
    UINT32 calculators = 1;     ///< weighted means, each of the next channel in turn; of one channel with a table each
    UINT32 analyzers   = 1;
    UINT32 detectors   = 0;
    UINT32 modes       = 1;  ///< from Default down to the one in use, up to 7
};

/// Columns of the grid.
UINT32 GrowthGridWidth(const GrowthTuning& rTuning);

/// @return the parameter file
std::vector<BYTE> CompileGrowth(const GrowthTuning& rTuning);
