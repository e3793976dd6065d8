// Events that fix the targets: lock, EV, post-raw gain, change of the camera's role.

#include "tests/core/convergence/convergencefixture.h"

namespace
{

constexpr DOUBLE Metered = 500.0;  ///< step of the metered target

class Events : public ConvergenceTest
{
protected:
    /// At full speed an exposure is at its target in one frame, fixed or not.
    Events()
    {
        SetSpeeds(1.0f, 0.0f);
    }

    VOID SetEV(INT32 value, DOUBLE steps)
    {
        m_context.m_input.evContext = {value, FactorOf(steps)};
    }

    VOID SaveFrame(DOUBLE step, DOUBLE evSteps = 0.0)
    {
        AECFrameHistory frame = FrameAt(Same(step));
        frame.evFactor        = FactorOf(evSteps);
        SaveHistory(frame);
    }

    VOID Expect(BOOL bIsFixed, DOUBLE target, const CHAR* pMessage)
    {
        Run(Same(Metered));
        EXPECT_EQ(m_output.bIsConvTargetFixed, bIsFixed) << pMessage;
        ExpectSteps(Same(target), pMessage);
    }
};

}  // namespace

TEST_F(Events, LockHoldsTheExposureOfTheFrameBeforeAsWithoutEV)
{
    SaveFrame(470.0, 10.0);
    Expect(FALSE, Metered, "no lock");
    EXPECT_EQ(m_output.lockedEV0Exposures[AECAlgoExposureLong], 0u);
    m_context.m_input.lockType = AECAlgoLockOn;
    Expect(TRUE, 460.0, "locked");
    SaveFrame(480.0);
    Expect(TRUE, 460.0, "captured once");
    SetEV(6, 20.0);
    Expect(TRUE, 480.0, "shifted by EV");
    EXPECT_NEAR(static_cast<DOUBLE>(m_output.lockedEV0Exposures[AECAlgoExposureLong]), std::pow(1.03, 460.0), 2.0);
    SetEV(0, 0.0);
    m_context.m_input.lockType = AECAlgoLockOFF;
    Run(Same(Metered));
    Expect(FALSE, Metered, "unlocked");
    EXPECT_EQ(m_output.lockedEV0Exposures[AECAlgoExposureLong], 0u);
}

TEST_F(Events, EVJumpsOnceAndShiftsFromThenOnInPreflashIfTuned)
{
    SaveFrame(490.0);
    SetEV(6, 20.0);
    Expect(TRUE, 520.0, "changed");
    EXPECT_EQ(m_context.GetContextEvent(AECEVChange), TRUE);
    EXPECT_EQ(m_context.m_pBankManager->GetContext(), m_context.GetContextStatus()) << "the banks follow the event";
    Expect(FALSE, 520.0, "unchanged");
    m_context.m_input.opMode = AECAlgoOperationModePreflash;
    Expect(FALSE, Metered, "not tuned");
    m_flash.preflashEvControl.enable = TRUE;
    LoadTuning();
    Expect(FALSE, 520.0, "tuned");
    SetEV(0, 0.0);
    Expect(TRUE, Metered, "changed to none");
}

TEST_F(Events, PostRawBoostIsMadeUpForFromTheFrameThatHadTheOldOne)
{
    SaveHistory(FrameAt(Same(480.0)), FrameAt(Same(490.0)));
    m_context.m_pHistory->GetInternalFrameHistory(2)->postRawSensitivityBoost = 400;
    m_context.m_pHistory->GetInternalFrameHistory(1)->postRawSensitivityBoost = 200;
    const auto expect = [this](UINT8 counter, INT32 gain, BOOL bIsFixed, DOUBLE target, const CHAR* pMessage)
    {
        m_context.m_input.postRawCounter = counter;
        m_context.m_input.postRawGain    = gain;
        Expect(bIsFixed, target, pMessage);
    };
    m_context.m_input.lockType = AECAlgoLockOn;
    expect(2, 100, TRUE, 490.0 + StepOf(2.0), "a frame back, lock or not");
    m_context.m_input.lockType = AECAlgoLockOFF;
    expect(1, 100, TRUE, 480.0 + StepOf(4.0), "two frames back");
    expect(4, 100, FALSE, Metered, "no such frame");
    expect(2, 0, FALSE, Metered, "no gain");
    m_context.m_input.manualSetting.manualMode = AECAlgoModeManualFull;
    expect(2, 100, FALSE, Metered, "full manual control");
}

TEST_F(Events, ContextsThatFixTheTargetLeaveItAsMetered)
{
    SaveFrame(490.0);
    for (const KIROTunaraEventType event : {AECManualFull, AECCoreSnapshotHDR3, AECOpFlashCalibration})
    {
        m_context.SetContextEvent(event, TRUE);
        Expect(TRUE, Metered, "fixed");
        m_context.SetContextEvent(event, FALSE);
    }
    Expect(FALSE, Metered, "free");
}

TEST_F(Events, NewMasterHoldsItsExposureForSomeFramesOrUntilTheSceneChanges)
{
    const auto becomeMaster = [this](UINT32 frames, BOOL bIsFixed, DOUBLE target, const CHAR* pMessage)
    {
        m_sync.expSyncConfig.minFrameNumToLock = frames;
        LoadTuning();
        m_context.SetContextEvent(AECSlaveRole, TRUE);
        Expect(FALSE, 520.0, "slave");
        m_context.SetContextEvent(AECSlaveRole, FALSE);
        Expect(bIsFixed, target, pMessage);
    };
    m_sync.masterAndSlaveConfig.slave.exposureType = kirosync::AECAlgoExposureFollow;
    m_sync.expSyncConfig.bLockExpWhenSwitch        = TRUE;
    m_sync.expSyncConfig.SCDID                     = 5;
    SaveFrame(490.0);
    SetEV(6, 20.0);
    Run(Same(Metered));
    becomeMaster(2, FALSE, 520.0, "no detector");
    m_context.SetSCDOutput(5, {nullptr, KIROSCDStateMonitor, KIROHoldTimeOff});
    becomeMaster(0, FALSE, 520.0, "for no frames");
    m_context.m_rebasedSCDs.clear();
    becomeMaster(2, TRUE, 490.0, "the EV factor is taken out and put back");
    EXPECT_EQ(m_context.m_rebasedSCDs, std::vector<UINT32>{5});
    Expect(TRUE, 490.0, "second frame");
    Expect(FALSE, 520.0, "third frame");

    becomeMaster(100, TRUE, 490.0, "for long");
    m_context.SetSCDOutput(5, {nullptr, KIROSCDStateSceneChange, KIROHoldTimeOff});
    Expect(FALSE, 520.0, "the scene changes");
    m_context.SetSCDOutput(5, {nullptr, KIROSCDStateMonitor, KIROHoldTimeOff});
    Expect(FALSE, 520.0, "for good");
    m_sync.expSyncConfig.bLockExpWhenSwitch = FALSE;
    becomeMaster(100, FALSE, 520.0, "off");
}
