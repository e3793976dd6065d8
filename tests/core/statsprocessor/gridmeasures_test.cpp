// Measures over grid channels, by numbers worked out by hand.

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <random>

#include "core/statsprocessor/regionweights.h"
#include "tests/support/statsfixture.h"

using namespace statsfixture;
using kiroglobalelements::TriggerSystemEndLevelStartEndType;

namespace
{

constexpr FLOAT Clamp8Bit = 249.9f;  // 0.98 of 255

class GridMeasures : public StatsTest
{
protected:
    FLOAT WeightedLuma(INT32 roiID, BOOL bInterpolate = FALSE, INT32 tableID = TableID)
    {
        FLOAT luma = 0.0f;
        m_result =
            m_pStats->GetGridWeightedLuma("luma", roiID, NoSubsampling, tableID, luma, DoNotHandle, bInterpolate);
        return luma;
    }

    KiroResult m_result = 0;
};

TEST_F(GridMeasures, WeightedMeanSkipsRegionsWithoutWeightAndClampsBrightOnes)
{
    std::vector<FLOAT> values = {10.0f, 20.0f, 30.0f, 40.0f};
    ASSERT_EQ(Set(Grid("luma", 2, 2, values)), 0);
    // A 2 x 2 grid reads columns and rows 0 and 8 of the table.
    m_table.weights[0]          = 1.0f;
    m_table.weights[8]          = 2.0f;
    m_table.weights[8 * 16]     = 3.0f;
    m_table.weights[8 * 16 + 8] = 4.0f;
    EXPECT_FLOAT_EQ(WeightedLuma(0), 30.0f);  // (10 + 40 + 90 + 160) / 10
    EXPECT_EQ(m_result, 0);

    values[3] = 1000.0f;
    EXPECT_FLOAT_EQ(WeightedLuma(0), (10.0f + 40.0f + 90.0f + 4.0f * Clamp8Bit) / 10.0f);

    // A negative table ID keeps the weights of the measure before.
    values[3] = 40.0f;
    EXPECT_FLOAT_EQ(WeightedLuma(0, FALSE, -1), 30.0f);

    m_table.weights[8] = -1.0f;
    EXPECT_FLOAT_EQ(WeightedLuma(0), 32.5f);  // (10 + 90 + 160) / 8
}

TEST_F(GridMeasures, AChannelIsTheFirstOfItsNameInEachFrame)
{
    std::vector<FLOAT> dark = {10.0f}, grey = {50.0f}, bright = {90.0f};
    m_table.weights[0] = 1.0f;
    SetAlone(Grid("other", 1, 1, dark));
    ASSERT_EQ(Set(Grid("luma", 1, 1, grey)), 0);
    EXPECT_EQ(WeightedLuma(0), 50.0f);
    ASSERT_EQ(Set(Grid("luma", 1, 1, bright)), 0);
    EXPECT_EQ(WeightedLuma(0), 50.0f) << "a further one of the same frame";
    SetAlone(Grid("luma", 1, 1, bright));
    ASSERT_EQ(Set(Grid("luma", 1, 1, grey)), 0);
    EXPECT_EQ(WeightedLuma(0), 90.0f);
    SetAlone(Grid("other", 1, 1, dark));
    EXPECT_EQ(WeightedLuma(0), -1.0f);
}

TEST_F(GridMeasures, ROIWithinRegionsIsExactOnlyWhenInterpolated)
{
    std::vector<FLOAT> row = {10.0f, 20.0f, 40.0f}, longer = {10.0f, 20.0f, 40.0f, 80.0f};
    std::vector<FLOAT> square = {16.0f, 4.0f, 0.0f, 0.0f, 9.0f, 0.0f, 0.0f, 8.0f, 32.0f};
    SetROI(7, 0.25f, 0.0f, 0.5f, 1.0f);
    SetAlone(Grid("luma", 3, 1, row));
    EXPECT_FLOAT_EQ(WeightedLuma(7), 20.0f);
    EXPECT_FLOAT_EQ(WeightedLuma(7, TRUE), 32.5f / 1.5f);  // (10 / 4 + 20 + 40 / 4) / 1.5
    SetAlone(Grid("luma", 4, 1, longer));
    EXPECT_FLOAT_EQ(WeightedLuma(7, TRUE), 30.0f);
    SetROI(7, 0.0f, 0.0f, 0.125f, 1.0f);
    EXPECT_FLOAT_EQ(WeightedLuma(7, TRUE), 10.0f);  // part of one region
    SetROI(7, 0.25f, 0.25f, 0.5f, 0.5f);
    SetAlone(Grid("luma", 3, 3, square));
    // Corners count 1/16, edges 1/4: (1 + 1 + 9 + 2 + 2) / 2.25
    EXPECT_FLOAT_EQ(WeightedLuma(7, TRUE), 15.0f / 2.25f);
}

TEST_F(GridMeasures, BadRegionsAndTablesLeaveTheSentinel)
{
    std::vector<FLOAT> values(6, 10.0f);
    ASSERT_EQ(Set(Grid("luma", 3, 2, values)), 0);
    const FLOAT nan          = std::numeric_limits<FLOAT>::quiet_NaN();
    const FLOAT regions[][4] = {{0.0f, 0.0f, 0.0f, 1.0f},  {0.0f, 0.0f, 1.0f, 0.0f}, {1.5f, 0.0f, 0.5f, 1.0f},
                                {-0.1f, 0.0f, 0.5f, 1.0f}, {0.0f, nan, 0.5f, 1.0f},  {0.0f, 0.0f, 1.5f, 0.5f}};
    for (const auto& rRegion : regions)
    {
        SetROI(7, rRegion[0], rRegion[1], rRegion[2], rRegion[3]);
        EXPECT_EQ(WeightedLuma(7), -1.0f);
        EXPECT_EQ(m_result, 0);
        EXPECT_EQ(WeightedLuma(7, TRUE), -1.0f);
        EXPECT_EQ(m_result, 1);
    }
    EXPECT_EQ(WeightedLuma(9), -1.0f);
    EXPECT_TRUE(m_log.Has(LevelError, "ROI Info invalid. ID:9"));
    std::fill(std::begin(m_table.weights), std::end(m_table.weights), 0.0f);
    SetROI(7, 0.25f, 0.0f, 0.5f, 1.0f);
    EXPECT_EQ(WeightedLuma(7), -1.0f) << "without weights";
    EXPECT_EQ(WeightedLuma(7, TRUE), 0.0f) << "without weights, interpolated";
    EXPECT_EQ(m_result, 0);
    EXPECT_EQ(WeightedLuma(0, FALSE, 77), -1.0f);
    EXPECT_TRUE(m_log.Has(LevelError, "Metering table invalid. ID:77"));
    FLOAT luma = 3.0f;
    EXPECT_EQ(m_pStats->GetGridWeightedLuma("Luma", 0, NoSubsampling, TableID, luma, DoNotHandle, FALSE), 11);
    EXPECT_EQ(luma, -1.0f);
    EXPECT_TRUE(m_log.Has(LevelError, "Invalid stats channel Luma"));
}

/// Means of random tables and regions over random grids, frame by frame.
class SharedWalks : public GridMeasures
{
protected:
    static constexpr UINT32 TableCount = 40;  ///< more than are walked side by side
    static constexpr UINT32 ROIs       = 3;

