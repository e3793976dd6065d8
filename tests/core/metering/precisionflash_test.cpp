#include "core/metering/ckiroanalyzeralgorithm003.h"

#include <functional>
#include <limits>
#include <vector>

#include "core/metering/ckiroanalyzer.h"
#include "schema/kirodbarbitrationlut.h"
#include "tests/support/debugrecord.h"
#include "tests/support/testcontext.h"

using kirometeringsaalgorithm::SAAlgorithmType;
using kirometeringsceneanalyzer::SceneAnalyzerType;

namespace
{

constexpr UINT32 AnalyzerID = 3;

// Data IDs that the parameters name.
constexpr INT32 FrOffID  = 60;
constexpr INT32 FrOnID   = 61;
constexpr INT32 BkOffID  = 62;
constexpr INT32 BkOnID   = 63;
constexpr INT32 AdjustID = 70;
constexpr INT32 GyroID   = 9;

/// Exposures of 1000000 with and without LED, so that lumas are rates.
class PrecisionFlash : public ContextTest
{
protected:
    PrecisionFlash() : m_parameters{FrOffID, FrOnID, BkOffID, BkOnID, AdjustID, 0, 0, GyroID, 100.0f, 10.0f, 5.0f, 1.0f}
    {
        SaveFrame(1, 1000000);
        m_context.m_pHistory->SaveFlashFrame(KIROExtFlashCurrentType::Off);
        SaveFrame(2, 1000000);
        m_context.m_pHistory->SaveFlashFrame(KIROExtFlashCurrentType::Low);
        m_context.SetTrigger(TriggerFlashFlux, 1.0f);
        m_context.SetTrigger(TriggerFlashInfluence, 3.0f);
        m_context.SetTrigger(TriggerCtrlPrecisionFlashOk, 1.0f);
        m_context.SetTrigger(TriggerCtrlPrecisionFlashDelay, 5.0f);
        SetForegroundScene();
    }

    VOID SaveFrame(UINT64 frameID, UINT64 exposure)
    {
        m_context.SaveFrame({.frameID = frameID, .exposureSets = {{}, {}, {.exposure = exposure}}});
    }

    VOID SetScene(FLOAT frOff, FLOAT frOn, FLOAT bkOff, FLOAT bkOn)
    {
        m_context.SetCalculatorResult(FrOffID, frOff);
        m_context.SetCalculatorResult(FrOnID, frOn);
        m_context.SetCalculatorResult(BkOffID, bkOff);
        m_context.SetCalculatorResult(BkOnID, bkOn);
        m_context.SetAnalyzerResult(AdjustID, {0.5f, 0.5f});
    }

    /// The LED lights the foreground from 20 to 100, the background from 40 to 50. The main flash, half as strong,
    /// gives 50 and 25. Full background: 100 e1 + 20 e2 = 50 and 50 e1 + 40 e2 = 40 in units of 1000000.
    VOID SetForegroundScene()
    {
        SetScene(20.0f, 100.0f, 40.0f, 50.0f);
    }

    VOID Tune()
    {
        UINT32            algorithmID = Algorithm003;
        SceneAnalyzerType analyzer    = {
               .analyzerID = AnalyzerID, .reservedParameterCount = 1, .reservedParameter = &algorithmID};
        kirometeringsceneanalyzer::KIROMeteringSceneAnalyzerType analyzers = {
            .luxAnalyzer = {.refExposureType = ExposureSafe}, .analyzersCount = 1, .analyzers = &analyzer};

        // The later of two entries with one ID applies.
        SAAlgorithmType algorithms[2]{};
        algorithms[0].ID                                            = Algorithm003;
        algorithms[1].ID                                            = Algorithm003;
        algorithms[1].extensionParameters                           = m_parameters.data();
        algorithms[1].extensionParametersCount                      = static_cast<UINT32>(m_parameters.size());
        kirometeringsaalgorithm::KIROMeteringSAAlgorithmType module = {.SAAlgorithmCount = 2,
                                                                       .SAAlgorithm      = algorithms};

        ContextTest::Tune(analyzers, module);
        m_algorithm.SetTuning(AnalyzerID, m_context);
    }

    VOID Run()
    {
        AnalyzerAlgorithmInput input{};
        input.analyzerIn.luma = 12.0f;
        EXPECT_EQ(m_algorithm.RunAlgorithm(input).analyzerOut.luma, 12.0f);
    }

    VOID TuneAndRun()
    {
        Tune();
        Run();
    }

