// Which regions a walk visits, and which weight a region has.

#include <numeric>

#include "core/statsprocessor/ckirohistiterator.h"
#include "tests/support/statsfixture.h"

using namespace statsfixture;

namespace
{

typedef std::vector<UINT32> Regions;

/// A walk over a grid whose values do not matter.
class GridWalk
{
public:
    GridWalk(UINT32 width, UINT32 height) : m_values(static_cast<size_t>(width) * height)
    {
        std::iota(m_values.begin(), m_values.end(), 0.0f);
        m_stats = Grid("luma", width, height, m_values);
        m_iterator.SetStats(&m_stats);
    }

    BOOL Configure(const KIROSubsamplingInfo* pTile, const AECAlgoROI* pROI, BOOL bWholeRegions = TRUE)
    {
        return m_iterator.Configure({pTile, pROI}, bWholeRegions);
    }

    /// The regions in order, by Next; the batch form must agree.
    Regions Visit()
    {
        Regions batch;
        m_iterator.ForEachRegion([&](UINT32 index) { batch.push_back(index); });
        Regions visited;
        while (m_iterator.HasNext() == TRUE)
        {
            visited.push_back(m_iterator.Next());
        }
        EXPECT_EQ(visited, batch);
        EXPECT_EQ(visited.size(), m_iterator.GetTotalNumOfRegions());
        EXPECT_EQ(m_iterator.Next(), 0u) << "exhausted";
        return visited;
    }

