// Flash currents by power and colour.

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

#include "tests/core/extension/flashcurrentfixture.h"
#include "tests/support/debugrecord.h"

using namespace flashcurrentfixture;

namespace
{

TEST_F(FlashCurrent, MatchesTheNearestColourOfTheRow)
{
    ASSERT_EQ(Load(), 0);
    EXPECT_EQ(m_context.m_input.maxLEDCurrent, 2000);
    const struct
    {
        const CHAR* pName;
        Point       scene;
        INT32       led1, led2;
        FLOAT       resultRG, resultBG, flux, first;
        INT32       mix1, mix2;
    } cases[] = {
        {"on the line", {0.375f, 0.875f}, 400, 100, 0.375f, 0.875f, 11.0f, 0.8f, 0, 1},
        {"across from it", {0.5f, 1.0f}, 400, 100, 0.375f, 0.875f, 11.0f, 0.8f, 0, 1},
        {"second segment", {0.75f, 0.5f}, 150, 350, 0.75f, 0.5f, 14.0f, 0.3f, 1, 2},
        {"beyond the first mix", {0.0f, 1.5f}, 500, 0, 0.25f, 1.0f, 10.0f, 1.0f, 0, 0},
        {"beyond the last mix", {2.0f, 0.0f}, 0, 500, 1.0f, 0.25f, 16.0f, 0.0f, 2, 2},
        {"400.5 mA", {0.374375f, 0.875625f}, 400, 100, 0.375f, 0.875f, 11.0f, 0.8f, 0, 1},
    };
    for (const auto& rCase : cases)
    {
        SCOPED_TRACE(rCase.pName);
        ExpectCurrents(Low, rCase.scene, rCase.led1, rCase.led2, rCase.resultRG, rCase.mix1, rCase.mix2);
        EXPECT_FLOAT_EQ(m_rResult.BGRatio, rCase.resultBG);
        EXPECT_FLOAT_EQ(m_rResult.flux, rCase.flux);
        EXPECT_FLOAT_EQ(m_rResult.firstEntryRatio, rCase.first);
        EXPECT_FLOAT_EQ(m_rResult.lastEntryRatio, 1.0f - rCase.first);
    }

    // The same mixes in the other direction.
    for (INT32 row = 0; row < 3; ++row)
    {
        std::swap(m_table[3 * row], m_table[3 * row + 2]);
    }
    ASSERT_EQ(Load(), 0);
    ExpectCurrents(Low, {0.375f, 0.875f}, 400, 100, 0.375f, 1, 2);
    ExpectCurrents(Low, {2.0f, 0.0f}, 0, 500, 1.0f, 0, 0);
    ExpectCurrents(Low, {0.0f, 1.5f}, 500, 0, 0.25f, 2, 2);
}

TEST_F(FlashCurrent, RecordsLowAndHighCurrentsApart)
{
    constexpr size_t size = 90;
    DebugRecord      record;
    m_context.m_pDebugData = &record.Host();
    ASSERT_EQ(Load(), 0);
    ASSERT_EQ(Estimate(Low, {0.375f, 0.875f}), 0);

    ByteWriter low;
    low.Add<UINT8>(1).Add<FLOAT>(0.375f, 0.875f).Add<INT32>(1000, 400, 100);
    low.Add<FLOAT>(0.375f, 0.875f, 0.8f, 1.0f - 0.8f, 11.0f);
    low.Add<INT32>(0, 0, 0, 1).Add<UINT8>(0).Add<INT32>(3, 3);
    low.Add<UINT32>(500, 1000, 2000).Zeros(2 * 4 + 4);
    ASSERT_EQ(low.Size(), size);
    record.ExpectBytes(recordoffset::LEDTable, low);
    record.ExpectZeros(recordoffset::LEDTable + size, size);

    // 1000 mA from the second row.
    ASSERT_EQ(Estimate(High, {0.375f, 0.875f}), 0);
    record.ExpectBytes(recordoffset::LEDTable, low);
    EXPECT_EQ(record.At<UINT8>(recordoffset::LEDTable + size), 1);
    EXPECT_EQ(record.At<INT32>(recordoffset::LEDTable + size + 13), 800);
    EXPECT_EQ(record.At<INT32>(recordoffset::LEDTable + size + 17), 200);
    EXPECT_FLOAT_EQ(record.At<FLOAT>(recordoffset::LEDTable + size + 37), 22.0f);
}

TEST_F(FlashCurrent, ChoosesTheRowByPower)
{
    ASSERT_EQ(Load(), 0);
    // led1, led2: of the middle mix
    const std::tuple<KIROExtFlashCurrentType, INT32, INT32, INT32, FLOAT, INT32, INT32> cases[] = {
        {Low, 0, 0, 0, 0.0f, 0, 0},           {Low, 101, 60, 41, 2.424f, 0, 0},     {Low, 250, 150, 100, 6.0f, 0, 0},
        {Low, 5000, 300, 200, 12.0f, 0, 0},   {High, 250, 150, 100, 6.0f, 0, 0},    {High, 750, 450, 300, 18.0f, 0, 1},
        {High, 1500, 900, 600, 36.0f, 0, 1},  // extrapolates the first two rows
        {High, 2000, 1600, 400, 48.0f, 2, 2}, {High, 9000, 1600, 400, 48.0f, 2, 2},
    };
    for (const auto& [type, maxCurrent, led1, led2, flux, power1, power2] : cases)
    {
        SCOPED_TRACE(testing::Message() << static_cast<INT32>(type) << " at " << maxCurrent);
        m_input.maxFlashCurrent = maxCurrent;
        ASSERT_EQ(Estimate(type, {0.5f, 0.75f}), 0);
        EXPECT_EQ(m_rResult.refTable[1].LED1Setting, led1);
        EXPECT_EQ(m_rResult.refTable[1].LED2Setting, led2);
        EXPECT_FLOAT_EQ(m_rResult.refTable[1].flux, flux);
        EXPECT_EQ(m_out.powIdx1, power1);
        EXPECT_EQ(m_out.powIdx2, power2);
        EXPECT_EQ(m_rResult.LED1Setting, led1);
        ExpectRow(type, {0.25f, 0.5f, 1.0f}, {1.0f, 0.75f, 0.25f});
    }
    EXPECT_EQ(Estimate(Off), 1);
    m_input.maxFlashCurrent = INT32_MIN;
    EXPECT_EQ(Estimate(High), 0);
}

TEST_F(FlashCurrent, MatchesHighToTheColourOfThePreflash)
{
    ASSERT_EQ(Load(), 0);
    Estimate(High, {0.75f, 0.5f});
    EXPECT_FLOAT_EQ(m_rResult.RGRatio, 0.75f) << "no preflash";
    Estimate(Low, {0.375f, 0.875f});
    ASSERT_EQ(m_estimator.SetTuningHeaderChanged(), 0);
    Estimate(High, {0.75f, 0.5f});
    EXPECT_FLOAT_EQ(m_rResult.RGRatio, 0.375f);
    ExpectCurrents(Full, {0.75f, 0.5f}, 800, 1200, 0.75f, 1, 2);
    EXPECT_EQ(m_out.powIdx1, 2);
    EXPECT_EQ(m_rResult.refTable[0].flux, 0.0f);
}

TEST_F(FlashCurrent, TakesTheOnlyMix)
{
    m_tuning.LEDMatching.countMix   = 1;
    m_tuning.LEDMatching.tableCount = 3;
    m_table[1]                      = m_table[3];
    m_table[2]                      = m_table[6];
    ASSERT_EQ(Load(), 0);
    ExpectCurrents(Low, {}, 500, 0, 0.25f, 0, 0);
    EXPECT_EQ(m_rResult.flux, 10.0f);
    EXPECT_EQ(m_rResult.firstEntryRatio, -1.0f);
    EXPECT_EQ(m_rResult.lastEntryRatio, -1.0f);
    EXPECT_EQ(Estimate(Full), 0);
    EXPECT_EQ(m_rResult.LED1Setting, 2000);
    EXPECT_EQ(m_rResult.firstEntryRatio, 40.0f) << "the flux";
    EXPECT_EQ(m_rResult.flux, 0.0f);
}

TEST_F(FlashCurrent, YieldsADefinedMixForDegenerateColours)
{
    const auto setColours = [this](Point first, Point second, Point third)
    {
        const Point colours[] = {first, second, third};
        for (INT32 mix = 0; mix < 3; ++mix)
        {
            m_table[mix].RGRatio = colours[mix].rg;
            m_table[mix].BGRatio = colours[mix].bg;
        }
        ASSERT_EQ(Load(), 0);
    };
    setColours({0.25f, 1.0f}, {0.25f, 0.5f}, {1.0f, 0.5f});  // no width, then no slope
    ExpectCurrents(Low, {0.625f, 0.5f}, 150, 350, 0.625f, 1, 2);
    EXPECT_TRUE(m_log.HasPart(LevelWarning, "slope close to zero"));

    setColours({0.5f, 1.0f}, {0.5f, 0.75f}, {0.5f, 0.5f});  // no width at all
    ExpectCurrents(Low, {0.25f, 1.0f}, 500, 0, 0.5f, 0, 0);
    ExpectCurrents(Low, {0.5f, 1.0f}, 300, 200, 0.5f, 0, 1);
    ExpectCurrents(Low, {0.75f, 1.0f}, 0, 500, 0.5f, 2, 2);
    ExpectCurrents(Low, {NAN, 1.0f}, 500, 0, 0.5f, 0, 0);
    EXPECT_TRUE(m_log.Has(LevelError, "issue with tuning: rg ratio 0.50 same for mixes 0 and 1"));

    setColours({0.25f, 1.0f}, {0.5f, 0.25f}, {1.0f, 0.0f});  // beside the corner, off both segments
    ExpectCurrents(Low, {0.3f, 0.1f}, 205, 295, 0.658333f, 1, 2);
    m_tuning.LEDMatching.dualLEDIntersectSlope = -4.0f / 3.0f;
    Load();
    ExpectCurrents(Low, {0.3f, 0.1f}, 0, 500, 1.0f, 1, 2);
    EXPECT_TRUE(m_log.Has(LevelError, "issue with tuning: LEDSlope -1.33 same as intersection slope -1.33"));
}

TEST_F(FlashCurrent, RefusesATableOutOfOrder)
{
    const LEDMatchTableType                                    good = m_tuning.LEDMatching;
    LEDMixType                                                 table[9];
    const std::pair<const CHAR*, VOID (*)(LEDMatchTableType&)> cases[] = {
        {"equal powers", [](LEDMatchTableType& r) { std::copy_n(r.table, 3, r.table + 3); }},
        {"another sum", [](LEDMatchTableType& r) { r.table[7].LED2Setting = 401; }},
        {"negative",
         [](LEDMatchTableType& r) {
             r.table[7] = {2001, -1, 0.5f, 0.75f, 1.0f};
         }},
        {"rows missing", [](LEDMatchTableType& r) { r.tableCount = 6; }},
        {"too many mixes", [](LEDMatchTableType& r) { r.countMix = 17; }},
        {"no mixes", [](LEDMatchTableType& r) { r.countMix = 0; }},
        {"too many powers", [](LEDMatchTableType& r) { r.countPower = 33; }},
        {"negative counts", [](LEDMatchTableType& r) { r.countPower = r.countMix = INT32_MIN; }},
    };
    for (const auto& [pName, pSpoil] : cases)
    {
        SCOPED_TRACE(pName);
        std::copy_n(good.table, 9, table);
        m_tuning.LEDMatching       = good;
        m_tuning.LEDMatching.table = table;
        pSpoil(m_tuning.LEDMatching);
        EXPECT_EQ(Load(), 1);
        EXPECT_EQ(Estimate(Low), 1);
        m_tuning.LEDMatching = good;
        EXPECT_EQ(Load(), 0);
        EXPECT_EQ(Estimate(Low), 0);
    }
    EXPECT_TRUE(m_log.Has(LevelError, "AECCoreFlash power must increase as power index increases"));
    m_tuning.LEDMatching.tableCount = 100;
    EXPECT_EQ(Load(), 0);
    EXPECT_TRUE(m_log.Has(LevelError, "tableCount 100 exceeds threshold 96"));

    Tune();
    EXPECT_EQ(m_estimator.SetTuningHeaderChanged(), 0);
    EXPECT_EQ(Estimate(Low), 1);
    EXPECT_TRUE(m_log.Has(LevelError, "AECCoreFlash null CCT table"));
}

TEST_F(FlashCurrent, RowsBeyondTheSixthServeAtFullPowerUnchecked)
{
    // One mix per row; the last row is the seventh or the eighth.
    FLOAT                       measured[]     = {2.0f, 2.0f};
    AECAlgoFlashCalibrationData calibration    = {2, measured, measured};
    m_input.pFlashCalib                        = &calibration;
    m_calibration[1].indexPower                = 6;
    m_tuning.LEDMatching.countMix              = 1;
    m_tuning.LEDMatching.tableCalibrationCount = 2;
    for (const INT32 powers : {7, 8, 96})
    {
        SCOPED_TRACE(powers);
        for (INT32 power = 0; power < powers; ++power)
        {
            m_table[power] = {100 * (power + 1), 0, 0.5f, 0.5f, 1.0f};
        }
        m_table[6].LED1Setting          = 100;  // the power of the first row, also measured
        m_table[powers - 1].LED1Setting = 3000;
        m_tuning.LEDMatching.countPower = powers;
        m_tuning.LEDMatching.tableCount = static_cast<UINT32>(powers);
        ASSERT_EQ(Load(), 0);
        EXPECT_EQ(m_context.m_input.maxLEDCurrent, 3000);
        const std::tuple<KIROExtFlashCurrentType, INT32, INT32, FLOAT, INT32, INT32> cases[] = {
            {Low, 5000, 100, 2.0f, 0, 0},
            {High, 250, 250, 2.0f, 0, 1},
            {High, 3000, 3000, 2.0f, powers - 1, powers - 1},
            {Full, 0, 3000, 2.0f, powers - 1, powers - 1}};
        for (const auto& [type, maxCurrent, led1, rg, power1, power2] : cases)
        {
            m_input.maxFlashCurrent = maxCurrent;
            ExpectCurrents(type, {}, led1, 0, rg, 0, 0);
            EXPECT_EQ(m_out.powIdx1, power1);
            EXPECT_EQ(m_out.powIdx2, power2);
        }
    }
    // A table that is refused has told its largest current by then.
    m_table[1].LED1Setting = 100;
    EXPECT_EQ(Load(), 1);
    m_table[95].LED1Setting = 4000;
    EXPECT_EQ(Load(), 1);
    EXPECT_EQ(m_context.m_input.maxLEDCurrent, 4000);
}

}  // namespace
