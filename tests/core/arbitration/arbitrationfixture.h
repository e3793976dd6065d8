/// @file
/// Arbitration of the Safe exposure on a desk: one call with a range, a table or a LUT that the test writes.
#pragma once

#include <cmath>
#include <string>
#include <vector>

#include "core/arbitration/arbitrationutils.h"
#include "core/arbitration/ckiromodarbitration.h"
#include "tests/support/testcontext.h"

using namespace kirodbarbitrationorder;

constexpr UINT64 Microsecond = 1000;
constexpr UINT64 Millisecond = 1000 * Microsecond;

class ArbitrationTest : public ContextTest
{
protected:
    /// Asks for gain 1 and 10 ms, within gains of 1 to 16 and 0.1 to 33 ms, on a sensor of 1 to 64 and 0.05 to 100 ms.
    ArbitrationTest()
    {
        m_in.expType           = AECAlgoExposureSafe;
        m_in.indexZeroExposure = 1000;
        m_in.sensorRange       = {1.0f, 64.0f, 50 * Microsecond, 100 * Millisecond};
        m_in.range             = {Set(1.0f, 100 * Microsecond), Set(16.0f, 33 * Millisecond)};
        m_rAsked               = Set(1.0f, 10 * Millisecond);
        SetBank(BankIDArbitrationRange, &m_range);
        SetBank(BankIDArbitrationTable, &m_table);
        SetBank(BankIDArbitrationLUT, &m_lut);
    }

    static KIROExposureSetType Set(FLOAT gain, UINT64 time)
    {
        KIROExposureSetType set = {
            .gain     = gain,
            .time     = time,
            .corr     = 1.0f,
            .exposure = static_cast<UINT64>(std::llround(static_cast<DOUBLE>(gain) * static_cast<DOUBLE>(time)))};
        set.indx = IndexOf(static_cast<DOUBLE>(set.exposure));
        return set;
    }

    /// With an index zero of 1000.
    static FLOAT IndexOf(DOUBLE exposure)
    {
        return static_cast<FLOAT>(std::log(exposure / 1000.0) / std::log(1.03));
    }

    KiroResult Run(KIROBankIDType bank, INT32 dataID, ArbitrationControl control = ArbCtrlCustomRange)
    {
        m_in.controlBank   = bank;
        m_in.controlDataID = dataID;
        m_in.controlID     = control;
        m_out              = {};
        return m_arbitration.RunArbitration(&m_in, &m_out);
    }

    VOID SetTable(const std::vector<kirodbarbitrationtable::ExposureKneeType>& rKnees, FLOAT correction = 1.0f)
    {
        m_knees       = rKnees;
        m_table.value = {correction, 0, 0.0f, static_cast<UINT32>(m_knees.size()), 0, m_knees.data()};
    }

    VOID ExpectExposure(FLOAT gain, UINT64 time, const std::string& rMessage = "") const
    {
        EXPECT_NEAR(m_out.exposureSet.gain, gain, 1e-5f * gain) << rMessage;
        EXPECT_NEAR(static_cast<DOUBLE>(m_out.exposureSet.time), static_cast<DOUBLE>(time), 2.0) << rMessage;
    }

    VOID ExpectRange(FLOAT startGain, FLOAT endGain, UINT64 startTime, UINT64 endTime) const
    {
        EXPECT_FLOAT_EQ(m_out.range.start.gain, startGain);
        EXPECT_FLOAT_EQ(m_out.range.end.gain, endGain);
        EXPECT_EQ(m_out.range.start.time, startTime);
        EXPECT_EQ(m_out.range.end.time, endTime);
    }

    CKIROArbitration m_arbitration{m_context.m_tuningData, m_context};

    KIROArbitrationInput  m_in{};
    KIROArbitrationOutput m_out{};
    KIROExposureSetType&  m_rAsked = m_in.exposures[AECAlgoExposureSafe];

    kirodbarbitrationrange::DBArbitrationRangePayload     m_range{3, nullptr, {}};
    kirodbarbitrationtable::DBArbitrationTablePayload     m_table{4, nullptr, {}};
    std::vector<kirodbarbitrationtable::ExposureKneeType> m_knees;
    kirodbarbitrationlut::DBArbitrationLUTPayload         m_lut{5, nullptr, {}};
};