    VOID ExpectSplit(FLOAT ok, FLOAT e1, FLOAT e2)
    {
        EXPECT_EQ(m_context.Trigger(TriggerCtrlPrecisionFlashOk), ok);
        EXPECT_FLOAT_EQ(m_context.Trigger(TriggerCtrlPrecisionFlashE1), e1);
        EXPECT_FLOAT_EQ(m_context.Trigger(TriggerCtrlPrecisionFlashE2), e2);
    }

    std::vector<FLOAT>    m_parameters;
    CAnalyzerAlgorithm003 m_algorithm;
};

TEST_F(PrecisionFlash, KeepsTheWholeBackgroundWhereItCan)
{
    TuneAndRun();
    ExpectSplit(1.0f, 400000.0f, 500000.0f);
    EXPECT_EQ(m_context.Trigger(TriggerCtrlPrecisionFlashMaxExpTimeMs), 100.0f);
    EXPECT_EQ(m_context.Trigger(TriggerCtrlPrecisionFlashMinTime), 10.0f);
    EXPECT_EQ(m_context.Trigger(TriggerCtrlPrecisionFlashDelay), 10.0f);
    EXPECT_FLOAT_EQ(m_context.Trigger(TriggerCtrlPrecisionFlashInfluence), 1.7f / 0.9f);

    // The delay adds up from run to run.
    Run();
    EXPECT_EQ(m_context.Trigger(TriggerCtrlPrecisionFlashDelay), 15.0f);
}

TEST_F(PrecisionFlash, RecordsWhatItReadAndFound)
{
    constexpr size_t offset = recordoffset::Flash + 1392;
    DebugRecord      record;
    m_context.m_pDebugData = &record.Host();
    TuneAndRun();
    EXPECT_FLOAT_EQ(record.At<FLOAT>(offset + 1), 400000.0f);
    EXPECT_FLOAT_EQ(record.At<FLOAT>(offset + 5), 500000.0f);
    EXPECT_EQ(record.At<UINT8>(offset), 1);
    ByteWriter rest;
    rest.Add<FLOAT>(100.0f, 10.0f, 10.0f, 0.0f);
    rest.Add<FLOAT>(40.0f, 50.0f, 20.0f, 100.0f);
    record.ExpectBytes(offset + 9, rest);
    EXPECT_FLOAT_EQ(record.At<FLOAT>(offset + 41), 40.0f) << "the whole background";
    record.ExpectBytes(offset + 45, ByteWriter().Add<FLOAT>(1.0f).Zeros(24515));
}

TEST_F(PrecisionFlash, ScalesLowFlashToHighByExposureAndFlux)
{
    // Low flash at half the exposure without LED, a third of high flash: (30 x 2 - 20) x 2 + 20 is 100,
    // (22.5 x 2 - 40) x 2 + 40 is 50.
    SaveFrame(3, 500000);
    m_context.m_pHistory->SaveFlashFrame(KIROExtFlashCurrentType::Low);
    m_context.SetTrigger(TriggerFlashFlux, 2.0f);
    SetScene(20.0f, 30.0f, 40.0f, 22.5f);
    TuneAndRun();
    ExpectSplit(1.0f, 400000.0f, 500000.0f);
}

TEST_F(PrecisionFlash, GivesBackgroundUpForTheShortestFlashTimeOrFindsNothing)
{
    const std::tuple<const CHAR*, std::function<VOID()>, FLOAT, FLOAT, FLOAT> cases[] = {
        {"flat scene", [this] { SetScene(20.0f, 100.0f, 20.0f, 100.0f); }, 0.0f, 0.0f, 0.0f},
        {"not detected", [this] { m_context.SetTrigger(TriggerCtrlPrecisionFlashOk, 0.0f); }, 0.0f, 0.0f, 0.0f},
        // e1 must have more than 0.6 of the whole. Background of 85 percent: 0.44 of 0.74; of 80: 0.453 of 0.687.
        {"in steps", [this] { m_parameters[11] = 6.0f; }, 1.0f, 1360000.0f / 3.0f, 700000.0f / 3.0f},
        // A delay of 60 of 100 leaves e1 at most 0.4, and it has 0.444 or more.
        {"too long a delay", [this] { m_parameters[10] = 55.0f; }, 0.0f, 0.0f, 0.0f},
    };
    const std::vector<FLOAT> parameters = m_parameters;
    for (const auto& [pName, change, ok, e1, e2] : cases)
    {
        SCOPED_TRACE(pName);
        m_parameters = parameters;
        m_context.SetTrigger(TriggerCtrlPrecisionFlashOk, 1.0f);
        m_context.SetTrigger(TriggerCtrlPrecisionFlashDelay, 5.0f);
        SetForegroundScene();
        change();
        TuneAndRun();
        ExpectSplit(ok, e1, e2);
        EXPECT_EQ(m_context.Trigger(TriggerCtrlPrecisionFlashMinTime), 10.0f);
    }
    EXPECT_EQ(m_context.Trigger(TriggerCtrlPrecisionFlashInfluence), 3.0f) << "of plain flash, where nothing was found";
}

TEST_F(PrecisionFlash, PlainFlashWinsWhereItLightsTheBackgroundEnough)
{
    // The LED lights the background more: 40 e2 + 50 e1 = 25 and 20 e2 + 100 e1 = 20; plain flash gives it 50. So the
    // factor 1 + hysteresis must exceed 2.5.
    SetScene(40.0f, 50.0f, 20.0f, 100.0f);
    KIROPrecisionFlashHistory                                        history{};
    const std::tuple<KIROPrecisionFlashHistory*, BOOL, FLOAT, FLOAT> cases[] = {{nullptr, FALSE, 0.0f, 0.0f},
                                                                                {&history, FALSE, 1.5f, 0.0f},
                                                                                {&history, FALSE, 2.0f, 1.0f},
                                                                                {&history, TRUE, 2.0f, 0.0f}};
    Tune();
    for (const auto& [pHistory, sceneDetected, hysteresis, ok] : cases)
    {
        history.sceneDetected  = sceneDetected;
        history.hysteresis     = hysteresis;
        m_context.m_pPFHistory = pHistory;
        m_context.SetTrigger(TriggerCtrlPrecisionFlashOk, 1.0f);
        m_context.SetTrigger(TriggerCtrlPrecisionFlashDelay, 5.0f);
        Run();
        ExpectSplit(ok, ok * 100000.0f, ok * 500000.0f);
    }
}

TEST_F(PrecisionFlash, GyroLimitsTheExposureTime)
{
    // Up to a time of 150 the limit is 50, whatever the gyro says.
    TriggerSystemEndLevelType                     limit{{0.0f, 150.0f}, 50.0f};
    TwoLevelTriggerSystemLevel1Type               row{{0.0f, 10.0f}, 1, 0, &limit};
    kirodbarbitrationlut::DBArbitrationLUTPayload LUT{};
    LUT.dataID                 = GyroID;
    LUT.value.triggerData      = &row;
    LUT.value.triggerDataCount = 1;
    Tune();
    Run();
    EXPECT_EQ(m_context.Trigger(TriggerCtrlPrecisionFlashMaxExpTimeMs), 100.0f);

    m_context.SetTrigger(TriggerCtrlGyro, 2.0f);
    Run();
    EXPECT_EQ(m_context.Trigger(TriggerCtrlPrecisionFlashMaxExpTimeMs), 100.0f);
    EXPECT_TRUE(m_log.Has(LevelError, "Precision could not find LUT 9"));

    SetBank(BankIDArbitrationLUT, &LUT);
    Run();
    EXPECT_EQ(m_context.Trigger(TriggerCtrlPrecisionFlashMaxExpTimeMs), 50.0f);
    limit.triggerData = 0.0f;
    Run();
    EXPECT_EQ(m_context.Trigger(TriggerCtrlPrecisionFlashMaxExpTimeMs), 100.0f);
}

TEST_F(PrecisionFlash, MissingDataLeaveTheTriggersAlone)
{
    const CHAR* pRefusal = "Precision flash could not get flash frame history or not enough tuning params";
    m_context.SetTrigger(TriggerCtrlPrecisionFlashE1, 77.0f);
    m_parameters.resize(11);
    TuneAndRun();
    EXPECT_EQ(m_log.Count(LevelError, pRefusal), 1u);
    m_algorithm.SetTuning(AnalyzerID + 1, m_context);
    Run();
    EXPECT_EQ(m_log.Count(LevelError, pRefusal), 2u);
    m_parameters.resize(12);
    m_context.m_pHistory->SaveFlashFrame(KIROExtFlashCurrentType::Off);
    TuneAndRun();
    EXPECT_EQ(m_log.Count(LevelError, pRefusal), 3u);
    ExpectSplit(1.0f, 77.0f, 0.0f);
}

TEST_F(PrecisionFlash, BrokenParametersFindNothing)
{
    for (FLOAT broken : {std::numeric_limits<FLOAT>::quiet_NaN(), 1e30f, -1e30f, 1000.0f})
    {
        m_parameters.assign(12, broken);
        m_context.SetTrigger(TriggerCtrlPrecisionFlashOk, 1.0f);
        m_context.SetTrigger(TriggerCtrlGyro, 1.0f);
        TuneAndRun();
        ExpectSplit(0.0f, 0.0f, 0.0f);
    }
    EXPECT_TRUE(m_log.Has(LevelError, "GetDataStatsCalculator Invalid data ID 1000"));
}

}  // namespace
