// Ranges: how bounds follow from a tuning, and the controls with rules of their own.

#include "tests/core/arbitration/arbitrationfixture.h"

using namespace kirodbarbitrationrange;

namespace
{

class RangeTest : public ArbitrationTest
{
protected:
    VOID SetRange(ArbExposureQuantity quantity, const RangePoint& rStart, const RangePoint& rEnd)
    {
        m_range.value.quantity = quantity;
        m_range.value.start    = rStart;
        m_range.value.end      = rEnd;
    }

    static constexpr RangePoint Keep{0.0f, ArbRangeInvalid};
};

} // namespace

TEST_F(RangeTest, GainBoundsFollowTheirOwnPoints)
{
    SetRange(ArbQuantityGain, {2.0f, ArbRangeAbsolute}, {0.5f, ArbRangeRelativeFactor});
    EXPECT_EQ(RunRange(), 0);
    ExpectGains(2.0f, 8.0f);
    EXPECT_EQ(m_out.range.start.exposure, 200000u);
    EXPECT_EQ(m_out.range.end.exposure, 264000000u);
    EXPECT_NEAR(m_out.range.end.indx, IndexOf(264000000.0), 0.01f);
    ExpectExposure(1.0f, 10 * Millisecond, "not fitted unless tuned so");

    SetRange(ArbQuantityGain, Keep, {100.0f, ArbRangeRelativeOffset});
    EXPECT_EQ(RunRange(), 0) << "more than the sensor has is allowed";
    ExpectGains(1.0f, 116.0f);

    SetRange(ArbQuantityGain, {20.0f, ArbRangeAbsolute}, Keep);
    EXPECT_EQ(RunRange(), 1);
    EXPECT_TRUE(m_log.Has(LevelError, "cannot apply new range: min gain 20.000 larger than max gain 16.000"));
    SetRange(ArbQuantityGain, {0.5f, ArbRangeAbsolute}, Keep);
    EXPECT_EQ(RunRange(), 1);
    EXPECT_TRUE(m_log.Has(LevelError, "cannot apply new range: min gain 0.500 smaller than sensor min gain 1.000"));
    EXPECT_EQ(Run(BankIDArbitrationRange, 99), 6);
    EXPECT_TRUE(m_log.Has(LevelError, "did not find data bank 99"));
}

TEST_F(RangeTest, TimeValuesAreCutToWholeNanosecondsEvenAsFactors)
{
    SetRange(ArbQuantityTime, {2.9f, ArbRangeRelativeFactor}, {1.5f, ArbRangeRelativeFactor});
    EXPECT_EQ(RunRange(), 0);
    ExpectTimes(200 * Microsecond, 33 * Millisecond);
    SetRange(ArbQuantityTime, {50000.9f, ArbRangeRelativeOffset}, {20e6f, ArbRangeAbsolute});
    EXPECT_EQ(RunRange(), 0);
    ExpectTimes(150 * Microsecond, 20 * Millisecond);

    SetRange(ArbQuantityTime, {0.5f, ArbRangeRelativeFactor}, Keep);
    EXPECT_EQ(RunRange(), 1);
    EXPECT_TRUE(m_log.Has(LevelError, "cannot apply new range: min time 0 smaller than sensor min time 50000"));
    SetRange(ArbQuantityTime, Keep, {0.5f, ArbRangeRelativeFactor});
    EXPECT_EQ(RunRange(), 1);
    EXPECT_TRUE(m_log.Has(LevelError, "cannot apply new range: min time 100000 larger than max time 0"));
    SetRange(ArbQuantityTime, Keep, {-1.0f, ArbRangeAbsolute});
    EXPECT_EQ(RunRange(), 1) << "less than nothing is nothing";
    SetRange(ArbQuantityTime, Keep, {2e8f, ArbRangeAbsolute});
    EXPECT_EQ(RunRange(), 1);
    EXPECT_TRUE(m_log.Has(LevelError, "cannot apply new range: max time 200000000 larger than sensor max time "
                                      "100000000"));
}

TEST_F(RangeTest, TimesOfTheSameFloatSnapToTheSensor)
{
    SetRange(ArbQuantityTime, Keep, Keep);
    m_in.range.end.time = 100000001;
    EXPECT_EQ(RunRange(), 0);
    ExpectTimes(100 * Microsecond, 100 * Millisecond);

    // A start that snaps ends the tests, so an end beyond the sensor passes.
    m_in.sensorRange.minTime = 40 * Millisecond;
    m_in.range.start.time    = 39999999;
    m_in.range.end.time      = 200 * Millisecond;
    EXPECT_EQ(RunRange(), 0);
    ExpectTimes(40 * Millisecond, 200 * Millisecond);
}

