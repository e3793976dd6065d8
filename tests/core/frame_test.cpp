// Whole frames through the function table: what the sensor did comes back as statistics of the next frame.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "interface/ikirocorealgo.h"
#include "parameters/tuningsetmanager.h"
#include "schema/kirodbroi.h"
#include "schema/kirodbstatscalculator.h"
#include "tests/core/debugdataoff.h"
#include "tests/support/statslogcapture.h"
#include "tools/tuningfile/binaryoutput.h"
#include "tools/tuningfile/textinput.h"

namespace
{

/// Meters the average for a luma of 50, goes half of the way in each frame, and splits exposures into time, then gain.
/// One stop of EV is one step. Entry 2 of the regions applies during a touch.
constexpr const CHAR* FrameTuning = R"(
x-everywhere: &everywhere {start: 0, end: 1}
x-one: &one
  selection: TriggerSystemMethod
  triggerSystem: {trigger1Data: [{trigger: *everywhere, trigger2Data: [{trigger: *everywhere, triggerData: 1.0}]}]}
x-bank: &none {bankID: BankIDTriggers, dataID: 0}
modes:
  Default:
    modules:
      kirometeringstatscalculator:
        averageStatsCalculator:
          APISelection: API01GridWeightedAverage
          statsSelection: {channel1: luma}
          outputStorage: {start: 1, end: 1}
          generalParameters: {weightTable2D: 1}
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

constexpr UINT64 StartExposure = 1000000;

class Frames : public testing::Test
{
protected:
    Frames() : m_values(16, 50.0f), m_pStats(std::make_unique<KIROStatsList>())
    {
        const std::vector<BYTE> bytes =
            tuningfile::WriteBinary(tuningfile::ParseText(FrameTuning, "frame.yaml"), tuningfile::NewestVersion);
        EXPECT_TRUE(m_store.LoadBinaryParameters(bytes.data(), bytes.size())) << m_store.GetErrorText();
        const AECAlgoCreateParamList noParams{};
        EXPECT_EQ(CreateKiroCoreAlgo(m_tuning, m_debugData, noParams, m_pAlgo), 0);
        (VOID) Set(AECAlgoSetParamOperationMode, AECAlgoOperationModeStreaming);
        (VOID) Set(AECAlgoSetParamPipelineDelay, static_cast<UINT8>(1));

        KIROCntStatsOut& rChannel            = m_pStats->pList[0];
        rChannel.resolution                  = {4, 4, 0, 8};
        rChannel.channelData.bChannelEnabled = TRUE;
        rChannel.channelData.pChannelName    = const_cast<CHAR*>("luma");
        rChannel.channelData.Data.pFData     = m_values.data();
        m_pStats->count                      = 1;
        m_limits.indexZeroExposure           = 1;
        for (KIROExposureRange& rRange : m_limits.ranges)
        {
            rRange.start.exposure = 1;
            rRange.end.exposure   = 1ULL << 40;
        }
    }

    ~Frames() override
    {
        m_pAlgo->DestroyInstance(m_pAlgo);
        TavoFree(m_pAlgo, 16, nullptr, 0);
    }

    template <typename T> MNKResult Set(AECAlgoSetParamType type, T value)
    {
        AECAlgoSetParam param = {&value, sizeof(value), type};
        KIROSetInput    input{};
        input.source      = AECPEKSetParam;
        input.u.pPEKInput = &param;
        return m_pAlgo->setInput(m_pAlgo, &input);
    }

    VOID SetSnapshot(KIROCoreSnapshotType type)
    {
        KIROSetInput input{};
        input.source         = KIROCoreSnapshot;
        input.u.snapshotMode = type;
        EXPECT_EQ(m_pAlgo->setInput(m_pAlgo, &input), 0);
    }

    FLOAT Trigger(INT32 id)
    {
        KIROGetBankData query = {BankIDTriggers, id, nullptr, sizeof(DBFloatPayload)};
        EXPECT_EQ(m_pAlgo->getBankData(m_pAlgo, &query), 0);
        return static_cast<const DBFloatPayload*>(query.pData)->value;
    }

    /// The start configuration, with all three exposures alike.
    VOID RunStartup()
    {
        std::fill(std::begin(m_convergence.exposures), std::end(m_convergence.exposures), StartExposure);
        m_convergence.predictiveGain = 1.0f;
        Split();
        EndFrame(TRUE);
    }

    VOID BeginFrame(FLOAT luma)
    {
        ++m_frameID;
        std::fill(m_values.begin(), m_values.end(), luma);
        EXPECT_EQ(m_pAlgo->runStartOfFrame(m_pAlgo, m_frameID), 0);
        EXPECT_EQ(m_pAlgo->setStats(m_pAlgo, *m_pStats), 0);
    }

