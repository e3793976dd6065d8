/// @file
/// Tuning module kirocorestatsconfig.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirocorestatsconfig
{

/// Shape of a statistics channel.
struct ResolutionType
{
    UINT32 width;
    UINT32 height;
    UINT32 binCount;
    INT32  bitDepth;
};
TUNING_RECORD(ResolutionType)
    MEMBER(width,
        .meaning = "Columns of a grid channel, 0 for a histogram: more give finer regions, and weighted means over a "
                   "region take grids of up to 3072 regions. As a tunable meant for the host, and read by no stage.",
        .unit = Unit::Count, .range = {0, 3072}, .odd = AtLeast(0), .acts = Acts::Never)
    MEMBER(height,
        .meaning = "Rows of a grid channel, 0 for a histogram: more give finer regions, and weighted means over a "
                   "region take grids of up to 3072 regions. As a tunable meant for the host, and read by no stage.",
        .unit = Unit::Count, .range = {0, 3072}, .odd = AtLeast(0), .acts = Acts::Never)
    MEMBER(binCount,
        .meaning = "Bins of a histogram channel, 0 for a grid; a histogram of more than 1024 is not measured. As a "
                   "tunable meant for the host, and read by no stage.",
        .unit = Unit::Count, .range = {0, 1024}, .acts = Acts::Never)
    MEMBER(bitDepth,
        .meaning = "Bits of a value: full scale is 2 to its power less 1, and lumas are cut at 0.98 of that. As a "
                   "tunable meant for the host, and read by no stage.",
        .unit = Unit::Count, .range = AtLeast(1), .start = "8", .acts = Acts::Never)
TUNING_RECORD_END

/// One channel.
struct CoreStatsChannelType
{
    BOOL           enable;
    CHAR*          channelName;
    KIROStatsType  type;
    ResolutionType resolution;
};
TUNING_RECORD(CoreStatsChannelType)
    BOOLEAN(enable,
        .meaning = "Whether the host delivers the channel; read by no stage.",
        .start = "true", .acts = Acts::Never)
    MEMBER(channelName,
        .meaning = "Name by which calculators, generators and flash tuning ask for the channel, case included; here "
                   "read by no stage.",
        .start = "SafeLuma", .acts = Acts::Never, .refers = {Defines(Thing::Channel)})
    MEMBER(type,
        .meaning = "Whether the channel is a grid or a histogram; here read by no stage.",
        .start = "KIROStatsGrid", .acts = Acts::Never)
    MEMBER(resolution,
        .meaning = "Shape of the channel; here read by no stage.",
        .acts = Acts::Never)
TUNING_RECORD_END

/// All channels.
struct CoreStatsConfigType
{
    UINT32                channelsCount;
    UINT32                channelsID;
    CoreStatsChannelType* channels;
};
TUNING_RECORD(CoreStatsConfigType)
    VARIABLE(channels,
        .meaning = "Channels that the host shall make for the core, at most 20 grids and 20 histograms, of which a "
                   "frame brings at most 20; read by no stage.",
        .entries = {0, 40}, .acts = Acts::Never)
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
    MODULE_HEADER("Statistics channels that the host makes for the core. The host reads this, the core only shares "
                  "the channel's shape.")
    MEMBER(moduleID,
        .meaning = "Number of the module; read by no stage.",
        .unit = Unit::ID, .range = AtLeast(0), .acts = Acts::Never)
    MEMBER(coreStatsConfig,
        .meaning = "Channels that the host shall make for the core; read by no stage.",
        .acts = Acts::Never)
TUNING_RECORD_END

} // namespace kirocorestatsconfig

using kirocorestatsconfig::ResolutionType;