TEST_F(RangeTest, IndexBoundsAreSplitByTheLastTable)
{
    SetRange(ArbQuantityIndex, Keep, {IndexOf(2e7), ArbRangeAbsolute});
    EXPECT_EQ(RunRange(), 1);
    EXPECT_TRUE(m_log.Has(LevelError, "cannot retrieve last used table"));

    SetTable({{kirodbarbitrationtable::AECExpIncTime, 1.0f, 100 * Microsecond},
              {kirodbarbitrationtable::AECExpIncTime, 1.0f, 10 * Millisecond},
              {kirodbarbitrationtable::AECExpIncGain, 16.0f, 10 * Millisecond}});
    ASSERT_EQ(RunTable(), 0);
    EXPECT_EQ(RunRange(), 0);
    EXPECT_EQ(m_out.range.start.time, 100 * Microsecond);
    EXPECT_NEAR(m_out.range.end.gain, 2.0f, 0.001f);
    EXPECT_EQ(m_out.range.end.time, 10 * Millisecond);
    EXPECT_NEAR(m_out.range.end.indx, IndexOf(2e7), 0.01f);

    SetRange(ArbQuantityIndex, {1.0f, ArbRangeRelativeOffset}, {-1.0f, ArbRangeRelativeOffset});
    EXPECT_EQ(RunRange(), 0);
    EXPECT_NEAR(static_cast<DOUBLE>(m_out.range.start.exposure), 103000.0, 20.0);
    EXPECT_NEAR(static_cast<DOUBLE>(m_out.range.end.exposure), 528000000.0 / 1.03, 1e5);

    const FLOAT start = m_in.range.start.indx;
    for (const auto& [newStart, newEnd] : {std::pair{start - 1.0f, 300.0f}, {310.0f, 300.0f}, {200.0f, 500.0f}})
    {
        SetRange(ArbQuantityIndex, {newStart, ArbRangeAbsolute}, {newEnd, ArbRangeAbsolute});
        EXPECT_EQ(RunRange(), 1) << newStart << " " << newEnd;
    }
    EXPECT_TRUE(m_log.Has(LevelError, "cannot apply; calculated indices 310.0 300.0 keeping indices 155.8 445.8"));
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
    UtilUpdateExposureAndIndexLimits(&range, 0);
    EXPECT_NEAR(range.start.indx, std::log(100005.0) / std::log(1.03), 0.001) << "an index zero of 0 counts as 1";
}

TEST_F(RangeTest, CompensationMovesTheOtherQuantity)
{
    // A longer minimum time cannot lower the gain below the sensor's; half the maximum time takes twice the gain.
    m_range.value.handling.compensation = {TRUE, ArbQuantityTime};
    SetRange(ArbQuantityTime, {200000.0f, ArbRangeAbsolute}, {16500000.0f, ArbRangeAbsolute});
    EXPECT_EQ(RunRange(), 0);
    ExpectGains(1.0f, 32.0f);
    EXPECT_EQ(m_out.range.end.exposure, 528000000u);

    m_range.value.handling.compensation.compensationQuantity = ArbQuantityGain;
    SetRange(ArbQuantityGain, {4.0f, ArbRangeAbsolute}, {8.0f, ArbRangeAbsolute});
    EXPECT_EQ(RunRange(), 0);
    ExpectTimes(50 * Microsecond, 66 * Millisecond);
    SetRange(ArbQuantityGain, {1.0f, ArbRangeAbsolute}, {4.0f, ArbRangeAbsolute});
    EXPECT_EQ(RunRange(), 0);
    ExpectTimes(100 * Microsecond, 100 * Millisecond);
}

