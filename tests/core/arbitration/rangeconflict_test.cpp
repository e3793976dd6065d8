// Fitting an exposure into a new range, and what gives way when it does not fit.

#include "tests/core/arbitration/arbitrationfixture.h"

using namespace kirodbarbitrationrange;

namespace
{

class RangeConflict : public ArbitrationTest
{
protected:
    RangeConflict()
    {
        m_range.value.handling.arbitration.enableArbitration = TRUE;
    }

    /// A range of absolute gains or times.
    KiroResult RunAbsolute(ArbExposureQuantity quantity, DOUBLE start, DOUBLE end,
                           RangeConflictHandlingType handling = Discard)
    {
        m_range.value.quantity                              = quantity;
        m_range.value.start                                 = {static_cast<FLOAT>(start), ArbRangeAbsolute};
        m_range.value.end                                   = {static_cast<FLOAT>(end), ArbRangeAbsolute};
        m_range.value.handling.arbitration.conflictHandling = handling;
        return RunRange();
    }

    /// Gain 4 at 10 ms in gains of 1 to 4, with at most 5 ms: a gain of 8 would be needed.
    KiroResult RunTooBright(RangeConflictHandlingType handling)
    {
        Ask(4.0f, 10 * Millisecond);
        m_in.range.end.gain = 4.0f;
        return RunAbsolute(ArbQuantityTime, 100e3, 5e6, handling);
    }
};

} // namespace

TEST_F(RangeConflict, GainAndTimeMakeUpForOneAnother)
{
    EXPECT_EQ(RunAbsolute(ArbQuantityGain, 2.0, 16.0), 0);
    ExpectExposure(2.0f, 5 * Millisecond);
    EXPECT_EQ(m_out.exposureSet.exposure, 10000000u);
    EXPECT_NEAR(m_out.exposureSet.indx, IndexOf(1e7), 0.01f);
    EXPECT_EQ(RunAbsolute(ArbQuantityTime, 100e3, 4e6), 0);
    ExpectExposure(2.5f, 4 * Millisecond);
    ExpectTimes(100 * Microsecond, 4 * Millisecond);
    Ask(8.0f, 10 * Millisecond);
    EXPECT_EQ(RunAbsolute(ArbQuantityGain, 1.0, 4.0), 0);
    ExpectExposure(4.0f, 20 * Millisecond);
    EXPECT_EQ(RunAbsolute(ArbQuantityTime, 20e6, 33e6), 0);
    ExpectExposure(4.0f, 20 * Millisecond);

    // The correction is the range's, not the exposure's.
    m_in.range.start.corr                     = 2.0f;
    m_in.exposures[AECAlgoExposureSafe].corr  = 1.0f;
    EXPECT_EQ(RunAbsolute(ArbQuantityTime, 100e3, 5e6), 0);
    ExpectExposure(8.0f, 5 * Millisecond);
    EXPECT_EQ(m_out.exposureSet.corr, 2.0f);
    EXPECT_EQ(m_out.exposureSet.exposure, 80000000u);
}

TEST_F(RangeConflict, GainWithinTheMarginOfALimitStays)
{
    Ask(1.99995f, 10 * Millisecond);
    EXPECT_EQ(RunAbsolute(ArbQuantityGain, 2.0, 16.0, Ignore), 0);
    ExpectExposure(1.99995f, 10 * Millisecond);
    Ask(1.9998f, 10 * Millisecond);
    EXPECT_EQ(RunAbsolute(ArbQuantityGain, 2.0, 16.0, Ignore), 0);
    ExpectExposure(2.0f, 9999000);
    // 5 ms need a gain of 1.99996, which snaps to the limit of 2.
    m_in.range.start.gain = 2.0f;
    Ask(1.0f, 9999800);
    EXPECT_EQ(RunAbsolute(ArbQuantityTime, 5e6, 33e6), 0);
    ExpectExposure(2.0f, 5 * Millisecond);
    EXPECT_EQ(m_out.exposureSet.gain, 2.0f);
}

