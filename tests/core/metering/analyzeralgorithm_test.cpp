#include <cmath>

#include "core/metering/ckiroanalyzeralgorithm001.h"
#include "core/metering/ckiroanalyzeralgorithm002.h"
#include "schema/kiroflashsnapshot.h"
#include "schema/kirometering.h"
#include "schema/kirometeringstatscalculator.h"
#include "tests/support/testcontext.h"

namespace
{

/// Index steps of a factor of ten in exposure.
constexpr FLOAT Decade = 77.898529f;

constexpr INT32 DarkRatioID   = 51;  // calculator results
constexpr INT32 BrightRatioID = 53;
constexpr INT32 LumaHighID    = 30;  // analyzer result

class LuxIndex : public ContextTest
{
protected:
    LuxIndex()
    {
        m_metering.luxIndexOperation.refExposureForLuxIndexZero = 1000;
        m_calculators.darkRatioStatsCalculator.outputStorage    = {50, DarkRatioID};
        m_calculators.brightRatioStatsCalculator.outputStorage  = {52, BrightRatioID};
        m_analyzers.luxAnalyzer.refExposureType                 = ExposureSafe;
        m_analyzers.luxAnalyzer.analyzerName                    = const_cast<CHAR*>("lux");
        m_context.m_input.opMode                                = AECAlgoOperationModeStreaming;
        m_context.m_input.systemLatency                         = 2;
    }

    /// Frames whose indices differ; the statistics belong to the first one, of index 100 and exposure 1000000.
    VOID SaveFrames()
    {
        AECFrameHistory frame = {.frameID      = 1,
                                 .exposureSets = {{}, {.indx = 110.0f}, {.indx = 100.0f, .exposure = 1000000}}};
        m_context.SaveFrame(frame);
        frame.frameID                                = 2;
        frame.exposureSets[AECAlgoExposureSafe].indx = 200.0f;
        m_context.SaveFrame(frame);
    }

    FLOAT Run(FLOAT luma, FLOAT target, UINT64 sensitivity = 0)
    {
        AnalyzerAlgorithmInput input{};
        input.analyzerIn.luma        = luma;
        input.analyzerIn.target      = {target, target};
        input.analyzerIn.sensitivity = sensitivity;
        Tune(m_metering, m_calculators, m_analyzers);
        CAnalyzerAlgorithm001 algorithm;
        algorithm.SetTuning(0, m_context);
        EXPECT_EQ(algorithm.RunAlgorithm(input).analyzerOut.luma, luma);
        return m_context.Trigger(TriggerCtrlLux);
    }

