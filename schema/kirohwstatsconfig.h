/// @file
/// Set-up of the statistics hardware. The host reads this, the core does not.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirohwstatsconfig
{

/// The hardware's grid.
struct GridStatsConfigType
{
    BOOL   enable;
    UINT32 width;   ///< columns
    UINT32 height;  ///< rows
    INT32  bitDepth;
};
TUNING_RECORD(GridStatsConfigType)
    BOOLEAN(enable)
    MEMBER(width)
    MEMBER(height)
    MEMBER(bitDepth)
TUNING_RECORD_END

/// The hardware's histogram.
struct HistStatsConfigType
{
    BOOL   enable;
    UINT32 binCount;
    INT32  bitDepth;
};
TUNING_RECORD(HistStatsConfigType)
    BOOLEAN(enable)
    MEMBER(binCount)
    MEMBER(bitDepth)
TUNING_RECORD_END

/// The module's record.
struct KIROHWStatsConfigType
{
    UINT32                  SymbolTableID;
    module_versionStruct    module_version;
    parameter_versionStruct parameter_version;
    UINT32                  moduleID;
    GridStatsConfigType     gridStatsConfig;
    HistStatsConfigType     histStatsConfig;
};
TUNING_RECORD(KIROHWStatsConfigType)
    MODULE_HEADER
    MEMBER(moduleID)
    MEMBER(gridStatsConfig)
    MEMBER(histStatsConfig)
TUNING_RECORD_END

} // namespace kirohwstatsconfig
