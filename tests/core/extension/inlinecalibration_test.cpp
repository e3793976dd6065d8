// Learning the flash's colour from captures of a grey scene, by hand-worked colours.

#include <algorithm>
#include <cmath>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "core/extension/cflashcurrentestimator.h"
#include "tests/core/extension/inlinecalibrationfixture.h"

using namespace inlinecalibrationfixture;

namespace
{

TEST_F(InlineCalibration, LearnsTheTrueColourOfTheKnees)
{
    const Colour trueHigh = {0.22f, 0.5f + std::sqrt(0.25f - 0.28f * 0.28f)};
    const auto   capture  = [this](Colour low, Colour high, FLOAT share)
    {
        RunFlashOff();
        RunPreflash(LowMix, Towards(low, share));
        RunFullFlash(HighMix, Towards(high, 1.0f - share));
    };
    capture(Tuned, Tuned, 0.5f);  // one that does not agree
    capture(True, trueHigh, 0.3f);
    capture(True, trueHigh, 0.5f);
    EXPECT_EQ(Info().kneeData[1].confLEDLow, FICConfLow) << "three samples";
    capture(True, trueHigh, 0.6f);
    capture(True, trueHigh, 0.7f);
    EXPECT_EQ(Info().rawDataCount, 10);
    EXPECT_EQ(Info().zoneData[0].zoneCntLow, 5);
    EXPECT_EQ(Info().zoneData[0].zoneCntHigh, 5);

    const KIROFICKneeData* pKnees = Info().kneeData;
    EXPECT_EQ(pKnees[1].confLEDLow, FICConfHigh);
    EXPECT_EQ(pKnees[1].confLEDHigh, FICConfHigh);
    ExpectColour(pKnees[1].rgRatioLow, pKnees[1].bgRatioLow, True);
    ExpectColour(pKnees[1].rgRatioHigh, pKnees[1].bgRatioHigh, trueHigh);
    ExpectColour(pKnees[0].rgRatioLow, pKnees[0].bgRatioLow, {0.4f, 0.9f});  // moves along with its neighbour
    EXPECT_EQ(pKnees[2].confLEDLow, FICConfLow) << "no samples beside it";
    ExpectColour(pKnees[2].rgRatioLow, pKnees[2].bgRatioLow, {0.0f, 0.0f});

    // A scene of the true colour is now met by the middle mix.
    m_context.m_ficInfo = Info();
    CFlashCurrentEstimator estimator(m_context);
    ASSERT_EQ(estimator.SetTuningHeaderChanged(), 0);
    KIROAlgoFlashInput   input{};
    FlashCurrentEstimate estimate{};
    input.maxFlashCurrent = 1000;
    input.AWBRG           = True.rg;
    input.AWBBG           = True.bg;
    ASSERT_EQ(estimator.EstimateFlashCurrent(&input, &estimate), 0);
    EXPECT_NEAR(estimate.LEDCombination.LED1Setting, LowMix.led1, 1);
    ExpectColour(estimate.LEDCombination.refTable[1].RGRatio, estimate.LEDCombination.refTable[1].BGRatio, True);
}

TEST_F(InlineCalibration, TakesAColourOnlyWhereEnoughSamplesAgree)
{
    const auto isLearned = [this](const std::vector<Colour>& rColours)
    {
        Load();
        Factor(rColours);
        EXPECT_EQ(Info().rawDataCount, rColours.size());
        return Info().kneeData[1].confLEDLow == FICConfHigh;
    };
    EXPECT_TRUE(isLearned({{0.1f, 0.8f}, {0.11f, 0.81f}, {0.12f, 0.82f}, {0.2f, 0.9f}}));
    ExpectColour(Info().kneeData[1].rgRatioLow, Info().kneeData[1].bgRatioLow, {0.11f, 0.81f});
    EXPECT_FALSE(isLearned({{0.1f, 0.8f}, {0.1f, 0.8f}, {0.1f, 0.8f}})) << "too few";
    EXPECT_FALSE(isLearned({{0.1f, 0.8f}, {0.1f, 0.8f}, {0.2f, 0.9f}, {0.2f, 0.9f}})) << "two and two";
    EXPECT_FALSE(isLearned({{NAN, 0.8f}, {NAN, 0.8f}, {NAN, 0.8f}, {NAN, 0.8f}}));
    EXPECT_TRUE(isLearned({{0.2f, 0.8f}, {0.2f, 0.8f}, {0.2f, 0.8f}, {0.1f, 0.9f}}));
    ExpectColour(Info().kneeData[1].rgRatioLow, Info().kneeData[1].bgRatioLow,
                 {0.2f, 0.9f});  // blue of the last window

    m_tuning.LEDInlineCalibration.numOfFactoringRegions = 2;
    EXPECT_FALSE(isLearned(std::vector<Colour>(8, True)));
    m_tuning.LEDInlineCalibration.numOfFactoringRegions = 21;
    EXPECT_FALSE(isLearned(std::vector<Colour>(8, True)));
    m_tuning.LEDInlineCalibration.numOfFactoringRegions = 20;
    EXPECT_TRUE(isLearned(std::vector<Colour>(200, True))) << "more samples than a knee holds";
}

TEST_F(InlineCalibration, TakesNoSampleWithoutAReference)
{
    const std::pair<const CHAR*, VOID (*)(TestContext&, KIROExtensionOutput&)> cases[] = {
        {"no flash needed", [](TestContext&, auto& rOut) { rOut.monitoredFlags.bFlashNeeded = FALSE; }},
        {"bright", [](TestContext& r, auto&) { r.SetTrigger(TriggerCtrlLux, 299.0f); }},
        {"no white balance", [](TestContext& r, auto&) { r.m_input.AWBState.redGain = 0.0f; }},
        {"another white balance", [](TestContext& r, auto&) { r.m_input.AWBState.blueGain = 4.0f; }},
        {"off", [](TestContext& r, auto&) { r.m_input.bIsFICMode = FALSE; }},
    };
    for (const auto& [pName, pSpoil] : cases)
    {
        SCOPED_TRACE(pName);
        m_context.m_input.AWBState.redGain  = 2.0f;
        m_context.m_input.AWBState.blueGain = 2.0f;
        m_context.m_input.bIsFICMode        = TRUE;
        m_out.monitoredFlags.bFlashNeeded   = TRUE;
        m_context.SetTrigger(TriggerCtrlLux, 300.0f);
        Load();
        CaptureLow(LowMix, Towards(True, 0.5f));
        EXPECT_EQ(Info().rawDataCount, 1);
        pSpoil(m_context, m_out);
        CaptureLow(LowMix, Towards(True, 0.5f));
        EXPECT_EQ(Info().rawDataCount, 1);
    }

    // One cell less than the tuned sixteen, and a window beyond the grid.
    m_context.m_input.bIsFICMode                = TRUE;
    m_tuning.LEDInlineCalibration.refRegionPCT  = 3.0f;
    m_tuning.LEDInlineCalibration.validRefCount = 17;
    Load();
    RunFlashOff();
    EXPECT_TRUE(m_log.Has(LevelTrace, "AECCoreInline: m_validRefCnt 17, Skip process 1"));
    m_pStats->ResetStats();
    Run({TRUE, FALSE, {}, {}});
    EXPECT_TRUE(m_log.Has(LevelError, "could not get grid rg ratio stats"));
    EXPECT_TRUE(m_log.Has(LevelError, "AECCoreInline: No reference regions. Skip process"));
}

TEST_F(InlineCalibration, SkipsMeasurementsThatAreNone)
{
    m_calibration[0].indexMix                  = 1;
    m_tuning.LEDMatching.tableCalibrationCount = 1;
    Load();
    const std::tuple<const CHAR*, LEDPair, Colour, UINT32> cases[] = {
        {"same as calibration position", LowMix, Towards(True, 0.5f), 8},
        {"invalid stats", {301, 199}, Towards(True, 0.5f), 16},
        {"out of distance range", {301, 199}, Towards(True, 0.19f), 8},
        {"out of distance range", {301, 199}, Towards(True, 1.21f), 8},
        {"out of distance range", {301, 199}, {NAN, 0.5f}, 8},
        {"out of RG, BG range", {301, 199}, Towards({0.5f, 1.0f}, 0.5f), 8},
    };
    for (const auto& [pReason, pair, measured, width] : cases)
    {
        m_log.Clear();
        RunFlashOff();
        RunPreflash(pair, measured, width);
        EXPECT_TRUE(m_log.Has(LevelTrace, std::string("AECCoreInline: skip inline processing - ") + pReason));
        RunFullFlash(HighMix, Neutral);
        EXPECT_EQ(Info().rawDataCount, 0) << pReason;
    }
    CaptureLow({301, 199}, Towards(True, 0.2001f));
    EXPECT_EQ(Info().rawDataCount, 1);
}

TEST_F(InlineCalibration, AveragesTheFramesOfAPreflash)
{
    RunFlashOff();
    RunPreflash(LowMix, {0.5f, 0.7f});  // too far off the estimate by itself
    RunPreflash(LowMix, {0.1f, 0.8f});  // mean (0.3, 0.75)
    RunFullFlash(HighMix, Neutral);
    ASSERT_EQ(Info().rawDataCount, 1);
    const FLOAT scale = 0.5f / std::hypot(0.2f, 0.25f);
    ExpectColour(Info().rawData[0].rgRatio, Info().rawData[0].bgRatio, {0.5f - 0.2f * scale, 0.5f + 0.25f * scale});
}

TEST_F(InlineCalibration, PullsASampleBySharesOfItsZone)
{
    const Colour full   = True;                      // all the way
    const Colour none   = {0.35f, 0.7f};             // as far as measured, on the line of the estimate
    const Colour halves = {0.2348350f, 0.7651650f};  // half the distance, half the shift
    const auto   expect = [this](INT32 led1, Colour expected)
    {
        Load();
        CaptureLow({led1, 500 - led1}, Towards(True, 0.5f));
        ASSERT_EQ(Info().rawDataCount, 1);
        ExpectColour(Info().rawData[0].rgRatio, Info().rawData[0].bgRatio, expected);
    };
    expect(250, full);  // no zones
    m_zones[0]                                              = {{0.0f, 0.0f}, {0.0f, 0.0f}};
    m_zones[1]                                              = {{2.0f, 2.0f}, {1.0f, 1.0f}};
    m_tuning.LEDInlineCalibration.LEDInlineCalibTargetCount = 2;
    expect(250, halves);
    expect(0, full);
    m_zones[0].zoneTrigger.end = 1.0f;
    expect(300, none);
    m_zones[0].zoneTrigger.end = 1e9f;  // the last point
    expect(300, none);
}

TEST_F(InlineCalibration, KeepsTheNewestSamplesOfEachZone)
{
    m_tuning.LEDInlineCalibration.maxZoneCnt = 2;
    Load();
    const auto expectLED1 = [this](const std::vector<UINT16>& rExpected)
    {
        std::vector<UINT16> found;
        for (UINT32 i = 0; i < Info().rawDataCount; ++i)
        {
            found.push_back(Info().rawData[i].led1Setting);
        }
        EXPECT_EQ(found, rExpected);
    };
    const Colour measured = Towards(True, 0.5f);
    for (const INT32 led1 : {500, 499, 200, 300, 301, 299})
    {
        CaptureLow({led1, 500 - led1}, measured);
    }
    expectLED1({300, 301, 200, 299});  // 500 is in no zone, 499 was the oldest of its zone
    RunFlashOff();
    RunPreflash({0, 500}, measured);
    RunFullFlash({700, 300}, measured);
    expectLED1({300, 301, 299, 0, 700});
    EXPECT_EQ(Info().rawData[3].zoneIdx, 1);
    EXPECT_EQ(Info().rawData[4].zoneIdx, 0);
    EXPECT_EQ(Info().zoneData[0].zoneCntHigh, 1);
}

/// The blob, as a host keeps it.
class InlineCalibrationBlob : public InlineCalibration
{
protected:
    static std::vector<BYTE> MakeBlob()
    {
        ByteWriter blob;
        blob.Add<UINT16>(2).Add<UINT8>(3, 2);  // samples, knees, zones
        blob.Add<UINT16>(300, 200).Add(0.25f, 0.75f).Add(0);
        blob.Add<UINT16>(600, 400).Add(0.5f, 1.0f).Add(1);
        blob.Add(0.25f, 0.5f, 0.75f, 1.0f).Add(1, 0);  // knees
        blob.Zeros(16).Add(0, 1);
        blob.Zeros(12).Add(2.0f).Zeros(8);
        blob.Add<UINT16>(1, 0, 0, 257);  // samples of each zone
        return blob.Get();
    }

