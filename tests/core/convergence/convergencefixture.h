/// @file
/// Convergence on a desk: a history of frames, targets, and tunings that a test changes.
///
/// Exposures are spoken of in steps of 3 percent: step s is an exposure of 1.03 to the power s.
#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

#include "core/convergence/ckiromodconvergence.h"
#include "schema/kiroflash.h"
#include "schema/kirohdrsensor.h"
#include "schema/kirosync.h"
#include "tests/support/testcontext.h"

/// Steps of Short, Long and Safe.
typedef std::array<DOUBLE, 3> Steps;

inline Steps Same(DOUBLE step)
{
    return {step, step, step};
}

inline FLOAT FactorOf(DOUBLE steps)
{
    return static_cast<FLOAT>(std::pow(1.03, steps));
}

inline UINT64 AtStep(DOUBLE step)
{
    return static_cast<UINT64>(std::llround(std::pow(1.03, step)));
}

inline DOUBLE StepOf(DOUBLE exposure)
{
    return std::log(exposure) / std::log(1.03);
}

inline AECFrameHistory FrameAt(const Steps& rSteps, DOUBLE predictiveGainSteps = 0.0)
{
    AECFrameHistory frame{};
    for (size_t type = 0; type < rSteps.size(); ++type)
    {
        frame.exposureSets[type].exposure = AtStep(rSteps[type]);
    }
    frame.evFactor              = 1.0f;
    frame.predictiveGain        = FactorOf(predictiveGainSteps);
    frame.compensationDarkBoost = 1.0f;
    frame.mfhdrLongADRC         = 1.0f;
    return frame;
}

/// A stretch with its trigger tree of one zone.
struct StretchZone
{
    kirodbconvstretch::ConvStretchLevel3DataType leaf;
    kirodbconvstretch::ConvStretchLevel2DataType middle;
    kirodbconvstretch::ConvStretchLevel1DataType top;
};

class ConvergenceTest : public ContextTest
{
protected:
    /// Steps of 0.5, no stretch, settled within 2 steps for more than one frame, a pipeline of two frames, and limits
    /// that no exposure reaches, off the output grid.
    ConvergenceTest()
    {
        m_context.m_input.systemLatency      = 2;
        m_context.m_input.opMode             = AECAlgoOperationModeStreaming;
        m_context.m_input.evContext.evFactor = 1.0f;
        m_module.unitStepSize                = 0.5f;
        m_base.value.trigger1DataBank        = Trigger;
        m_base.value.trigger2DataBank        = {BankIDStatsCalculator, 100};
        m_base.value.trigger3DataBank        = {BankIDSceneAnalyzer, 100};
        m_base.value.trigger1DataCount       = 1;
        m_base.value.trigger1Data            = &m_speedTop;
        m_settle.value.baseSettleTrigger     = {Trigger, Trigger, 1, 0, &m_settleTop};
        m_activeSCD.SCDID                    = 7;
        m_limits.indexZeroExposure           = 1000;
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
        m_speedLeaf.triggerData  = {baseSpeed, capping, drcSpeed};
        m_base.value.cappingType = cappingType;
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

    /// Later changes of the bank records act at once, those of other tunings after LoadTuning.
    VOID LoadTuning()
    {
        Tune(m_module, m_flash, m_sync, m_hdrSensor);
        SetBank(BankIDConvBase, &m_base);
        SetBank(BankIDConvStretch, &m_stretch);
        SetBank(BankIDConvSettle, &m_settle);
        SetBank(BankIDConvActiveSCD, &m_activeSCD);
    }

    /// Starts on a new module, with all tunings as they are now.
    CKIROConvergence& Restart()
    {
        LoadTuning();
        m_pModule = TavoNew<CKIROConvergence>(m_context.m_tuningData, m_context);
        return *m_pModule;
    }

    CKIROConvergence& Module()
    {
        return (m_pModule != nullptr) ? *m_pModule : Restart();
    }

    VOID SetStretches(const std::vector<kirodbconvstretch::ConvStretchCoreDataType>& rStretches,
                      kirodbconvstretch::AECConvStretchType type = kirodbconvstretch::StretchTypeOffset)
    {
        m_stretchZones.resize(rStretches.size());
        m_stretchTunings.clear();
        for (size_t index = 0; index < rStretches.size(); ++index)
        {
            StretchZone& rZone = m_stretchZones[index];
            rZone.leaf         = {{0.0f, 1.0f}, rStretches[index]};
            rZone.middle       = {{0.0f, 1.0f}, 1, 0, &rZone.leaf};
            rZone.top          = {{0.0f, 1.0f}, 1, 0, &rZone.middle};
            m_stretchTunings.push_back({type, Trigger, Trigger, Trigger, 1, 0, &rZone.top});
        }
        m_stretch.value.convStretchCount = static_cast<UINT32>(rStretches.size());
        m_stretch.value.convStretch      = m_stretchTunings.data();
    }

    /// One frame, without the stages after it.
    VOID Run(const Steps& rTarget, BOOL bIsMeteringSkipped = FALSE)
    {
        KIROConvergenceInput input = {
            .pRange = &m_limits, .bIsMeteringSkipped = bIsMeteringSkipped, .mfhdrLongADRC = 1.0f};
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

    VOID ExpectRun(const Steps& rTarget, const Steps& rExpected, const std::string& rMessage = "")
    {
        Run(rTarget);
        ExpectSteps(rExpected, rMessage);
    }

    /// The settle stage on exposures that stand in for those of the last frame.
    VOID RunSettle(const Steps& rSteps)
    {
        std::transform(rSteps.begin(), rSteps.end(), m_output.exposures, AtStep);
        m_output.bBrightnessSettle = FALSE;
        m_output.bSettle           = FALSE;
        Module().RunConvSettle(m_output);
    }

    static constexpr DataBankType Trigger{BankIDTriggers, 100};

    kiroconvergence::KIROConvergenceType m_module{};
    kiroflash::KIROFlashType             m_flash{};
    kirosync::KIROSyncType               m_sync{};
    kirohdrsensor::KIROHDRSensorType     m_hdrSensor{};
    KIROArbitratedLimits                 m_limits{};
    KIROConvergenceOutput                m_output{};

    kirodbconvbase::ConvBaseLevel3DataType                  m_speedLeaf{{0.0f, 1.0f}, {}};
    kirodbconvbase::ConvBaseLevel2DataType                  m_speedMiddle{{0.0f, 1.0f}, 1, 0, &m_speedLeaf};
    kirodbconvbase::ConvBaseLevel1DataType                  m_speedTop{{0.0f, 1.0f}, 1, 0, &m_speedMiddle};
    kirodbconvbase::DBConvBasePayload                       m_base{};
    std::vector<StretchZone>                                m_stretchZones;
    std::vector<kirodbconvstretch::ConvTargetStretchType>   m_stretchTunings;
    kirodbconvstretch::DBConvStretchPayload                 m_stretch{};
    kirodbconvsettle::SettleTwoLevelTriggerSystemLevel2Type m_settleLeaf{{0.0f, 1.0f}, {1, 2.0f}};
    kirodbconvsettle::SettleTwoLevelTriggerSystemLevel1Type m_settleTop{{0.0f, 1.0f}, 1, 0, &m_settleLeaf};
    kirodbconvsettle::DBConvSettlePayload                   m_settle{};
    kirodbconvactivescd::DBConvActiveSCDPayload             m_activeSCD{};

private:
    UINT64                    m_frameID = 100;
    TavoPtr<CKIROConvergence> m_pModule;
};
