/// @file
/// An instance behind the function table with a small tuning, and the order of a frame's calls.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

#include "interface/ikirocorealgo.h"
#include "parameters/tuningsetmanager.h"
#include "schema/kirodbroi.h"
#include "schema/kirodbstatscalculator.h"
#include "tests/support/debugrecord.h"
#include "tests/support/statslogcapture.h"
#include "tools/tuningfile/binaryoutput.h"
#include "tools/tuningfile/textinput.h"

/// Meters the average for a luma of 50, goes half of the way in each frame, and splits exposures into time, then gain.
/// No stretch; settled after two frames within three indices; one stop of EV is one step. Entry 2 of the regions
/// applies during a touch. Trigger 80 is the mean of the last four lumas.
inline const std::string FrameTuning = R"(
x-everywhere: &everywhere {start: 0, end: 1}
x-one: &one
  selection: TriggerSystemMethod
  triggerSystem: {trigger1Data: [{trigger: *everywhere, trigger2Data: [{trigger: *everywhere, triggerData: 1.0}]}]}
x-bank: &none {bankID: BankIDTriggers, dataID: 0}
modes:
  Default:
    modules:
      kirometeringstatscalculator:
        averageStatsCalculator: &average
          calculatorID: 1
          APISelection: API01GridWeightedAverage
          statsSelection: {channel1: luma}
          outputStorage: {start: 1, end: 1}
          generalParameters: {weightTable2D: 1}
        statsCalculators: [{<<: *average, calculatorID: 9, description: Spot, outputStorage: {start: 5, end: 6}}]
      kirodbactivecalculators:
        dataBank: {bankID: BankIDActiveCalculators}
        data: [{dataID: 1, calculatorID: [9]}]
      kiro1dvectorprocessor:
        vectorProcessors:
          - enable: true
            input: {bankID: BankIDStatsCalculator, dataID: 1}
            output: {bankID: BankIDTriggers, dataID: 80}
            filtering: {method: MovingAverage, filterLength: 4}
      kirodb2dmeterweight:
        dataBank: {bankID: BankIDMetering2D}
        data: [{dataID: 1, weights: {fill: 1.0}}]
      kirometeringsceneanalyzer:
        luxAnalyzer: &safe
          exposureType: ExposureSafe
          refExposureType: ExposureSafe
          luma:
            calculators: [{value: {selection: DataBankMethod, dataBank: {bankID: BankIDStatsCalculator, dataID: 1}}, weight: *one}]
            aggregator: {method: Average, output: {dataBank: {bankID: BankIDSceneAnalyzer, dataID: 1}}}
          target:
            calculators:
              - value:
                  selection: TriggerSystemMethod
                  triggerSystem:
                    trigger1Data:
                      - {trigger: *everywhere, trigger2Data: [{trigger: *everywhere, triggerData: {rangeStart: 50.0, rangeEnd: 50.0}}]}
                weight: *one
            aggregator: {method: Average, output: {dataBank: {bankID: BankIDSceneAnalyzer, dataID: 2}}}
          confidence:
            calculators: [{value: *one, weight: *one}]
            aggregator: {method: Average, output: {dataBank: {bankID: BankIDSceneAnalyzer, dataID: 3}}}
          reservedParameter: [0]
        analyzers: [{<<: *safe, analyzerName: Safe}]
      kirodbactiveanalyzers:
        dataBank: {bankID: BankIDActiveAnalyzers}
        data: [{dataID: 1, analyzerID: [0]}]
      kirodbroi:
        dataBank: {bankID: BankIDROITable, priorityMap: [{context: [AECDefault], dataID: 1}, {context: [AECTouch], priority: 1, dataID: 2}]}
        data: [{dataID: 1}, {dataID: 2}]
      kirodbarbitrationtable:
        dataBank: {bankID: BankIDArbitrationTable}
        data:
          - dataID: 1
            value:
              correction: 1.0
              expKnees:
                - {incrementPriority: AECExpIncTime, gain: 1.0, time: 20000}
                - {incrementPriority: AECExpIncTime, gain: 1.0, time: 33333333}
                - {incrementPriority: AECExpIncGain, gain: 64.0, time: 33333333}
      kiroconvergence: {unitStepSize: 0.25}
      kirodbconvbase:
        dataBank: {bankID: BankIDConvBase}
        data:
          - dataID: 1
            value:
              tolerance: 2
              trigger1DataBank: *none
              trigger2DataBank: *none
              trigger3DataBank: *none
              trigger1Data: [{trigger: *everywhere, trigger2Data: [{trigger: *everywhere, trigger3Data: [{trigger: *everywhere, triggerData: {baseSpeed: 0.5, baseCapping: 1.0, drcSpeed: 0.5}}]}]}]
      kirodbconvstretch:
        dataBank: {bankID: BankIDConvStretch}
        data: [{dataID: 1}]
      kirodbconvsettle:
        dataBank: {bankID: BankIDConvSettle}
        data:
          - dataID: 1
            value:
              baseSettleTrigger:
                trigger1DataBank: *none
                trigger2DataBank: *none
                trigger1Data: [{trigger: *everywhere, trigger2Data: [{trigger: *everywhere, triggerData: {settleCountTh: 2, settleExpTh: 3.0}}]}]
      kiroev:
        EVCoreData: {stepsPerEV: 1, minEVValue: -1, maxEVValue: 1, EVCompTable: {EVCompTableElements: {fill: 1.0, 0: 0.5, 2: 2.0}}, bracketingEV: {bracketingAdjForEVPos2: 1.0, bracketingAdjForEVNeg2: 1.0}}
      kiroextension:
        flagMonitor:
          YHistStretch: {clampValue: {bankID: BankIDSceneAnalyzer, dataID: 30}, scalingValue: {bankID: BankIDConvActiveSCD, dataID: 5}}
)";

