// Exposure tables, and what holds for every control.

#include <bit>
#include <random>
#include <tuple>

#include "tests/core/arbitration/arbitrationfixture.h"

using namespace kirodbarbitrationtable;

namespace
{

class TableTest : public ArbitrationTest
{
protected:
    /// Exposures of the knees: 1e5, 1e7, 4e7, 1.32e8.
    TableTest()
    {
        SetTable({{AECExpIncTime, 1.0f, 100 * Microsecond},
                  {AECExpIncTime, 1.0f, 10 * Millisecond},
                  {AECExpIncGain, 4.0f, 10 * Millisecond},
                  {AECExpIncTime, 4.0f, 33 * Millisecond}});
    }

    KiroResult RunTable(UINT64 exposure)
    {
        m_rAsked.exposure = exposure;
        return Run(BankIDArbitrationTable, 4, ArbCtrlTable);
    }

    VOID ExpectSplit(UINT64 exposure, FLOAT gain, UINT64 time)
    {
        EXPECT_EQ(RunTable(exposure), 0) << exposure;
        ExpectExposure(gain, time, std::to_string(exposure));
    }
};

/// One instance that goes on, and a new one for each control.
class RepeatedArbitration : public ArbitrationTest
{
protected:
    UINT32 UpTo(UINT32 last)
    {
        return std::uniform_int_distribution<UINT32>(0, last)(m_random);
    }

    /// Few values of each kind, so that the same are asked for again, and with some of them others.
    VOID Vary()
    {
        constexpr FLOAT  gains[]    = {0.0f, 1.0f, 1.5f, 16.0f};
        constexpr UINT64 times[]    = {0, 100 * Microsecond, 10 * Millisecond, 33 * Millisecond};
        constexpr UINT64 targets[]  = {0, 150000, 10000000, 25000000, 900000000};
        constexpr FLOAT  corrs[]    = {0.0f, 1.0f, 1.0f, 2.0f};
        const auto       changeable = [this] { return UpTo(5) == 0; };
        for (KIROExposureSetType* pBound : {&m_limits.start, &m_limits.end})
        {
            pBound->gain = changeable() ? gains[UpTo(3)] : pBound->gain;
            pBound->time = changeable() ? times[UpTo(3)] : pBound->time;
            pBound->corr = changeable() ? corrs[UpTo(3)] : pBound->corr;
            // Within the tolerance of equality, or beyond it.
            const DOUBLE product = static_cast<DOUBLE>(pBound->gain) * static_cast<DOUBLE>(pBound->time);
            pBound->exposure     = static_cast<UINT64>(product) + 5 * UpTo(1);
        }
        for (ExposureKneeType& rKnee : m_kneesOfTable)
        {
            rKnee.gain              = changeable() ? gains[UpTo(3)] : rKnee.gain;
            rKnee.time              = changeable() ? times[UpTo(3)] : rKnee.time;
            rKnee.incrementPriority = changeable() ? AECExpIncTime : rKnee.incrementPriority;
            rKnee.incrementPriority = changeable() ? AECExpIncGain : rKnee.incrementPriority;
        }
        m_correction           = changeable() ? corrs[UpTo(3)] : m_correction;
        m_in.indexZeroExposure = changeable() ? 1000 * UpTo(2) : m_in.indexZeroExposure;
        m_target               = changeable() ? targets[UpTo(4)] : m_target;
        m_type                 = static_cast<AECAlgoExposureType>(UpTo(2));
        m_in.bIsConvRange      = UpTo(1) == 0 ? TRUE : FALSE;
        SetTable(m_kneesOfTable, m_correction);
    }

    std::vector<std::string> RunOn(CKIROArbitration& rArbitration)
    {
        StatsLogCapture log;
        m_in.expType                    = m_type;
        m_in.range                      = m_limits;
        m_in.exposures[m_type]          = Set(1.0f, 10 * Millisecond);
        m_in.exposures[m_type].exposure = m_target;
        m_in.controlBank                = BankIDArbitrationTable;
        m_in.controlDataID              = 4;
        m_in.controlID                  = ArbCtrlTable;
        m_out                           = {};
        m_out.range                     = m_limits;
        (VOID) rArbitration.RunArbitration(&m_in, &m_out);
        std::vector<std::string> lines;
        for (const auto& rLine : log.Lines())
        {
            lines.push_back(rLine.text);
        }
        return lines;
    }