    /// What one calculator asks for.
    struct Request
    {
        UINT32 table;
        UINT32 roi;
        INT32  tableID;
        bool   isTiled;
    };

    FLOAT Random(FLOAT low, FLOAT high)
    {
        return std::uniform_real_distribution<FLOAT>(low, high)(m_random);
    }

    UINT32 RandomUpTo(UINT32 last)
    {
        return std::uniform_int_distribution<UINT32>(0, last)(m_random);
    }

    VOID MakeSet()
    {
        const bool isHuge = RandomUpTo(400) == 0;  // more regions than fit into 16 bits
        m_width           = isHuge ? 300 : 1 + RandomUpTo(19);
        m_height          = isHuge ? 300 : 1 + RandomUpTo(15);
        m_values.resize(static_cast<size_t>(m_width) * m_height);
        for (auto& rTable : m_tables)
        {
            const UINT32 kind = RandomUpTo(9);  // 0: leaves out regions, 1: weighs none
            for (FLOAT& rWeight : rTable)
            {
                rWeight = (kind == 1) ? 1.0f : Random(-0.1f, 4.0f);
                rWeight = (kind == 0 && RandomUpTo(3) == 0) ? -1.0f : rWeight;
            }
        }
        for (auto& rROI : m_rois)
        {
            const FLOAT x = Random(0.0f, 0.9f), y = Random(0.0f, 0.9f);
            rROI = {x, y, Random(0.01f, 1.0f - x), Random(0.01f, 1.0f - y)};
        }
        m_rois[0]          = {0.0f, 0.0f, 1.0f, 1.0f};
        m_rois[1]          = {0.5f, 0.93f, 0.1f, 0.05f};
        const bool isCrowd = RandomUpTo(9) == 0;  // of tables over one region, for more than one walk
        m_requests.resize(isCrowd ? 60 : 1 + RandomUpTo(11));
        for (Request& rRequest : m_requests)
        {
            constexpr INT32 tableIDs[] = {TableID, TableID, TableID, TableID, TableID, 77, -1};
            rRequest = {RandomUpTo(TableCount - 1), isCrowd ? 0 : RandomUpTo(ROIs - 1), tableIDs[RandomUpTo(6)],
                        RandomUpTo(9) == 0};
        }
    }

