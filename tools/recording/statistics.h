/// @file
/// Statistics as they go through the table: channels with names and values.
#pragma once

#include <algorithm>

#include "interface/kirostats.h"
#include "tools/recording/identities.h"

namespace recording
{

/// Values of a channel beyond this are no statistics.
constexpr UINT64 ChannelValuesMax = 1U << 20;

// Fields are written one by one: whoever adds one finds out here.
static_assert(sizeof(KIROCoreChInfo) == 40 && sizeof(KIROStatsList) == 1512, "a field is not recorded");

/// Values of a channel: bins of a histogram, regions of a grid.
inline UINT64 ValuesOf(const KIROCntStatsOut& rChannel)
{
    return (rChannel.type == kiroglobalelements::KIROStatsHist)
               ? rChannel.resolution.binCount
               : UINT64{rChannel.resolution.width} * rChannel.resolution.height;
}

/// The core goes by the shape of a channel, whatever its type or size says. @throws MalformedError for one that is not
/// recorded, and not replayed either
VOID RefuseShape(const KIROCntStatsOut& rChannel);

/// Hosts have one entry behind the last bin, which tunings may name. It is there for certain if the size covers it.
inline bool HasEntryBehindBins(const KIROCntStatsOut& rChannel)
{
    return rChannel.channelData.dataSize / sizeof(INT) > rChannel.resolution.binCount;
}

/// Shape of a channel, and what the host says of it.
template <typename A> VOID ChannelHead(A& rInputs, KIROCntStatsOut& rChannel)
{
    rInputs.Record("channel", rChannel);
    rInputs.Value("bChannelEnabled", rChannel.channelData.bChannelEnabled);
    rInputs.Value("dataSize", rChannel.channelData.dataSize);
}

/// A replay has room for an entry behind the last bin, whether it is recorded or not.
template <typename A, typename T> VOID Bins(A& rInputs, const CHAR* pName, T*& rpValues, UINT64 bins, UINT64 count)
{
    rInputs.Array(pName, rpValues, count);
    if constexpr (A::IsReading)
    {
        const T* pRead = rpValues;
        if (pRead != nullptr)
        {
            rpValues = static_cast<T*>(rInputs.Memory().Make((bins + 1) * sizeof(T)));
            std::copy_n(pRead, count, rpValues);
        }
    }
}

/// Values of a channel that the core reads: those of others may be gone.
template <typename A> VOID ChannelValues(A& rInputs, KIROCntStatsOut& rChannel)
{
    RefuseShape(rChannel);
    KIROCoreChInfo& rData = rChannel.channelData;
    const UINT64    count = ValuesOf(rChannel);
    if (rChannel.type == kiroglobalelements::KIROStatsHist)
    {
        Bins(rInputs, "Data", rData.Data.pIData, count, count + (HasEntryBehindBins(rChannel) ? 1 : 0));
        Bins(rInputs, "pValLUT", rData.pValLUT, count, count);
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
            rInputs.Text("pChannelName", rChannel.channelData.pChannelName);
            ChannelValues(rInputs, rChannel);
        }
    }
}

/// Statistics that a host has kept, for the decision on preflash metering. @param rpChannels may be null
template <typename A>
VOID StatisticsChannels(A& rInputs, const CHAR* pName, KIROCntStatsOut*& rpChannels, UINT32& rCount)
{
    rInputs.Value(pName, rCount);
    rInputs.Array(pName, rpChannels, rCount);
    for (UINT32 index = 0; rpChannels != nullptr && index < rCount; ++index)
    {
        KIROCntStatsOut& rChannel = rpChannels[index];
        UINT8            isRead   = 0;
        ChannelHead(rInputs, rChannel);
        rInputs.Text("pChannelName", rChannel.channelData.pChannelName);
        if constexpr (!A::IsReading)
        {
            isRead = rInputs.IsReadForPreflash(rChannel.channelData.pChannelName) ? 1 : 0;
        }
        rInputs.Value("isRead", isRead);
        if (isRead != 0)
        {
            ChannelValues(rInputs, rChannel);
        }
    }
}

}  // namespace recording
