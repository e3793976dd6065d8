/// @file
/// Convergence on a desk: a history of frames, targets, and tunings that a test changes.
///
/// Exposures are spoken of in steps of 3 percent: step s is an exposure of 1.03 to the power s.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "core/convergence/ckiromodconvergence.h"
#include "tests/support/statslogcapture.h"
#include "tests/support/testcontext.h"

constexpr UINT32 LevelError = 2;
constexpr UINT32 LevelTrace = 32;

inline DOUBLE ExposureOf(DOUBLE step)
{
    return std::pow(1.03, step);
}

inline UINT64 AtStep(DOUBLE step)
{
    return static_cast<UINT64>(std::llround(ExposureOf(step)));
}

inline DOUBLE StepOf(DOUBLE exposure)
{
    return std::log(exposure) / std::log(1.03);
}

/// Steps of Short, Long and Safe.
typedef std::array<DOUBLE, 3> Steps;

inline Steps Same(DOUBLE step)
{
    return {step, step, step};
}

inline AECFrameHistory FrameAt(const Steps& rSteps, DOUBLE predictiveGainSteps = 0.0)
{
    AECFrameHistory frame{};
    for (size_t type = 0; type < rSteps.size(); ++type)
    {
        frame.exposureSets[type].exposure = AtStep(rSteps[type]);
    }
    frame.evFactor              = 1.0f;
    frame.predictiveGain        = static_cast<FLOAT>(ExposureOf(predictiveGainSteps));
    frame.compensationDarkBoost = 1.0f;
    frame.mfhdrLongADRC         = 1.0f;
    return frame;
}

/// A tree of one zone, which every trigger value selects.
template <typename Level1, typename Level2, typename Level3> struct OneZone
{
    explicit OneZone(decltype(Level3::triggerData) data = {}) : leaf{{0.0f, 1.0f}, data}
    {
    }

    Level1* Tree()
    {
        middle = {{0.0f, 1.0f}, 1, 0, &leaf};
        top    = {{0.0f, 1.0f}, 1, 0, &middle};
        return &top;
    }

    Level3 leaf;
    Level2 middle{};
    Level1 top{};
};

using StretchZone = OneZone<kirodbconvstretch::ConvStretchLevel1DataType, kirodbconvstretch::ConvStretchLevel2DataType,
                            kirodbconvstretch::ConvStretchLevel3DataType>;

class ConvergenceTest : public testing::Test
{
protected:
    /// Steps of 0.5, no stretch, settled within 2 steps for more than one frame, a pipeline of two frames, and limits
    /// that no exposure reaches, off the output grid.
    ConvergenceTest()
    {
        m_context.m_input.systemLatency          = 2;
        m_context.m_input.opMode                 = AECAlgoOperationModeStreaming;
        m_context.m_input.evContext.evFactor     = 1.0f;
        m_module.unitStepSize                    = 0.5f;
        m_base.value.trigger1DataBank            = {BankIDTriggers, 100};
        m_base.value.trigger2DataBank            = {BankIDStatsCalculator, 100};
        m_base.value.trigger3DataBank            = {BankIDSceneAnalyzer, 100};
        m_base.value.trigger1DataCount           = 1;
        m_base.value.trigger1Data                = m_speeds.Tree();
        m_settle.value.baseSettleTrigger         = {{BankIDTriggers, 100}, {BankIDTriggers, 100}, 1, 0, &m_settleZone};
        m_activeSCD.SCDID                        = 7;
        m_limits.indexZeroExposure               = 1000;
        for (KIROExposureRange& rRange : m_limits.ranges)
        {
            rRange.start.exposure = 1;
            rRange.end.exposure   = 1ULL << 50;
        }
        SetSpeeds(0.1f, 0.0f);
    }

    VOID SetSpeeds(FLOAT baseSpeed, FLOAT drcSpeed, FLOAT capping = 1000.0f,
                   kirodbconvbase::AECConvCappingType cappingType = kirodbconvbase::CappingTypeAbsolute)
    {
        m_speeds.leaf.triggerData = {baseSpeed, capping, drcSpeed};
        m_base.value.cappingType  = cappingType;
    }

    /// Adds the frame whose statistics are looked at and the previous one to the history, later than those before.
    VOID SaveHistory(const AECFrameHistory& rMatched, const AECFrameHistory& rPrevious)
    {
        for (AECFrameHistory frame : {rMatched, rPrevious})
        {
            frame.frameID = ++m_frameID;
            m_context.SaveFrame(frame);
        }
    }

