/// @file
/// Statistics as they go through the table: channels with names and values.
#pragma once

#include <algorithm>

#include "tools/recording/identities.h"

namespace recording
{

/// Values of a channel beyond this are no statistics.
constexpr UINT64 ChannelValuesMax = 1U << 20;

/// Values of a channel: bins of a histogram, regions of a grid. Zero for a shape that cannot be.
inline UINT64 ValuesOf(const KIROCntStatsOut& rChannel)
{
    const UINT64 regions = UINT64{rChannel.resolution.width} * rChannel.resolution.height;
    const UINT64 values = (rChannel.type == kiroglobalelements::KIROStatsHist) ? rChannel.resolution.binCount : regions;
    return (values <= ChannelValuesMax) ? values : 0;
}

/// The core goes by the shape of a channel, whatever its type or size says.
inline VOID RefuseShape(const KIROCntStatsOut& rChannel)
{
    const UINT64 regions = UINT64{rChannel.resolution.width} * rChannel.resolution.height;
    if (std::max<UINT64>(regions, rChannel.resolution.binCount) > ChannelValuesMax ||
        (rChannel.type == kiroglobalelements::KIROStatsHist && regions > rChannel.resolution.binCount))
    {
        throw MalformedError("it has a channel of statistics with an impossible shape");
    }
}

/// Shape of a channel, and what the host says of it.
template <typename A> VOID ChannelHead(A& rInputs, KIROCntStatsOut& rChannel)
{
    rInputs.Record("channel", rChannel);
    rInputs.Value("bChannelEnabled", rChannel.channelData.bChannelEnabled);
    rInputs.Value("dataSize", rChannel.channelData.dataSize);
    if constexpr (A::IsReading)
    {
        RefuseShape(rChannel);
    }
}

/// Hosts have one entry behind the last bin, which tunings may name; it is not recorded.
template <typename A, typename T> VOID Bins(A& rInputs, const CHAR* pName, T*& rpValues, UINT64 count)
{
    rInputs.Array(pName, rpValues, count);
    if constexpr (A::IsReading)
    {
        const T* pRead = rpValues;
        if (pRead != nullptr)
        {
            rpValues = static_cast<T*>(rInputs.Memory().Make((count + 1) * sizeof(T)));
            std::copy_n(pRead, count, rpValues);
        }
    }
}

/// Name and values of a channel that the core reads: those of others may be gone.
template <typename A> VOID ChannelValues(A& rInputs, KIROCntStatsOut& rChannel)
{
    KIROCoreChInfo& rData = rChannel.channelData;
    const UINT64    count = ValuesOf(rChannel);
    rInputs.Text("pChannelName", rData.pChannelName);
    if (rChannel.type == kiroglobalelements::KIROStatsHist)
    {
        Bins(rInputs, "Data", rData.Data.pIData, count);
        Bins(rInputs, "pValLUT", rData.pValLUT, count);
    }
    else
    {
        rInputs.Array("Data", rData.Data.pFData, count);
    }
}

template <typename A> VOID StatisticsList(A& rInputs, KIROStatsList*& rpStats)
{
    if constexpr (A::IsReading)
    {
        rpStats = static_cast<KIROStatsList*>(rInputs.Memory().Make(sizeof(KIROStatsList)));
    }
    KIROStatsList& rStats = *rpStats;
    rInputs.Value("startup", rStats.startup);
    rInputs.Value("frameID", rStats.frameID);
    rInputs.Record("bayerGridROI", rStats.bayerGridROI);
    rInputs.Value("prepareBeforePreflash", rStats.prepareBeforePreflash);
    rInputs.Value("bIsTorchAEC", rStats.bIsTorchAEC);
    rInputs.Value("bIsDepthAEC", rStats.bIsDepthAEC);
    rInputs.Value("count", rStats.count);
    // A list that is too long is refused before anything of it is read.
    for (UINT32 index = 0; index < rStats.count && rStats.count <= KIROStatsChannelCountMax; ++index)
    {
        KIROCntStatsOut& rChannel = rStats.pList[index];
        ChannelHead(rInputs, rChannel);
        if (rStats.startup != StatisticsStartUpInvalid && rChannel.channelData.bChannelEnabled != FALSE)
        {
            ChannelValues(rInputs, rChannel);
        }
    }
}

/// Statistics that a host has kept. @param rpChannels may be null
template <typename A>
VOID StatisticsChannels(A& rInputs, const CHAR* pName, KIROCntStatsOut*& rpChannels, UINT32& rCount)
{
    rInputs.Value(pName, rCount);
    rInputs.Array(pName, rpChannels, rCount);
    for (UINT32 index = 0; rpChannels != nullptr && index < rCount; ++index)
    {
        ChannelHead(rInputs, rpChannels[index]);
        ChannelValues(rInputs, rpChannels[index]);
    }
}

}  // namespace recording
