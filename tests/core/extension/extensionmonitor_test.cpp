// Flags for capture decisions, histogram stretch, the HDR snapshot and the bracket lock, frame by frame.

#include "core/extension/ckiroextensionmonitor.h"

#include <cmath>

#include <gmock/gmock.h>

#include "tests/support/testcontext.h"

namespace
{

using namespace kiroextension;

constexpr INT32 SceneSlot = 100;  // first trigger that the monitors look at
constexpr INT32 ClampID   = 40;
constexpr INT32 ScaleID   = 41;

class ExtensionMonitor : public ContextTest
{
protected:
    ExtensionMonitor()
    {
        for (INT32 criterion = 0; criterion < 5; ++criterion)
        {
            m_criteria[criterion] = {{BankIDTriggers, SceneSlot + criterion}, OriginalData, 2, 0, m_score};
        }
        ExtensionFlagsMonitor& rFlags = m_tuning.flagMonitor;
        rFlags.flashFlag              = {{200.0f, 300.0f}, {400.0f, 500.0f}, FALSE};
        rFlags.LLSFlag                = {TRUE, {200.0f, 300.0f}};
        rFlags.YHistStretch           = {TRUE, 0.75f, {BankIDSceneAnalyzer, ClampID}, {BankIDSceneAnalyzer, ScaleID}};
        m_tuning.monitor3HDRSnapshot  = {TRUE, 3, {nullptr, 1, 0, m_scenes}};
        m_tuning.monitorEVBracketLock = {TRUE, 20, {nullptr, 1, 0, m_scenes}};
        m_in.pConvergenceOuts         = &m_convergence;
        Tune(m_tuning);
    }

    const KIROExtensionOutput& Process()
    {
        EXPECT_EQ(m_monitor.Process(m_in, m_out), 0);
        return m_out;
    }

    const KIROExtFlagsMonitorOutput& ProcessFlags(FLOAT luxIndex, AECAlgoLEDModeType mode)
    {
        m_context.SetTrigger(TriggerCtrlLux, luxIndex);
        m_context.m_input.LEDMode = mode;
        return Process().monitoredFlags;
    }

    VOID ExpectStretch(FLOAT clamp, FLOAT scaling, const CHAR* pMessage)
    {
        Process();
        EXPECT_FLOAT_EQ(m_out.histStretchData.clamp, clamp) << pMessage;
        EXPECT_FLOAT_EQ(m_out.histStretchData.scaling, scaling) << pMessage;
    }

    /// A frame of a bracketing session.
    /// @return the Safe exposure, with metered targets of 1, 2 and 3 times target
    UINT64 Bracket(UINT64 frameID, FLOAT ev, UINT64 target, BOOL bExpectLocked, BOOL bStatsValid = TRUE)
    {
        if (frameID > 0)
        {
            EXPECT_EQ(m_context.m_pHistory->SaveCurrentFrameID(frameID), 0);
        }
        m_context.SetTrigger(TriggerCtrlBracketEV, ev);
        UINT64 exposures[] = {target, 2 * target, 3 * target};
        EXPECT_EQ(m_monitor.GetBracketLockedExposure(exposures, bStatsValid), bExpectLocked) << "frame " << frameID;
        EXPECT_EQ(exposures[AECAlgoExposureSafe], 3 * exposures[AECAlgoExposureShort]);
        return exposures[AECAlgoExposureShort];
    }

