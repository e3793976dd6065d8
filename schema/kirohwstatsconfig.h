/// @file
/// Tuning module kirohwstatsconfig.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirohwstatsconfig
{

/// The hardware's grid.
struct GridStatsConfigType
{
    BOOL   enable;
    UINT32 width;
    UINT32 height;
    INT32  bitDepth;
};
TUNING_RECORD(GridStatsConfigType)
    BOOLEAN(enable,
        .meaning = "Whether the statistics hardware makes its grid; meant for the host, and read by no stage.",
        .acts = Acts::Never)
    MEMBER(width,
        .meaning = "Columns of the hardware's grid; meant for the host, and read by no stage.",
        .unit = Unit::Count, .range = AtLeast(0), .acts = Acts::Never)
    MEMBER(height,
        .meaning = "Rows of the hardware's grid; meant for the host, and read by no stage.",
        .unit = Unit::Count, .range = AtLeast(0), .acts = Acts::Never)
    MEMBER(bitDepth,
        .meaning = "Bits of a value of the hardware's grid; meant for the host, and read by no stage.",
        .unit = Unit::Count, .range = Any, .acts = Acts::Never)
TUNING_RECORD_END

/// The hardware's histogram.
struct HistStatsConfigType
{
    BOOL   enable;
    UINT32 binCount;
    INT32  bitDepth;
};
TUNING_RECORD(HistStatsConfigType)
    BOOLEAN(enable,
        .meaning = "Whether the statistics hardware makes its histogram; meant for the host, and read by no stage.",
        .acts = Acts::Never)
    MEMBER(binCount,
        .meaning = "Bins of the hardware's histogram; meant for the host, and read by no stage.",
        .unit = Unit::Count, .range = AtLeast(0), .acts = Acts::Never)
    MEMBER(bitDepth,
        .meaning = "Bits of a value of the hardware's histogram; meant for the host, and read by no stage.",
        .unit = Unit::Count, .range = Any, .acts = Acts::Never)
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
    MODULE_HEADER("Set-up of the statistics hardware. The host reads this, the core does not.")
    MEMBER(moduleID,
        .meaning = "Number of the module; read by no stage.",
        .unit = Unit::ID, .range = AtLeast(0), .acts = Acts::Never)
    MEMBER(gridStatsConfig,
        .meaning = "Set-up of the hardware's grid; meant for the host, and read by no stage.",
        .acts = Acts::Never)
    MEMBER(histStatsConfig,
        .meaning = "Set-up of the hardware's histogram; meant for the host, and read by no stage.",
        .acts = Acts::Never)
TUNING_RECORD_END

} // namespace kirohwstatsconfig
