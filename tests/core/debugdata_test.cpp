// The debug record of whole frames, byte by byte: hand-made values at the offsets that offline tools read.

#include "tests/core/framefixture.h"

namespace
{

/// The tuning of frames with a name or a number of its own for all that the record shows, with one operator. All that
/// is verbose is recorded, except in the mode of sensor 1.
std::string RecordTuning()
{
    const auto aggregator = [](const std::string& rMethod, const std::string& rOutput)
    { return "{method: " + rMethod + ", output: {dataBank: {bankID: BankIDSceneAnalyzer, dataID: " + rOutput + "}}"; };
    std::string text = FrameTuning;
    Replace(text, "        statsCalculators:",
            R"(        darkRatioStatsCalculator: {<<: *average, outputStorage: {start: 3, end: 3}}
        brightRatioStatsCalculator: {<<: *average, outputStorage: {start: 4, end: 4}}
        statsCalculators:)");
    Replace(text, aggregator("Average", "1}"), aggregator("NormalizedWeightedSum", "11}, description: L"));
    Replace(text, aggregator("Average", "2}"), aggregator("Average", "12}, description: T"));
    Replace(text, aggregator("Average", "3}"), aggregator("Average", "13}, description: C"));
    Replace(text, R"(          reservedParameter: [0]
        analyzers: [{<<: *safe, analyzerName: Safe}]
)",
            R"(          reservedParameter: [1]
        analyzers:
          - <<: *safe
            analyzerID: 300
            analyzerName: Safe
            arithmeticOperators:
              - enableFlag: true
                operatorPriority: EndOfAnalysis
                operationMethod: Addition
                operandA: {method: TuningMethod, tuningValue: 2.0}
                operandB: {method: TuningMethod, tuningValue: 3.0}
                operandC: {method: TuningMethod, tuningValue: 4.0}
                operandD: {method: TuningMethod, tuningValue: 5.0}
                output: {dataBank: {bankID: BankIDSceneAnalyzer, dataID: 14}, dataType: end, description: Sum}
            reservedParameter: [0]
)");
    Replace(text, "analyzerID: [0]", "analyzerID: [300]");
    Replace(text, "AECExpIncTime, gain: 1.0, time: 33333333", "AECExpIncTime, gain: 1.0, time: 500000");
    Replace(text, "AECExpIncGain, gain: 64.0, time: 33333333", "AECExpIncGain, gain: 64.0, time: 500000");
    Replace(text, "tolerance: 2\n", "tolerance: 2\n              cappingType: CappingTypeAbsolute\n");
    Replace(text, "baseCapping: 1.0, drcSpeed: 0.5", "baseCapping: 4.0, drcSpeed: 0.75");
    Replace(text, "        flagMonitor:\n",
            R"(        verboseDebugDataEnable: {StatsList: true, SceneAnalyzer: true, StatsCalculator: true}
        flagMonitor:
          ZLLFlag: {enableZLLSnapshot: true}
)");
    return text + R"(      kirometering:
        luxIndexOperation: {enableCompensation: true, refExposureForLuxIndexZero: 200000}
    children:
      Sensor.1:
        modules:
          kiroextension: {verboseDebugDataEnable: {StatsList: false}}
)";
}

constexpr UINT32 Analyzer = 300;

class DebugBytes : public FrameCalls
{
protected:
    DebugBytes() : FrameCalls(RecordTuning(), true), m_luma(16, 25.0f), m_bins{1, 2, 3, 4}
    {
        AddChannel("luma", KIROStatsGrid, {4, 4, 0, 8}).channelData.Data.pFData  = m_luma.data();
        AddChannel("hist", KIROStatsHist, {0, 0, 4, 10}).channelData.Data.pIData = m_bins.data();
        for (KIROExposureRange& rRange : m_limits.ranges)
        {
            rRange.start = {1.0f, 10, 77.0f, 1.0f, 10, 0, 0.0f, 0, 0};
            rRange.end   = {64.0f, 1000000000, 702.0f, 1.0f, 1000000000, 0, 0.0f, 0, 0};
        }
        // Exposures that the host has arbitrated.
        for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
        {
            m_arbitration[type].exposureSet = {2.0f, 500000, 10.5f, 1.0f, StartExposure, 200 + type, 0.0f, 0, 0};
            m_arbitration[type].FPS         = 24.0f;
        }
        EndFrame(TRUE);
    }

