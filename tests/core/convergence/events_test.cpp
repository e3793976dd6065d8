#include "core/convergence/cconveventmanager.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "schema/kiroflash.h"
#include "schema/kirosync.h"
#include "tests/support/statslogcapture.h"
#include "tests/support/testcontext.h"

namespace
{

constexpr UINT32 DetectorID = 5;

/// Exposures of Short, Long and Safe.
typedef std::array<UINT64, 3> Exposures;

constexpr Exposures Metered{100, 400, 200};

class ConvEvents : public testing::Test
{
protected:
    ConvEvents()
    {
        m_context.m_input.opMode        = AECAlgoOperationModeStreaming;
        m_context.m_input.systemLatency = 3;
        SetEV(0, 1.0f);
    }

    VOID SetEV(INT32 value, FLOAT factor)
    {
        m_context.m_input.evContext = {value, factor};
    }

    VOID SaveFrame(const Exposures& rExposures, FLOAT evFactor = 1.0f, INT32 postRawBoost = 0)
    {
        AECFrameHistory frame{};
        frame.frameID                 = ++m_frameID;
        frame.evFactor                = evFactor;
        frame.postRawSensitivityBoost = postRawBoost;
        for (size_t type = 0; type < rExposures.size(); ++type)
        {
            frame.exposureSets[type].exposure = rExposures[type];
        }
        m_context.SaveFrame(frame);
    }

    /// One frame. Whether its targets are fixed, and what they are.
    VOID Expect(BOOL bIsFixed, const Exposures& rExpected, const CHAR* pMessage = "", BOOL bIsMeteringSkipped = FALSE)
    {
        constexpr DOUBLE logsPerDecade = 77.89853;
        KIROConvTempInput input{};
        input.bIsMeteringSkipped = bIsMeteringSkipped;
        std::transform(m_metered.begin(), m_metered.end(), input.sensiLog103,
                       [](UINT64 exposure) { return std::log10(static_cast<DOUBLE>(exposure)) * logsPerDecade; });
        EXPECT_EQ(m_events.IsTargetFixed(input), bIsFixed) << pMessage;
        for (size_t type = 0; type < rExpected.size(); ++type)
        {
            const DOUBLE target = std::pow(10.0, input.sensiLog103[type] / logsPerDecade);
            EXPECT_NEAR(target / static_cast<DOUBLE>(rExpected[type]), 1.0, 1e-5) << type << " " << pMessage;
        }
    }

    VOID ExpectLocked(const Exposures& rExpected) const
    {
        Exposures locked{};
        m_events.GetLockedEV0(locked.data());
        EXPECT_EQ(locked, rExpected);
    }

    StatsLogCapture   m_log;
    TestContext       m_context;
    CConvEventManager m_events{m_context};
    Exposures         m_metered = Metered;

private:
    UINT64 m_frameID = 100;
};

} // namespace

TEST_F(ConvEvents, LockHoldsTheExposuresOfTheFrameBeforeAsWithoutEV)
{
    SaveFrame({1001, 4000, 2000}, 2.0f);
    Expect(FALSE, Metered);
    ExpectLocked({0, 0, 0});
    m_context.m_input.lockType = AECAlgoLockOn;
    Expect(TRUE, {500, 2000, 1000}, "truncated");
    ExpectLocked({500, 2000, 1000});
    SaveFrame({7, 7, 7});
    Expect(TRUE, {500, 2000, 1000}, "captured once");
    SetEV(6, 2.0f);
    Expect(TRUE, {1000, 4000, 2000}, "shifted by EV");
    ExpectLocked({500, 2000, 1000});
    SetEV(0, 1.0f);
    Expect(TRUE, {500, 2000, 1000});
    m_context.m_input.lockType = AECAlgoLockOFF;
    Expect(FALSE, Metered);
    ExpectLocked({0, 0, 0});
    SaveFrame({1000, 4000, 2000}, 0.0f);
    m_context.m_input.lockType = AECAlgoLockOn;
    Expect(TRUE, {1000, 4000, 2000}, "no EV factor");
}

TEST_F(ConvEvents, LockWithoutHistoryHoldsTheTargets)
{
    m_context.m_input.lockType = AECAlgoLockOn;
    Expect(TRUE, Metered);
    m_metered = {900, 900, 900};
    Expect(TRUE, Metered);
}

TEST_F(ConvEvents, EVJumpsOnceAndShiftsFromThenOn)
{
    SetEV(6, 2.0f);
    Expect(TRUE, {200, 800, 400});
    EXPECT_EQ(m_context.GetContextEvent(AECEVChange), TRUE);
    EXPECT_EQ(m_context.m_pBankManager->GetContext(), m_context.GetContextStatus()) << "the banks follow the event";
    Expect(FALSE, {200, 800, 400});
    SetEV(0, 1.0f);
    Expect(TRUE, Metered);
}