    std::mt19937        m_random{3};
    KIROExposureRange   m_limits = {Set(1.0f, 100 * Microsecond), Set(16.0f, 33 * Millisecond)};
    UINT64              m_target = 10000000;
    AECAlgoExposureType m_type   = AECAlgoExposureSafe;

    std::vector<ExposureKneeType> m_kneesOfTable = {{AECExpIncTime, 1.0f, 100 * Microsecond},
                                                    {AECExpIncTime, 16.0f, 33 * Millisecond}};
    FLOAT                         m_correction   = 1.0f;
};

}  // namespace

TEST_F(TableTest, WalksTheSegmentsUpToTheirKnees)
{
    ExpectSplit(100000, 1.0f, 100 * Microsecond);
    ExpectSplit(1000000, 1.0f, 1 * Millisecond);
    ExpectSplit(10000000, 1.0f, 10 * Millisecond);
    ExpectSplit(20000000, 2.0f, 10 * Millisecond);
    ExpectSplit(40000000, 4.0f, 10 * Millisecond);
    ExpectSplit(80000000, 4.0f, 20 * Millisecond);
    ExpectSplit(132000000, 4.0f, 33 * Millisecond);
    EXPECT_EQ(m_in.pTable, &m_table.value) << "kept for index ranges";
    EXPECT_EQ(m_out.exposureSet.exposure, 132000000u);
    EXPECT_NEAR(m_out.exposureSet.indx, 398.88f, 0.01f) << "log of 132000 to the base 1.03";
    EXPECT_EQ(m_out.range.end.time, 0u) << "a table leaves the range to the host";

    SetTable({{AECExpIncTime, 1.0f, 100 * Microsecond}, {AECExpIncTime, 1.0f, 20 * Millisecond}}, 2.0f);
    ExpectSplit(20000000, 1.0f, 10 * Millisecond);
    EXPECT_EQ(m_out.exposureSet.corr, 2.0f);
    EXPECT_EQ(m_out.exposureSet.exposure, 20000000u);
}

TEST_F(TableTest, PriorityDecidesWhatGrowsFirstInASegment)
{
    m_in.range.end = Set(16.0f, 60 * Millisecond);
    SetTable({{AECExpIncGain, 1.0f, 10 * Millisecond}, {AECExpIncGain, 2.0f, 40 * Millisecond}});
    ExpectSplit(15000000, 1.5f, 10 * Millisecond);
    ExpectSplit(20000000, 2.0f, 10 * Millisecond);
    ExpectSplit(40000000, 2.0f, 20 * Millisecond);
    SetTable({{AECExpIncGain, 1.0f, 10 * Millisecond}, {AECExpIncTime, 2.0f, 40 * Millisecond}});
    ExpectSplit(15000000, 1.0f, 15 * Millisecond);
    ExpectSplit(40000000, 1.0f, 40 * Millisecond);
    ExpectSplit(60000000, 1.5f, 40 * Millisecond);
}

TEST_F(TableTest, GoesOnToTheRangeBelowAndAboveTheKnees)
{
    m_in.range.start = Set(1.0f, 20 * Microsecond);
    ExpectSplit(50000, 1.0f, 50 * Microsecond);
    ExpectSplit(200000000, 6.0606060f, 33 * Millisecond);
    ExpectSplit(19999, 1.0f, 20 * Microsecond);
    m_in.bIsConvRange = TRUE;
    ExpectSplit(10000, 1.0f, 20 * Microsecond);
    EXPECT_EQ(m_log.CountLevel(LevelWarning), 0u) << "inside, the same exposure, or limits only";
    m_in.bIsConvRange = FALSE;
    ExpectSplit(10000, 1.0f, 20 * Microsecond);
    EXPECT_TRUE(m_log.Has(LevelRare, "exposure 10000 out of both table min exposure and current min exposure 20000"));
    ExpectSplit(1000000000, 16.0f, 33 * Millisecond);
    EXPECT_TRUE(
        m_log.Has(LevelRare, "exposure 1000000000 out of both table max exposure and current max exposure 528000000"));
}

