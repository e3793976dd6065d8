// Fitting an exposure into a new range, and what gives way when it does not fit.

#include "tests/core/arbitration/arbitrationfixture.h"

using namespace kirodbarbitrationrange;

namespace
{

class RangeConflict : public ArbitrationTest
{
protected:
    /// A range of absolute gains or times that asks for a fit.
    KiroResult Fit(ArbExposureQuantity quantity, FLOAT start, FLOAT end, RangeConflictHandlingType handling = Discard)
    {
        m_range.value = {quantity, {start, ArbRangeAbsolute}, {end, ArbRangeAbsolute}, {{}, {TRUE, handling}}};
        return Run(BankIDArbitrationRange, m_range.dataID);
    }

    VOID ExpectFit(ArbExposureQuantity quantity, FLOAT start, FLOAT end, FLOAT gain, UINT64 time)
    {
        EXPECT_EQ(Fit(quantity, start, end), 0);
        ExpectExposure(gain, time);
    }

    /// Gain 4 at 10 ms in gains of 1 to 4, with at most 5 ms: a gain of 8 would be needed.
    KiroResult FitTooBright(RangeConflictHandlingType handling)
    {
        m_rAsked            = Set(4.0f, 10 * Millisecond);
        m_in.range.end.gain = 4.0f;
        return Fit(ArbQuantityTime, 100e3f, 5e6f, handling);
    }
};

}  // namespace

TEST_F(RangeConflict, GainAndTimeMakeUpForOneAnother)
{
    ExpectFit(ArbQuantityGain, 2.0f, 16.0f, 2.0f, 5 * Millisecond);
    EXPECT_NEAR(m_out.exposureSet.indx, IndexOf(1e7), 0.01f);
    ExpectFit(ArbQuantityTime, 100e3f, 4e6f, 2.5f, 4 * Millisecond);
    m_rAsked = Set(8.0f, 10 * Millisecond);
    ExpectFit(ArbQuantityGain, 1.0f, 4.0f, 4.0f, 20 * Millisecond);
    ExpectFit(ArbQuantityTime, 20e6f, 33e6f, 4.0f, 20 * Millisecond);

    // Within the margin a gain outside stays; one that follows from a time snaps.
    for (FLOAT gain : {1.99995f, 16.00005f})
    {
        m_rAsked = Set(gain, 5 * Millisecond);
        EXPECT_EQ(Fit(ArbQuantityGain, 2.0f, 16.0f, Ignore), 0);
        EXPECT_EQ(m_out.exposureSet.gain, gain);
    }
    m_in.range.start.gain = 2.0f;
    for (FLOAT gain : {2.0f, 16.0f})
    {
        m_rAsked          = Set(gain, 5 * Millisecond);
        m_rAsked.exposure = static_cast<UINT64>(gain * 5e6f) + ((gain == 2.0f) ? -200 : 200);
        m_rAsked.time     = (gain == 2.0f) ? 1 : 6 * Millisecond;
        EXPECT_EQ(Fit(ArbQuantityTime, 5e6f, 5e6f), 0);
        EXPECT_EQ(m_out.exposureSet.gain, gain);
    }

    // The correction is the range's.
    m_in.range.start.corr = 2.0f;
    m_rAsked              = Set(8.0f, 10 * Millisecond);
    ExpectFit(ArbQuantityTime, 100e3f, 5e6f, 8.0f, 5 * Millisecond);
    EXPECT_EQ(m_out.exposureSet.exposure, 80000000u);
}

TEST_F(RangeConflict, TooBrightRequestIsHandledAsTuned)
{
    // The result, and the end of the range, which was a gain of 4 and 5 ms.
    const std::tuple<RangeConflictHandlingType, FLOAT, UINT64, FLOAT, UINT64> cases[] = {
        {ModifyTimeRange, 4.0f, 10, 4.0f, 10},
        {ModifyGainRange, 8.0f, 5, 8.0f, 5},
        {ForceExposure, 4.0f, 5, 4.0f, 5},
        {Ignore, 8.0f, 5, 4.0f, 5},
    };
    for (const auto& [handling, gain, time, endGain, endTime] : cases)
    {
        SCOPED_TRACE(handling);
        EXPECT_EQ(FitTooBright(handling), 0);
        ExpectExposure(gain, time * Millisecond);
        ExpectRange(1.0f, endGain, 100 * Microsecond, endTime * Millisecond);
        EXPECT_EQ(m_out.exposureSet.exposure, static_cast<UINT64>(gain) * time * Millisecond);
        EXPECT_EQ(m_out.range.end.exposure, static_cast<UINT64>(endGain) * endTime * Millisecond);
    }
    EXPECT_TRUE(m_log.Has(LevelWarning, "tentative before conflict resolution gain 8.000 out of gain 1.000 4.000"));
    EXPECT_EQ(FitTooBright(Discard), 1);
    ExpectExposure(4.0f, 10 * Millisecond, "as asked");
    EXPECT_EQ(FitTooBright(static_cast<RangeConflictHandlingType>(9)), 1);
    m_in.bIsConvRange = TRUE;
    EXPECT_EQ(FitTooBright(Discard), 0) << "limits have no exposure to fit";
    ExpectExposure(8.0f, 5 * Millisecond);
}

