// The colours of the flash table as the factory measured them, or as captures taught them.

#include <algorithm>
#include <utility>

#include "tests/core/extension/flashcurrentfixture.h"

using namespace flashcurrentfixture;

namespace
{

/// Measured mixes of the table, and what they were measured as.
class FactoryCalibration : public FlashCurrent
{
protected:
    KiroResult LoadCalibrated(UINT32 count)
    {
        m_input.pFlashCalib                        = &m_measured;
        m_tuning.LEDMatching.tableCalibrationCount = count;
        m_measured.count                           = count;
        return Load();
    }

    VOID ExpectTunedRow()
    {
        ExpectRow(Low, {0.25f, 0.5f, 1.0f}, {1.0f, 0.75f, 0.25f});
    }

    FLOAT                       m_rg[3] = {0.5f, 1.5f, 0.25f};
    FLOAT                       m_bg[3] = {0.75f, 0.25f, 1.5f};
    AECAlgoFlashCalibrationData m_measured{0, m_rg, m_bg};
};

TEST_F(FactoryCalibration, CorrectsMeasuredRowsAndThoseBetween)
{
    m_calibration[0].indexMix   = 0;
    m_calibration[1].indexMix   = 2;
    m_calibration[2].indexMix   = 1;
    m_calibration[2].indexPower = 2;
    ASSERT_EQ(LoadCalibrated(3), 0);
    ExpectRow(Low, {0.5f, 5.0f / 6.0f, 1.5f}, {0.75f, 7.0f / 12.0f, 0.25f});
    m_input.maxFlashCurrent = 2000;
    ExpectRow(High, {0.125f, 0.25f, 0.5f}, {2.0f, 1.5f, 0.5f});
    m_input.maxFlashCurrent = 1000;  // a third of the way in power
    ExpectRow(High, {0.375f, 0.638889f, 7.0f / 6.0f}, {1.166667f, 0.888889f, 1.0f / 3.0f});

    m_input.pFlashCalib = nullptr;
    ASSERT_EQ(Load(), 0);
    ExpectTunedRow();
}

TEST_F(FactoryCalibration, ScalesTheTableByOneMeasuredMix)
{
    m_calibration[0].indexMix   = 1;  // RG doubles, BG halves
    m_calibration[0].indexPower = 1;
    m_rg[0]                     = 1.0f;
    m_bg[0]                     = 0.375f;
    ASSERT_EQ(LoadCalibrated(1), 0);
    for (const INT32 maxCurrent : {500, 1000, 2000})
    {
        m_input.maxFlashCurrent = maxCurrent;
        ExpectRow(High, {0.5f, 1.0f, 2.0f}, {0.5f, 0.375f, 0.125f});
    }
}

TEST_F(FactoryCalibration, KeepsTunedColoursWhenItDoesNotFitTheTable)
{
    LoadCalibrated(1);
    m_measured.count = 2;
    ExpectTunedRow();
    EXPECT_TRUE(m_log.Has(LevelError, "flashMeas: mismatch between input calib count 2 and header calib count 1"));
    m_calibration[0] = {3, 2, FALSE, {}, {}, 0};
    LoadCalibrated(1);
    ExpectTunedRow();
    EXPECT_TRUE(m_log.Has(LevelError, "flashMeas: calib pow 2 mix 3 indices larger than tuning count 9"));
    m_calibration[0] = {INT32_MIN, 1 << 30, FALSE, {}, {}, 0};
    LoadCalibrated(1);
    ExpectTunedRow();
    m_calibration[0]     = {};
    m_measured.pRGRatios = nullptr;
    LoadCalibrated(1);
    ExpectTunedRow();
}

TEST_F(FlashCurrent, AppliesLearnedKneesBetweenTheFirstAndTheLastMix)
{
    m_context.m_input.bIsFICMode   = TRUE;
    m_context.m_ficInfo.numOfKnees = 3;
    std::fill_n(m_context.m_ficInfo.kneeData, 3,
                KIROFICKneeData{0.625f, 0.5f, 0.375f, 0.875f, FICConfHigh, FICConfLow});
    ASSERT_EQ(Load(), 0);
    ExpectRow(Low, {0.25f, 0.625f, 1.0f}, {1.0f, 0.5f, 0.25f});
    m_input.maxFlashCurrent = 2000;
    ExpectRow(High, {0.25f, 0.5f, 1.0f}, {1.0f, 0.75f, 0.25f});
    m_context.m_ficInfo.kneeData[1].confLEDHigh = FICConfHigh;
    ExpectRow(High, {0.25f, 0.375f, 1.0f}, {1.0f, 0.875f, 0.25f});

    m_context.m_ficInfo.numOfKnees = 255;  // more than there are mixes: other rows stay
    Load();
    m_input.maxFlashCurrent = 1000;
    Estimate(High);
    EXPECT_EQ(m_rResult.refTable[2].RGRatio, 1.0f);
    for (const auto& [isMode, knees] : {std::pair(TRUE, 2), std::pair(FALSE, 3)})
    {
        m_context.m_input.bIsFICMode   = isMode;
        m_context.m_ficInfo.numOfKnees = static_cast<UINT8>(knees);
        Load();
        ExpectRow(Low, {0.25f, 0.5f, 1.0f}, {1.0f, 0.75f, 0.25f});
    }
}

}  // namespace
