// Measures over histograms. The sample histogram: 10, 20, 30 and 40 samples of luma 16, 64, 128 and 192.

#include "tests/support/statsfixture.h"

using namespace statsfixture;

namespace
{

class HistMeasures : public StatsTest
{
protected:
    HistMeasures()
    {
        for (UINT32 bin = 0; bin < 4; ++bin)
        {
            m_weights.weights[bin] = static_cast<FLOAT>(bin + 1);
        }
        m_weights.dataID = 6;
        SetBank(BankIDMetering1D, &m_weights);
        SetHistogram();
    }

    VOID SetHistogram()
    {
        SetAlone(Hist("H", m_counts, m_lut));
    }

    FLOAT Weighted(FLOAT start, FLOAT end, INT32 tableID = 6)
    {
        const StartEndType range = {start, end};
        FLOAT              luma  = 0.0f;
        m_result                 = m_pStats->GetHistWeightedLuma("H", tableID, &range, luma, DoNotHandle);
        return luma;
    }

    VOID ExpectRange(KIROHistRangeType type, FLOAT start, FLOAT end, FLOAT luma, FLOAT share)
    {
        const StartEndType range      = {start, end};
        FLOAT              outputs[2] = {};
        EXPECT_EQ(m_pStats->GetHistRangeLuma("H", &range, type, outputs, DoNotHandle), 0);
        EXPECT_NEAR(outputs[0], luma, 1e-3f) << start << " to " << end;
        EXPECT_NEAR(outputs[1], share, 1e-6f) << start << " to " << end;
    }