    KIROExtensionType         m_tuning{};
    TriggerSystemEndLevelType m_score[2] = {{{0.0f, 0.0f}, 0.0f}, {{100.0f, 100.0f}, 100.0f}};
    SceneCriterion            m_criteria[5];  ///< score by the values of as many triggers
    MonitorSceneConfiguration m_scenes[4] = {
        {nullptr, 5, 0, m_criteria, 50.0f}, {}, {nullptr, 0, 0, nullptr, 1.0f}, {nullptr, 0, 0, nullptr, 1.0f}};
    KIROConvergenceOutput m_convergence{};
    KIROExtensionInput    m_in{};
    KIROExtensionOutput   m_out{};
    CKIROExtensionMonitor m_monitor{m_context};
};

TEST_F(ExtensionMonitor, FlashIsWantedInTheDarkAndAsTheUserSays)
{
    const auto badMode = static_cast<AECAlgoLEDModeType>(9);
    // lux index, mode; flash, LED for focus, delay for faces
    const std::tuple<FLOAT, AECAlgoLEDModeType, BOOL, BOOL, BOOL> steps[] = {
        {300.0f, AECAlgoLEDModeAuto, 0, 0, 0}, {301.0f, AECAlgoLEDModeAuto, 1, 1, 0},
        {200.0f, AECAlgoLEDModeAuto, 1, 1, 0}, {199.0f, AECAlgoLEDModeAuto, 0, 0, 0},
        {250.0f, AECAlgoLEDModeOn, 1, 0, 0},   {501.0f, AECAlgoLEDModeOff, 0, 0, 1},
        {450.0f, AECAlgoLEDModeOn, 1, 1, 1},   {100.0f, badMode, 1, 0, 0},
    };
    for (const auto& [luxIndex, mode, bFlash, bLEDAF, bDelay] : steps)
    {
        SCOPED_TRACE(luxIndex);
        const KIROExtFlagsMonitorOutput& rFlags = ProcessFlags(luxIndex, mode);
        EXPECT_EQ(rFlags.bFlashNeeded, bFlash);
        EXPECT_EQ(rFlags.bLEDAFNeeded, bLEDAF);
        EXPECT_EQ(rFlags.bFDFlashDelayNeeded, bDelay);
    }
    m_context.m_input.opMode = AECAlgoOperationModePreflash;
    EXPECT_EQ(ProcessFlags(600.0f, AECAlgoLEDModeAuto).bFlashNeeded, FALSE) << "frozen";
    EXPECT_EQ(m_out.monitoredFlags.bFDFlashDelayNeeded, FALSE);

    m_tuning.flagMonitor.flashFlag.enableForceAFInLEDOnMode = TRUE;
    m_tuning.flagMonitor.ZLLFlag                            = {TRUE, TRUE};
    Tune(m_tuning);
    EXPECT_EQ(ProcessFlags(100.0f, AECAlgoLEDModeOn).bLEDAFNeeded, TRUE);
    EXPECT_EQ(ProcessFlags(100.0f, badMode).bLEDAFNeeded, TRUE);
    EXPECT_EQ(m_out.monitoredFlags.bZLLEnabled + m_out.monitoredFlags.bZLLEnforced, 2);
}

TEST_F(ExtensionMonitor, LowLightSnapshotHasHysteresisAndNeedsAutoMode)
{
    const auto expect = [this](FLOAT luxIndex, BOOL bNeeded)
    { EXPECT_EQ(ProcessFlags(luxIndex, AECAlgoLEDModeOff).bLLSNeeded, bNeeded) << luxIndex; };
    expect(300.0f, FALSE);
    expect(301.0f, TRUE);
    expect(200.0f, TRUE);
    m_context.m_input.manualSetting.manualMode = AECAlgoModeManualISO;
    expect(400.0f, FALSE);
    m_context.m_input.manualSetting.manualMode = AECAlgoModeAuto;
    expect(250.0f, FALSE);
    expect(400.0f, TRUE);
    m_context.m_input.opMode = AECAlgoOperationModePreflash;
    expect(400.0f, FALSE);
}

TEST_F(ExtensionMonitor, StretchMovesOnSettledFramesOnly)
{
    m_context.SetAnalyzerResult(ClampID, {8.0f, 0.0f});
    m_context.SetAnalyzerResult(ScaleID, {5.0f, 0.0f});
    ExpectStretch(0.0f, 1.0f, "not settled");
    m_convergence.bSettle = TRUE;
    ExpectStretch(2.0f, 2.0f, "settled");
    ExpectStretch(3.5f, 2.75f, "filtered");
    m_convergence.bIsConvTargetFixed = TRUE;
    ExpectStretch(3.5f, 2.75f, "fixed");
    m_convergence.bIsConvTargetFixed = FALSE;
    AECYHistStretchData kept{};
    m_monitor.GetHistStretchData(&kept);
    m_monitor.GetHistStretchData(nullptr);
    EXPECT_EQ(kept.enable, TRUE);
    EXPECT_FLOAT_EQ(kept.clamp, 3.5f);
    m_context.SetAnalyzerResult(ClampID, {NAN, 0.0f});
    ExpectStretch(3.5f, 3.3125f, "not a number");
    m_context.SetAnalyzerResult(ClampID, {8.0f, 0.0f});

    for (const DataBankType bank :
         {DataBankType{BankIDTriggers, 1000}, {BankIDSceneAnalyzer, 1000}, {BankIDROITable, 1}})
    {
        m_tuning.flagMonitor.YHistStretch.scalingValue = bank;
        Tune(m_tuning);
        ExpectStretch(3.5f, 3.3125f, "no such range");
    }
    m_context.SetTrigger(200, 5.0f);
    m_tuning.flagMonitor.YHistStretch.scalingValue = {BankIDTriggers, 200};
    Tune(m_tuning);
    ExpectStretch(4.625f, 3.734375f, "a number instead of a range");
    m_in.statisticsStartup = StatisticsStartUpInvalid;
    ExpectStretch(0.0f, 1.0f, "start-up");
    m_in.statisticsStartup                         = StatisticsStartUpValid;
    m_tuning.flagMonitor.YHistStretch.scalingValue = {BankIDSceneAnalyzer, ScaleID};
    Tune(m_tuning);
    ExpectStretch(2.0f, 2.0f, "anew");
    m_context.SetAnalyzerResult(ScaleID, {0.99f, 0.0f});
    ExpectStretch(0.0f, 1.0f, "would squeeze");
    m_in.pConvergenceOuts = nullptr;
    ExpectStretch(0.0f, 1.0f, "no convergence");
}

TEST_F(ExtensionMonitor, HDRSnapshotComesAfterPassingFramesInARow)
{
    for (INT32 criterion = 0; criterion < 5; ++criterion)
    {
        m_context.SetTrigger(SceneSlot + criterion, 10.0f + static_cast<FLOAT>(criterion));
    }
    const auto expect = [this](BOOL bSnapshot, BOOL bValid, const CHAR* pMessage)
    {
        EXPECT_EQ(Process().snapshot3HDRTriggers.bIs3HDRSnapshot, bSnapshot) << pMessage;
        EXPECT_EQ(m_out.snapshot3HDRTriggers.IHDRTriggers.isTriggerInfoValid, bValid) << pMessage;
    };
    for (const BOOL bSnapshot : {FALSE, FALSE, FALSE, TRUE, TRUE})
    {
        expect(bSnapshot, TRUE, "passing");
    }
    const InSensorHDR3ExpTriggerInfo& rInfo = m_out.snapshot3HDRTriggers.IHDRTriggers;
    EXPECT_EQ(rInfo.calculatedCDF.resultCDF5, 11.0f);
    EXPECT_EQ(rInfo.faceLuma, 14.0f);
    m_context.SetTrigger(SceneSlot, 0.0f);
    expect(TRUE, TRUE, "50 points are enough");
    m_context.SetTrigger(SceneSlot + 1, 0.0f);
    expect(FALSE, TRUE, "failing");
    m_context.SetTrigger(SceneSlot + 1, 20.0f);
    expect(FALSE, TRUE, "counted from the start");

    m_context.SetContextEvent(AECCoreSnapshotHDR3, TRUE);
    expect(TRUE, TRUE, "asked for");
    m_in.statisticsStartup = StatisticsStartUpInvalid;
    expect(TRUE, FALSE, "asked for at start-up");
    m_context.SetContextEvent(AECCoreSnapshotHDR3, FALSE);
    expect(FALSE, FALSE, "start-up");
    Tune();
    expect(FALSE, FALSE, "no module");

    // The last flag stands for all scenes beyond the flags.
    m_in.statisticsStartup = StatisticsStartUpValid;
    m_context.SetTrigger(SceneSlot + 1, 0.0f);
    for (const UINT32 count : {3u, 4u})
    {
        m_tuning.monitor3HDRSnapshot.generalizedMonitor.scenesCount = count;
        Tune(m_tuning);
        EXPECT_THAT(Process().snapshot3HDRTriggers.IHDRTriggers.finalTriggerResult.flags,
                    testing::ElementsAre(FALSE, TRUE, (count > 3) ? TRUE : FALSE));
    }
}

class BracketLock : public ExtensionMonitor
{
protected:
    /// The scene is the same while the trigger is at least 50.
    BracketLock()
    {
        m_scenes[0].criteriaArrayCount = 1;
        Tune(m_tuning);
        m_context.SetTrigger(SceneSlot, 60.0f);
    }

