// The exposures that a mode begins with, asked through the function table.

#include <array>

#include "interface/kiromulticam.h"
#include "interface/kirostartexposure.h"
#include "tests/core/framefixture.h"

namespace
{

/// Three exposures: short, long, safe.
using Exposures = std::array<UINT64, AECAlgoExposureCount>;

constexpr const CHAR* StartUpTuning = R"(
      kirosync:
        masterAndSlaveConfig: {slave: {exposureType: AECAlgoExposureFollow}}
      kirostartup:
        extSensorAssitStart:
          tables:
            - {trigger: {start: 0, end: 100}, triggerData: {exposureZone: {start: 2000000, end: 4000000}, initialExposure: [1000001, 3000003, 2000002]}}
            - {trigger: {start: 200, end: 10000}, triggerData: {exposureZone: {start: 200000, end: 400000}, initialExposure: [100000, 300000, 200000]}}
)";

class StartUp : public Frames
{
protected:
    StartUp() : Frames(StartUpTuning)
    {
    }

    KiroResult Ask(KIROAlgoStartExpType type)
    {
        m_info.type = type;
        return m_pAlgo->GetStartUpExposure(m_pAlgo, &m_info);
    }

    /// The exposures that are answered.
    Exposures Start(KIROAlgoStartExpType type)
    {
        EXPECT_EQ(Ask(type), 0);
        return Converged();
    }

    /// A frame that ends with given exposures; its targets are ten more.
    VOID RunFrameWith(const Exposures& rExposures, FLOAT darkBoost = 1.0f)
    {
        BeginFrame(50.0f);
        for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
        {
            m_metering.exposures[type]    = rExposures[type] + 10;
            m_convergence.exposures[type] = rExposures[type];
        }
        m_convergence.compensationDarkBoost = darkBoost;
        Split();
        EndFrame();
    }

    /// What the newest frame was, is declared a snapshot afterwards.
    VOID MarkAsSnapshot()
    {
        SetSnapshot(KIROCoreSnapshotType::LLS);
        SetSnapshot(KIROCoreSnapshotType::None);
    }

    Exposures Converged() const
    {
        return std::to_array(m_info.convergedExposures);
    }

    Exposures Targets() const
    {
        return std::to_array(m_info.targetExposures);
    }

    KIROAlgoStartExposureInfo m_info{};
};

TEST_F(StartUp, SourcesWithoutAnAnswerAreRefused)
{
    EXPECT_EQ(m_pAlgo->GetStartUpExposure(m_pAlgo, nullptr), 1);
    const std::tuple<KIROAlgoStartExpType, UINT32, const CHAR*> refusals[] = {
        {KIROStartExpPreflash, LevelError, "Current mode is not preflash"},
        {KIROStartExpPrevMode, LevelTrace, "Previous mode exposure not available"},
        {KIROStartExpDCFollow, LevelError, "Peer info not available"},
        {KIROStartExpExtLightData, LevelTrace, "Light sensor assist start is not enabled"},
        {KIROStartExpFlashMeasurement, LevelTrace, "not yet supported"},
        {KIROStartExpCustom1, LevelTrace, "case not supported"},
        {KIROStartExpMax, LevelTrace, "case not supported"},
        {static_cast<KIROAlgoStartExpType>(-1), LevelTrace, "case not supported"},
    };
    for (const auto& [type, level, pText] : refusals)
    {
        EXPECT_EQ(Ask(type), 1) << pText;
        EXPECT_TRUE(m_log.Has(level, pText)) << pText;
        EXPECT_EQ(Converged(), Exposures({0, 0, 0})) << pText;
    }
}

TEST_F(StartUp, APreflashBeginsWhereThePreviewWas)
{
    RunStartup();
    RunFrameWith({1000000, 4000000, 2000000});
    const FLOAT lux = Trigger(TriggerCtrlLux);
    (VOID) Set(AECAlgoSetParamOperationMode, AECAlgoOperationModePreflash);
    EXPECT_EQ(Start(KIROStartExpPreflash), Exposures({1000000, 4000000, 2000000}));
    EXPECT_EQ(Targets(), Exposures({1000010, 4000010, 2000010}));
    EXPECT_EQ(m_info.luxIndex, lux);
    EXPECT_EQ(m_info.bIsLuxInitialized, TRUE);
}