TEST_F(TableTest, ResultIsFittedIntoTheRange)
{
    m_in.range.start.gain = 2.0f;
    ExpectSplit(10000000, 2.0f, 5 * Millisecond);
    m_in.range = {Set(1.0f, 100 * Microsecond), Set(2.0f, 10 * Millisecond)};
    ExpectSplit(40000000, 4.0f, 10 * Millisecond);
    EXPECT_TRUE(m_log.HasPart(LevelWarning, "warning desired exposure 40000000")) << "and counts as fitted";
    m_in.range = {Set(1.0f, 20 * Millisecond), Set(16.0f, 33 * Millisecond)};
    EXPECT_EQ(RunTable(10000000), 1);
    EXPECT_TRUE(m_log.HasPart(LevelWarning, "could not fit desired exposure 10000000 time 20000000 gain 0.5"));
    ExpectExposure(1.0f, 10 * Millisecond, "the request stays");

    const auto expectFit = [](FLOAT gain, UINT64 time, FLOAT fittedGain, UINT64 fittedTime)
    {
        const KIROExposureRange range{Set(1.0f, 10000), Set(2.0f, 50000)};
        KIROExposureSetType     set = Set(gain, time);
        UtilMakeTableExposureFit(&set, &range);
        EXPECT_NEAR(set.gain, fittedGain, 1e-6f) << gain << " " << time;
        EXPECT_EQ(set.time, fittedTime) << gain << " " << time;
    };
    expectFit(0.99995f, 40000, 1.0f, 40000);  // within the margins only the quantity itself snaps
    expectFit(0.5f, 40000, 1.0f, 20000);
    expectFit(2.00005f, 40000, 2.0f, 40000);
    expectFit(4.0f, 20000, 2.0f, 40000);
    expectFit(1.5f, 9999, 1.5f, 10000);
    expectFit(1.5f, 8000, 1.2f, 10000);
    expectFit(1.5f, 50001, 1.5f, 50000);
    expectFit(1.5f, 60000, 1.8f, 50000);
}

TEST_F(TableTest, ACorrectionOfZeroLeavesTheExposureAsItWas)
{
    SetTable({{AECExpIncTime, 1.0f, 100 * Microsecond}, {AECExpIncTime, 1.0f, 60 * Millisecond}}, 0.0f);
    ExpectSplit(50000000, 1.0f, 10 * Millisecond);
    EXPECT_EQ(m_out.exposureSet.corr, 1.0f);
    EXPECT_TRUE(m_log.HasPart(LevelError, "with this tuning; the exposure stands"));
}

TEST_F(TableTest, RequestsThatMakeNoSenseAreRefusedOrRepaired)
{
    EXPECT_EQ(m_arbitration.RunArbitration(nullptr, &m_out), 1);
    EXPECT_EQ(Run(BankIDROITable, 1), 1);
    EXPECT_EQ(Run(BankIDArbitrationTable, 99, ArbCtrlTable), 1);
    EXPECT_EQ(Run(BankIDArbitrationRange, 99), 6);
    EXPECT_EQ(Run(BankIDArbitrationLUT, 99), 1);
    m_table.value.expKneesCount = 1;
    m_rAsked                    = {};
    m_in.range.start.corr       = 0.0f;
    m_in.range.end.corr         = 0.0f;
    EXPECT_EQ(RunTable(0), 1);
    EXPECT_EQ(m_in.pTable, nullptr) << "no table";
    EXPECT_EQ(m_rAsked.exposure * m_rAsked.time, 1u);
    EXPECT_EQ(m_rAsked.gain * m_rAsked.corr * m_in.range.start.corr * m_in.range.end.corr, 1.0f);
    m_in.expType = AECAlgoExposureCount;
    EXPECT_EQ(RunTable(10000000), 1);
}

TEST_F(RepeatedArbitration, AnswersAndLogsAsWhatHasNotBeenAskedBefore)
{
    for (UINT32 round = 0; round < 4000; ++round)
    {
        Vary();
        const auto                  lines  = RunOn(m_arbitration);
        const KIROArbitrationOutput output = m_out;
        CKIROArbitration            fresh(m_context.m_tuningData, m_context);
        ASSERT_EQ(RunOn(fresh), lines) << round;
        const auto bits = [](const KIROExposureSetType& rSet)
        {
            return std::tuple(std::bit_cast<UINT32>(rSet.gain), rSet.time, std::bit_cast<UINT32>(rSet.indx),
                              std::bit_cast<UINT32>(rSet.corr), rSet.exposure);
        };
        ASSERT_EQ(bits(m_out.exposureSet), bits(output.exposureSet)) << round;
        ASSERT_EQ(bits(m_out.range.start), bits(output.range.start)) << round;
        ASSERT_EQ(bits(m_out.range.end), bits(output.range.end)) << round;
    }
}