    VOID SetTrigger(INT32 dataID, FLOAT value)
    {
        SetValue(BankIDTriggers, DBFloatPayload{dataID, value, nullptr});
    }

    std::vector<FLOAT> m_luma;
    std::vector<INT>   m_bins;
};

TEST_F(DebugBytes, TheCurrentFrameStandsFirstInTheHistory)
{
    (VOID) Set(AECAlgoSetParamExposureCompensation, 1);
    (VOID) Set(AECAlgoSetParamControlPostRawSensitivityBoost, 150);
    BeginFrame();
    Meter(Analyzer);
    SetTrigger(TriggerCtrlLuma, 41.5f);
    SetTrigger(TriggerCtrlLux, 123.25f);
    m_convergence.bSettle            = FALSE;
    m_convergence.bBrightnessSettle  = TRUE;
    m_convergence.predictiveGain     = 1.25f;
    m_convergence.shortStretchOffset = -3.5f;
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        m_metering.exposures[type] = 7000 + type;
    }
    EndFrame();

    ByteWriter frame;
    frame.Add<UINT32>(1).Add<UINT8>(0);
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        frame.Add<FLOAT>(2.0f).Add<UINT64>(500000).Add<FLOAT>(10.5f, 1.0f);
        frame.Add<UINT64>(1000000).Add<UINT32>(200 + type);
    }
    frame.Add<UINT64>(7000, 7001, 7002);
    frame.Add<FLOAT>(41.5f, 123.25f).Add<UINT8>(0, 1).Add<FLOAT>(2.0f).Add<INT32>(1);
    frame.Add<FLOAT>(1.25f, -3.5f, 24.0f).Add<INT32>(150).Add<UINT8>(0);
    ASSERT_EQ(frame.Size(), 160u);
    m_record.ExpectBytes(recordoffset::FrameHistory, frame);
    m_record.ExpectBytes(recordoffset::FrameHistory + 160, frame);
}

TEST_F(DebugBytes, SettledFramesAfterASettledOneAreNotKept)
{
    for (const BOOL bSettle : {FALSE, TRUE, TRUE, TRUE, FALSE})
    {
        BeginFrame();
        m_convergence.bSettle = bSettle;
        EndFrame();
    }
    const auto frameAt = [&](size_t past)
    { return m_record.At<UINT32>(recordoffset::FrameHistory + 160 * (1 + past)); };
    EXPECT_EQ(m_record.At<UINT32>(recordoffset::FrameHistory), 5u);
    EXPECT_EQ(frameAt(0), 5u);
    EXPECT_EQ(frameAt(1), 2u);
    EXPECT_EQ(frameAt(2), 1u);
    EXPECT_EQ(m_record.At<UINT8>(recordoffset::FrameHistory + 160 * 4 + 4), 1) << "the start configuration";
    m_record.ExpectZeros(recordoffset::FrameHistory + 160 * 5, 160 * 16);

    // The oldest of twenty falls out.
    for (UINT32 frame = 0; frame < 20; ++frame)
    {
        BeginFrame();
        EndFrame();
    }
    EXPECT_EQ(frameAt(0), 25u);
    EXPECT_EQ(frameAt(19), 6u);
}

TEST_F(DebugBytes, MeteringRecordsExposuresCalculatorsAndAnalyzers)
{
    BeginFrame();
    Meter(Analyzer);

    // Luma 25 for a target of 50 asks for twice the start exposure, ten times the exposure of lux index 0.
    ByteWriter metering;
    for (UINT32 target = 0; target < 6; ++target)
    {
        metering.Add<UINT64>(2000000);
    }
    metering.Add<UINT8>(0).Add<FLOAT>(25.0f, 77.89853f, 25.0f, 25.0f);
    metering.Add<UINT16>(1);
    metering.Field("Spot", 64).Add<INT32>(9).Add<UINT8>(1).Add<INT16>(5, 6);
    metering.Add<FLOAT>(25.0f, 0.0f);
    m_record.ExpectBytes(recordoffset::Metering, metering);

    // The fixed calculators run before the count starts anew: what stands past it is of no meaning.
    ByteWriter analyzers;
    analyzers.Add<UINT16>(1);
    analyzers.Field("Safe", 64).Add<UINT16>(300).Add<UINT8>(1, 1);
    analyzers.Add<FLOAT>(25.0f, 50.0f, 50.0f, 1.0f);
    analyzers.Add<UINT8>(1, 3).Add<INT16>(11).Field("L", 64);
    analyzers.Add<UINT8>(0, 3).Add<INT16>(12).Field("T", 64);
    analyzers.Add<UINT8>(0, 3).Add<INT16>(13).Field("C", 64);
    analyzers.Add<FLOAT>(-1.0f).Add<UINT8>(1);
    // End of analysis, to the end of the entry: 2 times 3 and 4 times 5.
    analyzers.Add<UINT8>(0x21, 0);
    analyzers.Add<FLOAT>(2.0f, 3.0f, 4.0f, 5.0f, 26.0f, 26.0f);
    analyzers.Add<UINT8>(3).Add<INT16>(14).Field("Sum", 64);
    analyzers.Zeros(19 * 93).Zeros(19 * 2153).Zeros(2);
    ASSERT_EQ(metering.Size() + 39 * 81 + analyzers.Size(), 46371u);
    m_record.ExpectBytes(recordoffset::Metering + 3307, analyzers);
}

