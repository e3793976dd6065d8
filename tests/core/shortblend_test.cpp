// The long compensation and the blend of the short exposure, by hand-worked targets.

#include "core/ckiroshortblend.h"

#include <algorithm>
#include <cmath>

#include "tests/support/testcontext.h"

namespace
{

using namespace kiroparamextension;

constexpr INT32 ControlTrigger = 70;  // and the two after it: the tuned controls as they are
constexpr INT32 BlendSlot      = 120;

/// Each control is a tree over one trigger that yields 0 to 16 for 0 to 16.
class ShortBlend : public ContextTest
{
protected:
    ShortBlend()
    {
        for (INT32 control = 0; control < 3; ++control)
        {
            m_triggers[control] = {
                {BankIDTriggers, ControlTrigger + control}, {BankIDTriggers, 0}, {BankIDTriggers, 0}, 2, 0, m_level1};
        }
        m_parameter = {const_cast<CHAR*>("AECExtParamMFHDRADRCControl"), 4, TRUE, 4, 0, m_data, 3, 0, m_triggers};
        m_context.m_input.HDRType = MultiframeHDR;
        Load();
    }

    VOID Load()
    {
        Tune(KIROParamExtensionType{.extensionParamCount = 1, .extensionParam = &m_parameter});
    }

    VOID SetControls(FLOAT maxRatio, FLOAT maxADRC, FLOAT doBlend)
    {
        m_context.SetTrigger(ControlTrigger, maxRatio);
        m_context.SetTrigger(ControlTrigger + 1, maxADRC);
        m_context.SetTrigger(ControlTrigger + 2, doBlend);
    }

    VOID ExpectTargets(UINT64 shortExp, UINT64 longExp, FLOAT longADRC)
    {
        KIROConvergenceInput input{};
        input.sensitivities[AECAlgoExposureShort] = 1000;
        input.sensitivities[AECAlgoExposureLong]  = 3000;
        input.sensitivities[AECAlgoExposureSafe]  = 8000;
        m_blend.RunConvPreprocess(input);
        EXPECT_EQ(input.sensitivities[AECAlgoExposureShort], shortExp);
        EXPECT_EQ(input.sensitivities[AECAlgoExposureLong], longExp);
        EXPECT_EQ(input.sensitivities[AECAlgoExposureSafe], 8000u);
        EXPECT_FLOAT_EQ(input.mfhdrLongADRC, longADRC);
    }

    /// Runs a frame and its blend over converged exposures.
    FLOAT Blend(UINT64 shortExp, UINT64 longExp)
    {
        KIROConvergenceInput  input{};
        KIROConvergenceOutput output{};
        std::fill(std::begin(input.sensitivities), std::end(input.sensitivities), 1000);
        m_blend.RunConvPreprocess(input);
        output.exposures[AECAlgoExposureShort] = shortExp;
        output.exposures[AECAlgoExposureLong]  = longExp;
        return m_blend.RunConvPostprocess(output);
    }

    FLOAT                               m_data[4]   = {0.3f, 1.05f, BlendSlot, 0.5f};
    TriggerSystemEndLevelType           m_level3[2] = {{{0.0f, 1.0f}, 0.0f}, {{0.0f, 1.0f}, 16.0f}};
    ThreeLevelTriggerSystemLevel2Type   m_level2[2] = {{{0.0f, 1.0f}, 1, 0, &m_level3[0]},
                                                       {{0.0f, 1.0f}, 1, 0, &m_level3[1]}};
    ThreeLevelTriggerSystemLevel1Type   m_level1[2] = {{{0.0f, 0.0f}, 1, 0, &m_level2[0]},
                                                       {{16.0f, 16.0f}, 1, 0, &m_level2[1]}};
    ThreeLevelDataBankTriggerSystemType m_triggers[3];
    statsExtensionParamType             m_parameter{};
    CKIROShortBlend                     m_blend{m_context};
};

TEST_F(ShortBlend, CapsTheRatioAndCompensatesWithLong)
{
    SetControls(4.0f, 2.0f, 1.0f);
    ExpectTargets(2000, 4000, 2.0f);
    EXPECT_TRUE(m_log.Has(32, "warning: forcing long target 3000 to be same as safe 8000 for long ADRC feature"));
    EXPECT_EQ(m_context.Trigger(TriggerCtrlPreflashLuxIndex), 0.5f) << "fourth datum";
    SetControls(16.0f, 16.0f, 1.0f);
    ExpectTargets(1000, 1000, 8.0f);
    SetControls(1.0f, 16.0f, 1.0f);
    ExpectTargets(8000, 8000, 1.0f);

    // A control that cannot be read leaves Short, but not Long.
    m_triggers[1].trigger2DataBank.bankID = BankIDConvBase;
    Load();
    SetControls(4.0f, 2.0f, 1.0f);
    ExpectTargets(1000, 8000, 1.0f);
    EXPECT_TRUE(m_log.Has(32, "error loading trigger tuning 1"));
}

TEST_F(ShortBlend, IsOffWithoutItsHDRTypesOrItsParameter)
{
    SetControls(4.0f, 2.0f, 0.0f);
    m_context.m_input.HDRType = SensorHDR;
    ExpectTargets(1000, 3000, 1.0f);
    EXPECT_EQ(Blend(1000, 1000), 1.0f);
    EXPECT_EQ(m_context.Trigger(100), 1.0f) << "published all the same";
    EXPECT_EQ(m_context.m_bIsLongADRC, FALSE);
    m_context.m_input.HDRType = StaggeredHDR;
    m_parameter.enableFlag    = FALSE;
    Load();
    ExpectTargets(1000, 3000, 1.0f);
    m_parameter.enableFlag   = TRUE;
    m_parameter.triggerCount = 2;
    Load();
    ExpectTargets(1000, 3000, 1.0f);
}

TEST_F(ShortBlend, FadesOutOverEqualExposuresAndBackIn)
{
    SetControls(4.0f, 2.0f, 0.0f);
    EXPECT_FLOAT_EQ(Blend(1000, 1000), 0.7f);
    EXPECT_EQ(m_context.m_bIsLongADRC, TRUE);
    EXPECT_FLOAT_EQ(Blend(1000, 1049), 0.4f);
    EXPECT_FLOAT_EQ(Blend(1000, 1051), 0.4f) << "beyond the tolerance";
    EXPECT_FLOAT_EQ(m_context.Trigger(BlendSlot), 0.4f);
    EXPECT_NEAR(Blend(1000, 1000), 0.1f, 1e-6f);
    EXPECT_EQ(Blend(1000, 1000), 0.0f);
    // Off for a frame: 1, and afterwards as before.
    m_context.m_input.HDRType = HDRDisabled;
    EXPECT_EQ(Blend(1000, 1000), 1.0f);
    m_context.m_input.HDRType = MultiframeHDR;
    SetControls(4.0f, 2.0f, 1.0f);
    for (FLOAT value : {0.3f, 0.6f, 0.9f, 1.0f})
    {
        EXPECT_FLOAT_EQ(Blend(1000, 1000), value);
    }
    // A step that is no number moves nothing, and the next one goes on from there.
    SetControls(4.0f, 2.0f, 0.0f);
    for (const auto& [step, value] : {std::pair{0.3f, 0.7f}, {NAN, 0.7f}, {0.3f, 0.4f}})
    {
        m_data[0] = step;
        Load();
        EXPECT_FLOAT_EQ(Blend(1000, 1000), value) << step;
    }
}

}  // namespace