    /// @param rNoTile a tile of one cell measures what no tile does, but always alone
    FLOAT Ask(CKIROStatsProcessor& rStats, const Request& rRequest, const KIROSubsamplingInfo& rNoTile)
    {
        std::copy(m_tables[rRequest.table].begin(), m_tables[rRequest.table].end(), m_table.weights);
        const auto& rROI = m_rois[rRequest.roi];
        SetROI(7, rROI[0], rROI[1], rROI[2], rROI[3]);
        constexpr UINT32    cells[] = {1, 0, 0, 1};
        KIROSubsamplingInfo tile    = rNoTile;
        if (rRequest.isTiled)
        {
            tile = {cells, 2, 2};
        }
        FLOAT luma = 0.0f;
        (VOID) rStats.GetGridWeightedLuma("luma", 7, tile, rRequest.tableID, luma, DoNotHandle, FALSE);
        return luma;
    }

    std::mt19937                                   m_random{17};
    UINT32                                         m_width  = 0;
    UINT32                                         m_height = 0;
    std::vector<FLOAT>                             m_values;
    std::array<std::array<FLOAT, 256>, TableCount> m_tables{};
    std::array<std::array<FLOAT, 4>, ROIs>         m_rois{};
    std::vector<Request>                           m_requests;
    TavoPtr<CKIROStatsProcessor> m_pAlone = TavoNew<CKIROStatsProcessor>(m_context.m_tuningData, m_context);
};

TEST_F(SharedWalks, MeansOfOneWalkHaveTheBitsThatEachHasAlone)
{
    for (UINT32 set = 0; set < 2000; ++set)
    {
        MakeSet();
        for (UINT32 frame = 0; frame < 4; ++frame)
        {
            const bool areWhole = RandomUpTo(1) == 0;
            for (FLOAT& rValue : m_values)
            {
                const FLOAT value = Random(0.0f, 300.0f);  // some of them clamped
                rValue            = areWhole ? std::floor(value * 0.8f) : value;
            }
            KIROCntStatsOut grid = Grid("luma", m_width, m_height, m_values);
            SetAlone(grid);
            m_pAlone->ResetStats();
            ASSERT_EQ(m_pAlone->SetStats(grid, StatisticsStartUpValid), 0);
            for (const Request& rRequest : m_requests)
            {
                const FLOAT shared = Ask(*m_pStats, rRequest, NoSubsampling);
                const FLOAT alone  = Ask(*m_pAlone, rRequest, SingleCellTile);
                ASSERT_EQ(std::bit_cast<UINT32>(shared), std::bit_cast<UINT32>(alone)) << set << " " << frame;
            }
            if (RandomUpTo(2) == 0)
            {
                m_requests[0].table = RandomUpTo(TableCount - 1);  // the tuning moves on
            }
        }
    }
}

TEST_F(GridMeasures, PlainMeanCountsItsRegions)
{
    std::vector<FLOAT> values = {10.0f, 20.0f, 30.0f, 600.0f};
    ASSERT_EQ(Set(Grid("luma", 4, 1, values)), 0);
    UINT32 regions = 9;
    FLOAT  luma    = 0.0f;
    EXPECT_EQ(m_pStats->GetGridSatRatiosLuma("luma", 0, NoSubsampling, regions, luma, DoNotHandle), 0);
    EXPECT_FLOAT_EQ(luma, (60.0f + Clamp8Bit) / 4.0f);
    EXPECT_EQ(regions, 4u);
    SetROI(7, 0.5f, 0.0f, 0.5f, 1.0f);
    EXPECT_EQ(m_pStats->GetGridSatRatiosLuma("luma", 7, NoSubsampling, regions, luma, DoNotHandle), 0);
    EXPECT_FLOAT_EQ(luma, (30.0f + Clamp8Bit) / 2.0f);
    EXPECT_EQ(regions, 2u);
}

TEST(RegionWeights, MapLumaWithinRowsAndBetweenThem)
{
    const TriggerSystemEndLevelStartEndType rows[] = {{{10.0f, 20.0f}, {1.0f, 2.0f}}, {{40.0f, 50.0f}, {6.0f, 8.0f}}};
    const FLOAT          expected[][2] = {{5.0f, 1.0f},  {10.0f, 1.0f}, {15.0f, 1.5f}, {20.0f, 2.0f}, {30.0f, 4.0f},
                                          {40.0f, 6.0f}, {45.0f, 7.0f}, {50.0f, 8.0f}, {60.0f, 8.0f}};
    regionweights::Batch luma          = {}, weights;
    for (size_t index = 0; index < std::size(expected); ++index)
    {
        luma[index] = expected[index][0];
    }
    regionweights::ByLuma(2, rows, luma, weights);
    for (size_t index = 0; index < std::size(expected); ++index)
    {
        EXPECT_FLOAT_EQ(weights[index], expected[index][1]) << luma[index];
    }
    const TriggerSystemEndLevelStartEndType point[] = {{{10.0f, 10.0f}, {3.0f, 5.0f}}};
    regionweights::ByLuma(1, point, luma, weights);
    EXPECT_EQ(weights[1], 5.0f) << "the far end";
    regionweights::ByLuma(0, nullptr, luma, weights);
    EXPECT_EQ(weights[1], 0.0f);
}

/// The map row by row, as a tuner reads it.
FLOAT MapLuma(const std::vector<TriggerSystemEndLevelStartEndType>& rRows, FLOAT luma)
{
    const auto line = [luma](FLOAT x1, FLOAT y1, FLOAT x2, FLOAT y2)
    { return (x1 == x2) ? y2 : y1 + (y2 - y1) * ((luma - x1) / (x2 - x1)); };
    for (size_t row = 0; row < rRows.size(); ++row)
    {
        const auto& rRow = rRows[row];
        if (rRow.trigger.start > luma)
        {
            return (row == 0) ? rRow.triggerData.start
                              : line(rRows[row - 1].trigger.end, rRows[row - 1].triggerData.end, rRow.trigger.start,
                                     rRow.triggerData.start);
        }
        if (rRow.trigger.end >= luma)
        {
            return line(rRow.trigger.start, rRow.triggerData.start, rRow.trigger.end, rRow.triggerData.end);
        }
    }
    return rRows.back().triggerData.end;
}

TEST(RegionWeights, OfManyRegionsAtATimeHaveTheBitsOfEachAlone)
{
    std::mt19937 random(9);
    const auto   pick = [&random](std::initializer_list<FLOAT> values)
    { return values.begin()[std::uniform_int_distribution<size_t>(0, values.size() - 1)(random)]; };
    for (UINT32 set = 0; set < 500; ++set)
    {
        std::vector<TriggerSystemEndLevelStartEndType> rows(1 + set % 4);
        FLOAT                                          edge = pick({-10.0f, 0.0f, 20.0f});
        for (auto& rRow : rows)  // steps, level lines and slopes; now and then out of order
        {
            const FLOAT start = edge;
            edge += pick({0.0f, 0.1f, 33.0f, 60.0f, -5.0f});
            rRow = {{start, edge}, {pick({0.0f, -0.0f, 0.3f, 1.0f, 1.0f}), pick({0.0f, -0.0f, 1.0f, 1.0f, -0.7f})}};
            edge += pick({0.0f, 7.0f, 40.0f});
        }
        regionweights::Batch luma, weights;
        for (FLOAT& rLuma : luma)
        {
            rLuma = pick({edge, 0.0f, std::uniform_real_distribution<FLOAT>(-20.0f, 260.0f)(random), 20.0f});
        }
        regionweights::ByLuma(static_cast<UINT32>(rows.size()), rows.data(), luma, weights);
        for (UINT32 region = 0; region < regionweights::BatchSize; ++region)
        {
            ASSERT_EQ(std::bit_cast<UINT32>(weights[region]), std::bit_cast<UINT32>(MapLuma(rows, luma[region])))
                << set << " " << luma[region];
        }
    }
}

class ColorMeasures : public StatsTest
{
protected:
    VOID SetChannels(UINT32 width, UINT32 height, INT32 bitDepthOfBg = 8)
    {
        SetAlone(Grid("luma", width, height, m_luma));
        ASSERT_EQ(Set(Grid("rg", width, height, m_rg)), 0);
        ASSERT_EQ(Set(Grid("bg", width, height, m_bg, bitDepthOfBg)), 0);
    }