TEST_F(StartUp, ANewModeBeginsWhereTheLastOneEnded)
{
    RunStartup();
    RunFrameWith({500000, 500000, 500000});
    RunFrameWith({1000000, 4000000, 2000000}, 1.5f);
    (VOID) Set(AECAlgoSetParamOperationMode, AECAlgoOperationModeFastAEC);
    EXPECT_EQ(Start(KIROStartExpPrevMode), Exposures({1000000, 4000000, 2000000}));
    EXPECT_EQ(Targets(), Exposures({1000010, 4000010, 2000010}));
    EXPECT_EQ(m_info.compenADRCGain, 2.0f);
    EXPECT_EQ(m_info.compensationDarkBoostGain, 1.5f);
    EXPECT_EQ(m_info.bIsLuxInitialized, TRUE);

    // A changed EV starts from the targets; the gains stay.
    ASSERT_EQ(Set(AECAlgoSetParamExposureCompensation, 1), 0);
    EXPECT_EQ(Start(KIROStartExpPrevMode), Exposures({2000020, 8000020, 4000020}));
    EXPECT_EQ(m_info.compenADRCGain, 2.0f);
}

TEST_F(StartUp, WithoutAModeBeforeTheLastPreviewFrameOfThisOneCounts)
{
    RunStartup();
    EXPECT_EQ(Start(KIROStartExpPrevMode), Exposures({StartExposure, StartExposure, StartExposure}))
        << "the start configuration";

    RunFrameWith({300000, 300000, 300000});
    RunFrameWith({400000, 400000, 400000});
    MarkAsSnapshot();
    RunFrameWith({500000, 500000, 500000});
    // The newest frame is the current one; the one before it was a snapshot.
    EXPECT_EQ(Start(KIROStartExpPrevMode), Exposures({300000, 300000, 300000}));

    // Nothing but snapshots in the history: the last preview frame that fell out of it.
    MarkAsSnapshot();
    for (UINT64 frame = 0; frame < 9; ++frame)
    {
        RunFrameWith({600000 + frame, 600000, 600000});
        MarkAsSnapshot();
    }
    EXPECT_EQ(Start(KIROStartExpPrevMode), Exposures({300000, 300000, 300000}));
}

TEST_F(StartUp, SnapshotsAloneAreNoPreviewAndAFullyManualFrameSaysNothingAboutTheScene)
{
    RunStartup();
    RunFrameWith({400000, 400000, 400000});
    MarkAsSnapshot();
    RunFrameWith({500000, 500000, 500000});
    EXPECT_EQ(Ask(KIROStartExpPrevMode), 1);
    ASSERT_EQ(Set(AECAlgoSetParamManualSetting, AECAlgoManualSetting{AECAlgoModeManualFull, 0, 1000000, 1.0f, 0.0f}),
              0);
    RunFrameWith({1000000, 1000000, 1000000});
    (VOID) Set(AECAlgoSetParamOperationMode, AECAlgoOperationModeFastAEC);
    EXPECT_EQ(Ask(KIROStartExpPrevMode), 1);
    EXPECT_EQ(m_log.Count(LevelTrace, "Previous mode exposure not available"), 2u);
}

TEST_F(StartUp, LeavingHDROneExposureShowsWhatThreeDid)
{
    constexpr UINT64 longThen = 9000000;

    // A change between a mode with several exposures per frame and one without, or none.
    const std::tuple<const CHAR*, bool, bool, UINT64, UINT64, FLOAT, Exposures, FLOAT> changes[] = {
        {"ratio 6.5", true, false, 1000000, 6500000, 1.9f, {1625000, 6500000, 6500000}, 4.0f},
        {"ratio 3.7", true, false, 1000000, 3700000, 2.5f, {1233333, 7400000, 3700000}, 3.7f},
        {"ratio 1", true, false, 1000000, 1000000, 1.0f, {1000000, 1000000, 1000000}, 1.0f},
        {"ratio below 1", true, false, 2000000, 1000000, 0.9f, {1000000, 0, 1000000}, 1.0f},
        {"staying", true, true, 1000000, 6500000, 1.5f, {1000000, longThen, 6500000}, 6.5f},
        {"never", false, false, 1000000, 6500000, 1.5f, {1000000, longThen, 6500000}, 6.5f},
        {"entering", false, true, 1000000, 6500000, 1.5f, {1000000, 6500000, 6500000}, 6.5f},
    };
    for (const auto& [pName, isHDRThen, isHDRNow, shortThen, safeThen, darkBoost, expected, ADRCGain] : changes)
    {
        SCOPED_TRACE(pName);
        (VOID) Set(AECAlgoSetParamOperationMode, AECAlgoOperationModeStreaming);
        (VOID) Set(AECAlgoSetParamMultiExpSensorMode, isHDRThen ? StaggeredHDR : HDRDisabled);
        RunStartup();
        RunFrameWith({shortThen, longThen, safeThen}, darkBoost);
        (VOID) Set(AECAlgoSetParamOperationMode, AECAlgoOperationModeStreaming);
        (VOID) Set(AECAlgoSetParamMultiExpSensorMode, isHDRNow ? StaggeredHDR : HDRDisabled);
        m_info = {};
        EXPECT_EQ(Start(KIROStartExpPrevMode), expected);
        EXPECT_FLOAT_EQ(m_info.compenADRCGain, ADRCGain);
        EXPECT_EQ(m_info.compensationDarkBoostGain, darkBoost);
    }
}