    StatsLogCapture    m_log;
    std::vector<FLOAT> m_values;
    KIROCntStatsOut    m_stats;
    CKIROGridIterator  m_iterator;
};

TEST(GridIterator, WholeFrameWithASingleCellIsRawWhateverTheCell)
{
    const UINT32              inactive  = 0;
    const KIROSubsamplingInfo tile      = {&inactive, 1, 1};
    const KIROItrConfig       configs[] = {{nullptr, nullptr}, {&NoSubsampling, nullptr}, {&tile, &FullFrameROI}};
    GridWalk                  walk(3, 2);
    for (const KIROItrConfig& rConfig : configs)
    {
        walk.m_log.Clear();
        EXPECT_EQ(walk.Configure(rConfig.pSSInfo, rConfig.pROIInfo), TRUE);
        EXPECT_EQ(walk.Visit(), (Regions{0, 1, 2, 3, 4, 5}));
        EXPECT_TRUE(walk.m_log.Has(LevelTrace, "Iterate RAW stats. Size:6"));
    }
    EXPECT_EQ(walk.m_iterator.NextGridData(), 0.0f) << "an exhausted walk reads region 0";
}

AECAlgoROI ROI(FLOAT x, FLOAT y, FLOAT dx, FLOAT dy)
{
    return {x, y, dx, dy, 1.0f};
}

TEST(GridIterator, VisitsTheActiveCellsOfWholeTilesWithinTheROI)
{
    const UINT32              diagonal[] = {0, 1, 1, 7};  // only a 1 is active
    const UINT32              none[9]    = {};
    const KIROSubsamplingInfo tile = {diagonal, 2, 2}, empty = {none, 2, 2}, large = {none, 3, 3};

    const std::tuple<const CHAR*, UINT32, KIROSubsamplingInfo, AECAlgoROI, Regions, const CHAR*> cases[] = {
        {"row by row", 4, tile, FullFrameROI, {1, 4, 3, 6, 9, 12, 11, 14}, nullptr},
        {"remainder",
         5,
         tile,
         FullFrameROI,
         {1, 5, 3, 7, 11, 15, 13, 17},
         "Block Count(h:2 w:2) PatternSize:2 TotalReg:8 ROI (Start:0, W:5, H:5)"},
        {"no active cell", 4, empty, FullFrameROI, {}, nullptr},
        {"tile larger than the ROI", 4, large, ROI(0.0f, 0.0f, 0.5f, 0.5f), {}, nullptr},
        // Columns 6 to 10 of 10 start at round(9 * 0.6) = 5, rows 6 to 8 likewise.
        {"ROI", 10, NoSubsampling, ROI(0.6f, 0.6f, 0.4f, 0.2f), {55, 56, 57, 58, 65, 66, 67, 68}, nullptr},
        {"thin ROI", 10, NoSubsampling, ROI(0.5f, 0.5f, 0.01f, 0.01f), {55}, nullptr},
        // 9 x 2 regions of 4 x 4: the rows run over into those below.
        {"wide ROI",
         4,
         NoSubsampling,
         ROI(0.0f, 0.0f, 2.25f, 0.5f),
         {0, 1, 2, 3, 4, 5, 6, 7, 8, 4, 5, 6, 7, 8, 9, 10},
         "num regions 18 exceeds width 4 * height 4 ; blocks 18 pattern 1 roi w 9 h 2 ss w 1 h 1"},
    };
    for (const auto& [pName, size, pattern, roi, regions, pLine] : cases)
    {
        SCOPED_TRACE(pName);
        GridWalk walk(size, size);
        EXPECT_EQ(walk.Configure(&pattern, &roi), TRUE);
        EXPECT_EQ(walk.Visit(), regions);
        EXPECT_TRUE(pLine == nullptr || walk.m_log.Has(LevelTrace, pLine));
    }
}

TEST(GridIterator, TheFormWithDefaultsTellsTheChannelAndForgetsTheConfiguration)
{
    const AECAlgoROI below = ROI(0.0f, 0.5f, 1.0f, 0.9f);
    GridWalk         walk(3, 2);
    KIROItrConfig    config = {nullptr, nullptr};
    KIROItrInfo      info   = {KIROStatsHist, {}};
    EXPECT_EQ(walk.m_iterator.Configure(config, info, TRUE), TRUE);
    EXPECT_EQ(walk.Visit(), (Regions{0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(info.type, KIROStatsGrid);
    EXPECT_EQ(info.resolution.width, 3u);
    EXPECT_EQ(walk.m_iterator.NextHistData(), nullptr);

    config.Set(&NoSubsampling, &below);
    info.resolution.width = 9;
    EXPECT_EQ(walk.m_iterator.Configure(config, info, TRUE), FALSE);
    EXPECT_EQ(info.resolution.width, 9u);
    EXPECT_EQ(config.pSSInfo, nullptr);
    EXPECT_EQ(config.pROIInfo, nullptr);
}

TEST(GridIterator, InterpolatingFormTakesAllRegionsTouchedAndTellsTheShares)
{
    const AECAlgoROI roi = {0.25f, 0.0f, 0.5f, 0.75f, 1.0f};
    GridWalk         three(3, 2);
    EXPECT_EQ(three.Configure(nullptr, &roi, FALSE), TRUE);
    EXPECT_EQ(three.Visit(), (Regions{0, 1, 2, 3, 4, 5}));
    const ROIInterpInfo& rInfo = three.m_iterator.GetROIInterpInfo();
    EXPECT_EQ(rInfo.roiWidth, 3u);
    EXPECT_EQ(rInfo.roiHeight, 2u);
    EXPECT_EQ(rInfo.fracLeft, 0.75f);
    EXPECT_EQ(rInfo.fracRight, 0.75f);
    EXPECT_EQ(rInfo.fracTop, 0.0f);
    EXPECT_EQ(rInfo.fracBottom, 0.5f);

    GridWalk four(4, 1);
    EXPECT_EQ(four.Configure(nullptr, &roi, FALSE), TRUE);
    EXPECT_EQ(four.Visit(), (Regions{1, 2}));
    EXPECT_EQ(four.m_iterator.GetROIInterpInfo().fracLeft, 0.0f);
    EXPECT_EQ(four.m_iterator.GetROIInterpInfo().fracRight, 0.0f);
}

TEST(GridIterator, RefusesWhatItsTablesOrTheGridDoNotHold)
{
    const std::vector<UINT32>                                               cells(101, 1);
    const KIROSubsamplingInfo                                               row     = {cells.data(), 101, 1};
    const AECAlgoROI                                                        below   = ROI(0.0f, 0.5f, 1.0f, 0.9f);
    const std::tuple<UINT32, UINT32, KIROSubsamplingInfo, AECAlgoROI, BOOL> cases[] = {
        {64, 64, NoSubsampling, ROI(0.0f, 0.0f, 0.95f, 0.95f), TRUE},  // 61 x 61 regions
        {4, 4, NoSubsampling, below, TRUE},
        {4, 4, NoSubsampling, below, FALSE},
        {202, 1, row, FullFrameROI, TRUE}};
    for (const auto& [width, height, tile, roi, bWholeRegions] : cases)
    {
        SCOPED_TRACE(testing::Message() << width << " x " << height << ", whole " << bWholeRegions);
        GridWalk walk(width, height);
        EXPECT_EQ(walk.Configure(&tile, &roi, bWholeRegions), FALSE);
        EXPECT_EQ(walk.Visit(), Regions{});
        EXPECT_GT(walk.m_log.CountLevel(LevelError), 0u);
    }
}

TEST(GridIterator, AWalkIsNotThatOfTheOneBefore)
{
    const UINT32              cells[] = {1, 0, 0, 0};
    const KIROSubsamplingInfo cell    = {cells, 1, 1};
    const KIROSubsamplingInfo pair    = {cells, 2, 1};
    const KIROSubsamplingInfo square  = {cells, 2, 2};
    // Width, height and left border of the ROI are in regions.
    const std::tuple<const CHAR*, KIROSubsamplingInfo, UINT32, UINT32, UINT32, Regions> walks[] = {
        {"first", cell, 2, 2, 0, {0, 1, 6, 7}},        {"column step", pair, 4, 2, 0, {0, 2, 6, 8}},
        {"row step", square, 4, 4, 0, {0, 2, 12, 14}}, {"fewer rows", square, 4, 2, 0, {0, 2}},
        {"columns", square, 6, 2, 0, {0, 2, 4}},       {"start", square, 4, 2, 2, {2, 4}},
        {"start again", square, 4, 2, 0, {0, 2}},      {"rows", square, 4, 4, 0, {0, 2, 12, 14}},
    };
    GridWalk walk(6, 4);
    for (const auto& [pChange, tile, width, height, left, expected] : walks)
    {
        // The start is scaled by 5, the size by 6.
        const FLOAT      x   = static_cast<FLOAT>(left) / 5.0f;
        const AECAlgoROI roi = {x, 0.0f, static_cast<FLOAT>(width) / 6.0f, static_cast<FLOAT>(height) / 4.0f, 1.0f};
        for (INT pass = 0; pass < 2; ++pass)
        {
            ASSERT_EQ(walk.Configure(&tile, &roi), TRUE);
            EXPECT_EQ(walk.Visit(), expected) << pChange << ", pass " << pass;
        }
    }
}

TEST(HistIterator, YieldsBinZeroLast)
{
    std::vector<UINT32> counts = {10, 11, 12};
    std::vector<FLOAT>  lut    = {0.5f, 1.5f, 2.5f};
    KIROCntStatsOut     stats  = Hist("hist", counts, lut);
    CKIROHistIterator   iterator;
    EXPECT_EQ(iterator.Configure(), FALSE);
    iterator.SetStats(&stats);
    for (int pass = 0; pass < 2; ++pass)
    {
        ASSERT_EQ(iterator.Configure(), TRUE);
        EXPECT_EQ(iterator.GetTotalNumOfRegions(), 3u);
        for (UINT32 bin : {1u, 2u, 0u})
        {
            ASSERT_EQ(iterator.HasNext(), TRUE);
            const KIROHistData* pData = iterator.NextHistData();
            EXPECT_EQ(pData->binCount, counts[bin]);
            EXPECT_EQ(pData->binValue, lut[bin]);
        }
        EXPECT_EQ(iterator.HasNext(), FALSE);
    }
    EXPECT_EQ(iterator.NextGridData(), -1.0f);
}

/// Weights that tell their place in the table.
class WeightTable : public testing::Test
{
protected:
    WeightTable()
    {
        std::iota(std::begin(m_weights), std::end(m_weights), 0.0f);
    }

    /// @return the table entry of a region, -1 outside
    FLOAT At(UINT32 region)
    {
        return m_iterator.GetWeight(region);
    }

    StatsLogCapture    m_log;
    FLOAT              m_weights[256];
    CKIRO2DMetIterator m_iterator;
};

TEST_F(WeightTable, FullFramesSampleTheTable)
{
    EXPECT_EQ(At(0), -1.0f) << "not configured";
    ASSERT_EQ(m_iterator.Configure(16, 16, FullFrameROI, m_weights, TRUE), TRUE);
    for (UINT32 region = 0; region < 256; ++region)
    {
        ASSERT_EQ(At(region), static_cast<FLOAT>(region));
    }

    // 32 columns over 16 entries: c / 32 * 16, rounded half up, at most 15.
    ASSERT_EQ(m_iterator.Configure(32, 32, FullFrameROI, m_weights, TRUE), TRUE);
    const UINT32 entries[] = {0, 1, 1, 2, 2, 3};
    for (UINT32 column = 0; column < std::size(entries); ++column)
    {
        EXPECT_EQ(At(column), static_cast<FLOAT>(entries[column])) << column;
        EXPECT_EQ(At(column * 32), static_cast<FLOAT>(entries[column] * 16)) << column;
    }
    EXPECT_EQ(At(32 * 32 - 1), 255.0f);
}

TEST_F(WeightTable, ReachesOneRegionBehindTheROIAndNoFurther)
{
    // Whole regions: columns floor(15 * 0.5) = 7 to 16, rows 0 to 8.
    const AECAlgoROI upperRight = {0.5f, 0.0f, 0.5f, 0.5f, 1.0f};
    ASSERT_EQ(m_iterator.Configure(16, 16, upperRight, m_weights, TRUE), TRUE);
    EXPECT_EQ(At(6), -1.0f);
    EXPECT_TRUE(m_log.Has(LevelTrace, "Index out of ROI:6"));
    EXPECT_EQ(At(7), 0.0f);
    EXPECT_EQ(At(8), 2.0f);             // 1 / 9 * 16 = 1.8
    EXPECT_EQ(At(8 * 16 + 7), 240.0f);  // the row behind, capped at the last
    EXPECT_EQ(At(9 * 16 + 7), -1.0f);

    // The interpolating form starts at trunc(16 * 0.5) = 8.
    ASSERT_EQ(m_iterator.Configure(16, 16, upperRight, m_weights, FALSE), TRUE);
    EXPECT_EQ(At(7), -1.0f);
    EXPECT_EQ(At(9), 2.0f);

    // Behind the last row of the grid.
    ASSERT_EQ(m_iterator.Configure(4, 4, FullFrameROI, m_weights, TRUE), TRUE);
    EXPECT_EQ(At(4 * 4), 240.0f);
    EXPECT_EQ(At(5 * 4), -1.0f);
}

TEST_F(WeightTable, ARequestTakesNothingFromTheOneBefore)
{
    ASSERT_EQ(m_iterator.Configure(16, 16, FullFrameROI, m_weights, TRUE), TRUE);
    EXPECT_EQ(At(0), 0.0f);
    m_weights[0] = 7.0f;  // edited where it stands
    ASSERT_EQ(m_iterator.Configure(16, 16, FullFrameROI, m_weights, TRUE), TRUE);
    EXPECT_EQ(At(0), 7.0f);

    // One edge less: rows from floor(15 * 0.5) = 7.
    const AECAlgoROI lower = {0.0f, 0.5f, 1.0f, 1.0f, 1.0f};
    ASSERT_EQ(m_iterator.Configure(16, 16, lower, m_weights, TRUE), TRUE);
    EXPECT_EQ(At(6 * 16), -1.0f);
    EXPECT_EQ(At(7 * 16), 7.0f);

    // Another height alone: rows from floor(31 * 0.5) = 15.
    ASSERT_EQ(m_iterator.Configure(16, 32, lower, m_weights, TRUE), TRUE);
    EXPECT_EQ(At(14 * 16), -1.0f);
    EXPECT_EQ(At(15 * 16), 7.0f);
}

}  // namespace