    std::vector<UINT32>    m_counts = {10, 20, 30, 40};
    std::vector<FLOAT>     m_lut    = {16.0f, 64.0f, 128.0f, 192.0f};
    DBMeter1DWeightPayload m_weights{};
    KiroResult             m_result = 0;
};

TEST_F(HistMeasures, WeightedMeanOverAShareOfTheBins)
{
    EXPECT_FLOAT_EQ(Weighted(0.0f, 1.0f), (160.0f + 2560.0f + 11520.0f + 30720.0f) / 300.0f);
    EXPECT_FLOAT_EQ(Weighted(0.25f, 0.99f), (2560.0f + 11520.0f) / 130.0f);  // bins 1 and 2
    EXPECT_FLOAT_EQ(Weighted(0.75f, 9.0f), 192.0f);
    EXPECT_EQ(Weighted(0.5f, 0.5f), 0.0f);
    EXPECT_EQ(m_result, 0);
    EXPECT_EQ(Weighted(0.6f, 0.5f), 0.0f);
    EXPECT_EQ(m_result, 1);

    // Without a table only the first bin has weight.
    EXPECT_FLOAT_EQ(Weighted(0.0f, 1.0f, 9), 16.0f);
    EXPECT_TRUE(m_log.Has(LevelWarning, "no weighted table in ID 9; using 1.0 weights"));
    EXPECT_EQ(Weighted(0.25f, 1.0f, 9), 0.0f);
    EXPECT_EQ(m_result, 0);
}

TEST_F(HistMeasures, ClampedBinsKeepTheWeightOfTheLastUnclampedOne)
{
    m_lut = {16.0f, 64.0f, 300.0f, 400.0f};
    EXPECT_FLOAT_EQ(Weighted(0.0f, 1.0f), (160.0f + 2560.0f + 140.0f * 249.9f) / 190.0f);
    // All bins clamped: the weight of the first.
    EXPECT_FLOAT_EQ(Weighted(0.5f, 1.0f), 249.9f);

    // A value equal to the clamp is not clamped. A bit depth of 1 makes the threshold the clamp itself.
    m_lut = {16.0f, 64.0f, 128.0f, 192.0f};
    CKIROStatsHistProcessor processor(m_context);
    const KIROCntStatsOut   stats = Hist("H", m_counts, m_lut, 1);
    const StartEndType      range = {0.0f, 1.0f};
    FLOAT                   luma  = 0.0f;
    processor.SetProcStats(&stats, 1);
    EXPECT_EQ(processor.GetHistWeightedLuma("H", &range, 6, luma, 128.0f), 0);
    EXPECT_FLOAT_EQ(luma, (160.0f + 2560.0f + 90.0f * 128.0f + 120.0f * 128.0f) / 260.0f);
}

TEST_F(HistMeasures, RangesOfLumaTakeSharesOfTheBorderBins)
{
    // Half of bin 1 lies above 40, half of bin 3 below 160.
    ExpectRange(HistRangeLuma, 40.0f, 160.0f, (640.0f + 3840.0f + 3840.0f) / 60.0f, 0.7f);
    // A border on a bin's value leaves nothing of the first bin and all of the last.
    ExpectRange(HistRangeLuma, 64.0f, 128.0f, 128.0f, 0.3f);
    ExpectRange(HistRangeLuma, 0.0f, 192.0f, (160.0f + 1280.0f + 3840.0f + 7680.0f) / 100.0f, 1.0f);
    // An end above all bins counts nothing of the last one.
    ExpectRange(HistRangeLuma, -5.0f, 250.0f, (160.0f + 1280.0f + 3840.0f) / 60.0f, 0.9f);
    // 300 counts as 256: 64 of the 68 steps up to 260 lie below, and the mean is clamped.
    m_lut[3] = 260.0f;
    m_lut[2] = 192.0f;
    SetHistogram();
    const FLOAT part = 40.0f * 64.0f / 68.0f;
    ExpectRange(HistRangeLuma, 0.0f, 300.0f, (160.0f + 1280.0f + 5760.0f + part * 249.9f) / (60.0f + part), 1.0f);
}

TEST_F(HistMeasures, RangesOfPercentilesAndTheirShares)
{
    // They are computed once per frame.
    ExpectRange(HistRangePercentile, 0.0f, 0.1f, 16.0f, 0.1f);
    m_counts = {10, 0, 0, 0};
    ExpectRange(HistRangePercentile, 0.0f, 0.1f, 16.0f, 0.1f);
    SetHistogram();
    ExpectRange(HistRangePercentile, 0.0f, 0.1f, 16.0f, 1.0f);
    m_counts = {10, 20, 30, 40};
    SetHistogram();

    ExpectRange(HistRangePercentile, 0.1f, 0.6f, (1280.0f + 3840.0f) / 50.0f, 0.5f);
    ExpectRange(HistRangePercentile, 0.0f, 0.45f, (160.0f + 1280.0f + 1920.0f) / 45.0f, 0.6f);
    ExpectRange(HistRangePercentile, 0.45f, 0.45f, 128.0f, 0.6f);
    ExpectRange(HistRangePercentile, -1.0f, 7.0f, (160.0f + 1280.0f + 3840.0f + 7680.0f) / 100.0f, 0.9f);

    m_counts = {0, 0, 0, 0};
    SetHistogram();
    ExpectRange(HistRangePercentile, 0.0f, 1.0f, 0.0f, 0.0f);
    ExpectRange(HistRangeLuma, 0.0f, 255.0f, 0.0f, 0.0f);

    const StartEndType range = {0.0f, 1.0f};
    FLOAT              outputs[2];
    EXPECT_EQ(m_pStats->GetHistRangeLuma("H", &range, static_cast<KIROHistRangeType>(7), outputs, DoNotHandle), 1);
    EXPECT_TRUE(m_log.Has(LevelError, "Unexpected type: 7"));
    EXPECT_EQ(m_pStats->GetHistRangeLuma("none", &range, HistRangeLuma, outputs, DoNotHandle), 11);
    EXPECT_EQ(outputs[0], -1.0f);
    EXPECT_EQ(outputs[1], -1.0f);
}

TEST_F(HistMeasures, CumulativeCountIncludesItsEnd)
{
    m_counts.push_back(7);  // behind the last bin
    SetHistogram();
    const std::pair<StartEndType, FLOAT> expected[] = {{{0.0f, 0.0f}, 10.0f},
                                                       {{1.5f, 1.9f}, 30.0f},
                                                       {{-9.0f, -1.0f}, 10.0f},
                                                       {{0.0f, 3.0f}, 100.0f},
                                                       {{0.0f, 99.0f}, 107.0f}};
    for (const auto& [range, count] : expected)
    {
        FLOAT output = 0.0f;
        EXPECT_EQ(m_pStats->GetHistCDF("H", &range, &output), 0);
        EXPECT_EQ(output, count) << range.end;
    }
    FLOAT output = 1.0f;
    EXPECT_EQ(m_pStats->GetHistCDF("none", &expected[0].first, &output), 11);
    EXPECT_EQ(output, 0.0f);
}

TEST_F(HistMeasures, HistogramsWithoutDataOrOfTooManyBinsFail)
{
    const StartEndType  range = {0.0f, 1.0f};
    FLOAT               luma  = 0.0f;
    std::vector<UINT32> counts(1025, 1);
    std::vector<FLOAT>  lut(1025, 1.0f);
    KIROCntStatsOut     noLUT = Hist("noLUT", m_counts, m_lut);
    noLUT.channelData.pValLUT = nullptr;
    KIROCntStatsOut noCounts  = Hist("noCounts", m_counts, m_lut);
    noCounts.channelData.Data = {};
    for (const KIROCntStatsOut& rStats : {noLUT, noCounts, Hist("large", counts, lut)})
    {
        ASSERT_EQ(Set(rStats), 0);
        EXPECT_EQ(m_pStats->GetHistWeightedLuma(rStats.channelData.pChannelName, 6, &range, luma, DoNotHandle), 1);
    }
    EXPECT_TRUE(m_log.Has(LevelError, "Histogram buffer missing for stats noLUT. Skip the stats."));
    EXPECT_TRUE(m_log.Has(LevelError, "Unable to find stats noCounts from buffer!"));
}

}  // namespace
