#include "core/convergence/cconveventmanager.h"

#include <gtest/gtest.h>

#include <cmath>

#include "schema/kiroflash.h"
#include "schema/kirosync.h"
#include "tests/support/statslogcapture.h"
#include "tests/support/testcontext.h"

namespace
{

constexpr UINT32 LevelError   = 2;
constexpr UINT32 LevelWarning = 4;
constexpr UINT32 DetectorID   = 5;

/// Exposures of Short, Long and Safe.
typedef std::array<DOUBLE, 3> Exposures;

class ConvEvents : public testing::Test
{
protected:
    ConvEvents()
    {
        m_context.m_input.opMode             = AECAlgoOperationModeStreaming;
        m_context.m_input.systemLatency      = 3;
        m_context.m_input.evContext.evFactor = 1.0f;
    }

    VOID SaveFrame(const Exposures& rExposures, FLOAT evFactor = 1.0f, INT32 postRawBoost = 0)
    {
        AECFrameHistory frame{};
        frame.frameID                 = ++m_frameID;
        frame.evFactor                = evFactor;
        frame.postRawSensitivityBoost = postRawBoost;
        for (size_t type = 0; type < rExposures.size(); ++type)
        {
            frame.exposureSets[type].exposure = static_cast<UINT64>(rExposures[type]);
        }
        m_context.SaveFrame(frame);
    }

    /// One frame with a metered target. @return whether the targets are fixed
    BOOL Run(const Exposures& rMetered = {100.0, 400.0, 200.0})
    {
        KIROConvTempInput input{};
        input.bIsMeteringSkipped = m_bIsMeteringSkipped;
        for (size_t type = 0; type < rMetered.size(); ++type)
        {
            input.sensiLog103[type] = std::log10(rMetered[type]) * 77.89853;
        }
        const BOOL bIsFixed = m_events.IsTargetFixed(input);
        for (size_t type = 0; type < rMetered.size(); ++type)
        {
            m_targets[type] = std::pow(10.0, input.sensiLog103[type] / 77.89853);
        }
        return bIsFixed;
    }

    VOID ExpectTargets(const Exposures& rExpected, const CHAR* pMessage = "") const
    {
        for (size_t type = 0; type < rExpected.size(); ++type)
        {
            EXPECT_NEAR(m_targets[type] / rExpected[type], 1.0, 1e-5) << "exposure " << type << " " << pMessage;
        }
    }

    VOID ExpectLocked(const std::array<UINT64, 3>& rExpected) const
    {
        std::array<UINT64, 3> locked{};
        m_events.GetLockedEV0(locked.data());
        EXPECT_EQ(locked, rExpected);
    }

    VOID SetEV(INT32 value, FLOAT factor)
    {
        m_context.m_input.evContext = {value, factor};
    }

    StatsLogCapture   m_log;
    TestContext       m_context;
    CConvEventManager m_events{m_context};
    BOOL              m_bIsMeteringSkipped = FALSE;
    Exposures         m_targets{};

private:
    UINT64 m_frameID = 100;
};

class CamSync : public ConvEvents
{
protected:
    CamSync()
    {
        m_tuning.masterAndSlaveConfig.slave.exposureType = kirosync::AECAlgoExposureFollow;
        m_tuning.expSyncConfig.bLockExpWhenSwitch        = TRUE;
        m_tuning.expSyncConfig.minFrameNumToLock         = 2;
        m_tuning.expSyncConfig.SCDID                     = DetectorID;
        m_context.SetSCDOutput(DetectorID, {nullptr, KIROSCDStateMonitor, KIROHoldTimeOff});
        SaveFrame({1000.0, 4000.0, 2000.0});
    }

    /// A frame as a slave, then one as the master. @return whether the latter is fixed
    BOOL BecomeMaster()
    {
        m_context.SetTuning(TestTuning().Add(m_tuning));
        m_context.SetContextEvent(AECSlaveRole, TRUE);
        EXPECT_EQ(Run(), FALSE);
        m_context.SetContextEvent(AECSlaveRole, FALSE);
        return Run();
    }