/// Changes a tuning in one place.
inline VOID Replace(std::string& rText, const std::string& rOld, const std::string& rNew)
{
    const size_t position = rText.find(rOld);
    ASSERT_NE(position, std::string::npos) << rOld;
    rText.replace(position, rOld.size(), rNew);
}

inline constexpr UINT64 StartExposure = 1000000;

/// The calls of a frame, on an instance that is tuned by a text.
class FrameCalls : public testing::Test
{
protected:
    explicit FrameCalls(const std::string& rTuning, bool hasDebugData = false)
    {
        m_record.Host().SetEnabled(hasDebugData);
        const std::vector<BYTE> bytes =
            tuningfile::WriteBinary(tuningfile::ParseText(rTuning, "frame.yaml"), tuningfile::NewestVersion);
        m_store.SetLiveTuningAutostart(false);
        EXPECT_TRUE(m_store.LoadBinaryParameters(bytes.data(), bytes.size())) << m_store.GetErrorText();
        Create();
    }

    /// @param rTuning of a store that outlives the instance
    explicit FrameCalls(const StatsTuningData& rTuning) : m_tuning(rTuning)
    {
        Create();
    }

    VOID Create()
    {
        const AECAlgoCreateParamList noParams{};
        EXPECT_EQ(CreateKiroCoreAlgo(m_tuning, m_record.Host(), noParams, m_pAlgo), 0);
        (VOID) Set(AECAlgoSetParamOperationMode, AECAlgoOperationModeStreaming);
        (VOID) Set(AECAlgoSetParamPipelineDelay, static_cast<UINT8>(1));
        m_limits.indexZeroExposure = 1;
        SetStartExposures();
    }

    ~FrameCalls() override
    {
        m_pAlgo->DestroyInstance(m_pAlgo);
        TavoFree(m_pAlgo, 16, nullptr, 0);
    }

