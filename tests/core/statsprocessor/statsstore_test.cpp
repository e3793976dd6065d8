// What the store takes in, finds again and refuses.

#include "tests/support/statsfixture.h"

using namespace statsfixture;

namespace
{

class StatsStore : public StatsTest
{
protected:
    std::vector<FLOAT>  m_values = {1.0f, 2.0f};
    std::vector<UINT32> m_counts = {1, 2};
};

TEST_F(StatsStore, ReportsTheLastRecordOnly)
{
    std::vector<KIROCntStatsOut> stats(21, Grid("G", 2, 1, m_values));
    EXPECT_EQ(m_pStats->SetStats(stats.data(), 21, StatisticsStartUpValid), 1);
    EXPECT_EQ(m_pStats->GetGridStatsCount(), 20u);
    EXPECT_EQ(m_log.Count(LevelError, "Grid core stats buffer is full. Unable to set!"), 1u);

    m_pStats->ResetStats();
    EXPECT_EQ(m_pStats->GetGridStatsCount(), 0u);
    stats.push_back(Hist("H", m_counts, m_values));
    EXPECT_EQ(m_pStats->SetStats(stats.data(), 22, StatisticsStartUpValid), 0);
    EXPECT_EQ(m_log.Count(LevelError, "Grid core stats buffer is full. Unable to set!"), 2u);
    EXPECT_NE(m_pStats->GetRawStats("H", KIROStatsHist), nullptr);
    for (UINT32 index = 1; index < 20; ++index)
    {
        EXPECT_EQ(Set(Hist("H", m_counts, m_values)), 0);
    }
    EXPECT_EQ(Set(Hist("H", m_counts, m_values)), 1);
    EXPECT_TRUE(m_log.Has(LevelError, "Hist core stats buffer is full. Unable to set!"));
    EXPECT_EQ(m_pStats->SetStats(nullptr, 0, StatisticsStartUpInvalid), 0);
}

TEST_F(StatsStore, RefusesStartUpInvalidFramesAndListsBeyondTheirEnd)
{
    KIROStatsList list{};
    list.startup  = StatisticsStartUpInvalid;
    list.pList[0] = Grid("G", 2, 1, m_values);
    list.count    = 1;
    EXPECT_EQ(m_pStats->SetStats(list), 11);
    EXPECT_EQ(m_pStats->GetGridStatsCount(), 0u);
    EXPECT_TRUE(m_log.HasPart(LevelWarning, "Start up invalid stats, ignore it"));

    list.startup = StatisticsStartUpValid;
    list.count   = 21;
    EXPECT_EQ(m_pStats->SetStats(list), 11);
    EXPECT_EQ(m_pStats->GetGridStatsCount(), 0u);

    list.count                                = 1;
    list.pList[0].channelData.bChannelEnabled = FALSE;
    EXPECT_EQ(m_pStats->SetStats(list), 0);
    EXPECT_EQ(m_pStats->GetGridStatsCount(), 0u);
    EXPECT_TRUE(m_log.Has(LevelTrace, "Trying to set stats G , but it's disabled. Skip the current channel."));

    list.pList[0].channelData.bChannelEnabled = TRUE;
    list.pList[0].type                        = static_cast<KIROStatsType>(9);
    EXPECT_EQ(m_pStats->SetStats(list), 0);
    EXPECT_EQ(m_pStats->GetGridStatsCount(), 1u) << "unknown types count as grids";

    list.pList[0].channelData.Data.pFData = nullptr;
    EXPECT_EQ(m_pStats->SetStats(list), 11);
    EXPECT_EQ(m_pStats->GetGridStatsCount(), 1u);
    EXPECT_TRUE(m_log.Has(LevelError, "Grid buffer missing for stats G. Skip the stats."));
}

TEST_F(StatsStore, FindsTheEarlierOfTwoChannelsByExactName)
{
    std::vector<FLOAT> other = {5.0f, 6.0f};
    ASSERT_EQ(Set(Grid(nullptr, 2, 1, other)), 0);
    ASSERT_EQ(Set(Grid("G", 2, 1, m_values)), 0);
    ASSERT_EQ(Set(Grid("G", 2, 1, other)), 0);
    const KIROCntStatsOut* pFound = m_pStats->GetRawStats("G", KIROStatsGrid);
    ASSERT_NE(pFound, nullptr);
    EXPECT_EQ(pFound->channelData.Data.pFData, m_values.data()) << "values are not copied";
    EXPECT_EQ(m_pStats->GetRawStats("g", KIROStatsGrid), nullptr);
    EXPECT_EQ(m_pStats->GetRawStats("G", KIROStatsHist), nullptr);
    EXPECT_EQ(m_pStats->GetRawStats(nullptr, KIROStatsGrid), nullptr);
    EXPECT_EQ(m_pStats->GetRawStats("G", static_cast<KIROStatsType>(2)), nullptr);
    EXPECT_TRUE(m_log.Has(LevelError, "Unable to find stats G for type 2"));
}

TEST_F(StatsStore, FirstHistogramYieldsNoIterator)
{
    ASSERT_EQ(Set(Grid("G", 2, 1, m_values)), 0);
    ASSERT_EQ(Set(Hist("first", m_counts, m_values)), 0);
    ASSERT_EQ(Set(Hist("second", m_counts, m_values)), 0);
    KIROItrConfig config{};
    KIROItrInfo   histInfo = {KIROStatsHist, {0, 0, 2, 8}};
    EXPECT_EQ(m_pStats->GetStatsIterator("first", config, histInfo), nullptr);
    IKIROIterator* pBins = m_pStats->GetStatsIterator("second", config, histInfo);
    ASSERT_NE(pBins, nullptr);
    EXPECT_EQ(pBins->NextHistData()->binCount, 2u);

    KIROItrInfo    gridInfo = {KIROStatsGrid, {2, 1, 0, 8}};
    IKIROIterator* pRegions = m_pStats->GetStatsIterator("G", config, gridInfo);
    ASSERT_NE(pRegions, nullptr);
    EXPECT_EQ(pRegions->NextGridData(), 1.0f);
    EXPECT_EQ(pRegions->NextGridData(), 2.0f);

    gridInfo.resolution.bitDepth = 10;
    EXPECT_EQ(m_pStats->GetStatsIterator("G", config, gridInfo), nullptr);
    EXPECT_EQ(m_log.CountLevel(LevelError), 0u);
    gridInfo.type = static_cast<KIROStatsType>(5);
    EXPECT_EQ(m_pStats->GetStatsIterator("G", config, gridInfo), nullptr);
    EXPECT_TRUE(m_log.Has(LevelError, "Invalid stats type: 5"));
}

TEST_F(StatsStore, ThresholdFollowsTheRatioOfTheReflectedFrame)
{
    const auto threshold = [this] { return m_pStats->CalculateStatsThreshold(ScaleShortThreshold); };
    EXPECT_EQ(threshold(), 0.98f) << "no history";

    AECFrameHistory frame = {.exposureSets = {{.exposure = 1000}}, .predictiveGain = 2.0f, .mfhdrLongADRC = 1.4f};
    const auto      save  = [&](UINT64 frameID, UINT64 safeExposure)
    {
        frame.frameID                                    = frameID;
        frame.exposureSets[AECAlgoExposureSafe].exposure = safeExposure;
        m_context.SaveFrame(frame);
    };
    save(10, 4000);
    save(11, 8000);
    m_context.m_input.systemLatency = 2;
    EXPECT_FLOAT_EQ(threshold(), 0.49f);
    m_context.m_input.systemLatency = 1;
    EXPECT_FLOAT_EQ(threshold(), 0.245f);
    EXPECT_EQ(m_pStats->CalculateStatsThreshold(DoNotHandle), 0.98f);

    // The long compensation takes the ratio's place only with the short blend in one of two HDR types.
    m_context.m_bIsLongADRC = TRUE;
    EXPECT_FLOAT_EQ(threshold(), 0.245f);
    m_context.m_input.HDRType = StaggeredHDR;
    EXPECT_FLOAT_EQ(threshold(), 0.7f);
    m_context.m_input.HDRType = MultiframeHDR;
    EXPECT_FLOAT_EQ(threshold(), 0.7f);
    m_context.m_bIsLongADRC = FALSE;
    EXPECT_FLOAT_EQ(threshold(), 0.245f);

    // Nothing pulls the clamp up.
    frame.predictiveGain = 1.0f;
    save(12, 1000);
    EXPECT_EQ(threshold(), 0.98f);
    save(13, 500);
    EXPECT_EQ(threshold(), 0.98f);
}

}  // namespace