    VOID SaveHistory(const AECFrameHistory& rBoth)
    {
        SaveHistory(rBoth, rBoth);
    }

    /// Loads the tunings. Later changes of the bank records act at once, those of the module's record after a Restart.
    CKIROConvergence& Module()
    {
        if (m_pModule == nullptr)
        {
            m_context.SetTuning(TestTuning().Add(m_module));
            SetBank(BankIDConvBase, &m_base);
            SetBank(BankIDConvStretch, &m_stretch);
            SetBank(BankIDConvSettle, &m_settle);
            SetBank(BankIDConvActiveSCD, &m_activeSCD);
            m_pModule = TavoNew<CKIROConvergence>(m_context.m_tuningData, m_context);
        }
        return *m_pModule;
    }

    VOID Restart()
    {
        m_pModule.reset();
    }

    VOID SetBank(KIROBankIDType bankID, VOID* pPayload)
    {
        m_context.m_pBankManager->SetBankTuning(bankID, nullptr, pPayload, (pPayload != nullptr) ? 1 : 0);
    }

    VOID SetStretches(const std::vector<kirodbconvstretch::ConvStretchCoreDataType>& rStretches,
                      kirodbconvstretch::AECConvStretchType type = kirodbconvstretch::StretchTypeOffset)
    {
        constexpr DataBankType trigger{BankIDTriggers, 100};
        m_stretchZones = std::vector<StretchZone>(rStretches.begin(), rStretches.end());
        m_stretchTunings.clear();
        for (StretchZone& rZone : m_stretchZones)
        {
            m_stretchTunings.push_back({type, trigger, trigger, trigger, 1, 0, rZone.Tree()});
        }
        m_stretch.value.convStretchCount = static_cast<UINT32>(rStretches.size());
        m_stretch.value.convStretch      = m_stretchTunings.data();
    }

    /// One frame, without the stages after it.
    VOID Run(const Steps& rTarget, BOOL bIsMeteringSkipped = FALSE)
    {
        KIROConvergenceInput input{};
        input.pRange             = &m_limits;
        input.bIsMeteringSkipped = bIsMeteringSkipped;
        input.mfhdrLongADRC      = 1.0f;
        std::transform(rTarget.begin(), rTarget.end(), input.sensitivities, AtStep);
        m_output = {};
        EXPECT_EQ(Module().RunConvProcesss(input, m_output), 0);
    }

    VOID ExpectSteps(const Steps& rExpected, const std::string& rMessage = "") const
    {
        for (size_t type = 0; type < rExpected.size(); ++type)
        {
            EXPECT_NEAR(StepOf(static_cast<DOUBLE>(m_output.exposures[type])), rExpected[type], 0.01)
                << "exposure " << type << " " << rMessage;
        }
    }

    /// The settle stage on exposures that stand in for those of the last frame.
    VOID RunSettle(const Steps& rSteps)
    {
        std::transform(rSteps.begin(), rSteps.end(), m_output.exposures, AtStep);
        m_output.bBrightnessSettle = FALSE;
        m_output.bSettle           = FALSE;
        Module().RunConvSettle(m_output);
    }

    StatsLogCapture m_log;
    TestContext     m_context;

    kiroconvergence::KIROConvergenceType m_module{};

    OneZone<kirodbconvbase::ConvBaseLevel1DataType, kirodbconvbase::ConvBaseLevel2DataType,
            kirodbconvbase::ConvBaseLevel3DataType>         m_speeds;
    kirodbconvbase::DBConvBasePayload                       m_base{};
    std::vector<StretchZone>                                m_stretchZones;
    std::vector<kirodbconvstretch::ConvTargetStretchType>   m_stretchTunings;
    kirodbconvstretch::DBConvStretchPayload                 m_stretch{};
    kirodbconvsettle::SettleTwoLevelTriggerSystemLevel2Type m_settleLeaf{{0.0f, 1.0f}, {1, 2.0f}};
    kirodbconvsettle::SettleTwoLevelTriggerSystemLevel1Type m_settleZone{{0.0f, 1.0f}, 1, 0, &m_settleLeaf};
    kirodbconvsettle::DBConvSettlePayload                   m_settle{};
    kirodbconvactivescd::DBConvActiveSCDPayload             m_activeSCD{};
    KIROArbitratedLimits                                    m_limits{};
    KIROConvergenceOutput                                   m_output{};

private:
    UINT64                    m_frameID = 100;
    TavoPtr<CKIROConvergence> m_pModule;
};