    KIROCntStatsOut& AddChannel(const CHAR* pName, KIROStatsType type, kirocorestatsconfig::ResolutionType resolution)
    {
        KIROCntStatsOut& rChannel            = m_pStats->pList[m_pStats->count++];
        rChannel.type                        = type;
        rChannel.resolution                  = resolution;
        rChannel.channelData.bChannelEnabled = TRUE;
        rChannel.channelData.pChannelName    = const_cast<CHAR*>(pName);
        return rChannel;
    }

    template <typename T> MNKResult Set(AECAlgoSetParamType type, T value)
    {
        AECAlgoSetParam param = {&value, sizeof(value), type};
        KIROSetInput    input = {.source = AECPEKSetParam, .u = {.pPEKInput = &param}};
        return m_pAlgo->setInput(m_pAlgo, &input);
    }

    VOID SetStartExposures()
    {
        std::fill(std::begin(m_convergence.exposures), std::end(m_convergence.exposures), StartExposure);
        m_convergence.predictiveGain = 1.0f;
    }

    VOID BeginFrame()
    {
        ++m_frameID;
        EXPECT_EQ(m_pAlgo->runStartOfFrame(m_pAlgo, m_frameID), 0);
        EXPECT_EQ(m_pAlgo->setStats(m_pAlgo, *m_pStats), 0);
    }

    VOID Meter(UINT32 analyzerID = 0)
    {
        KIROMeteringInput  input = {TRUE, 0};
        KIROAnalyzerOutput output{};
        m_result = m_pAlgo->runMeteringPreprocess(m_pAlgo, input, m_metering);
        if (m_result == 0)
        {
            output.refType = ExposureNone;
            EXPECT_EQ(m_pAlgo->runAnalyzer(m_pAlgo, analyzerID, output), 0);
            EXPECT_EQ(output.refType, ExposureNone) << "the caller's";
        }
        EXPECT_EQ(m_pAlgo->runMeteringPostprocess(m_pAlgo, input, m_metering), 0);
        EXPECT_EQ(m_pAlgo->mixMetering(m_pAlgo, m_metering), 0);
    }

    KiroResult Converge()
    {
        KIROArbitratedLimits limits = m_limits;
        KIROConvergenceInput input  = {
             .frameID = m_frameID, .pRange = &limits, .bIsMeteringSkipped = m_metering.bIsMeteringSkipped};
        std::copy(std::begin(m_metering.exposures), std::end(m_metering.exposures), input.sensitivities);
        const KiroResult result = m_pAlgo->RunConvProcess(m_pAlgo, input, m_convergence);
        limits                  = {};  // from here on the host's memory is its own again
        EXPECT_EQ(m_pAlgo->followMasterConvExposure(m_pAlgo, m_convergence), 0);
        m_pAlgo->HandleExposureConstraints(m_pAlgo, m_convergence);
        m_pAlgo->RunConvSettle(m_pAlgo, m_convergence);
        m_pAlgo->RunConvPostProcess(m_pAlgo, m_convergence);
        return result;
    }

    VOID EndFrame(BOOL bStartup = FALSE)
    {
        KIROExtensionInput  input = {&m_convergence, m_arbitration, StatisticsStartUpValid, {}};
        KIROExtensionOutput output{};
        EXPECT_EQ(m_pAlgo->runExtension(m_pAlgo, input, output), 0);
        KIROFrameInfo           info = {m_frameID, bStartup};
        KIROPostProcessingInput post{};
        EXPECT_EQ(m_pAlgo->runEndOfFrame(m_pAlgo, info, post, m_metering, m_convergence, m_arbitration), 0);
    }

    /// @return zeros if there is no such entry
    template <typename Payload> Payload Value(KIROBankIDType bank, INT32 dataID)
    {
        KIROGetBankData query = {bank, dataID, nullptr, sizeof(Payload)};
        (VOID) m_pAlgo->getBankData(m_pAlgo, &query);
        return (query.pData != nullptr) ? *static_cast<const Payload*>(query.pData) : Payload{};
    }