    /// A session of 30 to 35, the frame before the first check. The scene is rebased in the first and the last of them.
    VOID Start()
    {
        Bracket(30, 0.0f, 1000, FALSE);
        Bracket(31, -2.0f, 250, FALSE);
        Bracket(32, 2.0f, 4000, FALSE);
        Bracket(35, 0.0f, 1001, FALSE);
    }
};

TEST_F(BracketLock, HoldsEachSignWithItsEVWhileTheSceneIsTheSame)
{
    Start();
    EXPECT_EQ(Bracket(36, -1.0f, 500, TRUE), 250u);
    EXPECT_EQ(m_context.Trigger(TriggerCtrlBracketEV), -2.0f);
    EXPECT_EQ(Bracket(37, 0.0f, 3333, TRUE), 1001u);
    EXPECT_EQ(Bracket(38, 1.0f, 3333, TRUE), 4000u);
    EXPECT_EQ(m_context.Trigger(TriggerCtrlBracketEV), 2.0f);

    // A change shows at the next check, six frames after the last.
    m_context.SetTrigger(SceneSlot, 10.0f);
    EXPECT_EQ(Bracket(41, 0.0f, 3333, TRUE), 1001u);
    EXPECT_EQ(Bracket(42, 0.0f, 2000, FALSE), 2000u);
    EXPECT_EQ(Bracket(43, 1.0f, 5000, FALSE), 5000u);
    m_context.SetTrigger(SceneSlot, 60.0f);
    EXPECT_EQ(Bracket(47, 0.0f, 2100, FALSE), 2100u);
    EXPECT_EQ(Bracket(48, 0.0f, 3333, TRUE), 2100u);
    EXPECT_EQ(Bracket(49, 2.0f, 3333, TRUE), 5000u);
    EXPECT_EQ(Bracket(50, 0.0f, 3333, FALSE, FALSE), 3333u) << "no statistics";
}

TEST_F(BracketLock, ExpiresAndIsRebased)
{
    Start();
    EXPECT_EQ(Bracket(36, 0.0f, 3333, TRUE), 1001u);
    EXPECT_EQ(Bracket(54, 0.0f, 3333, TRUE), 1001u) << "19 frames after the rebase of frame 35";
    EXPECT_EQ(Bracket(55, 0.0f, 2000, FALSE), 2000u);
    EXPECT_EQ(Bracket(60, 0.0f, 2001, FALSE), 2001u) << "rebased, not checked yet";
    EXPECT_EQ(Bracket(61, 0.0f, 3333, TRUE), 2001u);

    m_tuning.monitorEVBracketLock.maxFrameNum = 0;
    Tune(m_tuning);
    EXPECT_EQ(Bracket(62, 0.0f, 2002, FALSE), 2002u);
    m_tuning.monitorEVBracketLock.enableEVBracketLock = FALSE;
    Tune(m_tuning);
    EXPECT_EQ(Bracket(70, 0.0f, 3333, FALSE), 3333u);
}

TEST_F(BracketLock, NeedsNoFrameIDAndStartsAnewWithANewTuning)
{
    EXPECT_EQ(Bracket(0, 0.0f, 1000, FALSE), 1000u);
    EXPECT_EQ(Bracket(0, 0.0f, 1001, FALSE), 1001u);
    // Start-up asks for a check at the next occasion.
    m_in.statisticsStartup = StatisticsStartUpInvalid;
    Process();
    EXPECT_EQ(Bracket(0, 0.0f, 3333, TRUE), 1001u);

    m_in.statisticsStartup = StatisticsStartUpValid;
    Tune(m_tuning);
    Start();
    Tune(m_tuning);
    EXPECT_EQ(Bracket(36, 0.0f, 2000, FALSE), 2000u);
    EXPECT_EQ(Bracket(41, 0.0f, 2001, FALSE), 2001u);
    EXPECT_EQ(Bracket(42, 0.0f, 3333, TRUE), 2001u);
}

}  // namespace
