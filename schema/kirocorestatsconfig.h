/// @file
/// Statistics channels that the host makes for the core. The host reads this, the core only shares the channel's shape.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirocorestatsconfig
{

/// Shape of a statistics channel.
struct ResolutionType
{
    UINT32 width;     ///< grid columns
    UINT32 height;    ///< grid rows
    UINT32 binCount;  ///< histogram bins, at most 1024
    INT32  bitDepth;  ///< full scale of a value is 2^bitDepth - 1
};
TUNING_RECORD(ResolutionType)
    MEMBER(width)
    MEMBER(height)
    MEMBER(binCount)
    MEMBER(bitDepth)
TUNING_RECORD_END

/// One channel.
struct CoreStatsChannelType
{
    BOOL           enable;
    CHAR*          channelName;  ///< by which calculators and generators ask for it; case matters
    KIROStatsType  type;
    ResolutionType resolution;
};
TUNING_RECORD(CoreStatsChannelType)
    BOOLEAN(enable)
    MEMBER(channelName)
    MEMBER(type)
    MEMBER(resolution)
TUNING_RECORD_END

/// All channels.
struct CoreStatsConfigType
{
    UINT32                channelsCount;
    UINT32                channelsID;
    CoreStatsChannelType* channels;  ///< at most 20 of each type
};
TUNING_RECORD(CoreStatsConfigType)
    VARIABLE(channels)
TUNING_RECORD_END

/// The module's record.
struct KIROCoreStatsConfigType
{
    UINT32                  SymbolTableID;
    module_versionStruct    module_version;
    parameter_versionStruct parameter_version;
    UINT32                  moduleID;
    CoreStatsConfigType     coreStatsConfig;
};
TUNING_RECORD(KIROCoreStatsConfigType)
    MODULE_HEADER
    MEMBER(moduleID)
    MEMBER(coreStatsConfig)
TUNING_RECORD_END

} // namespace kirocorestatsconfig

using kirocorestatsconfig::ResolutionType;