    template <typename Payload> VOID SetValue(KIROBankIDType bank, Payload payload)
    {
        const KIROSetBankData entry = {bank, &payload, sizeof(payload)};
        EXPECT_EQ(m_pAlgo->setBankData(m_pAlgo, &entry), 0);
    }

    StatsLogCapture                m_log;
    DebugRecord                    m_record;
    TuningSetManager               m_store{"test"};
    TuningMode                     m_modes[2]{{ModeType::Default, {0}}, {ModeType::Sensor, {1}}};
    StatsTuningData                m_tuning{&m_store, m_modes, 1};
    IKIROCoreAlgo*                 m_pAlgo   = nullptr;
    std::unique_ptr<KIROStatsList> m_pStats  = std::make_unique<KIROStatsList>();
    UINT64                         m_frameID = 0;
    KiroResult                     m_result  = 0;
    KIROArbitratedLimits           m_limits{};
    KIROMeteringOutput             m_metering{};
    KIROConvergenceOutput          m_convergence{};
    KIROArbitrationOutput          m_arbitration[AECAlgoExposureCount]{};
};

/// Whole frames of a scene.
class Frames : public FrameCalls
{
protected:
    /// @param rModules further modules, each line indented by six
    explicit Frames(const std::string& rModules = "") : FrameCalls(FrameTuning + rModules)
    {
        Prepare();
    }

    explicit Frames(const StatsTuningData& rTuning) : FrameCalls(rTuning)
    {
        Prepare();
    }

    VOID Prepare()
    {
        AddChannel("luma", KIROStatsGrid, {4, 4, 0, 8}).channelData.Data.pFData = m_values.data();
        for (KIROExposureRange& rRange : m_limits.ranges)
        {
            rRange.start.exposure = 1;
            rRange.end.exposure   = 1ULL << 40;
        }
    }

    VOID SetSnapshot(KIROCoreSnapshotType type)
    {
        KIROSetInput input = {.source = KIROCoreSnapshot, .u = {.snapshotMode = type}};
        EXPECT_EQ(m_pAlgo->setInput(m_pAlgo, &input), 0);
    }

    FLOAT Trigger(INT32 id)
    {
        return Value<DBFloatPayload>(BankIDTriggers, id).value;
    }

    /// The start configuration, with all three exposures alike.
    VOID RunStartup()
    {
        SetStartExposures();
        Split();
        EndFrame(TRUE);
    }

    VOID BeginFrame(FLOAT luma)
    {
        std::fill(m_values.begin(), m_values.end(), luma);
        FrameCalls::BeginFrame();
    }

    VOID Split()
    {
        for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
        {
            KIROArbitrationInput input = {.controlID     = kirodbarbitrationorder::ArbCtrlTable,
                                          .controlBank   = BankIDArbitrationTable,
                                          .controlDataID = 1,
                                          .expType       = static_cast<AECAlgoExposureType>(type)};
            input.exposures[type]      = {1.0f, 20000, 0.0f, 1.0f, m_convergence.exposures[type], 0, 0.0f, 0, 0};
            input.sensorRange          = {1.0f, 64.0f, 20000, 33333333};
            input.range.start          = {1.0f, 20000, 0.0f, 1.0f, 0, 0, 0.0f, 0, 0};
            input.range.end            = {64.0f, 33333333, 0.0f, 1.0f, 0, 0, 0.0f, 0, 0};
            input.indexZeroExposure    = 1;
            m_arbitration[type].range  = input.range;
            m_arbitration[type].FPS    = 30.0f;
            EXPECT_EQ(m_pAlgo->runArbitration(m_pAlgo, &input, &m_arbitration[type]), 0);
        }
    }

    VOID RunFrame(FLOAT luma)
    {
        BeginFrame(luma);
        Meter();
        EXPECT_EQ(Converge(), 0);
        Split();
        EndFrame();
    }

    UINT64 Safe() const
    {
        return m_arbitration[AECAlgoExposureSafe].exposureSet.exposure;
    }

    std::vector<FLOAT> m_values = std::vector<FLOAT>(16, 50.0f);
};
