// Look-up tables: a tuned gain or time, the flicker grid, and conditions.

#include "tests/core/arbitration/arbitrationfixture.h"

using namespace kirodbarbitrationlut;

namespace
{

class LUTTest : public ArbitrationTest
{
protected:
    /// Gains up to 2 look up m_low, others m_high. Asks for gain 4 at 10 ms; the keys are the gain and a trigger.
    LUTTest()
    {
        Ask(4.0f, 10 * Millisecond);
        m_lut.value.keyType1         = {SourceArbitration, LUTKeyGain, BankIDInvalid, 0};
        m_lut.value.keyType2         = {SourceBank, LUTKeyGain, BankIDTriggers, 100};
        m_lut.value.triggerDataCount = 2;
        m_lut.value.triggerData      = m_zones;
    }

    KiroResult RunLUT(DOUBLE data, LUTOutType outType = ArbLutOutTime, ArbitrationControl control = ArbCtrlCustomLUT)
    {
        m_high                = {{0.0f, 1.0f}, static_cast<FLOAT>(data)};
        m_lut.value.outType   = outType;
        const KiroResult result = Run(BankIDArbitrationLUT, m_lut.dataID, control);
        if (result == 0)
        {
            EXPECT_EQ(m_out.range.end.time, m_in.range.end.time) << "a LUT does not change the range";
        }
        return result;
    }

    KiroResult RunFlicker(DOUBLE data, ArbitrationControl control = ArbCtrlFlicker50LUT)
    {
        return RunLUT(data, ArbLutOutTime, control);
    }

    /// Refuse what lies outside the current range, or clamp it.
    VOID Enforce(BOOL bClamp)
    {
        m_lut.value.conflictHandling.enforceTime = {TRUE, bClamp};
        m_lut.value.conflictHandling.enforceGain = {TRUE, bClamp};
    }

    TriggerSystemEndLevelType       m_low{{0.0f, 1.0f}, 5e6f};
    TriggerSystemEndLevelType       m_high{};
    TwoLevelTriggerSystemLevel1Type m_zones[2] = {{{0.0f, 2.0f}, 1, 0, &m_low}, {{2.0f, 100.0f}, 1, 0, &m_high}};
};

} // namespace

TEST_F(LUTTest, LookedUpQuantityKeepsTheExposure)
{
    EXPECT_EQ(RunLUT(20e6), 0);
    ExpectExposure(2.0f, 20 * Millisecond);
    EXPECT_EQ(m_out.exposureSet.exposure, 40000000u);
    EXPECT_NEAR(m_out.exposureSet.indx, IndexOf(4e7), 0.01f);
    EXPECT_EQ(RunLUT(8.0, ArbLutOutGain), 0);
    ExpectExposure(8.0f, 5 * Millisecond);
    EXPECT_EQ(RunLUT(4.0, ArbLutOutGain), 0);
    ExpectExposure(4.0f, 10 * Millisecond);
    Ask(1.0f, 10 * Millisecond);
    EXPECT_EQ(RunLUT(20e6), 0);
    ExpectExposure(2.0f, 5 * Millisecond, "the other zone");

    EXPECT_EQ(Run(BankIDArbitrationLUT, 99), 1);
    EXPECT_TRUE(m_log.Has(LevelError, "could not find LUT 99"));
}