TEST_F(DebugBytes, ConvergenceRecordsLimitsMovesAndItsHistory)
{
    BeginFrame();
    Meter(Analyzer);
    std::fill(std::begin(m_metering.exposures), std::end(m_metering.exposures), 10 * StartExposure);
    Converge();
    EndFrame();

    // Logs of powers of ten are multiples of 77.89853. Four steps up, on the grid of quarters.
    constexpr FLOAT decade = 77.89853f;
    ByteWriter      moves;
    for (const FLOAT log : {7.0f * decade, 471.5f})
    {
        moves.Add<FLOAT>(log, log, log);
    }
    ByteWriter convergence;
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        convergence.Add<FLOAT>(decade, 9.0f * decade, 1.0f, 64.0f);
    }
    convergence.Bytes(moves.Get());
    convergence.Add<FLOAT>(6.0f * decade, 6.0f * decade, 6.0f * decade);
    convergence.Add<FLOAT>(0.5f, 0.75f).Add<UINT8>(1).Add<FLOAT>(1.0f).Add<UINT8>(0, 0);
    convergence.Add<FLOAT>(0.0f).Add<UINT8>(1);
    convergence.Add<UINT32>(1).Bytes(moves.Get()).Zeros(19 * 28);
    ASSERT_EQ(convergence.Size(), 664u);
    m_record.ExpectBytes(recordoffset::Convergence, convergence);
}

TEST_F(DebugBytes, ArbitrationRecordsTheLastControlOfEachExposure)
{
    BeginFrame();
    KIROArbitrationInput input{};
    input.controlID         = kirodbarbitrationorder::ArbCtrlTable;
    input.controlBank       = BankIDArbitrationTable;
    input.controlDataID     = 1;
    input.expType           = AECAlgoExposureLong;
    input.sensorRange       = {1.0f, 64.0f, 1, 500000};
    input.range.start       = {1.0f, 1, 0.0f, 1.0f, 0, 0, 0.0f, 0, 0};
    input.range.end         = {20.0f, 500000, 0.0f, 1.0f, 0, 0, 0.0f, 0, 0};
    input.indexZeroExposure = 1;
    m_arbitration[1].range  = input.range;
    const auto arbitrateAs  = [&](UINT64 exposure, BOOL bIsConvRange)
    {
        input.exposures[1] = {1.0f, 20000, 0.0f, 1.0f, exposure, 100, 0.0f, 0, 0};
        input.bIsConvRange = bIsConvRange;
        EXPECT_EQ(m_pAlgo->runArbitration(m_pAlgo, &input, &m_arbitration[1]), 0);
    };
    arbitrateAs(10000000, FALSE);
    arbitrateAs(30000, TRUE);  // the limits of a frame are no exposure

    ByteWriter exposure;
    exposure.Add<FLOAT>(20.0f).Add<UINT64>(500000).Add<FLOAT>(7.0f * 77.89853f, 1.0f);
    exposure.Add<UINT64>(10000000).Add<UINT32>(0);
    exposure.Add<FLOAT>(1.0f, 20.0f).Add<UINT64>(1, 500000);
    exposure.Add<FLOAT>(0.0f, 7.0f * 77.89853f, 0.0f);
    ASSERT_EQ(exposure.Size(), 68u);
    m_record.ExpectZeros(recordoffset::Arbitration, 68);
    m_record.ExpectBytes(recordoffset::Arbitration + 68, exposure);
    m_record.ExpectBytes(recordoffset::Arbitration + 3 * 68, ByteWriter().Add<FLOAT>(24.0f).Zeros(4));
}