    VOID Meter()
    {
        KIROMeteringInput  input = {TRUE, 0};
        KIROAnalyzerOutput output{};
        m_result = m_pAlgo->runMeteringPreprocess(m_pAlgo, input, m_metering);
        if (m_result == 0)
        {
            output.refType = ExposureNone;
            EXPECT_EQ(m_pAlgo->runAnalyzer(m_pAlgo, 0, output), 0);
            EXPECT_EQ(output.refType, ExposureNone) << "the caller's";
        }
        EXPECT_EQ(m_pAlgo->runMeteringPostprocess(m_pAlgo, input, m_metering), 0);
        EXPECT_EQ(m_pAlgo->mixMetering(m_pAlgo, m_metering), 0);
    }

    KiroResult Converge()
    {
        KIROConvergenceInput input{};
        input.frameID            = m_frameID;
        input.pRange             = &m_limits;
        input.bIsMeteringSkipped = m_metering.bIsMeteringSkipped;
        std::copy(std::begin(m_metering.exposures), std::end(m_metering.exposures), input.sensitivities);
        const KiroResult result = m_pAlgo->RunConvProcess(m_pAlgo, input, m_convergence);
        EXPECT_EQ(m_pAlgo->followMasterConvExposure(m_pAlgo, m_convergence), 0);
        m_pAlgo->HandleExposureConstraints(m_pAlgo, m_convergence);
        m_pAlgo->RunConvSettle(m_pAlgo, m_convergence);
        m_pAlgo->RunConvPostProcess(m_pAlgo, m_convergence);
        return result;
    }