TEST_F(LUTTest, KeysComeFromTheExposureOrABank)
{
    m_context.SetTrigger(100, 50.0f);
    const struct
    {
        LUTKeyType key;
        BOOL       isHigh;
    } cases[] = {
        {{SourceArbitration, LUTKeyGain, BankIDInvalid, 0}, TRUE},
        {{SourceArbitration, LUTKeyTime, BankIDInvalid, 0}, TRUE},
        {{SourceArbitration, LUTKeyExposure, BankIDInvalid, 0}, FALSE},
        {{SourceArbitration, LUTKeyIndex, BankIDInvalid, 0}, FALSE},
        {{SourceBank, LUTKeyGain, BankIDTriggers, 100}, TRUE},
        {{SourceBank, LUTKeyGain, BankIDTriggers, 101}, FALSE},
    };
    m_in.exposures[AECAlgoExposureSafe].indx = 1.0f;
    for (const auto& rCase : cases)
    {
        // With 1 ns at a gain of 3 only time and exposure tell their zones apart.
        m_in.exposures[AECAlgoExposureSafe].gain     = (rCase.key.arbKey == LUTKeyGain) ? 3.0f : 1.0f;
        m_in.exposures[AECAlgoExposureSafe].time     = (rCase.key.arbKey == LUTKeyTime) ? 3 : 1;
        m_in.exposures[AECAlgoExposureSafe].exposure = 1;
        m_lut.value.keyType1                         = rCase.key;
        m_in.bIsConvRange                            = TRUE;
        EXPECT_EQ(RunLUT(20e6), 0);
        EXPECT_EQ(m_out.exposureSet.time, (rCase.isHigh == TRUE) ? 20 * Millisecond : 5 * Millisecond)
            << "source " << rCase.key.source << " key " << rCase.key.arbKey;
    }

    m_lut.value.keyType1 = {SourceArbitration, static_cast<KeyArbitrationType>(4), BankIDInvalid, 0};
    EXPECT_EQ(RunLUT(20e6), 1);
    EXPECT_TRUE(m_log.Has(LevelError, "unknown key type 4"));
    m_lut.value.keyType1 = {static_cast<KeySource>(2), LUTKeyGain, BankIDInvalid, 0};
    EXPECT_EQ(RunLUT(20e6), 1);
    EXPECT_TRUE(m_log.Has(LevelError, "unknown source type 2"));
    m_lut.value.keyType1 = {SourceBank, LUTKeyGain, BankIDMetering1D, 7};
    EXPECT_NE(RunLUT(20e6), 0);
    EXPECT_TRUE(m_log.Has(LevelError, "bank ID 2 data ID 7 is not supported"));
    EXPECT_EQ(m_log.Count(LevelError, "not applying LUT  due to trigger issues"), 3u);
}

TEST_F(LUTTest, FlickerTimeThatDoesNotFitTakesTheNeighbouringPeriod)
{
    Enforce(FALSE);
    EXPECT_EQ(RunFlicker(20e6), 0);
    ExpectExposure(2.0f, 20 * Millisecond, "fits");

    m_in.range.end.time = 15 * Millisecond;
    EXPECT_EQ(RunFlicker(20e6), 0);
    ExpectExposure(4.0f, 10 * Millisecond, "one period less");
    m_in.exposures[AECAlgoExposureSafe].time = 9 * Millisecond;
    EXPECT_EQ(RunFlicker(16666666.0, ArbCtrlFlicker60LUT), 0);
    ExpectExposure(4.8000002f, 8333333);
    EXPECT_EQ(RunLUT(20e6), 1) << "no grid";
    EXPECT_TRUE(m_log.Has(LevelWarning, "LUT not applying: time 20000000 out of time range 100000 15000000"));

    m_in.range.start.time                    = 22 * Millisecond;
    m_in.range.end.time                      = 33 * Millisecond;
    m_in.exposures[AECAlgoExposureSafe].time = 25 * Millisecond;
    EXPECT_EQ(RunFlicker(20e6), 0);
    ExpectExposure(1.3333334f, 30 * Millisecond, "one period more, as the time stood above");

    m_in.range.start.time                    = 12 * Millisecond;
    m_in.exposures[AECAlgoExposureSafe].time = 9 * Millisecond;
    EXPECT_EQ(RunFlicker(10e6), 0);
    ExpectExposure(2.0f, 20 * Millisecond, "never none");
    EXPECT_EQ(RunFlicker(9.9e6), 1) << "below a period the grid is not tried";
    m_in.bIsConvRange = TRUE;
    EXPECT_EQ(RunFlicker(10e6), 0);
    ExpectExposure(2.0f, 20 * Millisecond, "tried for limits as well");
    EXPECT_EQ(RunFlicker(9.9e6), 0);
    EXPECT_EQ(m_out.exposureSet.time, 9900000u) << "which resolve no conflicts at the end";
}

TEST_F(LUTTest, ConditionComparesWithTheExposureAsked)
{
    ApplyConditionType& rCondition = m_lut.value.conflictHandling.applyCondition;
    m_in.range.end.time            = 20 * Millisecond;
    Enforce(TRUE);
    rCondition = ApplyIfSmallerThanCurrent;
    EXPECT_EQ(RunLUT(12e6), 1);
    EXPECT_EQ(RunLUT(8e6), 0);
    ExpectExposure(5.0f, 8 * Millisecond);
    EXPECT_EQ(RunLUT(6.0, ArbLutOutGain), 1);
    EXPECT_EQ(RunLUT(2.0, ArbLutOutGain), 0);
    rCondition = ApplyIfLargerThanCurrent;
    EXPECT_EQ(RunLUT(12e6), 0);
    EXPECT_EQ(RunLUT(8e6), 1);
    EXPECT_EQ(RunLUT(6.0, ArbLutOutGain), 0);
    EXPECT_EQ(RunLUT(2.0, ArbLutOutGain), 1);

    // Clamped to what was asked: equal is not larger.
    m_in.range.end.time = 10 * Millisecond;
    EXPECT_EQ(RunLUT(20e6), 1);
    EXPECT_TRUE(m_log.Has(32, "LUT does not apply: new quantity is smaller; gain 4.000 time 10000000"));
    rCondition = ApplyIfSmallerThanCurrent;
    EXPECT_EQ(RunLUT(20e6), 0);
    ExpectExposure(4.0f, 10 * Millisecond);
}

