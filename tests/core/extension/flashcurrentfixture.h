/// @file
/// Flash currents over a table of three powers and three mixes on a line of slope -1.
#pragma once

#include <vector>

#include "core/extension/cflashcurrentestimator.h"
#include "tests/support/testcontext.h"

namespace flashcurrentfixture
{

using namespace kiroflash;
using enum KIROExtFlashCurrentType;

struct Point
{
    FLOAT rg;
    FLOAT bg;
};

class FlashCurrent : public ContextTest
{
protected:
    FlashCurrent()
    {
        m_tuning.LEDMatching    = {.dualLEDIntersectSlope = 1.0f,
                                   .countPower            = 3,
                                   .countMix              = 3,
                                   .tableCount            = 9,
                                   .table                 = m_table,
                                   .tableCalibration      = m_calibration};
        m_input.maxFlashCurrent = 1000;
    }

    KiroResult Load()
    {
        Tune(m_tuning);
        return m_estimator.SetTuningHeaderChanged();
    }

    KiroResult Estimate(KIROExtFlashCurrentType type)
    {
        m_input.flashCurrentType = type;
        return m_estimator.EstimateFlashCurrent(&m_input, &m_out);
    }

    KiroResult Estimate(KIROExtFlashCurrentType type, Point scene)
    {
        m_input.AWBRG = scene.rg;
        m_input.AWBBG = scene.bg;
        return Estimate(type);
    }

    /// Of an estimate for a colour of the scene.
    VOID ExpectCurrents(KIROExtFlashCurrentType type, Point scene, INT32 led1, INT32 led2, FLOAT rg, INT32 mix1,
                        INT32 mix2)
    {
        EXPECT_EQ(Estimate(type, scene), 0);
        EXPECT_EQ(m_rResult.LED1Setting, led1);
        EXPECT_EQ(m_rResult.LED2Setting, led2);
        EXPECT_NEAR(m_rResult.RGRatio, rg, 1e-5f);
        EXPECT_EQ(m_out.mixIdx1, mix1);
        EXPECT_EQ(m_out.mixIdx2, mix2);
    }

    /// Colours of the three mixes from which an estimate chooses.
    VOID ExpectRow(KIROExtFlashCurrentType type, const std::vector<FLOAT>& rRG, const std::vector<FLOAT>& rBG)
    {
        EXPECT_EQ(Estimate(type), 0);
        for (size_t mix = 0; mix < rRG.size(); ++mix)
        {
            EXPECT_NEAR(m_rResult.refTable[mix].RGRatio, rRG[mix], 1e-5f) << mix;
            EXPECT_NEAR(m_rResult.refTable[mix].BGRatio, rBG[mix], 1e-5f) << mix;
        }
    }

    LEDMixType m_table[100] = {
        {500, 0, 0.25f, 1.0f, 10.0f},  {300, 200, 0.5f, 0.75f, 12.0f},  {0, 500, 1.0f, 0.25f, 16.0f},
        {1000, 0, 0.25f, 1.0f, 20.0f}, {600, 400, 0.5f, 0.75f, 24.0f},  {0, 1000, 1.0f, 0.25f, 32.0f},
        {2000, 0, 0.25f, 1.0f, 40.0f}, {1600, 400, 0.5f, 0.75f, 48.0f}, {0, 2000, 1.0f, 0.25f, 64.0f}};
    KIROLEDMixCalibType        m_calibration[3]{};
    KIROFlashType              m_tuning{};
    KIROAlgoFlashInput         m_input{};
    FlashCurrentEstimate       m_out{};
    const KIROAlgoFlashOutput& m_rResult = m_out.LEDCombination;
    CFlashCurrentEstimator     m_estimator{m_context};
};

}  // namespace flashcurrentfixture
