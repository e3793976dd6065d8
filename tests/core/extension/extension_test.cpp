// The switch of a hybrid HDR sensor between its binned and its full mode, and the frame around a flash estimate.

#include "core/extension/ckiromodextension.h"

#include "core/extension/cflashcurrentestimator.h"
#include "tests/support/testcontext.h"

namespace
{

class Extension : public ContextTest
{
protected:
    /// The full mode is due from an ADRC of 4, in the dark of 8; a mode stays for more than two frames.
    Extension()
    {
        m_tuning.hybridHDR = {TRUE, 1.0f, {{0.0f, 0.0f}, 2, 0, m_thresholds}, 2, {}};
        Tune(m_tuning);
        m_context.m_input.b3HDRMode = TRUE;
        m_context.m_bIsHybridHDR    = TRUE;
        m_in.pConvergenceOuts       = &m_convergence;
    }

    /// A frame after one that was in the given mode.
    BOOL Run(UINT64 frameID, BOOL bWasBinning, UINT64 adrc)
    {
        AECFrameHistory previous = {.frameID = frameID - 1, .bIsSeamless = bWasBinning};
        m_context.SaveFrame(previous);
        m_convergence.exposures[AECAlgoExposureShort] = 100;
        m_convergence.exposures[AECAlgoExposureSafe]  = 100 * adrc;
        EXPECT_EQ(m_extension.RunExtension(m_in, m_out), 0);
        EXPECT_EQ(m_context.Trigger(TriggerCtrl3HDRBinning), static_cast<FLOAT>(m_out.bIsSeamlessBinning));
        return m_out.bIsSeamlessBinning;
    }

    TriggerSystemEndLevelType        m_thresholds[2] = {{{0.0f, 100.0f}, 4.0f}, {{200.0f, 300.0f}, 8.0f}};
    kirohdrsensor::KIROHDRSensorType m_tuning{};
    KIROConvergenceOutput            m_convergence{};
    KIROExtensionInput               m_in{};
    KIROExtensionOutput              m_out{};
    CKIROExtension                   m_extension{m_context.m_tuningData, m_context};
};

TEST_F(Extension, ModeMovesOnlyWhenItHasBeenStable)
{
    m_context.m_seamlessRID = 10;
    EXPECT_EQ(Run(11, TRUE, 5), TRUE);
    EXPECT_EQ(Run(12, TRUE, 5), TRUE);
    EXPECT_EQ(Run(13, TRUE, 5), FALSE) << "three frames since the last switch";
    EXPECT_EQ(m_context.m_seamlessRID, 13u);
    EXPECT_EQ(Run(14, FALSE, 1), FALSE);
    EXPECT_EQ(Run(15, FALSE, 1), FALSE);
    EXPECT_EQ(Run(16, FALSE, 4), FALSE) << "the threshold itself";
    EXPECT_EQ(m_context.m_seamlessRID, 13u);
    m_context.SetTrigger(TriggerCtrlLux, 250.0f);
    EXPECT_EQ(Run(17, FALSE, 4), TRUE) << "the threshold of the dark";
    EXPECT_EQ(m_context.m_seamlessRID, 17u);
    m_context.m_seamlessRID = 30;
    EXPECT_EQ(Run(18, TRUE, 9), TRUE) << "a switch of a frame to come";
}

TEST_F(Extension, ModeStaysBinnedOutsideAHybridSession)
{
    EXPECT_EQ(m_extension.RunExtension(m_in, m_out), 0);
    EXPECT_EQ(m_out.bIsSeamlessBinning, TRUE) << "no history";
    m_context.m_bIsHybridHDR = FALSE;
    EXPECT_EQ(Run(20, TRUE, 9), TRUE);
    m_context.m_bIsHybridHDR    = TRUE;
    m_context.m_input.b3HDRMode = FALSE;
    EXPECT_EQ(Run(21, TRUE, 9), TRUE);
    m_context.m_input.b3HDRMode = TRUE;
    m_in.pConvergenceOuts       = nullptr;
    EXPECT_EQ(Run(22, TRUE, 9), TRUE);
    EXPECT_EQ(m_context.m_seamlessRID, 0u);
}

TEST_F(Extension, FlashThatIsOffNeedsNoEstimateAndAFailedOneIsOff)
{
    KIROAlgoFlashInput        in{};
    const KIROAlgoFlashOutput before{5, 5, 5.0f, 5.0f, 5.0f, 5.0f, AECAlgoFlashStateMain, 5.0f, {}};
    KIROAlgoFlashOutput       out = before;
    in.flashCurrentType           = KIROExtFlashCurrentType::Off;
    EXPECT_EQ(m_extension.GetFlashCurrent(nullptr, &out), 1);
    EXPECT_EQ(m_extension.GetFlashCurrent(&in, nullptr), 1);

    // Two rows of the same power are no table, even for a flash that is off.
    kiroflash::KIROFlashType flash{};
    kiroflash::LEDMixType    mixes[2] = {{100, 0, 1.0f, 1.0f, 1.0f}, {100, 0, 1.0f, 1.0f, 1.0f}};
    flash.LEDMatching.countPower      = 2;
    flash.LEDMatching.countMix        = 1;
    flash.LEDMatching.tableCount      = 2;
    flash.LEDMatching.table           = mixes;
    Tune(flash);
    EXPECT_EQ(m_extension.GetFlashCurrent(&in, &out), 1);
    EXPECT_EQ(out.LED1Setting, before.LED1Setting);

    mixes[1].LED1Setting = 200;
    Tune(flash);
    EXPECT_EQ(m_extension.GetFlashCurrent(&in, &out), 0);
    EXPECT_EQ(out.LED1Setting + out.LED2Setting, 0);
    EXPECT_EQ(out.state, AECAlgoFlashStateOff);
    EXPECT_EQ(out.flux, 0.0f);
    EXPECT_EQ(out.RGRatio, -1.0f);
    EXPECT_EQ(out.BGRatio, -1.0f);
    EXPECT_EQ(out.firstEntryRatio, 1.0f);
    EXPECT_EQ(out.lastEntryRatio, 0.0f);
    in.maxFlashCurrent = 200;
    for (const auto& [type, state, current] : {std::tuple{KIROExtFlashCurrentType::Low, AECAlgoFlashStatePre, 100},
                                               {KIROExtFlashCurrentType::High, AECAlgoFlashStateMain, 200}})
    {
        in.flashCurrentType = type;
        Tune(flash);
        EXPECT_EQ(m_extension.GetFlashCurrent(&in, &out), 0);
        EXPECT_EQ(out.LED1Setting, current);
        EXPECT_EQ(out.state, state);
        Tune(kiroflash::KIROFlashType{});
        EXPECT_EQ(m_extension.GetFlashCurrent(&in, &out), 0) << "a failed estimate succeeds with an output of zeros";
        EXPECT_EQ(out.LED1Setting + out.LED2Setting, 0);
        EXPECT_EQ(out.state, state);
    }
}

}  // namespace
