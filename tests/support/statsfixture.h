/// @file
/// Channels as a host delivers them, and a stats processor with banks that a test fills.
#pragma once

#include <deque>
#include <vector>

#include "core/statsprocessor/ckiromodstatsprocessor.h"
#include "tests/support/testcontext.h"

namespace statsfixture
{

constexpr KIROSubsamplingInfo NoSubsampling = {nullptr, 0, 0};

/// @param rValues stay the caller's
inline KIROCntStatsOut Grid(const CHAR* pName, UINT32 width, UINT32 height, std::vector<FLOAT>& rValues,
                            INT32 bitDepth = 8)
{
    KIROCntStatsOut stats{};
    stats.type                        = kiroglobalelements::KIROStatsGrid;
    stats.resolution                  = {width, height, 0, bitDepth};
    stats.channelData.bChannelEnabled = TRUE;
    stats.channelData.pChannelName    = const_cast<CHAR*>(pName);
    stats.channelData.Data.pFData     = rValues.data();
    return stats;
}

/// @param rCounts, rLUT stay the caller's; the LUT fixes the number of bins
inline KIROCntStatsOut Hist(const CHAR* pName, std::vector<UINT32>& rCounts, std::vector<FLOAT>& rLUT,
                            INT32 bitDepth = 8)
{
    KIROCntStatsOut stats{};
    stats.type                        = kiroglobalelements::KIROStatsHist;
    stats.resolution                  = {0, 0, static_cast<UINT32>(rLUT.size()), bitDepth};
    stats.channelData.bChannelEnabled = TRUE;
    stats.channelData.pChannelName    = const_cast<CHAR*>(pName);
    stats.channelData.Data.pIData     = reinterpret_cast<INT*>(rCounts.data());
    stats.channelData.pValLUT         = rLUT.data();
    return stats;
}

class StatsTest : public ContextTest
{
protected:
    static constexpr INT32 TableID = 5;

    StatsTest() : m_pStats(TavoNew<CKIROStatsProcessor>(m_context.m_tuningData, m_context))
    {
        m_table.dataID = TableID;
        std::fill(std::begin(m_table.weights), std::end(m_table.weights), 1.0f);
        SetBank(BankIDMetering2D, &m_table);
    }

    KiroResult Set(KIROCntStatsOut stats)
    {
        return m_pStats->SetStats(stats, StatisticsStartUpValid);
    }

    /// The channel takes the place of all others.
    VOID SetAlone(KIROCntStatsOut stats)
    {
        m_pStats->ResetStats();
        EXPECT_EQ(Set(stats), 0);
    }

    /// Puts the region in the bank in place of all others.
    VOID SetROI(INT32 dataID, FLOAT x, FLOAT y, FLOAT dx, FLOAT dy)
    {
        m_region = {dataID, nullptr, {x, y, dx, dy}, 1.0f};
        SetBank(BankIDROITable, &m_region);
    }

    DBMeter2DWeightPayload       m_table{};
    DBROIPayload                 m_region{};
    TavoPtr<CKIROStatsProcessor> m_pStats;
};

}  // namespace statsfixture
