#include "tools/kirosoak/oddstatistics.h"

#include <algorithm>
#include <limits>

namespace kirosoak
{

namespace
{

Disturbance                       disturbanceOfFrames = Disturbance::None;
decltype(IKIROCoreAlgo::setStats) setStatsOfCore      = nullptr;  ///< the same for all instances

/// @param level share of full scale, for channels of either kind
VOID Fill(KIROCntStatsOut& rChannel, FLOAT level)
{
    constexpr FLOAT fullScale = 255.0f;
    constexpr INT   samples   = 1000;

    KIROCoreChInfo& rData = rChannel.channelData;
    if (rChannel.type == kiroglobalelements::KIROStatsGrid)
    {
        std::fill_n(rData.Data.pFData, rChannel.resolution.width * rChannel.resolution.height, level * fullScale);
        return;
    }
    const UINT32 bins = rChannel.resolution.binCount;
    std::fill_n(rData.Data.pIData, bins, 0);
    if (bins > 0)
    {
        rData.Data.pIData[(level > 0.0f) ? bins - 1 : 0] = samples;
    }
}

VOID MakeOdd(KIROStatsList& rStats)
{
    if (disturbanceOfFrames == Disturbance::InvalidStart)
    {
        rStats.startup = StatisticsStartUpInvalid;
    }
    for (UINT32 index = 0; index < rStats.count; ++index)
    {
        KIROCntStatsOut& rChannel            = rStats.pList[index];
        rChannel.channelData.bChannelEnabled = TRUE;  // the list is the sensor's and comes again
        switch (disturbanceOfFrames)
        {
        case Disturbance::Black:
            Fill(rChannel, 0.0f);
            break;
        case Disturbance::White:
            Fill(rChannel, 1.0f);
            break;
        case Disturbance::NotANumber:
            Fill(rChannel, std::numeric_limits<FLOAT>::quiet_NaN());
            break;
        case Disturbance::Huge:
            Fill(rChannel, 1e30f);
            break;
        case Disturbance::OffChannels:
            rChannel.channelData.bChannelEnabled = (index % 2 == 0) ? TRUE : FALSE;
            break;
        default:
            break;
        }
    }
}

KiroResult SetOddStats(IKIROCoreAlgo* pAlgo, KIROStatsList& rStats)
{
    MakeOdd(rStats);
    return setStatsOfCore(pAlgo, rStats);
}

}  // namespace

IKIROCoreAlgo* MakeStatisticsOdd(IKIROCoreAlgo* pAlgo)
{
    setStatsOfCore  = pAlgo->setStats;
    pAlgo->setStats = SetOddStats;
    return pAlgo;
}

VOID SetDisturbance(Disturbance disturbance)
{
    disturbanceOfFrames = disturbance;
}

}  // namespace kirosoak
