#include "fuzz/hoststatistics.h"

#include <algorithm>
#include <cstring>
#include <limits>

using kirocorestatsconfig::ResolutionType;

namespace fuzz
{

namespace
{

constexpr BYTE Shapes[][2] = {{16, 16}, {8, 8}, {64, 48}, {0, 0}, {1, 1}, {3, 5}, {17, 16}, {255, 1}, {0, 7}, {31, 0}};

constexpr UINT32 BinCounts[] = {256, 64, 1, 0, 1024, 1025, 255, 2048};

constexpr FLOAT OddValues[] = {std::numeric_limits<FLOAT>::quiet_NaN(),
                               std::numeric_limits<FLOAT>::infinity(),
                               -std::numeric_limits<FLOAT>::infinity(),
                               std::numeric_limits<FLOAT>::denorm_min(),
                               std::numeric_limits<FLOAT>::max(),
                               std::numeric_limits<FLOAT>::lowest(),
                               0.0f,
                               -1.0f};

constexpr INT32 BitDepths[] = {8, 10, 14, 16, 0, 1, 24, 31, 32, -1};

template <typename T, size_t Count> const T& Pick(const T (&rFrom)[Count], BYTE choice)
{
    return rFrom[choice % Count];
}

bool IsHistogram(const CHAR* pName)
{
    return std::strstr(pName, "Hist") != nullptr;
}

ResolutionType ShapeOf(BYTE choice)
{
    const BYTE(&rSides)[2] = Pick(Shapes, choice);
    return {rSides[0], rSides[1], Pick(BinCounts, choice), 8};
}

}  // namespace

/// Without bytes: an even scene of middle brightness.
HostStatistics::HostStatistics(UINT64 frameID, HostBytes& rBytes)
{
    constexpr BYTE oddMax = 4;

    m_list.frameID             = frameID;
    const ResolutionType shape = ShapeOf(rBytes.Next());
    const BYTE           level = rBytes.Next();
    for (const CHAR* pName : ChannelNames)
    {
        AddChannel(pName, shape, level);
    }
    for (BYTE count = rBytes.Next() % oddMax; count > 0; --count)
    {
        MakeOdd(m_list.pList[rBytes.Next() % m_list.count], rBytes);
    }
}

VOID HostStatistics::AddChannel(const CHAR* pName, const ResolutionType& rShape, BYTE level)
{
    constexpr BYTE middle = 60;

    KIROCntStatsOut& rChannel = m_list.pList[m_list.count++];
    KIROCoreChInfo&  rData    = rChannel.channelData;
    rChannel.frameID          = m_list.frameID;
    rData.bChannelEnabled     = TRUE;
    rData.pChannelName        = static_cast<CHAR*>(m_memory.Make(std::strlen(pName) + 1));
    std::copy_n(pName, std::strlen(pName), rData.pChannelName);
    if (IsHistogram(pName))
    {
        // One entry more than bins, as hosts have it.
        const UINT32 count  = rShape.binCount;
        rChannel.type       = kiroglobalelements::KIROStatsHist;
        rChannel.resolution = {0, 0, count, rShape.bitDepth};
        rData.dataSize      = count * static_cast<UINT32>(sizeof(INT));
        rData.Data.pIData   = static_cast<INT*>(m_memory.Make((count + 1) * sizeof(INT)));
        rData.pValLUT       = static_cast<FLOAT*>(m_memory.Make((count + 1) * sizeof(FLOAT)));
        for (UINT32 bin = 0; bin < count; ++bin)
        {
            rData.pValLUT[bin]     = static_cast<FLOAT>(bin * 256) / static_cast<FLOAT>(count);
            rData.Data.pIData[bin] = static_cast<INT>((bin + level) % 7 * 3);
        }
    }
    else
    {
        const size_t count  = static_cast<size_t>(rShape.width) * rShape.height;
        rChannel.type       = kiroglobalelements::KIROStatsGrid;
        rChannel.resolution = {rShape.width, rShape.height, 0, rShape.bitDepth};
        rData.dataSize      = static_cast<UINT32>(count * sizeof(FLOAT));
        rData.Data.pFData   = static_cast<FLOAT*>(m_memory.Make(count * sizeof(FLOAT)));
        for (size_t region = 0; region < count; ++region)
        {
            rData.Data.pFData[region] = static_cast<FLOAT>((middle + level) % 256) + static_cast<FLOAT>(region % 3);
        }
    }
}

VOID HostStatistics::MakeOdd(KIROCntStatsOut& rChannel, HostBytes& rBytes)
{
    KIROCoreChInfo& rData = rChannel.channelData;
    switch (rBytes.Next() % 8)
    {
    case 0:
    case 1:
        PutOddValue(rChannel, rBytes);
        break;
    case 2:
        rData.bChannelEnabled = FALSE;
        break;
    case 3:
        // A shape of its own takes the place of the channel.
        --m_list.count;
        std::swap(rChannel, m_list.pList[m_list.count]);
        AddChannel(Pick(ChannelNames, rBytes.Next()), ShapeOf(rBytes.Next()), rBytes.Next());
        break;
    case 4:
        rChannel.resolution.bitDepth = Pick(BitDepths, rBytes.Next());
        break;
    case 5:
        rData.dataSize = rBytes.Next();
        break;
    case 6:
        rData.pValLUT = nullptr;
        break;
    default:
        m_list.startup               = static_cast<StatisticsStartUp>(rBytes.Next());
        m_list.prepareBeforePreflash = rBytes.Next();
        m_list.bIsTorchAEC           = rBytes.Next();
        m_list.bIsDepthAEC           = rBytes.Next();
        break;
    }
}

/// In one place or in all.
VOID HostStatistics::PutOddValue(KIROCntStatsOut& rChannel, HostBytes& rBytes)
{
    constexpr BYTE all = 0xFF;

    const bool   isHistogram = rChannel.type == kiroglobalelements::KIROStatsHist;
    const size_t count       = isHistogram ? rChannel.resolution.binCount
                                           : static_cast<size_t>(rChannel.resolution.width) * rChannel.resolution.height;
    const FLOAT  value       = Pick(OddValues, rBytes.Next());
    const BYTE   place       = rBytes.Next();
    for (size_t index = 0; index < count; ++index)
    {
        if (place != all && index != place * count / all)
        {
            continue;
        }
        if (isHistogram)
        {
            std::memcpy(rChannel.channelData.Data.pIData + index, &value, sizeof(value));
            if (rChannel.channelData.pValLUT != nullptr && place % 2 == 0)
            {
                rChannel.channelData.pValLUT[index] = value;
            }
        }
        else
        {
            rChannel.channelData.Data.pFData[index] = value;
        }
    }
}

}  // namespace fuzz