    std::vector<BYTE> m_blob = MakeBlob();
};

TEST_F(InlineCalibrationBlob, CarriesTheKneesOverASession)
{
    ASSERT_EQ(m_pManager->SetFICData(m_blob.data()), 0);
    const KIROFICInfo& rInfo = Info();
    EXPECT_EQ(rInfo.rawDataCount, 2);
    EXPECT_EQ(rInfo.kneeData[0].bgRatioLow, 0.5f);
    EXPECT_EQ(rInfo.kneeData[0].rgRatioHigh, 0.75f);
    EXPECT_EQ(rInfo.kneeData[0].confLEDLow, FICConfHigh);
    EXPECT_EQ(rInfo.kneeData[1].confLEDHigh, FICConfHigh);
    EXPECT_EQ(rInfo.kneeData[2].bgRatioHigh, 2.0f);
    EXPECT_EQ(rInfo.zoneData[1].zoneCntHigh, 257);

    ASSERT_EQ(m_pManager->GetFICData(nullptr), 116u);
    std::vector<BYTE> stored(116, 0xFF);
    EXPECT_EQ(m_pManager->GetFICData(stored.data()), 116u);
    EXPECT_EQ(stored, m_blob);

    // Counts of zones that have no samples mend themselves.
    CaptureLow(LowMix, Neutral);
    EXPECT_EQ(rInfo.rawDataCount, 2);
    EXPECT_EQ(rInfo.zoneData[0].zoneCntLow, 1);
    EXPECT_EQ(rInfo.zoneData[1].zoneCntHigh, 1);
}

TEST_F(InlineCalibrationBlob, IsTakenWholeOrNotAtAll)
{
    ASSERT_EQ(m_pManager->SetFICData(m_blob.data()), 0);
    const auto expectRefused = [this](const VOID* pBlob, KiroResult result)
    {
        EXPECT_EQ(m_pManager->SetFICData(pBlob), result);
        std::vector<BYTE> stored(116);
        EXPECT_EQ(m_pManager->GetFICData(stored.data()), 116u);
        EXPECT_EQ(stored, m_blob);
    };
    expectRefused(nullptr, 1);
    expectRefused(std::vector<BYTE>{0, 0, 0, 0}.data(), 0);        // no samples
    expectRefused(std::vector<BYTE>{0xDD, 0x05, 3, 2}.data(), 1);  // 1501
    const std::vector<BYTE> smaller(4 + 16 + 24 * 2 + 4, 1);
    BYTE                    header[] = {1, 0, 2, 1};
    std::vector<BYTE>       blob     = smaller;
    std::copy(std::begin(header), std::end(header), blob.begin());
    expectRefused(blob.data(), 1);
    m_context.m_input.bIsFICMode = FALSE;
    expectRefused(m_blob.data(), 1);

    // A larger table's blob is read by this table's counts.
    m_context.m_input.bIsFICMode = TRUE;
    std::vector<BYTE> larger     = m_blob;
    larger[2]                    = 4;
    larger.resize(m_blob.size() + 24);
    EXPECT_EQ(m_pManager->SetFICData(larger.data()), 0);
    EXPECT_EQ(Info().numOfKnees, 3);
    EXPECT_EQ(Info().zoneData[1].zoneCntHigh, 257);
}

TEST_F(InlineCalibration, IsInertForATableThatItCannotHold)
{
    m_tuning.LEDMatching.countMix   = 17;
    m_tuning.LEDMatching.countPower = INT32_MIN;
    Tune(m_tuning);
    m_pManager = TavoNew<CFICManager>(m_context);
    EXPECT_EQ(m_pManager->SetFICMode(), 1);
    CaptureLow(LowMix, Towards(True, 0.5f));
    EXPECT_EQ(m_pManager->GetFICData(nullptr), 4u);
}

}  // namespace