TEST_F(ConvEvents, EVShiftsInPreflashOnlyIfTuned)
{
    m_context.m_input.opMode = AECAlgoOperationModePreflash;
    SetEV(6, 2.0f);
    Expect(TRUE, Metered);
    kiroflash::KIROFlashType flash{};
    flash.preflashEvControl.enable = TRUE;
    m_context.SetTuning(TestTuning().Add(flash));
    Expect(FALSE, {200, 800, 400});
}

TEST_F(ConvEvents, PostRawBoostIsMadeUpForFromTheFrameThatHadTheOldOne)
{
    SaveFrame({1000, 4000, 2000}, 1.0f, 200);
    SaveFrame({5000, 20000, 10000}, 1.0f, 400);
    m_context.m_input.postRawGain    = 100;
    m_context.m_input.postRawCounter = 3;
    m_context.m_input.lockType       = AECAlgoLockOn;
    Expect(TRUE, {20000, 80000, 40000}, "one frame back, lock or not");
    m_context.m_input.postRawCounter = 2;
    m_context.m_input.lockType       = AECAlgoLockOFF;
    Expect(TRUE, {2000, 8000, 4000}, "two frames back");
    m_context.m_input.postRawCounter = 5;
    Expect(FALSE, Metered, "no such frame");
    m_context.m_input.postRawCounter = 3;
    m_context.m_input.postRawGain    = 0;
    Expect(FALSE, Metered);
    m_context.m_input.postRawGain              = 100;
    m_context.m_input.manualSetting.manualMode = AECAlgoModeManualFull;
    Expect(FALSE, Metered);
}

TEST_F(ConvEvents, ContextsThatFixTheTargetLeaveItAsMetered)
{
    for (const KIROTunaraEventType event : {AECManualFull, AECCoreSnapshotHDR3, AECOpFlashCalibration})
    {
        m_context.SetContextEvent(event, TRUE);
        Expect(TRUE, Metered);
        m_context.SetContextEvent(event, FALSE);
    }
    Expect(FALSE, Metered);
    Expect(TRUE, Metered, "metering skipped", TRUE);
}

TEST_F(ConvEvents, NewMasterHoldsItsExposureForSomeFramesOrUntilTheSceneChanges)
{
    kirosync::KIROSyncType tuning{};
    tuning.masterAndSlaveConfig.slave.exposureType = kirosync::AECAlgoExposureFollow;
    tuning.expSyncConfig.bLockExpWhenSwitch        = TRUE;
    tuning.expSyncConfig.minFrameNumToLock         = 2;
    tuning.expSyncConfig.SCDID                     = DetectorID;
    const auto becomeMaster                        = [&](BOOL bIsFixed, const Exposures& rExpected, const CHAR* pMessage)
    {
        m_context.SetTuning(TestTuning().Add(tuning));
        m_context.SetContextEvent(AECSlaveRole, TRUE);
        Expect(FALSE, {200, 800, 400}, "slave");
        m_context.SetContextEvent(AECSlaveRole, FALSE);
        Expect(bIsFixed, rExpected, pMessage);
    };
    SaveFrame({1000, 4000, 2000});
    SetEV(6, 2.0f);
    Expect(TRUE, {200, 800, 400});
    becomeMaster(FALSE, {200, 800, 400}, "no detector");
    EXPECT_EQ(m_log.Count(32, "SCDID:5 is not aded in the SCD tuning."), 2u);

    m_context.SetSCDOutput(DetectorID, {nullptr, KIROSCDStateMonitor, KIROHoldTimeOff});
    becomeMaster(TRUE, {1000, 4000, 2000}, "the EV factor is taken out and put back");
    EXPECT_EQ(m_context.m_rebasedSCDs, std::vector<UINT32>{DetectorID});
    Expect(TRUE, {1000, 4000, 2000});
    Expect(FALSE, {200, 800, 400}, "two frames have passed");

    tuning.expSyncConfig.minFrameNumToLock = 100;
    becomeMaster(TRUE, {1000, 4000, 2000}, "for longer");
    m_context.SetSCDOutput(DetectorID, {nullptr, KIROSCDStateSceneChange, KIROHoldTimeOff});
    Expect(FALSE, {200, 800, 400}, "the scene changes");
    m_context.SetSCDOutput(DetectorID, {nullptr, KIROSCDStateMonitor, KIROHoldTimeOff});
    Expect(FALSE, {200, 800, 400}, "for good");

    tuning.expSyncConfig.minFrameNumToLock = 0;
    becomeMaster(FALSE, {200, 800, 400}, "no frames");
    tuning.expSyncConfig.minFrameNumToLock  = 2;
    tuning.expSyncConfig.bLockExpWhenSwitch = FALSE;
    becomeMaster(FALSE, {200, 800, 400}, "off");
    tuning.expSyncConfig.bLockExpWhenSwitch        = TRUE;
    tuning.masterAndSlaveConfig.slave.exposureType = kirosync::AECAlgoExposureIndependent;
    becomeMaster(FALSE, {200, 800, 400}, "not following");
}