TEST_F(RangeConflict, EmptyTimeRangeIsAConflictOfItsOwn)
{
    m_in.range.start.time = 20 * Millisecond;
    m_in.range.end.time   = 15 * Millisecond;
    m_rAsked              = Set(2.0f, 10 * Millisecond);
    EXPECT_EQ(Fit(ArbQuantityGain, 1.0f, 16.0f), 1);
    EXPECT_TRUE(m_log.HasPart(LevelWarning, "tentative before conflict resolution time 20000000 out of time 20000000"));
    m_in.bIsConvRange = TRUE;
    ExpectFit(ArbQuantityGain, 1.0f, 16.0f, 1.0f, 20 * Millisecond);
}

TEST_F(RangeConflict, ResolutionWidensOnlyAsFarAsTheSensorGoes)
{
    // The range is gains of 1 to 4 and 8 to 20 ms, the sensor 0.5 and up and 4 to 40 ms. Times in ms.
    const auto expect = [](RangeConflictHandlingType solution, FLOAT gain, UINT64 time, KiroResult result,
                           FLOAT newGain, UINT64 newTime, FLOAT startGain, FLOAT endGain, UINT64 startTime,
                           UINT64 endTime)
    {
        const KIROSensorRange sensor{0.5f, 64.0f, 4 * Millisecond, 40 * Millisecond};
        KIROExposureRange     range{Set(1.0f, 8 * Millisecond), Set(4.0f, 20 * Millisecond)};
        const std::string     message = "gain " + std::to_string(gain) + " time " + std::to_string(time);
        time *= Millisecond;
        EXPECT_EQ(UtilResolveRangeConflicts(&range, &sensor, &gain, &time, solution), result) << message;
        EXPECT_EQ(gain, newGain) << message;
        EXPECT_EQ(time, newTime * Millisecond) << message;
        EXPECT_EQ(range.start.gain, startGain) << message;
        EXPECT_EQ(range.end.gain, endGain) << message;
        EXPECT_EQ(range.start.time, startTime * Millisecond) << message;
        EXPECT_EQ(range.end.time, endTime * Millisecond) << message;
    };
    expect(ModifyTimeRange, 2.0f, 6, 0, 2.0f, 6, 1.0f, 4.0f, 6, 20);
    expect(ModifyTimeRange, 2.0f, 3, 1, 2.0f, 3, 1.0f, 4.0f, 3, 20);
    expect(ModifyTimeRange, 2.0f, 30, 0, 2.0f, 30, 1.0f, 4.0f, 8, 30);
    expect(ModifyTimeRange, 2.0f, 50, 1, 2.0f, 50, 1.0f, 4.0f, 8, 50);
    expect(ModifyTimeRange, 0.5f, 10, 0, 1.0f, 5, 1.0f, 4.0f, 5, 20);
    expect(ModifyTimeRange, 0.5f, 20, 0, 1.0f, 10, 1.0f, 4.0f, 8, 20);
    expect(ModifyTimeRange, 0.25f, 12, 1, 0.25f, 12, 1.0f, 4.0f, 3, 20);
    expect(ModifyTimeRange, 6.0f, 8, 0, 4.0f, 12, 1.0f, 4.0f, 8, 20);
    expect(ModifyTimeRange, 16.0f, 20, 1, 16.0f, 20, 1.0f, 4.0f, 8, 80);
    expect(ModifyGainRange, 0.75f, 10, 0, 0.75f, 10, 0.75f, 4.0f, 8, 20);
    expect(ModifyGainRange, 0.25f, 10, 1, 0.25f, 10, 0.25f, 4.0f, 8, 20);
    expect(ModifyGainRange, 90.0f, 10, 0, 90.0f, 10, 1.0f, 90.0f, 8, 20);
    expect(ModifyGainRange, 3.0f, 40, 0, 6.0f, 20, 1.0f, 6.0f, 8, 20);
    expect(ModifyGainRange, 1.5f, 40, 0, 3.0f, 20, 1.0f, 4.0f, 8, 20);
    expect(ModifyGainRange, 1.5f, 4, 0, 0.75f, 8, 0.75f, 4.0f, 8, 20);
    expect(ModifyGainRange, 1.5f, 2, 1, 1.5f, 8, 0.375f, 4.0f, 8, 20);
    expect(ForceExposure, 5.0f, 3, 0, 4.0f, 8, 1.0f, 4.0f, 8, 20);
    expect(ForceExposure, 0.5f, 30, 0, 1.0f, 20, 1.0f, 4.0f, 8, 20);
}