TEST_F(DebugBytes, ExtensionRecordsItsFlags)
{
    BeginFrame();
    SetTrigger(TriggerCtrlLux, 123.25f);
    EndFrame();
    ByteWriter extension;
    extension.Add<FLOAT>(123.25f).Add<UINT8>(0, AECAlgoOperationModeStreaming);
    // Lux above the zeros of the flash limits: flash and delay for faces; ZLL is tuned on; no stretch.
    extension.Add<UINT8>(0, 1, 0, 0, 1, 0, 0);
    extension.Add<FLOAT>(0.0f, 1.0f);
    extension.Zeros(1 + 3 + 5 * 4 + 1).Add<UINT8>(1).Zeros(2).Add<UINT8>(1);
    ASSERT_EQ(extension.Size(), 50u);
    m_record.ExpectBytes(recordoffset::Extension, extension);
}

TEST_F(DebugBytes, StatisticsFollowTheVerboseFlag)
{
    constexpr size_t channelSize    = 16474;
    m_pStats->bayerGridROI          = {1, 2, 3, 4};
    m_pStats->bIsTorchAEC           = TRUE;
    m_pStats->prepareBeforePreflash = TRUE;
    m_pStats->pList[0].frameID      = 0x0102030405060708;
    m_pStats->pList[1].frameID      = 0x0102030405060708;
    for (UINT32 region = 0; region < 16; ++region)
    {
        m_luma[region] = static_cast<FLOAT>(region);
    }

    // The flag of the tuning is written even while debug data are off; nothing else is.
    m_record.Host().SetEnabled(false);
    BeginFrame();
    EXPECT_EQ(m_record.At<UINT8>(recordoffset::Extension + 49), 1);
    m_record.ExpectZeros(recordoffset::Stats, 19 + 20 * channelSize);

    m_record.Host().SetEnabled(true);
    BeginFrame();
    ByteWriter stats;
    stats.Add<UINT8>(2, 1, 1);
    stats.Add<UINT32>(1, 2, 3, 4);
    stats.Add<UINT64>(0x0102030405060708).Field("luma", 64).Add<UINT8>(1, 0);
    stats.Add<UINT32>(4, 4, 0).Add<INT32>(8);
    for (UINT32 region = 0; region < 16; ++region)
    {
        stats.Add<FLOAT>(static_cast<FLOAT>(region));
    }
    stats.Zeros((3072 - 16) * 4 + 1024 * 4);
    stats.Add<UINT64>(0x0102030405060708).Field("hist", 64).Add<UINT8>(1, 1);
    stats.Add<UINT32>(0, 0, 4).Add<INT32>(10).Zeros(3072 * 4);
    stats.Add<UINT32>(1, 2, 3, 4).Zeros((1024 - 4) * 4);
    stats.Zeros(18 * channelSize);
    ASSERT_EQ(stats.Size(), 329499u);
    m_record.ExpectBytes(recordoffset::Stats, stats);

    // Without the flag the last channels stay.
    m_tuning.numSelectors = 2;
    (VOID) Set(AECAlgoSetParamTunaraData, m_tuning);
    m_luma[0] = 99.0f;
    BeginFrame();
    EXPECT_EQ(m_record.At<UINT8>(recordoffset::Extension + 49), 0);
    m_record.ExpectBytes(recordoffset::Stats, stats);
}

TEST_F(DebugBytes, ValuesOfAnUnknownTypeStayOut)
{
    constexpr size_t channelSize = 16474;
    constexpr size_t valuesSize  = (3072 + 1024) * 4;
    // Sixteen values, whatever the bins say.
    AddChannel("odd", static_cast<KIROStatsType>(7), {4, 4, 1024, 8}).channelData.Data.pFData = m_luma.data();
    m_record.Host().SetEnabled(true);
    BeginFrame();
    EXPECT_EQ(m_record.At<UINT8>(recordoffset::Stats), 3);
    EXPECT_EQ(m_record.At<FLOAT>(recordoffset::Stats + 19 + channelSize - valuesSize), 25.0f) << "of the luma channel";
    m_record.ExpectZeros(recordoffset::Stats + 19 + 3 * channelSize - valuesSize, valuesSize);
}

}  // namespace