    kirosync::KIROSyncType m_tuning{};
};

} // namespace

TEST_F(ConvEvents, LockHoldsTheExposuresOfTheFrameBefore)
{
    SaveFrame({1001.0, 4000.0, 2000.0}, 2.0f);
    EXPECT_EQ(Run(), FALSE);
    ExpectTargets({100.0, 400.0, 200.0});
    ExpectLocked({0, 0, 0});

    m_context.m_input.lockType = AECAlgoLockOn;
    EXPECT_EQ(Run(), TRUE);
    ExpectTargets({500.0, 2000.0, 1000.0}, "without the EV factor, truncated");
    ExpectLocked({500, 2000, 1000});
    SaveFrame({7.0, 7.0, 7.0});
    EXPECT_EQ(Run(), TRUE);
    ExpectTargets({500.0, 2000.0, 1000.0}, "captured once");

    m_context.m_input.lockType = AECAlgoLockOFF;
    EXPECT_EQ(Run(), FALSE);
    ExpectTargets({100.0, 400.0, 200.0});
    ExpectLocked({0, 0, 0});

    m_context.m_input.lockType = AECAlgoLockOn;
    SaveFrame({1000.0, 4000.0, 2000.0}, 0.0f);
    Run();
    ExpectLocked({1000, 4000, 2000});
}

TEST_F(ConvEvents, LockWithoutHistoryHoldsTheTargets)
{
    m_context.m_input.lockType = AECAlgoLockOn;
    EXPECT_EQ(Run({100.0, 400.0, 200.0}), TRUE);
    EXPECT_TRUE(m_log.Has(LevelWarning, "KIROCONVRG no history at lock"));
    Run({900.0, 900.0, 900.0});
    ExpectTargets({100.0, 400.0, 200.0});
}

TEST_F(ConvEvents, EVJumpsOnceAndShiftsFromThenOn)
{
    SetEV(6, 2.0f);
    EXPECT_EQ(Run(), TRUE);
    ExpectTargets({200.0, 800.0, 400.0});
    EXPECT_EQ(m_context.GetContextEvent(AECEVChange), TRUE);
    EXPECT_EQ(m_context.m_pBankManager->GetContext(), m_context.GetContextStatus()) << "the banks follow the event";
    EXPECT_EQ(Run(), FALSE);
    ExpectTargets({200.0, 800.0, 400.0});
    SetEV(0, 1.0f);
    EXPECT_EQ(Run(), TRUE);
    ExpectTargets({100.0, 400.0, 200.0});
}

TEST_F(ConvEvents, EVShiftsALockedExposure)
{
    SaveFrame({1000.0, 4000.0, 2000.0});
    m_context.m_input.lockType = AECAlgoLockOn;
    SetEV(-6, 0.5f);
    EXPECT_EQ(Run(), TRUE);
    ExpectTargets({500.0, 2000.0, 1000.0});
    ExpectLocked({1000, 4000, 2000});
}

TEST_F(ConvEvents, EVShiftsInPreflashOnlyIfTuned)
{
    m_context.m_input.opMode = AECAlgoOperationModePreflash;
    SetEV(6, 2.0f);
    EXPECT_EQ(Run(), TRUE);
    ExpectTargets({100.0, 400.0, 200.0});

    kiroflash::KIROFlashType flash{};
    flash.preflashEvControl.enable = TRUE;
    m_context.SetTuning(TestTuning().Add(flash));
    EXPECT_EQ(Run(), FALSE);
    ExpectTargets({200.0, 800.0, 400.0});
}