TEST_F(RangeConflict, TooBrightRequestIsHandledAsTuned)
{
    EXPECT_EQ(RunTooBright(ModifyTimeRange), 0);
    ExpectExposure(4.0f, 10 * Millisecond);
    ExpectTimes(100 * Microsecond, 10 * Millisecond);
    ExpectGains(1.0f, 4.0f);
    EXPECT_EQ(m_out.range.end.exposure, 40000000u);
    EXPECT_TRUE(m_log.Has(LevelWarning, "tentative before conflict resolution gain 8.000 out of gain 1.000 4.000"));

    EXPECT_EQ(RunTooBright(ModifyGainRange), 0);
    ExpectExposure(8.0f, 5 * Millisecond);
    ExpectTimes(100 * Microsecond, 5 * Millisecond);
    ExpectGains(1.0f, 8.0f);

    EXPECT_EQ(RunTooBright(ForceExposure), 0);
    ExpectExposure(4.0f, 5 * Millisecond);
    EXPECT_EQ(m_out.exposureSet.exposure, 20000000u);
    EXPECT_TRUE(m_log.Has(LevelWarning, "warning: using Force option, ranges 1.000 4.000 100000 5000000 output 4.000 "
                                        "5000000"));

    EXPECT_EQ(RunTooBright(Ignore), 0);
    ExpectExposure(8.0f, 5 * Millisecond);
    ExpectTimes(100 * Microsecond, 5 * Millisecond);
    ExpectGains(1.0f, 4.0f);

    EXPECT_EQ(RunTooBright(Discard), 1);
    ExpectExposure(4.0f, 10 * Millisecond, "as asked");
    EXPECT_EQ(RunTooBright(static_cast<RangeConflictHandlingType>(9)), 1);
    EXPECT_TRUE(m_log.Has(LevelError, "unknown handling 9"));

    m_in.bIsConvRange = TRUE;
    EXPECT_EQ(RunTooBright(Discard), 0) << "limits have no exposure to fit";
    ExpectTimes(100 * Microsecond, 5 * Millisecond);
    ExpectExposure(8.0f, 5 * Millisecond);
}

TEST_F(RangeConflict, EmptyTimeRangeIsAConflictOfItsOwn)
{
    m_in.range.start.time = 20 * Millisecond;
    m_in.range.end.time   = 15 * Millisecond;
    EXPECT_EQ(RunAbsolute(ArbQuantityGain, 0.0, 16.0), 1) << "the sensor's least gain";
    m_in.sensorRange.minGain = 0.0f;
    EXPECT_EQ(RunAbsolute(ArbQuantityGain, 0.0, 16.0), 1);
    EXPECT_TRUE(m_log.Has(LevelWarning, "tentative before conflict resolution time 20000000 out of time 20000000 "
                                        "15000000"));
    EXPECT_TRUE(m_log.Has(LevelWarning, "discard handling"));
    m_in.bIsConvRange = TRUE;
    EXPECT_EQ(RunAbsolute(ArbQuantityGain, 0.0, 16.0), 0);
    ExpectExposure(0.5f, 20 * Millisecond);
}