    kirometering::KIROMeteringType                               m_metering{};
    kirometeringstatscalculator::KIROMeteringStatsCalculatorType m_calculators{};
    kirometeringsceneanalyzer::KIROMeteringSceneAnalyzerType     m_analyzers{};
};

TEST_F(LuxIndex, IsTheIndexOfTheExposureThatWouldReachTheTarget)
{
    EXPECT_FLOAT_EQ(Run(10.0f, 100.0f), Decade) << "without a history from 0";
    SaveFrames();
    EXPECT_FLOAT_EQ(Run(10.0f, 100.0f), 100.0f + Decade);
    EXPECT_EQ(m_context.Trigger(TriggerCtrlLuma), 10.0f);
    EXPECT_STREQ(m_context.m_pBankManager->GetDataTriggers(TriggerCtrlLux)->description, "lux");
    EXPECT_FLOAT_EQ(Run(100.0f, 10.0f), 100.0f - Decade);
    // A selection of no exposure reads the long one.
    m_analyzers.luxAnalyzer.refExposureType = ExposureNone;
    EXPECT_FLOAT_EQ(Run(10.0f, 100.0f), 110.0f + Decade);
    // Far below the base index.
    EXPECT_EQ(Run(10.0f, 0.0f), 0.0f);

    // With compensation it starts from the exposure.
    m_analyzers.luxAnalyzer.refExposureType         = ExposureSafe;
    m_metering.luxIndexOperation.enableCompensation = TRUE;
    EXPECT_FLOAT_EQ(Run(50.0f, 50.0f), 3.0f * Decade);
    m_metering.luxIndexOperation.refExposureForLuxIndexZero = 0;
    EXPECT_FLOAT_EQ(Run(50.0f, 50.0f), 6.0f * Decade);
}

TEST_F(LuxIndex, IsFilteredAgainstThePreviousOne)
{
    SaveFrames();
    m_metering.luxIndexOperation.filteringFactor = 0.25f;
    const std::pair<FLOAT, FLOAT> cases[]        = {
               {100.0f, 158.4239f}, {-100.0f, 108.4239f}, {0.5f, 133.5489f}, {0.4f, 177.8985f}, {0.0f, 177.8985f}};
    for (const auto& [previous, expected] : cases)
    {
        m_context.SetTrigger(TriggerCtrlLux, previous);
        EXPECT_NEAR(Run(10.0f, 100.0f), expected, 1e-3f) << previous;
    }
    m_metering.luxIndexOperation.filteringFactor = NAN;
    m_context.SetTrigger(TriggerCtrlLux, 100.0f);
    EXPECT_EQ(Run(10.0f, 100.0f), 100.0f) << "no filter, and for good";
}

TEST_F(LuxIndex, PublishesTheSecondResultsOfTheRatioCalculators)
{
    m_context.SetCalculatorResult(DarkRatioID, 0.25f);
    m_context.SetCalculatorResult(BrightRatioID, 0.75f);
    Run(10.0f, 100.0f);
    EXPECT_EQ(m_context.Trigger(TriggerCtrlDarkRatio), 0.25f);
    EXPECT_EQ(m_context.Trigger(TriggerCtrlSatRatio), 0.75f);
    m_calculators.darkRatioStatsCalculator.outputStorage.end = 1000;
    Run(10.0f, 100.0f);
    EXPECT_EQ(m_context.Trigger(TriggerCtrlDarkRatio), 0.0f);
}

TEST_F(LuxIndex, FlashInfluenceIsMeasuredInPreflashOnly)
{
    m_context.SaveFrame({.frameID = 1, .exposureSets = {{}, {}, {.exposure = 2000}}, .averageLuma = 20.0f});
    m_context.m_pHistory->SaveFlashFrame(KIROExtFlashCurrentType::Off);

    Run(30.0f, 30.0f, 1500);
    EXPECT_EQ(m_context.Trigger(TriggerFlashInfluence), 1.0f);
    EXPECT_EQ(m_context.Trigger(TriggerCtrlPreflashLuxIndex), 0.0f);

    // 2000 x 30 / 1500 is 40, twice the luma without LED.
    m_context.m_input.opMode = AECAlgoOperationModePreflash;
    m_context.SetTrigger(TriggerCtrlLux, 0.0f);
    const FLOAT lux = Run(300.0f, 3000.0f, 15000);
    EXPECT_NEAR(m_context.Trigger(TriggerFlashInfluence), 2.0f, 1e-5f);
    EXPECT_EQ(m_context.Trigger(TriggerCtrlPreflashLuxIndex), lux);
    EXPECT_GT(lux, 1.0f);

    // The LED takes no light away; a sensitivity of 0 divides nothing.
    Run(3.0f, 30.0f, 1500);
    EXPECT_EQ(m_context.Trigger(TriggerFlashInfluence), 1.0f);
    Run(0.0f, 30.0f, 0);
    EXPECT_EQ(m_context.Trigger(TriggerFlashInfluence), 1.0f);
}

TEST_F(LuxIndex, OfAFlashSnapshotStartsFromTheFrameWithoutLED)
{
    m_context.SaveFrame({.frameID = 1, .exposureSets = {{}, {.indx = 10.0f}, {.indx = 120.0f}}});
    m_context.m_pHistory->SaveFlashFrame(KIROExtFlashCurrentType::Off);

    const std::tuple<KIROExposureSelection, INT32, FLOAT, FLOAT> cases[] = {
        {ExposureSafe, 100, 10.0f, 120.0f + Decade},
        {ExposureSafe, 100, 0.0f, 120.0f},
        {ExposureSafe, 0, 10.0f, 120.0f},
        {ExposureLong, 10, 100.0f, 0.0f},
        {ExposureSafe, -5, 10.0f, 0.0f},
    };
    for (const auto& [type, target, luma, expected] : cases)
    {
        kiroflashsnapshot::KIROFlashSnapshotType snapshot{};
        snapshot.flashSnapshotLux = {LumaHighID, target, type};
        Tune(snapshot);
        m_context.SetAnalyzerResult(LumaHighID, {luma, luma});
        CAnalyzerAlgorithm002 algorithm;
        algorithm.SetTuning(0, m_context);
        algorithm.RunAlgorithm({});
        EXPECT_FLOAT_EQ(m_context.Trigger(TriggerCtrlLux), expected) << target << " " << luma;
        EXPECT_FLOAT_EQ(m_context.Trigger(TriggerCtrlFullflashLuxIndex), expected);
    }
}

}  // namespace
