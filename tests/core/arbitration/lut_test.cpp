// Look-up tables: a tuned gain or time, the flicker grid, and conditions.

#include "tests/core/arbitration/arbitrationfixture.h"

using namespace kirodbarbitrationlut;

namespace
{

class LUTTest : public ArbitrationTest
{
protected:
    /// A key below 2 looks up 5 ms, others what the test says. Asks for gain 4 at 10 ms; the first key is the gain.
    LUTTest()
    {
        m_rAsked                     = Set(4.0f, 10 * Millisecond);
        m_lut.value.keyType1         = {SourceArbitration, LUTKeyGain, BankIDInvalid, 0};
        m_lut.value.keyType2         = {SourceBank, LUTKeyGain, BankIDTriggers, 100};
        m_lut.value.triggerDataCount = 2;
        m_lut.value.triggerData      = m_zones;
    }

    KiroResult RunLUT(DOUBLE data, LUTOutType outType = ArbLutOutTime, ArbitrationControl control = ArbCtrlCustomLUT)
    {
        m_high.triggerData  = static_cast<FLOAT>(data);
        m_lut.value.outType = outType;
        return Run(BankIDArbitrationLUT, m_lut.dataID, control);
    }

    VOID ExpectLUT(DOUBLE data, LUTOutType outType, FLOAT gain, UINT64 time)
    {
        EXPECT_EQ(RunLUT(data, outType), 0) << data;
        ExpectExposure(gain, time, std::to_string(data));
        EXPECT_EQ(m_out.range.end.time, m_in.range.end.time) << "a LUT does not change the range";
    }

    /// Refuse what lies outside the current range, or clamp it.
    VOID Enforce(BOOL bClamp)
    {
        m_lut.value.conflictHandling = {{TRUE, bClamp}, {TRUE, bClamp}, ApplyIfValid};
    }

    TriggerSystemEndLevelType       m_low{{0.0f, 1.0f}, 5e6f};
    TriggerSystemEndLevelType       m_high{{0.0f, 1.0f}, 0.0f};
    TwoLevelTriggerSystemLevel1Type m_zones[2] = {{{0.0f, 2.0f}, 1, 0, &m_low}, {{2.0f, 100.0f}, 1, 0, &m_high}};
};

}  // namespace

TEST_F(LUTTest, LookedUpQuantityKeepsTheExposure)
{
    ExpectLUT(20e6, ArbLutOutTime, 2.0f, 20 * Millisecond);
    EXPECT_EQ(m_out.exposureSet.exposure, 40000000u);
    EXPECT_NEAR(m_out.exposureSet.indx, IndexOf(4e7), 0.01f);
    ExpectLUT(8.0, ArbLutOutGain, 8.0f, 5 * Millisecond);
    Enforce(FALSE);
    m_in.range.end.gain = 3.0f;
    EXPECT_EQ(RunLUT(8.0, ArbLutOutGain), 1);
    ExpectLUT(4.0, ArbLutOutGain, 4.0f, 10 * Millisecond);  // what is so already is not tested
}

TEST_F(LUTTest, KeysComeFromTheExposureOrABank)
{
    const auto lookUp = [this](const LUTKeyType& rKey, const KIROExposureSetType& rAsked)
    {
        m_lut.value.keyType1 = rKey;
        m_rAsked             = rAsked;
        return (RunLUT(20e6) == 0) ? m_out.exposureSet.time / Millisecond : 0;
    };
    m_in.bIsConvRange = TRUE;
    m_context.SetTrigger(101, 3.0f);
    EXPECT_EQ(lookUp({SourceArbitration, LUTKeyTime, {}, 0}, {1.0f, 3, 1.0f, 1.0f, 1, 0, 0.0f, 0, 0}), 20u);
    EXPECT_EQ(lookUp({SourceArbitration, LUTKeyExposure, {}, 0}, {1.0f, 1, 1.0f, 1.0f, 3, 0, 0.0f, 0, 0}), 20u);
    EXPECT_EQ(lookUp({SourceArbitration, LUTKeyIndex, {}, 0}, {1.0f, 1, 3.0f, 1.0f, 1, 0, 0.0f, 0, 0}), 20u);
    EXPECT_EQ(lookUp({SourceBank, LUTKeyGain, BankIDTriggers, 101}, {1.0f, 1, 1.0f, 1.0f, 1, 0, 0.0f, 0, 0}), 20u);
    EXPECT_EQ(lookUp({SourceBank, LUTKeyGain, BankIDTriggers, 102}, {3.0f, 3, 3.0f, 1.0f, 3, 0, 0.0f, 0, 0}), 5u);
    EXPECT_EQ(lookUp({SourceArbitration, static_cast<KeyArbitrationType>(4), {}, 0}, Set(1.0f, 1)), 0u);
    EXPECT_EQ(lookUp({static_cast<KeySource>(2), LUTKeyGain, {}, 0}, Set(1.0f, 1)), 0u);
    EXPECT_EQ(lookUp({SourceBank, LUTKeyGain, BankIDMetering1D, 7}, Set(1.0f, 1)), 0u);
}

