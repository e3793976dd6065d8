#include "host/flashstats.h"

#include <algorithm>
#include <cstring>

#include "host/channelnames.h"

namespace
{

constexpr UINT32 GridSide = 16;
constexpr INT32  BitDepth = 8;

/// Channels that only preview, metering of the preflash and inline calibration read.
constexpr const CHAR* NotForSnapshots[] = {channelnames::Luma16, channelnames::Saturation16, channelnames::GridRG,
                                           channelnames::GridBG};

bool IsForSnapshots(const KIROCntStatsOut& rChannel)
{
    return std::none_of(std::begin(NotForSnapshots), std::end(NotForSnapshots),
                        [&](const CHAR* pName) { return std::strcmp(pName, rChannel.channelData.pChannelName) == 0; });
}

bool IsGrid16(const KIROCntStatsOut* pChannel)
{
    return pChannel != nullptr && pChannel->type == kiroglobalelements::KIROStatsGrid &&
           pChannel->resolution.width == GridSide && pChannel->resolution.height == GridSide &&
           pChannel->channelData.Data.pFData != nullptr;
}

}  // namespace

FlashStats::FlashStats(const CHAR* pLumaName, const CHAR* pSaturationName) : m_grids{}, m_channels{}
{
    const CHAR* const names[ChannelCount] = {pLumaName, pSaturationName};
    for (UINT32 index = 0; index < ChannelCount; ++index)
    {
        KIROCntStatsOut& rChannel            = m_channels[index];
        rChannel.type                        = kiroglobalelements::KIROStatsGrid;
        rChannel.resolution                  = {GridSide, GridSide, 0, BitDepth};
        rChannel.channelData.bChannelEnabled = TRUE;
        rChannel.channelData.pChannelName    = const_cast<CHAR*>(names[index]);
        rChannel.channelData.Data.pFData     = m_grids[index].values.data();
        rChannel.channelData.dataSize        = RegionCount * sizeof(FLOAT);
    }
}

bool FlashStats::Save(const KIROStatsList& rStats)
{
    const KIROCntStatsOut* const channels[ChannelCount] = {flashstats::Find(rStats, channelnames::Luma16),
                                                           flashstats::Find(rStats, channelnames::Saturation16)};
    if (!IsGrid16(channels[0]) || !IsGrid16(channels[1]))
    {
        return false;
    }
    for (UINT32 index = 0; index < ChannelCount; ++index)
    {
        std::copy_n(channels[index]->channelData.Data.pFData, RegionCount, m_grids[index].values.data());
        m_channels[index].frameID = rStats.frameID;
    }
    return true;
}

namespace flashstats
{

const KIROCntStatsOut* Find(const KIROStatsList& rStats, const CHAR* pName)
{
    const KIROCntStatsOut* pEnd   = rStats.pList + rStats.count;
    const auto*            pFound = std::find_if(rStats.pList, pEnd,
                                                 [pName](const KIROCntStatsOut& rChannel)
                                                 { return std::strcmp(rChannel.channelData.pChannelName, pName) == 0; });
    return (pFound != pEnd) ? pFound : nullptr;
}

KIROStatsList Compose(const KIROStatsList& rFrame, const FlashStats& rOff, const FlashStats& rLow)
{
    constexpr UINT32 ownMax = KIROStatsChannelCountMax - 2 * FlashStats::ChannelCount;
    KIROStatsList    list   = rFrame;
    list.count              = 0;
    for (UINT32 index = 0; index < rFrame.count && list.count < ownMax; ++index)
    {
        if (IsForSnapshots(rFrame.pList[index]))
        {
            list.pList[list.count++] = rFrame.pList[index];
        }
    }
    for (const FlashStats* pStats : {&rOff, &rLow})
    {
        std::copy_n(pStats->Channels(), FlashStats::ChannelCount, list.pList + list.count);
        list.count += FlashStats::ChannelCount;
    }
    return list;
}

}  // namespace flashstats