TEST_F(LUTTest, ConflictsAreClampedOrRefused)
{
    // The range is gains of 2 to 8 and 5 to 20 ms, the sensor 1 and up and 1 to 40 ms.
    const KIROExposureRange range{Set(2.0f, 5 * Millisecond), Set(8.0f, 20 * Millisecond)};
    const KIROSensorRange   sensor{1.0f, 64.0f, 1 * Millisecond, 40 * Millisecond};
    constexpr LUTRangeResolution Off{FALSE, FALSE};
    constexpr LUTRangeResolution SensorOnly{FALSE, TRUE};
    constexpr LUTRangeResolution Refuse{TRUE, FALSE};
    constexpr LUTRangeResolution Clamp{TRUE, TRUE};
    const struct
    {
        LUTRangeResolution time;
        LUTRangeResolution gain;
        FLOAT              oldGain;
        UINT64             oldTime;
        KiroResult         result;
        FLOAT              newGain;
        UINT64             newTime;
        const CHAR*        pMessage;
    } cases[] = {
        {Refuse, Refuse, 4.0f, 10000000, 0, 4.0f, 10000000, nullptr},
        {Off, Refuse, 1.0f, 10000000, 1, 1.0f, 10000000, "LUT not applying: gain 1.000 out of gain range 2.000 8.000"},
        {Off, Clamp, 1.0f, 10000000, 0, 2.0f, 5000000, nullptr},
        {Off, Clamp, 16.0f, 10000000, 0, 8.0f, 20000000, nullptr},
        {Refuse, Off, 4.0f, 4000000, 1, 4.0f, 4000000,
         "LUT not applying: time 4000000 out of time range 5000000 20000000"},
        {Clamp, Off, 4.0f, 4000000, 0, 3.2f, 5000000, nullptr},
        {Clamp, Off, 4.0f, 30000000, 0, 6.0f, 20000000, nullptr},
        {Clamp, Clamp, 16.0f, 20000000, 0, 16.0f, 20000000, nullptr},  // the time gives the gain back
        {Off, Off, 1.0f, 30000000, 0, 1.0f, 30000000, nullptr},
        {Off, Off, 4.0f, 50000000, 1, 4.0f, 50000000,
         "LUT not applying: time 50000000 out of time range 1000000 40000000"},
        {SensorOnly, Off, 4.0f, 50000000, 0, 5.0f, 40000000, nullptr},
        {SensorOnly, Off, 4.0f, 500000, 0, 2.0f, 1000000, nullptr},
        {Off, Off, 0.5f, 10000000, 1, 0.5f, 10000000,
         "LUT not applying: gain 0.500 smaller than min sensor gain 1.000"},
        {Off, SensorOnly, 0.5f, 10000000, 0, 1.0f, 5000000, nullptr},
        {Off, SensorOnly, 0.5f, 1500000, 1, 1.0f, 750000,
         "LUT not applying: time 750000 out of time range 1000000 40000000"},
    };
    for (const auto& rCase : cases)
    {
        m_log.Clear();
        KIROExposureSetType       set = Set(rCase.oldGain, rCase.oldTime);
        const LUTConflictHandling handling{rCase.time, rCase.gain, ApplyIfValid};
        const std::string         message = std::to_string(rCase.oldGain) + " " + std::to_string(rCase.oldTime);
        EXPECT_EQ(UtilResolveLUTConflicts(&range, &sensor, &set, &handling), rCase.result) << message;
        EXPECT_FLOAT_EQ(set.gain, rCase.newGain) << message;
        EXPECT_EQ(set.time, rCase.newTime) << message;
        EXPECT_TRUE(rCase.pMessage == nullptr || m_log.Has(LevelWarning, rCase.pMessage)) << message;
    }
}