TEST_F(LUTTest, FlickerTimeThatDoesNotFitTakesTheNeighbouringPeriod)
{
    Enforce(FALSE);
    const auto run = [this](UINT64 startTime, UINT64 endTime, UINT64 askedTime, DOUBLE data,
                            ArbitrationControl control = ArbCtrlFlicker50LUT)
    {
        m_in.range.start.time = startTime * Millisecond;
        m_in.range.end.time   = endTime * Millisecond;
        m_rAsked.time         = askedTime * Millisecond;
        return (RunLUT(data, ArbLutOutTime, control) == 0) ? m_out.exposureSet.time : 0;
    };
    EXPECT_EQ(run(1, 33, 10, 20e6), 20000000u) << "fits";
    EXPECT_EQ(run(1, 15, 10, 20e6), 10000000u) << "a period less";
    EXPECT_EQ(run(1, 15, 10, 16666666.0, ArbCtrlFlicker60LUT), 8333333u);
    ExpectExposure(4.8000002f, 8333333, "keeps the exposure");
    EXPECT_EQ(run(1, 15, 10, 20e6, ArbCtrlCustomLUT), 0u) << "no grid";
    EXPECT_EQ(run(22, 33, 25, 20e6), 30000000u) << "a period more, as the time stood above";
    EXPECT_EQ(run(12, 33, 9, 10e6), 20000000u) << "never none";
    EXPECT_EQ(run(12, 33, 9, 9.9e6), 0u) << "below a period the grid is not tried";
    m_in.bIsConvRange = TRUE;
    EXPECT_EQ(run(12, 33, 9, 10e6), 20000000u) << "tried for limits as well";
    EXPECT_EQ(run(12, 33, 9, 9.9e6), 9900000u) << "which resolve no conflicts at the end";
}

TEST_F(LUTTest, ConditionComparesWithTheExposureAsked)
{
    Enforce(TRUE);
    ApplyConditionType& rCondition = m_lut.value.conflictHandling.applyCondition;
    for (const auto& [condition, ifLarger, ifSmaller] :
         {std::tuple{ApplyIfSmallerThanCurrent, 1, 0}, {ApplyIfLargerThanCurrent, 0, 1}})
    {
        rCondition          = condition;
        m_in.range.end.time = 20 * Millisecond;
        EXPECT_EQ(RunLUT(12e6), ifLarger);
        EXPECT_EQ(RunLUT(8e6), ifSmaller);
        EXPECT_EQ(RunLUT(6.0, ArbLutOutGain), ifLarger);
        EXPECT_EQ(RunLUT(2.0, ArbLutOutGain), ifSmaller);
        m_in.range.end.time = 10 * Millisecond;
        EXPECT_EQ(RunLUT(20e6), ifSmaller) << "clamped to what was asked: equal is not larger";
    }
}

TEST_F(LUTTest, ConflictsAreClampedOrRefused)
{
    // The range is gains of 2 to 8 and 5 to 20 ms, the sensor 1 and up and 1 to 40 ms.
    const auto expect = [](const LUTRangeResolution& rTime, const LUTRangeResolution& rGain, FLOAT gain, UINT64 time,
                           KiroResult result, FLOAT newGain, UINT64 newTime)
    {
        const KIROExposureRange   range{Set(2.0f, 5 * Millisecond), Set(8.0f, 20 * Millisecond)};
        const KIROSensorRange     sensor{1.0f, 64.0f, 1 * Millisecond, 40 * Millisecond};
        const LUTConflictHandling handling{rTime, rGain, ApplyIfValid};
        KIROExposureSetType       set = Set(gain, time);
        EXPECT_EQ(UtilResolveLUTConflicts(&range, &sensor, &set, &handling), result) << gain << " " << time;
        EXPECT_FLOAT_EQ(set.gain, newGain) << gain << " " << time;
        EXPECT_EQ(set.time, newTime) << gain << " " << time;
    };
    constexpr LUTRangeResolution Off{FALSE, FALSE};
    constexpr LUTRangeResolution Sensor{FALSE, TRUE};
    constexpr LUTRangeResolution Refuse{TRUE, FALSE};
    constexpr LUTRangeResolution Clamp{TRUE, TRUE};
    expect(Refuse, Refuse, 4.0f, 10000000, 0, 4.0f, 10000000);
    expect(Off, Refuse, 1.0f, 10000000, 1, 1.0f, 10000000);
    expect(Off, Clamp, 1.0f, 10000000, 0, 2.0f, 5000000);
    expect(Off, Clamp, 16.0f, 10000000, 0, 8.0f, 20000000);
    expect(Refuse, Off, 4.0f, 4000000, 1, 4.0f, 4000000);
    expect(Clamp, Off, 4.0f, 4000000, 0, 3.2f, 5000000);
    expect(Clamp, Off, 4.0f, 30000000, 0, 6.0f, 20000000);
    expect(Clamp, Clamp, 16.0f, 20000000, 0, 16.0f, 20000000);  // the time gives the gain back
    expect(Off, Off, 1.0f, 30000000, 0, 1.0f, 30000000);
    expect(Off, Off, 4.0f, 50000000, 1, 4.0f, 50000000);
    expect(Sensor, Off, 4.0f, 50000000, 0, 5.0f, 40000000);
    expect(Sensor, Off, 4.0f, 500000, 0, 2.0f, 1000000);
    expect(Off, Off, 0.5f, 10000000, 1, 0.5f, 10000000);
    expect(Off, Sensor, 0.5f, 10000000, 0, 1.0f, 5000000);
    expect(Off, Sensor, 0.5f, 1500000, 1, 1.0f, 750000);
}
