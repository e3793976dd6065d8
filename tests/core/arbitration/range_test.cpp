// Ranges: how bounds follow from a tuning, and the controls with rules of their own.

#include "core/extension/ckirocamsync.h"
#include "tests/core/arbitration/arbitrationfixture.h"

using namespace kirodbarbitrationrange;

namespace
{

constexpr RangePoint Keep{0.0f, ArbRangeInvalid};

constexpr RangePoint Absolute(FLOAT value)
{
    return {value, ArbRangeAbsolute};
}

constexpr RangePoint Factor(FLOAT value)
{
    return {value, ArbRangeRelativeFactor};
}

constexpr RangePoint Offset(FLOAT value)
{
    return {value, ArbRangeRelativeOffset};
}

class RangeTest : public ArbitrationTest
{
protected:
    KiroResult RunRange(ArbExposureQuantity quantity, const RangePoint& rStart, const RangePoint& rEnd,
                        ArbitrationControl control = ArbCtrlCustomRange)
    {
        m_range.value.quantity = quantity;
        m_range.value.start    = rStart;
        m_range.value.end      = rEnd;
        return Run(BankIDArbitrationRange, m_range.dataID, control);
    }

    VOID ExpectGains(const RangePoint& rStart, const RangePoint& rEnd, FLOAT startGain, FLOAT endGain)
    {
        EXPECT_EQ(RunRange(ArbQuantityGain, rStart, rEnd), 0);
        ExpectRange(startGain, endGain, 100 * Microsecond, 33 * Millisecond);
    }

    VOID ExpectTimes(const RangePoint& rStart, const RangePoint& rEnd, UINT64 startTime, UINT64 endTime)
    {
        EXPECT_EQ(RunRange(ArbQuantityTime, rStart, rEnd), 0);
        ExpectRange(1.0f, 16.0f, startTime, endTime);
    }
};

}  // namespace

TEST_F(RangeTest, GainBoundsFollowTheirOwnPoints)
{
    ExpectGains(Absolute(2.0f), Factor(0.5f), 2.0f, 8.0f);
    EXPECT_EQ(m_out.range.start.exposure, 200000u);
    EXPECT_NEAR(m_out.range.end.indx, IndexOf(264000000.0), 0.01f);
    ExpectExposure(1.0f, 10 * Millisecond, "not fitted unless tuned so");
    ExpectGains(Keep, Offset(100.0f), 1.0f, 116.0f);
    ExpectGains(Absolute(NAN), Factor(INFINITY), 1.0f, 16.0f);
    EXPECT_EQ(RunRange(ArbQuantityGain, Absolute(32.0f), Absolute(INFINITY)), 1) << "32 is above the 16 that stand";
    EXPECT_EQ(RunRange(ArbQuantityGain, Absolute(20.0f), Keep), 1);
    EXPECT_EQ(RunRange(ArbQuantityGain, Absolute(0.5f), Keep), 1);
}

TEST_F(RangeTest, TimeValuesAreCutToWholeNanosecondsEvenAsFactors)
{
    ExpectTimes(Factor(2.9f), Factor(1.5f), 200 * Microsecond, 33 * Millisecond);
    ExpectTimes(Offset(50000.9f), Absolute(20e6f), 150 * Microsecond, 20 * Millisecond);
    EXPECT_EQ(RunRange(ArbQuantityTime, Factor(0.5f), Keep), 1);
    EXPECT_TRUE(m_log.Has(LevelError, "cannot apply new range: min time 0 smaller than sensor min time 50000"));
    EXPECT_EQ(RunRange(ArbQuantityTime, Keep, Absolute(-1.0f)), 1);
    EXPECT_TRUE(m_log.Has(LevelError, "cannot apply new range: min time 100000 larger than max time 0"));
    EXPECT_EQ(RunRange(ArbQuantityTime, Keep, Absolute(2e8f)), 1);
    EXPECT_TRUE(m_log.HasPart(LevelError, "max time 200000000 larger than sensor max time 100000000"));

    // Times of the same float snap to the sensor. A start that snaps ends the tests, so an end beyond the sensor
    // passes.
    m_in.range.end.time = 100000001;
    ExpectTimes(Keep, Keep, 100 * Microsecond, 100 * Millisecond);
    m_in.sensorRange.minTime = 40 * Millisecond;
    m_in.range.start.time    = 39999999;
    m_in.range.end.time      = 200 * Millisecond;
    ExpectTimes(Keep, Keep, 40 * Millisecond, 200 * Millisecond);
}