    VOID Split()
    {
        for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
        {
            KIROArbitrationInput input{};
            input.controlID           = kirodbarbitrationorder::ArbCtrlTable;
            input.controlBank         = BankIDArbitrationTable;
            input.controlDataID       = 1;
            input.expType             = static_cast<AECAlgoExposureType>(type);
            input.exposures[type]     = {1.0f, 20000, 0.0f, 1.0f, m_convergence.exposures[type], 0, 0.0f, 0, 0};
            input.sensorRange         = {1.0f, 64.0f, 20000, 33333333};
            input.range.start         = {1.0f, 20000, 0.0f, 1.0f, 0, 0, 0.0f, 0, 0};
            input.range.end           = {64.0f, 33333333, 0.0f, 1.0f, 0, 0, 0.0f, 0, 0};
            input.indexZeroExposure   = 1;
            m_arbitration[type].range = input.range;
            m_arbitration[type].FPS   = 30.0f;
            EXPECT_EQ(m_pAlgo->runArbitration(m_pAlgo, &input, &m_arbitration[type]), 0);
        }
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

    VOID RunFrame(FLOAT luma)
    {
        BeginFrame(luma);
        Meter();
        EXPECT_EQ(Converge(), 0);
        Split();
        EndFrame();
    }

    /// Frames of a scene that is right at an exposure.
    VOID RunScene(UINT64 rightExposure, UINT32 frames)
    {
        for (UINT32 frame = 0; frame < frames; ++frame)
        {
            RunFrame(std::min(50.0f * static_cast<FLOAT>(Safe()) / static_cast<FLOAT>(rightExposure), 255.0f));
        }
    }

    VOID ExpectSafe(DOUBLE expected, DOUBLE tolerance = 0.0001)
    {
        EXPECT_NEAR(static_cast<DOUBLE>(Safe()), expected, tolerance * expected);
    }

    UINT64 Safe() const
    {
        return m_arbitration[AECAlgoExposureSafe].exposureSet.exposure;
    }

    StatsLogCapture                m_log;
    DebugDataOff                   m_debugData;
    TuningSetManager               m_store{"test"};
    TuningMode                     m_mode{ModeType::Default, {0}};
    StatsTuningData                m_tuning{&m_store, &m_mode, 1};
    IKIROCoreAlgo*                 m_pAlgo = nullptr;
    std::vector<FLOAT>             m_values;
    std::unique_ptr<KIROStatsList> m_pStats;
    UINT64                         m_frameID = 0;
    KiroResult                     m_result  = 0;
    KIROArbitratedLimits           m_limits{};
    KIROMeteringOutput             m_metering{};
    KIROConvergenceOutput          m_convergence{};
    KIROArbitrationOutput          m_arbitration[AECAlgoExposureCount]{};
};

TEST_F(Frames, WithoutAStartConfigurationTheDefaultTargetStands)
{
    BeginFrame(50.0f);
    Meter();
    EXPECT_EQ(m_result, 1);
    EXPECT_EQ(m_metering.bIsMeteringSkipped, TRUE);
    for (UINT64 exposure : m_metering.exposures)
    {
        EXPECT_EQ(exposure, 10000000u);
    }
    EXPECT_EQ(Converge(), 1);

    RunStartup();
    RunFrame(50.0f);
    EXPECT_EQ(m_metering.bIsMeteringSkipped, FALSE);
    EXPECT_EQ(m_metering.exposures[AECAlgoExposureSafe], StartExposure);
    EXPECT_EQ(m_metering.exposures[AECAlgoExposureShort], StartExposure);
    EXPECT_EQ(m_metering.exposures[AECAlgoExposureLong], StartExposure);
    // Unsettled on the target: one step of a quarter of 3 percent down.
    ExpectSafe(static_cast<DOUBLE>(StartExposure) * std::pow(1.03, -0.25), 0.0001);
}

TEST_F(Frames, GoHalfOfTheWayToTheTarget)
{
    RunStartup();
    RunFrame(25.0f);
    EXPECT_EQ(m_metering.exposures[AECAlgoExposureSafe], 2 * StartExposure);
    ExpectSafe(std::sqrt(2.0) * static_cast<DOUBLE>(StartExposure));
    EXPECT_EQ(m_convergence.convergedShortBlend, 1.0f);

    // Indices to the base 1.03: 77.8985 for a decade.
    EXPECT_NEAR(Trigger(TriggerCtrlPrev), 467.3912f, 1e-3f);
    EXPECT_NEAR(Trigger(TriggerCtrlTarget), 490.8410f, 1e-3f);
    EXPECT_NEAR(Trigger(TriggerCtrlTgtMatchDelta), 23.4498f, 1e-3f);
    EXPECT_NEAR(Trigger(TriggerCtrlTgtPrevDelta), 23.4498f, 1e-3f);
    EXPECT_EQ(Trigger(TriggerCtrlDirection), 1.0f);
    EXPECT_EQ(Trigger(TriggerCtrlSafeTgt), 2.0f * StartExposure);
    EXPECT_EQ(Trigger(TriggerCtrlSafeExp), StartExposure);
    EXPECT_EQ(Trigger(TriggerCtrlFPS), 30.0f);
    EXPECT_EQ(Trigger(TriggerCtrlGain), 1.0f);
    EXPECT_EQ(Trigger(TriggerCtrlExpTime), static_cast<FLOAT>(Safe()));
    EXPECT_EQ(Trigger(100), 1.0f) << "short blend";

    RunFrame(250.0f);
    EXPECT_EQ(Trigger(TriggerCtrlDirection), 0.0f);
    EXPECT_LT(Trigger(TriggerCtrlTgtMatchDelta), 0.0f);
    EXPECT_GT(Trigger(TriggerCtrlTgtPrevDelta), 0.0f);
}

TEST_F(Frames, SettleOnTheSceneAndFollowEVAndLock)
{
    constexpr UINT64 right = 4 * StartExposure;
    RunStartup();
    UINT64 last = Safe();
    for (UINT32 frame = 0; frame < 12; ++frame)
    {
        RunScene(right, 1);
        EXPECT_LE(Safe(), right) << "overshoot in frame " << frame;
        if (frame < 4)
        {
            EXPECT_GT(Safe(), last) << frame;
            EXPECT_EQ(m_convergence.bSettle, FALSE);
        }
        last = Safe();
    }
    ExpectSafe(right, 0.07);
    EXPECT_EQ(m_convergence.bSettle, TRUE);

    ASSERT_EQ(Set(AECAlgoSetParamExposureCompensation, 1), 0);
    EXPECT_EQ(m_pAlgo->GetContextEvent(m_pAlgo, AECEV), TRUE);
    RunScene(right, 12);
    ExpectSafe(2 * right, 0.07);
    EXPECT_EQ(m_convergence.evMultiplier, 2.0f);
    ASSERT_EQ(Set(AECAlgoSetParamExposureCompensation, 0), 0);
    RunScene(right, 12);

    ASSERT_EQ(Set(AECAlgoSetParamAECLock, AECAlgoLockOn), 0);
    const UINT64 locked = Safe();
    RunScene(right / 4, 4);
    ExpectSafe(static_cast<DOUBLE>(locked));
    ASSERT_EQ(Set(AECAlgoSetParamAECLock, AECAlgoLockOFF), 0);
    RunScene(right / 4, 12);
    ExpectSafe(right / 4, 0.07);

    m_pAlgo->SetMeteringLock(m_pAlgo, TRUE);
    const UINT64 target = m_metering.exposures[AECAlgoExposureSafe];
    RunFrame(5.0f);
    EXPECT_EQ(m_metering.exposures[AECAlgoExposureSafe], target);
    EXPECT_EQ(m_metering.mtrExposures[AECAlgoExposureSafe], target);
}

TEST_F(Frames, SnapshotsDoNotDisturbThePreview)
{
    RunStartup();
    RunFrame(50.0f);
    const UINT64 preview = Safe();
    BeginFrame(50.0f);
    SetSnapshot(KIROCoreSnapshotType::LLS);
    Meter();
    EXPECT_EQ(Converge(), 0);
    std::fill(std::begin(m_convergence.exposures), std::end(m_convergence.exposures), 8 * StartExposure);
    Split();
    EndFrame();
    SetSnapshot(KIROCoreSnapshotType::None);
    RunFrame(50.0f);
    EXPECT_EQ(m_metering.bIsMeteringSkipped, FALSE);
    EXPECT_EQ(Trigger(TriggerCtrlSafeExp), static_cast<FLOAT>(preview));

    // A start configuration is stored as such whatever the events.
    (VOID) Set(AECAlgoSetParamOperationMode, AECAlgoOperationModeFastAEC);
    SetSnapshot(KIROCoreSnapshotType::LLS);
    RunStartup();
    SetSnapshot(KIROCoreSnapshotType::None);
    RunFrame(50.0f);
    EXPECT_EQ(m_result, 0);
    EXPECT_EQ(Trigger(TriggerCtrlSafeExp), static_cast<FLOAT>(StartExposure));
}

TEST_F(Frames, EventsOfAFrameActAtTheNextStage)
{
    KIROGetBankData query   = {BankIDROITable, 0, nullptr, sizeof(DBROIPayload)};
    const auto      applied = [&]
    {
        EXPECT_EQ(m_pAlgo->getBankData(m_pAlgo, &query), 0);
        return static_cast<const DBROIPayload*>(query.pData)->dataID;
    };
    RunStartup();
    BeginFrame(50.0f);
    EXPECT_EQ(applied(), 1);
    m_pAlgo->SetContextEvent(m_pAlgo, AECTouch, TRUE);
    EXPECT_EQ(applied(), 1);
    Meter();
    EXPECT_EQ(applied(), 2);
    m_pAlgo->SetContextEvent(m_pAlgo, AECTouch, 2);
    EXPECT_EQ(m_pAlgo->GetContextEvent(m_pAlgo, AECTouch), FALSE) << "only 1 sets";
    EXPECT_EQ(Converge(), 0);
    EXPECT_EQ(applied(), 1);

    m_pStats->bIsTorchAEC = TRUE;
    m_pStats->bIsDepthAEC = TRUE;
    BeginFrame(50.0f);
    for (KIROTunaraEventType event : {AECTorch, AECTorchChange, AECDepth})
    {
        EXPECT_EQ(m_pAlgo->GetContextEvent(m_pAlgo, event), TRUE);
    }
    m_pAlgo->SetContextEvent(m_pAlgo, AECTorchChange, FALSE);
    m_pStats->bIsDepthAEC = FALSE;
    BeginFrame(50.0f);
    EXPECT_EQ(m_pAlgo->GetContextEvent(m_pAlgo, AECTorchChange), FALSE) << "the torch has not changed";
    EXPECT_EQ(m_pAlgo->GetContextEvent(m_pAlgo, AECDepth), FALSE);
    m_pStats->count = 0;
    EXPECT_EQ(m_pAlgo->setStats(m_pAlgo, *m_pStats), 11);
    EXPECT_TRUE(m_log.Has(2, "Did not receive any grid stats!"));
    KIROAnalyzerOutput analyzer{};
    EXPECT_EQ(m_pAlgo->runAnalyzer(m_pAlgo, 7, analyzer), 1);
    EXPECT_EQ(m_pAlgo->isPreflashMeteringNeeded(m_pAlgo, nullptr, 0, nullptr, 0), TRUE) << "no tuning";
}

TEST_F(Frames, StretchEntriesAreClearedInValueBanksOnly)
{
    DBStartEndPayload     stretch = {30, {3.0f, 4.0f}, nullptr};
    const KIROSetBankData set     = {BankIDSceneAnalyzer, &stretch, sizeof(stretch)};
    ASSERT_EQ(m_pAlgo->setBankData(m_pAlgo, &set), 0);
    RunStartup();
    RunFrame(50.0f);
    KIROGetBankData query = {BankIDSceneAnalyzer, 30, nullptr, sizeof(stretch)};
    ASSERT_EQ(m_pAlgo->getBankData(m_pAlgo, &query), 0);
    EXPECT_EQ(static_cast<const DBStartEndPayload*>(query.pData)->value.end, 0.0f);
    query = {BankIDConvActiveSCD, 5, nullptr, sizeof(kirodbconvactivescd::DBConvActiveSCDPayload)};
    EXPECT_EQ(m_pAlgo->getBankData(m_pAlgo, &query), 6);
    EXPECT_TRUE(m_log.Has(4, "Issue in setting YHist scale value to DB"));
}

}  // namespace