TEST_F(ConvEvents, PostRawBoostIsMadeUpForFromTheFrameThatHadTheOldOne)
{
    SaveFrame({3.0, 3.0, 3.0}, 1.0f, 100);
    SaveFrame({1000.0, 4000.0, 2000.0}, 1.0f, 200);
    SaveFrame({5000.0, 20000.0, 10000.0}, 1.0f, 400);
    m_context.m_input.postRawGain    = 100;
    m_context.m_input.postRawCounter = 3;
    m_context.m_input.lockType       = AECAlgoLockOn;
    EXPECT_EQ(Run(), TRUE);
    ExpectTargets({20000.0, 80000.0, 40000.0}, "one frame back, and no lock");
    m_context.m_input.postRawCounter = 2;
    Run();
    ExpectTargets({2000.0, 8000.0, 4000.0}, "two frames back");

    m_context.m_input.lockType       = AECAlgoLockOFF;
    m_context.m_input.postRawCounter = 5;
    EXPECT_EQ(Run(), FALSE) << "before the frame in progress there is none";
    m_context.m_input.postRawCounter = 3;
    m_context.m_input.postRawGain    = 0;
    EXPECT_EQ(Run(), FALSE);
    m_context.m_input.postRawGain              = 100;
    m_context.m_input.manualSetting.manualMode = AECAlgoModeManualFull;
    EXPECT_EQ(Run(), FALSE);
    ExpectTargets({100.0, 400.0, 200.0});
}

TEST_F(ConvEvents, ContextsThatFixTheTargetLeaveItAsMetered)
{
    for (const KIROTunaraEventType event : {AECManualFull, AECCoreSnapshotHDR3, AECOpFlashCalibration})
    {
        m_context.SetContextEvent(event, TRUE);
        EXPECT_EQ(Run(), TRUE) << event;
        ExpectTargets({100.0, 400.0, 200.0});
        m_context.SetContextEvent(event, FALSE);
    }
    EXPECT_EQ(Run(), FALSE);
    m_bIsMeteringSkipped = TRUE;
    EXPECT_EQ(Run(), TRUE);
    ExpectTargets({100.0, 400.0, 200.0});
}

TEST_F(CamSync, NewMasterHoldsItsExposureForSomeFrames)
{
    SetEV(6, 2.0f);
    Run();
    EXPECT_EQ(BecomeMaster(), TRUE);
    ExpectTargets({1000.0, 4000.0, 2000.0}, "the EV factor is taken out and put back");
    EXPECT_EQ(m_context.m_rebasedSCDs, std::vector<UINT32>{DetectorID});
    EXPECT_EQ(Run(), TRUE);
    EXPECT_EQ(Run(), FALSE);
    ExpectTargets({200.0, 800.0, 400.0});
    EXPECT_EQ(Run(), FALSE);
}

TEST_F(CamSync, ChangeOfSceneEndsTheHold)
{
    m_tuning.expSyncConfig.minFrameNumToLock = 100;
    EXPECT_EQ(BecomeMaster(), TRUE);
    m_context.SetSCDOutput(DetectorID, {nullptr, KIROSCDStateSceneChange, KIROHoldTimeOff});
    EXPECT_EQ(Run(), FALSE);
    m_context.SetSCDOutput(DetectorID, {nullptr, KIROSCDStateMonitor, KIROHoldTimeOff});
    EXPECT_EQ(Run(), FALSE);
}

TEST_F(CamSync, DoesNotHoldUnlessTunedAndDetected)
{
    const kirosync::KIROSyncType tuned = m_tuning;

    m_tuning.expSyncConfig.minFrameNumToLock = 0;
    EXPECT_EQ(BecomeMaster(), FALSE) << "no frames";
    m_tuning                                  = tuned;
    m_tuning.expSyncConfig.bLockExpWhenSwitch = FALSE;
    EXPECT_EQ(BecomeMaster(), FALSE) << "off";
    m_tuning                                         = tuned;
    m_tuning.masterAndSlaveConfig.slave.exposureType = kirosync::AECAlgoExposureIndependent;
    EXPECT_EQ(BecomeMaster(), FALSE) << "not following";
    m_tuning                     = tuned;
    m_tuning.expSyncConfig.SCDID = 6;
    EXPECT_EQ(BecomeMaster(), FALSE) << "no detector";
    EXPECT_EQ(m_log.Count(32, "SCDID:6 is not aded in the SCD tuning."), 2u);
    ExpectTargets({100.0, 400.0, 200.0});
}