TEST_F(RangeTest, IndexBoundsAreSplitByTheLastTable)
{
    using namespace kirodbarbitrationtable;
    EXPECT_EQ(RunRange(ArbQuantityIndex, Keep, Absolute(IndexOf(2e7))), 1) << "no table yet";
    SetTable({{AECExpIncTime, 1.0f, 100 * Microsecond},
              {AECExpIncTime, 1.0f, 10 * Millisecond},
              {AECExpIncGain, 16.0f, 10 * Millisecond}});
    ASSERT_EQ(Run(BankIDArbitrationTable, 4, ArbCtrlTable), 0);
    EXPECT_EQ(RunRange(ArbQuantityIndex, Keep, Absolute(IndexOf(2e7))), 0);
    EXPECT_EQ(m_out.range.start.time, 100 * Microsecond);
    EXPECT_EQ(m_out.range.end.time, 10 * Millisecond);
    EXPECT_NEAR(m_out.range.end.gain, 2.0f, 0.001f);
    EXPECT_NEAR(m_out.range.end.indx, IndexOf(2e7), 0.01f);
    EXPECT_EQ(RunRange(ArbQuantityIndex, Offset(1.0f), Offset(-1.0f)), 0);
    EXPECT_NEAR(static_cast<DOUBLE>(m_out.range.start.time), 103000.0, 20.0);
    EXPECT_NEAR(static_cast<DOUBLE>(m_out.range.end.exposure), 528000000.0 / 1.03, 1e5);

    EXPECT_EQ(RunRange(ArbQuantityIndex, Absolute(310.0f), Absolute(300.0f)), 1);
    EXPECT_TRUE(m_log.Has(LevelError, "cannot apply; calculated indices 310.0 300.0 keeping indices 155.8 445.8"));
    EXPECT_EQ(RunRange(ArbQuantityIndex, Offset(-1.0f), Keep), 1);
    EXPECT_EQ(RunRange(ArbQuantityIndex, Keep, Offset(1.0f)), 1);
}

TEST_F(RangeTest, BoundsKeepAnExposureThatGainAndTimeApproximate)
{
    KIROExposureRange range{Set(1.0f, 100000), Set(1.0f, 90000)};
    range.start.exposure = 100005;
    range.end.exposure   = 90020;
    UtilUpdateExposureAndIndexLimits(&range, 1000);
    EXPECT_EQ(range.start.exposure, 100005u) << "0.005 percent off";
    EXPECT_EQ(range.end.exposure, 100005u) << "replaced as 0.02 percent off, then raised to the start";
    EXPECT_TRUE(m_log.HasPart(LevelWarning, "max exposure 90000 smaller than min 100005 forcing to min"));
    EXPECT_NEAR(range.start.indx, IndexOf(100005.0), 0.001f);
}

TEST_F(RangeTest, CompensationMovesTheOtherQuantity)
{
    m_range.value.handling.compensation = {TRUE, ArbQuantityTime};
    EXPECT_EQ(RunRange(ArbQuantityTime, Absolute(200000.0f), Absolute(16500000.0f)), 0);
    ExpectRange(1.0f, 32.0f, 200 * Microsecond, 16500 * Microsecond);  // not below the sensor's gain
    EXPECT_EQ(m_out.range.end.exposure, 528000000u);
    m_range.value.handling.compensation = {TRUE, ArbQuantityGain};
    EXPECT_EQ(RunRange(ArbQuantityGain, Absolute(4.0f), Absolute(8.0f)), 0);
    ExpectRange(4.0f, 8.0f, 50 * Microsecond, 66 * Millisecond);
    EXPECT_EQ(RunRange(ArbQuantityGain, Absolute(1.0f), Absolute(4.0f)), 0);
    ExpectRange(1.0f, 4.0f, 100 * Microsecond, 100 * Millisecond);

    for (const auto& [quantity, level, pMessage] :
         {std::tuple{ArbQuantityIndex, LevelWarning, "not compensating index range adjust; only gain or time"},
          {static_cast<ArbExposureQuantity>(3), LevelError, "unknown quantity!"}})
    {
        m_range.value.handling.compensation = {TRUE, quantity};
        EXPECT_EQ(RunRange(ArbQuantityGain, Absolute(4.0f), Absolute(8.0f)), 0);
        ExpectRange(4.0f, 8.0f, 100 * Microsecond, 33 * Millisecond);
        EXPECT_TRUE(m_log.Has(level, pMessage)) << pMessage;
    }
}