    KiroResult Count(UINT32 channels, INT32 roiID)
    {
        return m_pStats->GetGridRgBgStatsCount(m_names, channels, roiID, NoSubsampling, 2, m_rows, m_count,
                                               DoNotHandle);
    }

    GroupedGridParameters* Initialize(FLOAT buffer)
    {
        FLOAT result = 0.0f;
        return m_pStats->ProcInitializeXTremeColorRegion(m_names, 3, 3, NoSubsampling, 2, m_rows, result, DoNotHandle,
                                                         buffer);
    }

    FLOAT Stored(INT32 dataID)
    {
        return m_context.m_pBankManager->GetDataStatsCalculator(dataID)->value;
    }

    const CHAR*                       m_names[3] = {"luma", "rg", "bg"};
    std::vector<FLOAT>                m_luma     = {10.0f, 50.0f, 100.0f, 250.0f};
    std::vector<FLOAT>                m_rg       = {0.5f, 0.625f, 0.75f, 0.5f};
    std::vector<FLOAT>                m_bg       = {0.5f, 0.625f, 0.5f, 0.5f};
    TriggerSystemEndLevelStartEndType m_rows[2]  = {{{0.0f, 100.0f}, {0.0f, 1.0f}}, {{200.0f, 300.0f}, {1.0f, 0.0f}}};
    TriggerSystemEndLevelStartEndType m_rowsOf[6][2];  ///< for those that are measured together
    FLOAT                             m_count = 0.0f;
};

TEST_F(ColorMeasures, CountsRegionsOfABoxByLuma)
{
    SetChannels(4, 1);
    SetROI(3, 0.5f, 0.5f, 0.125f, 0.125f);
    EXPECT_EQ(Count(3, 3), 0);
    // 0.1, 0.5 on the border of the box, none, and 249.9 of 200 to 300.
    EXPECT_NEAR(m_count, 0.1f + 0.5f + 0.501f, 1e-5f);

    EXPECT_EQ(Count(2, 3), 11);
    EXPECT_EQ(m_count, -1.0f);
    EXPECT_TRUE(m_log.HasPart(LevelError, "Invalid stats. Channels:2, Luma:luma"));
    EXPECT_EQ(Count(3, 8), 11);

    SetChannels(4, 1, 10);
    EXPECT_EQ(Count(3, 3), 11);
    EXPECT_EQ(m_count, -1.0f);
    EXPECT_TRUE(m_log.Has(LevelError, "Resolution of stats channel are not matched"));
}

TEST_F(ColorMeasures, OneWalkServesAllExtremeColours)
{
    m_luma = {50.0f, 150.0f, 150.0f, 150.0f};
    m_rg   = {1.25f, 1.75f, 1.25f, 3.0f};
    m_bg   = {0.375f, 0.375f, 0.5625f, 0.375f};
    SetChannels(2, 2);
    SetROI(3, 0.5f, 0.5f, 0.25f, 0.5f);
    auto& rAWB = m_context.m_input.AWBState;
    rAWB       = {TRUE, 1.0f, 2.0f, 4.0f, 5000, {}};

    GroupedGridParameters first = *Initialize(0.25f);
    EXPECT_FLOAT_EQ(first.rgCenter, 1.25f);
    EXPECT_FLOAT_EQ(first.rgDist_min, 0.25f);
    EXPECT_FLOAT_EQ(first.rgDist_buffDist, 0.5f);
    EXPECT_FLOAT_EQ(first.bgCenter, 0.375f);
    EXPECT_FLOAT_EQ(first.bgDist_min, 0.125f);
    EXPECT_FLOAT_EQ(first.bgDist_buffDist, 0.125f);
    GroupedGridParameters second = *Initialize(0.0f);
    EXPECT_FLOAT_EQ(second.rgDist_buffDist, 0.0002f) << "least buffer, times the gain ratio";

    first.outputStorage           = {20, 20};
    second.outputStorage          = {30, 10};
    GroupedGridParameters* both[] = {&first, &second};
    m_pStats->ProcGetExtColorRgBgStatsRatio(both, 2);
    // Weights by luma 0.5, 1, 1, 1; by colour 1, 0.5 (half of the fall-off), 0.5, 0; without a fall-off 1, 0, 0, 0.
    EXPECT_FLOAT_EQ(Stored(20), 1.5f / 4.0f);
    EXPECT_FLOAT_EQ(Stored(30), 0.5f / 4.0f);
    EXPECT_TRUE(m_log.HasPart(LevelWarning, "outputstart 30 end 10 not sufficient; using storage index 30"));

    // Positions of an earlier frame do not fit channels of other shapes.
    m_pStats->ResetStats();
    std::vector<FLOAT> one = {1.0f};
    ASSERT_EQ(Set(Grid("luma", 2, 2, m_luma)), 0);
    ASSERT_EQ(Set(Grid("other", 1, 1, one)), 0);
    ASSERT_EQ(Set(Grid("another", 1, 1, one)), 0);
    first.outputStorage = {40, 40};
    m_pStats->ProcGetExtColorRgBgStatsRatio(both, 1);
    EXPECT_EQ(Stored(40), 0.0f);
    EXPECT_TRUE(m_log.Has(LevelError, "Iterator configuration failed."));
    EXPECT_EQ(Initialize(0.25f), nullptr);
}

TEST_F(ColorMeasures, ExtremeColoursOfOneWalkHaveTheBitsThatEachHasAlone)
{
    constexpr INT32                       count = 6;  // more than are added up side by side
    std::mt19937                          random(5);
    std::uniform_real_distribution<FLOAT> ratio(0.1f, 2.0f), level(0.0f, 400.0f);
    m_luma.resize(30 * 20);  // more than one batch, and a part of one
    m_rg.resize(m_luma.size());
    m_bg.resize(m_luma.size());
    std::generate(m_luma.begin(), m_luma.end(), [&] { return level(random); });
    std::generate(m_rg.begin(), m_rg.end(), [&] { return ratio(random); });
    std::generate(m_bg.begin(), m_bg.end(), [&] { return ratio(random); });
    SetChannels(30, 20);
    m_context.m_input.AWBState = {TRUE, 1.0f, 2.0f, 4.0f, 5000, {}};

    GroupedGridParameters  groups[count];
    GroupedGridParameters* all[count];
    FLOAT                  alone[count];
    for (INT32 index = 0; index < count; ++index)
    {
        SetROI(3, 0.1f + 0.1f * static_cast<FLOAT>(index), 0.2f + 0.3f * static_cast<FLOAT>(index), 0.3f, 1.0f);
        m_rows[1].trigger.start     = (index % 3 == 0) ? 200.0f : 250.0f;  // luma weighs alike in some of them only
        groups[index]               = *Initialize(0.25f);
        groups[index].outputStorage = {10 + index, 10 + index};
        GroupedGridParameters  copy = groups[index];
        GroupedGridParameters* pOne = &copy;
        m_pStats->ProcGetExtColorRgBgStatsRatio(&pOne, 1);
        alone[index]                = Stored(10 + index);
        all[index]                  = &groups[index];
        m_rowsOf[index][0]          = m_rows[0];
        m_rowsOf[index][1]          = m_rows[1];
        groups[index].pRangeTrigger = m_rowsOf[index];
    }
    m_pStats->ProcGetExtColorRgBgStatsRatio(all, count);
    for (INT32 index = 0; index < count; ++index)
    {
        EXPECT_EQ(std::bit_cast<UINT32>(Stored(10 + index)), std::bit_cast<UINT32>(alone[index])) << index;
        EXPECT_GT(alone[index], 0.0f);
    }
}

TEST_F(GridMeasures, RoughnessComparesInnerRegionsWithTheirNeighbourhood)
{
    const CHAR*  pName = "luma";
    StartEndType range = {0.6f, 1.0f};
    FLOAT        roughness[2];
    const auto   measure = [&](UINT32 width, UINT32 height, std::vector<FLOAT> values)
    {
        SetAlone(Grid("luma", width, height, values));
        EXPECT_EQ(m_pStats->GetStatsRoughness(&pName, 1, &range, roughness), 0);
    };
    std::vector<FLOAT> spot(12, 1.0f);
    spot[5] = 10.0f;
    measure(4, 3, spot);  // |2 - 10| / 11 and |2 - 1| / 2
    EXPECT_FLOAT_EQ(roughness[0], (8.0f / 11.0f + 0.5f) / 2.0f);
    EXPECT_FLOAT_EQ(roughness[1], 0.5f);

    measure(4, 3, std::vector<FLOAT>(12, 7.0f));
    EXPECT_EQ(roughness[0], 0.0f);
    EXPECT_EQ(roughness[1], 0.0f);
    range = {0.0f, 1.0f};
    measure(4, 3, std::vector<FLOAT>(12, 7.0f));
    EXPECT_EQ(roughness[1], 1.0f);

    for (const auto& rShape : {std::pair<UINT32, UINT32>{6, 2}, {2, 6}, {1, 1}})
    {
        measure(rShape.first, rShape.second, std::vector<FLOAT>(rShape.first * rShape.second, 7.0f));
        EXPECT_EQ(roughness[0], -1.0f);
        EXPECT_EQ(roughness[1], -1.0f);
    }
    pName = "none";
    EXPECT_EQ(m_pStats->GetStatsRoughness(&pName, 1, &range, roughness), 11);
    EXPECT_EQ(roughness[0], -1.0f);
}

}  // namespace
