/// @file
/// Convergence on a desk: a history of two frames, targets, and tunings that a test changes.
///
/// Exposures are spoken of in steps of 3 percent: step s is an exposure of 1.03 to the power s.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "core/convergence/ckiromodconvergence.h"
#include "platform/tavodesk.h"
#include "schema/kirohdrsensor.h"
#include "tests/support/statslogcapture.h"
#include "tests/support/testcontext.h"

constexpr UINT32 LevelError = 2;
constexpr UINT32 LevelTrace = 32;

inline UINT64 AtStep(DOUBLE step)
{
    return static_cast<UINT64>(std::llround(std::pow(1.03, step)));
}

inline DOUBLE StepOf(DOUBLE exposure)
{
    return std::log(exposure) / std::log(1.03);
}

/// Steps of the three exposures.
struct Steps
{
    DOUBLE shortStep;
    DOUBLE longStep;
    DOUBLE safeStep;
};

inline Steps Same(DOUBLE step)
{
    return {step, step, step};
}

inline AECFrameHistory FrameAt(const Steps& rSteps)
{
    AECFrameHistory frame{};
    frame.exposureSets[AECAlgoExposureShort].exposure = AtStep(rSteps.shortStep);
    frame.exposureSets[AECAlgoExposureLong].exposure  = AtStep(rSteps.longStep);
    frame.exposureSets[AECAlgoExposureSafe].exposure  = AtStep(rSteps.safeStep);
    frame.evFactor                                    = 1.0f;
    frame.predictiveGain                              = 1.0f;
    frame.compensationDarkBoost                       = 1.0f;
    frame.mfhdrLongADRC                               = 1.0f;
    return frame;
}

/// A tree of one zone, which every trigger value selects.
template <typename Level1, typename Level2, typename Level3, typename Core> struct OneZone
{
    explicit OneZone(const Core& rCore = {}) : leaf{{0.0f, 1.0f}, rCore}
    {
    }

    Level1* Tree()
    {
        middle = {{0.0f, 1.0f}, 1, 0, &leaf};
        top    = {{0.0f, 1.0f}, 1, 0, &middle};
        return &top;
    }

    Core& Data()
    {
        return leaf.triggerData;
    }

    Level3 leaf;
    Level2 middle{};
    Level1 top{};
};

using BaseZone    = OneZone<kirodbconvbase::ConvBaseLevel1DataType, kirodbconvbase::ConvBaseLevel2DataType,
                            kirodbconvbase::ConvBaseLevel3DataType, kirodbconvbase::ConvBaseCoreDataType>;
using StretchZone = OneZone<kirodbconvstretch::ConvStretchLevel1DataType, kirodbconvstretch::ConvStretchLevel2DataType,
                            kirodbconvstretch::ConvStretchLevel3DataType, kirodbconvstretch::ConvStretchCoreDataType>;

class ConvergenceTest : public testing::Test
{
protected:
    /// Speed 0.1 without a cap in reach, steps of 0.5, no stretch, settled within 2 steps for two frames, a pipeline of
    /// two frames, and limits that no exposure reaches, off the output grid.
    ConvergenceTest()
    {
        m_context.m_input.systemLatency       = 2;
        m_context.m_input.opMode              = AECAlgoOperationModeStreaming;
        m_context.m_input.evContext.evFactor  = 1.0f;
        m_module.unitStepSize                 = 0.5f;
        m_speeds.Data()                       = {0.1f, 1000.0f, 0.0f};
        m_base.dataID                         = 1;
        m_base.value.cappingType              = kirodbconvbase::CappingTypeAbsolute;
        m_base.value.trigger1DataBank         = {BankIDTriggers, 100};
        m_base.value.trigger2DataBank         = {BankIDStatsCalculator, 100};
        m_base.value.trigger3DataBank         = {BankIDSceneAnalyzer, 100};
        m_stretch.dataID                      = 1;
        m_settle.dataID                       = 1;
        auto& rSettle                         = m_settle.value.baseSettleTrigger;
        rSettle.trigger1DataBank              = {BankIDTriggers, 100};
        rSettle.trigger2DataBank              = {BankIDTriggers, 100};
        m_settleLeaf                          = {{0.0f, 1.0f}, {1, 2.0f}};
        m_settleZone                          = {{0.0f, 1.0f}, 1, 0, &m_settleLeaf};
        rSettle.trigger1DataCount             = 1;
        rSettle.trigger1Data                  = &m_settleZone;
        m_activeSCD.SCDID                     = 7;
        m_limits.indexZeroExposure            = 1000;
        for (KIROExposureRange& rRange : m_limits.ranges)
        {
            rRange.start.exposure = 1;
            rRange.end.exposure   = 1ULL << 50;
        }
    }

    /// Adds a frame to the history, later than those before.
    VOID SaveFrame(AECFrameHistory frame)
    {
        frame.frameID = ++m_frameID;
        m_context.SaveFrame(frame);
    }

    /// The frame whose statistics are looked at, and the previous one.
    VOID SaveHistory(const Steps& rMatched, const Steps& rPrevious)
    {
        SaveFrame(FrameAt(rMatched));
        SaveFrame(FrameAt(rPrevious));
    }