TEST_F(RangeTest, FollowerTakesTheTimeOfItsMaster)
{
    kirosync::KIROSyncType tuning{};
    tuning.masterAndSlaveConfig.slave.exposureType = kirosync::AECAlgoExposureFollow;
    const auto run                                 = [&](BOOL bMatch)
    {
        tuning.expSyncConfig.enableExposureTimeMatch = bMatch;
        Tune(tuning);
        SetBank(BankIDArbitrationRange, &m_range);
        return RunRange(ArbQuantityTime, Absolute(1e6f), Absolute(2e6f), ArbCtrlMasterTime);
    };
    AECMultiCamInfo peer{};
    peer.exposureInfo.exposureTime[AECAlgoExposureSafe] = 12 * Millisecond;
    EXPECT_EQ(run(TRUE), 6) << "no master";
    m_context.m_pCamSync->setPeerInfo(&peer);
    EXPECT_EQ(run(TRUE), 3) << "not following";
    StatsCameraInfo info{StatsAlgoRoleSlave, 1};
    m_context.m_pCamSync->SetStatsCameraInfo(&info);
    EXPECT_EQ(run(TRUE), 0);
    ExpectRange(1.0f, 16.0f, 12 * Millisecond, 12 * Millisecond);
    EXPECT_EQ(run(FALSE), 1) << "not tuned";
    peer.exposureInfo.exposureTime[AECAlgoExposureSafe] = 0;
    EXPECT_EQ(run(TRUE), 1) << "a master without a frame";

    FLOAT time = 0.0f;
    EXPECT_EQ(UtilSyncUpExposureTime(AECAlgoExposureSafe, &m_context.m_tuningData, nullptr, &time), 1) << "no peer";
    peer.exposureInfo.exposureTime[AECAlgoExposureSafe] = 12 * Millisecond;
    Tune();
    SetBank(BankIDArbitrationRange, &m_range);
    EXPECT_EQ(RunRange(ArbQuantityTime, Absolute(1e6f), Absolute(2e6f), ArbCtrlMasterTime), 1) << "no tuning of sync";
}

TEST_F(RangeTest, StaggeredTimeGrowsWithWhatLongLeaves)
{
    // Long was given up to 20 ms and takes 15; Safe was given 8. A call that fails does not count.
    for (const auto& [type, time] : {std::pair{AECAlgoExposureLong, 20}, {AECAlgoExposureSafe, 8}})
    {
        m_in.expType        = type;
        m_in.range.end.time = time * Millisecond;
        EXPECT_EQ(RunRange(ArbQuantityTime, Keep, Keep), 0);
        EXPECT_EQ(RunRange(ArbQuantityTime, Keep, Absolute(2e8f)), 1);
    }
    KIROExposureSetType& rLong = m_in.exposures[AECAlgoExposureLong];
    rLong                      = Set(1.0f, 15 * Millisecond);
    EXPECT_EQ(RunRange(ArbQuantityTime, Keep, Absolute(10e6f), ArbCtrlSHDRTimeRange), 0);
    EXPECT_EQ(m_out.range.end.time, 10 * Millisecond) << "as tuned";
    EXPECT_EQ(RunRange(ArbQuantityTime, Keep, Absolute(33e6f), ArbCtrlSHDRTimeRange), 0);
    EXPECT_EQ(m_out.range.end.time, 15 * Millisecond) << "10 of the last call and 5";
    m_in.range.end.time = 30 * Millisecond;
    EXPECT_EQ(RunRange(ArbQuantityTime, Keep, Absolute(33e6f), ArbCtrlSHDRTimeRange), 0);
    EXPECT_EQ(m_out.range.end.time, 30 * Millisecond) << "never shorter than it is";

    EXPECT_EQ(RunRange(ArbQuantityTime, Keep, Factor(2.0f), ArbCtrlSHDRTimeRange), 1);
    rLong.time = 0;
    EXPECT_EQ(RunRange(ArbQuantityTime, Keep, Absolute(33e6f), ArbCtrlSHDRTimeRange), 1);
    m_in.expType = AECAlgoExposureLong;
    EXPECT_EQ(RunRange(ArbQuantityTime, Keep, Absolute(33e6f), ArbCtrlSHDRTimeRange), 1);
}

TEST_F(RangeTest, PrecisionFlashNarrowsTheRangeOfItsID)
{
    m_range.dataID = 17;
    SetBank(BankIDArbitrationRange, &m_range);
    m_in.bFPrecisionFlashFlag = TRUE;
    m_in.precisionFlashInfo   = {0.5f, 2 * Millisecond, 20 * Millisecond, 3 * Millisecond};
    ExpectTimes(Offset(1e6f), Absolute(33e6f), 6 * Millisecond,
                20 * Millisecond);  // 3 ms of rolling shutter over a share of 0.5
    ExpectTimes(Offset(7e6f), Absolute(15e6f), 7100 * Microsecond, 15 * Millisecond);
    ExpectTimes(Offset(7e6f), Absolute(33e6f), 7 * Millisecond,
                20 * Millisecond);  // cutting the end makes the start absolute
    m_in.precisionFlashInfo.minFlashTime = 15 * Millisecond;
    EXPECT_EQ(RunRange(ArbQuantityTime, Offset(7e6f), Offset(15e6f)), 1) << "15 is below 30, whatever it is added to";
    m_in.bFPrecisionFlashFlag = FALSE;
    EXPECT_EQ(RunRange(ArbQuantityTime, Offset(7e6f), Offset(15e6f)), 0);
}