TEST_F(RangeTest, StaggeredTimeGrowsWithWhatLongLeaves)
{
    SetRange(ArbQuantityTime, Keep, {33e6f, ArbRangeAbsolute});
    m_in.exposures[AECAlgoExposureLong] = Set(1.0f, 15 * Millisecond);
    EXPECT_EQ(RunRange(ArbCtrlSHDRTimeRange), 0);
    ExpectTimes(100 * Microsecond, 33 * Millisecond);

    // Long may take 20 ms and takes 15; Safe had 8.
    m_in.range.end.time = 20 * Millisecond;
    m_in.expType        = AECAlgoExposureLong;
    SetRange(ArbQuantityTime, Keep, Keep);
    EXPECT_EQ(RunRange(), 0);
    m_in.range.end.time = 8 * Millisecond;
    m_in.expType        = AECAlgoExposureSafe;
    EXPECT_EQ(RunRange(), 0);
    SetRange(ArbQuantityTime, Keep, {33e6f, ArbRangeAbsolute});
    EXPECT_EQ(RunRange(ArbCtrlSHDRTimeRange), 0);
    ExpectTimes(100 * Microsecond, 13 * Millisecond);
    m_in.range.end.time = 30 * Millisecond;
    EXPECT_EQ(RunRange(ArbCtrlSHDRTimeRange), 0) << "never shorter than it is";
    ExpectTimes(100 * Microsecond, 30 * Millisecond);
    m_in.range.end.time = 8 * Millisecond;
    SetRange(ArbQuantityTime, Keep, {10e6f, ArbRangeAbsolute});
    EXPECT_EQ(RunRange(ArbCtrlSHDRTimeRange), 0);
    ExpectTimes(100 * Microsecond, 10 * Millisecond);

    SetRange(ArbQuantityTime, Keep, {2.0f, ArbRangeRelativeFactor});
    EXPECT_EQ(RunRange(ArbCtrlSHDRTimeRange), 1);
    EXPECT_TRUE(m_log.Has(LevelError, "expected adjustment to be absolute instead of 1 2.000000"));
    SetRange(ArbQuantityTime, Keep, {33e6f, ArbRangeAbsolute});
    m_in.exposures[AECAlgoExposureLong].time = 0;
    EXPECT_EQ(RunRange(ArbCtrlSHDRTimeRange), 1);
    EXPECT_TRUE(m_log.Has(LevelError, "long exposure is zero"));
    m_in.expType = AECAlgoExposureLong;
    EXPECT_EQ(RunRange(ArbCtrlSHDRTimeRange), 1);
    EXPECT_TRUE(m_log.Has(LevelError, "SHDR time range is not meant for long exposure"));
}

TEST_F(RangeTest, FailedCallKeepsTheRangeThatStaggeredTimesGrowFrom)
{
    SetRange(ArbQuantityTime, Keep, Keep);
    m_in.range.end.time = 8 * Millisecond;
    EXPECT_EQ(RunRange(), 0);
    SetRange(ArbQuantityTime, Keep, {2e8f, ArbRangeAbsolute});
    EXPECT_EQ(RunRange(), 1);
    m_in.range.end.time                 = 5 * Millisecond;
    m_in.exposures[AECAlgoExposureLong] = Set(1.0f, 15 * Millisecond);
    EXPECT_EQ(RunRange(ArbCtrlSHDRTimeRange), 1) << "beyond the sensor is refused after the rewriting, not before";
    SetRange(ArbQuantityTime, Keep, {33e6f, ArbRangeAbsolute});
    EXPECT_EQ(RunRange(ArbCtrlSHDRTimeRange), 0);
    ExpectTimes(100 * Microsecond, 8 * Millisecond);
}

TEST_F(RangeTest, PrecisionFlashNarrowsTheRangeOfItsID)
{
    m_range.dataID = 17;
    m_context.m_pBankManager->SetBankTuning(BankIDArbitrationRange, nullptr, &m_range, 1);
    m_in.bFPrecisionFlashFlag = TRUE;
    m_in.precisionFlashInfo   = {0.5f, 2 * Millisecond, 20 * Millisecond, 3 * Millisecond};
    SetRange(ArbQuantityTime, {1000000.0f, ArbRangeRelativeOffset}, {33e6f, ArbRangeAbsolute});
    EXPECT_EQ(RunRange(), 0);
    ExpectTimes(6 * Millisecond, 20 * Millisecond);  // 3 ms of rolling shutter over a share of 0.5

    // Cutting the end makes the start absolute as well.
    SetRange(ArbQuantityTime, {7000000.0f, ArbRangeRelativeOffset}, {33e6f, ArbRangeAbsolute});
    EXPECT_EQ(RunRange(), 0);
    ExpectTimes(7 * Millisecond, 20 * Millisecond);
    SetRange(ArbQuantityTime, {7000000.0f, ArbRangeRelativeOffset}, {15e6f, ArbRangeAbsolute});
    EXPECT_EQ(RunRange(), 0);
    ExpectTimes(7100 * Microsecond, 15 * Millisecond);

    m_in.precisionFlashInfo.minFlashTime = 15 * Millisecond;
    EXPECT_EQ(RunRange(), 1);
    m_in.bFPrecisionFlashFlag = FALSE;
    EXPECT_EQ(RunRange(), 0);
}

TEST_F(RangeTest, MasterTimeNeedsAPeer)
{
    EXPECT_EQ(RunRange(ArbCtrlMasterTime), 6);
    EXPECT_TRUE(m_log.Has(LevelError, "no peer info"));
}