    /// Loads the tunings; later changes of the bank records act at once, those of modules do not.
    CKIROConvergence& Module()
    {
        if (m_pModule == nullptr)
        {
            TestTuning tuning;
            tuning.Add(m_module);
            if (m_hasHDRSensor)
            {
                tuning.Add(m_hdrSensor);
            }
            m_context.SetTuning(tuning);
            m_base.value.trigger1DataCount = 1;
            m_base.value.trigger1Data      = m_speeds.Tree();
            SetBank(BankIDConvBase, m_base);
            SetBank(BankIDConvStretch, m_stretch);
            SetBank(BankIDConvSettle, m_settle);
            SetBank(BankIDConvActiveSCD, m_activeSCD);
            m_pModule = TavoNew<CKIROConvergence>(m_context.m_tuningData, m_context);
        }
        return *m_pModule;
    }

    /// The next frame runs on a new module with the tunings as they are now.
    VOID Restart()
    {
        m_pModule.reset();
    }

    template <typename Payload> VOID SetBank(KIROBankIDType bankID, Payload& rPayload)
    {
        m_context.m_pBankManager->SetBankTuning(bankID, nullptr, &rPayload, 1);
    }

    VOID SetStretches(const std::vector<kirodbconvstretch::ConvStretchCoreDataType>& rStretches,
                      kirodbconvstretch::AECConvStretchType type = kirodbconvstretch::StretchTypeOffset)
    {
        m_stretchZones = std::vector<StretchZone>(rStretches.begin(), rStretches.end());
        m_stretchTunings.assign(rStretches.size(), {});
        for (size_t index = 0; index < rStretches.size(); ++index)
        {
            auto& rStretch             = m_stretchTunings[index];
            rStretch.stretchType       = type;
            rStretch.trigger1DataBank  = {BankIDTriggers, 100};
            rStretch.trigger2DataBank  = {BankIDTriggers, 100};
            rStretch.trigger3DataBank  = {BankIDTriggers, 100};
            rStretch.trigger1DataCount = 1;
            rStretch.trigger1Data      = m_stretchZones[index].Tree();
        }
        m_stretch.value.convStretchCount = static_cast<UINT32>(rStretches.size());
        m_stretch.value.convStretch      = m_stretchTunings.data();
    }

    /// One frame, without the stages after it.
    KiroResult Run(const Steps& rTarget)
    {
        return RunTargets({AtStep(rTarget.shortStep), AtStep(rTarget.longStep), AtStep(rTarget.safeStep)}, FALSE);
    }

    /// One frame whose metering was skipped, so that the output is the target. @param rTargets Short, Long, Safe
    KiroResult RunSkipped(const UINT64 (&rTargets)[3])
    {
        return RunTargets(rTargets, TRUE);
    }

    DOUBLE Step(AECAlgoExposureType type) const
    {
        return StepOf(static_cast<DOUBLE>(m_output.exposures[type]));
    }

    VOID ExpectSteps(const Steps& rExpected, const std::string& rMessage = "") const
    {
        EXPECT_NEAR(Step(AECAlgoExposureShort), rExpected.shortStep, 0.01) << "Short " << rMessage;
        EXPECT_NEAR(Step(AECAlgoExposureLong), rExpected.longStep, 0.01) << "Long " << rMessage;
        EXPECT_NEAR(Step(AECAlgoExposureSafe), rExpected.safeStep, 0.01) << "Safe " << rMessage;
    }

    /// Settles on exposures of the frame looked at; runs a frame first, as the settle stage follows it.
    VOID Settle(const Steps& rSteps)
    {
        m_settleLeaf.triggerData.settleCountTh = 0;
        ASSERT_EQ(Run(rSteps), 0);
        m_output.exposures[AECAlgoExposureShort] = AtStep(rSteps.shortStep);
        m_output.exposures[AECAlgoExposureLong]  = AtStep(rSteps.longStep);
        m_output.exposures[AECAlgoExposureSafe]  = AtStep(rSteps.safeStep);
        Module().RunConvSettle(m_output);
        ASSERT_EQ(m_output.bSettle, TRUE);
    }

    StatsLogCapture m_log;
    TestContext     m_context;

    kiroconvergence::KIROConvergenceType                          m_module{};
    kirohdrsensor::KIROHDRSensorType                              m_hdrSensor{};
    bool                                                          m_hasHDRSensor = false;
    BaseZone                                                      m_speeds;
    kirodbconvbase::DBConvBasePayload                             m_base{};
    std::vector<StretchZone>                                      m_stretchZones;
    std::vector<kirodbconvstretch::ConvTargetStretchType>         m_stretchTunings;
    kirodbconvstretch::DBConvStretchPayload                       m_stretch{};
    kirodbconvsettle::SettleTwoLevelTriggerSystemLevel2Type       m_settleLeaf{};
    kirodbconvsettle::SettleTwoLevelTriggerSystemLevel1Type       m_settleZone{};
    kirodbconvsettle::DBConvSettlePayload                         m_settle{};
    kirodbconvactivescd::DBConvActiveSCDPayload                   m_activeSCD{};
    KIROArbitratedLimits                                          m_limits{};
    KIROConvergenceOutput                                         m_output{};

private:
    KiroResult RunTargets(const UINT64 (&rTargets)[3], BOOL bIsMeteringSkipped)
    {
        KIROConvergenceInput input{};
        input.pRange             = &m_limits;
        input.bIsMeteringSkipped = bIsMeteringSkipped;
        input.mfhdrLongADRC      = 1.0f;
        std::copy(std::begin(rTargets), std::end(rTargets), input.sensitivities);
        m_output = {};
        return Module().RunConvProcesss(input, m_output);
    }

    UINT64                    m_frameID = 100;
    TavoPtr<CKIROConvergence> m_pModule;
};