TEST_F(StartUp, ASlaveBeginsWithItsMastersExposuresInSpiteOfTheResult)
{
    AECMultiCamInfo master{};
    master.exposureInfo = {{1000000.0f, 4000000.0f, 2000000.0f}, {}, {}, {}};
    StatsPeerInfoCombo peers{TRUE, {TRUE}, {1}, {StatsAlgoRoleMaster}, {&master}};
    ASSERT_EQ(Set(AECAlgoSetParamCameraInfo, StatsCameraInfo{StatsAlgoRoleSlave, 2}), 0);
    EXPECT_EQ(Ask(KIROStartExpDCFollow), 1);
    EXPECT_EQ(Converged(), Exposures({0, 0, 0})) << "no peer yet";
    ASSERT_EQ(Set(AECAlgoSetParamPeerInfo, peers), 0);
    m_log.Clear();
    EXPECT_EQ(Ask(KIROStartExpDCFollow), 1);
    EXPECT_EQ(Converged(), Exposures({1000000, 4000000, 2000000}));
    EXPECT_EQ(Targets(), Exposures({1000000, 4000000, 2000000}));
    EXPECT_FALSE(m_log.Has(LevelError, "Peer info not available"));

    // A master follows nobody.
    ASSERT_EQ(Set(AECAlgoSetParamCameraInfo, StatsCameraInfo{StatsAlgoRoleMaster, 2}), 0);
    m_info = {};
    EXPECT_EQ(Ask(KIROStartExpDCFollow), 1);
    EXPECT_EQ(Converged(), Exposures({0, 0, 0}));
    EXPECT_TRUE(m_log.Has(LevelError, "Peer info not available"));
}

TEST_F(StartUp, TheLightSensorOverrulesAWarmStartThatCannotBe)
{
    // Lux, Safe of the warm start, then exposures and targets. The table's exposures go with half of them as targets,
    // truncated.
    const Exposures                                       cold        = {1000001, 3000003, 2000002};
    const Exposures                                       coldTargets = {500000, 1500001, 1000001};
    const std::tuple<FLOAT, UINT64, Exposures, Exposures> starts[]    = {
           {50.0f, 2000000, {7, 7, 2000000}, {5, 5, 5}},
           {50.0f, 4000000, {7, 7, 4000000}, {5, 5, 5}},
           {50.0f, 1999999, cold, coldTargets},
           {50.0f, 4000001, cold, coldTargets},
           {50.0f, 0, cold, coldTargets},
           {5000.0f, 300000, {7, 7, 300000}, {5, 5, 5}},
           // Half of the way between the zones, so is the table.
           {150.0f, 3000000, {550000, 1650001, 1100001}, {275000, 825000, 550000}},
           {150.0f, 1200000, {7, 7, 1200000}, {5, 5, 5}}};
    for (const auto& [lux, warmSafe, expected, targets] : starts)
    {
        SCOPED_TRACE(std::to_string(lux) + " lux, " + std::to_string(warmSafe));
        ASSERT_EQ(Set(AECAlgoSetParamLightInfo, StatsLightInfo{TRUE, lux}), 0);
        m_info                                         = {};
        m_info.evFactor                                = 2.0f;
        m_info.convergedExposures[AECAlgoExposureSafe] = warmSafe;
        m_info.convergedExposures[0] = m_info.convergedExposures[1] = 7;
        std::fill(std::begin(m_info.targetExposures), std::end(m_info.targetExposures), 5);
        EXPECT_EQ(Start(KIROStartExpExtLightData), expected);
        EXPECT_EQ(Targets(), targets);
        EXPECT_EQ(m_info.bIsLuxInitialized, FALSE);
    }
}

TEST_F(Frames, AStartWithoutItsTuningIsRefused)
{
    ASSERT_EQ(Set(AECAlgoSetParamLightInfo, StatsLightInfo{TRUE, 50.0f}), 0);
    KIROAlgoStartExposureInfo info{};
    info.type = KIROStartExpExtLightData;
    m_log.Clear();
    EXPECT_EQ(m_pAlgo->GetStartUpExposure(m_pAlgo, &info), 1);
    EXPECT_FALSE(m_log.Has(LevelTrace, "Light sensor assist start is not enabled"));
}

}  // namespace