TEST_F(RangeConflict, ResolutionWidensOnlyAsFarAsTheSensorGoes)
{
    const KIROSensorRange sensor{0.5f, 64.0f, 4 * Millisecond, 40 * Millisecond};
    const struct
    {
        RangeConflictHandlingType solution;
        FLOAT                     gain;
        UINT64                    time;
        KiroResult                result;
        FLOAT                     expectedGain;
        UINT64                    expectedTime;
        FLOAT                     startGain;
        FLOAT                     endGain;
        UINT64                    startTime;
        UINT64                    endTime;
    } cases[] = {
        // The range is gains of 1 to 4 and 8 to 20 ms.
        {ModifyTimeRange, 2.0f, 6000000, 0, 2.0f, 6000000, 1.0f, 4.0f, 6000000, 20000000},
        {ModifyTimeRange, 2.0f, 3000000, 1, 2.0f, 3000000, 1.0f, 4.0f, 3000000, 20000000},
        {ModifyTimeRange, 2.0f, 30000000, 0, 2.0f, 30000000, 1.0f, 4.0f, 8000000, 30000000},
        {ModifyTimeRange, 2.0f, 50000000, 1, 2.0f, 50000000, 1.0f, 4.0f, 8000000, 50000000},
        {ModifyTimeRange, 0.5f, 10000000, 0, 1.0f, 5000000, 1.0f, 4.0f, 5000000, 20000000},
        {ModifyTimeRange, 0.25f, 12000000, 1, 0.25f, 12000000, 1.0f, 4.0f, 3000000, 20000000},
        {ModifyTimeRange, 6.0f, 20000000, 0, 4.0f, 30000000, 1.0f, 4.0f, 8000000, 30000000},
        {ModifyTimeRange, 16.0f, 20000000, 1, 16.0f, 20000000, 1.0f, 4.0f, 8000000, 80000000},
        {ModifyTimeRange, 6.0f, 8000000, 0, 4.0f, 12000000, 1.0f, 4.0f, 8000000, 20000000},
        {ModifyGainRange, 0.75f, 10000000, 0, 0.75f, 10000000, 0.75f, 4.0f, 8000000, 20000000},
        {ModifyGainRange, 0.25f, 10000000, 1, 0.25f, 10000000, 0.25f, 4.0f, 8000000, 20000000},
        {ModifyGainRange, 90.0f, 10000000, 0, 90.0f, 10000000, 1.0f, 90.0f, 8000000, 20000000},
        {ModifyGainRange, 3.0f, 40000000, 0, 6.0f, 20000000, 1.0f, 6.0f, 8000000, 20000000},
        {ModifyGainRange, 1.5f, 4000000, 0, 0.75f, 8000000, 0.75f, 4.0f, 8000000, 20000000},
        {ModifyGainRange, 1.5f, 2000000, 1, 1.5f, 8000000, 0.375f, 4.0f, 8000000, 20000000},
        {ForceExposure, 5.0f, 3000000, 0, 4.0f, 8000000, 1.0f, 4.0f, 8000000, 20000000},
        {ForceExposure, 0.5f, 30000000, 0, 1.0f, 20000000, 1.0f, 4.0f, 8000000, 20000000},
    };
    for (const auto& rCase : cases)
    {
        KIROExposureRange range{Set(1.0f, 8 * Millisecond), Set(4.0f, 20 * Millisecond)};
        FLOAT             gain    = rCase.gain;
        UINT64            time    = rCase.time;
        const std::string message = std::to_string(rCase.solution) + ": gain " + std::to_string(rCase.gain) + " time " +
                                    std::to_string(rCase.time);
        EXPECT_EQ(UtilResolveRangeConflicts(&range, &sensor, &gain, &time, rCase.solution), rCase.result) << message;
        EXPECT_EQ(gain, rCase.expectedGain) << message;
        EXPECT_EQ(time, rCase.expectedTime) << message;
        EXPECT_EQ(range.start.gain, rCase.startGain) << message;
        EXPECT_EQ(range.end.gain, rCase.endGain) << message;
        EXPECT_EQ(range.start.time, rCase.startTime) << message;
        EXPECT_EQ(range.end.time, rCase.endTime) << message;
    }
    EXPECT_TRUE(m_log.Has(LevelError, "conflict: range time resolution pushed time 3000000 below sensor min 4000000"));
    EXPECT_TRUE(m_log.Has(LevelError, "conflict: range time resolution pushed time 80000000 above sensor max 40000000"));
    EXPECT_TRUE(m_log.Has(LevelError, "conflict: range gain resolution pushed gain 0.375 below sensor min 0.500"));
}
