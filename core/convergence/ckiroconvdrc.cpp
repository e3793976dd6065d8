// The distances of Short and Long from Safe.

#include <algorithm>
#include <cmath>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/convergence/ckiromodconvergence.h"

using exposurearithmetic::Epsilon;
using exposurearithmetic::IndexBase;
using exposurearithmetic::SensiLog103;

namespace
{

/// Analyzer output that holds the metered dark compensation.
constexpr INT32 DarkCompensationSlot = 207;

/// @return rounded half up, as a log
DOUBLE LogOfRoundedExposure(UINT64 exposure)
{
    return SensiLog103(static_cast<FLOAT>(exposure));
}

/// @return step with the sign of value; a value of 0 counts as negative
template <typename T> T SignedStep(T step, T value)
{
    return (value > T(0)) ? step : -step;
}

FLOAT RatioOfTargets(UINT64 numerator, UINT64 denominator)
{
    return static_cast<FLOAT>(static_cast<DOUBLE>(numerator) / std::max(static_cast<DOUBLE>(denominator), 1.0));
}

}  // namespace

VOID CKIROConvergence::ComputeDRCConvergence()
{
    const FLOAT drcSpeed             = m_pBaseCoreData->drcSpeed;
    m_DRCOutput[AECAlgoExposureSafe] = m_output.sensiLog103[AECAlgoExposureSafe];
    if (m_pTuning->smoothADRC.enableSmoothDRC == TRUE)
    {
        ConvergeSmoothNode(AECAlgoExposureShort);
    }
    if (m_pTuning->smoothDarkBoost.enableSmoothDRC == TRUE)
    {
        ConvergeSmoothNode(AECAlgoExposureLong);
    }
    DRCDeltaConvergence(AECAlgoExposureShort, drcSpeed);
    DRCDeltaConvergence(AECAlgoExposureLong, drcSpeed);
}

VOID CKIROConvergence::DRCDeltaConvergence(UINT32 expType, FLOAT speed)
{
    const DOUBLE desiredDelta  = GetExposureInfo(KIROConvDRCCurrDelta, expType);
    const DOUBLE inputDelta    = GetExposureInfo(KIROConvDRCPrevDelta, expType);
    const DOUBLE matchDelta    = GetExposureInfo(KIROConvTgtMatchDelta, expType);
    const DOUBLE previousDelta = GetExposureInfo(KIROConvTgtPreviousDelta, expType);
    const DOUBLE tolerance     = m_pConvBase->value.tolerance;
    const DOUBLE safe          = m_DRCOutput[AECAlgoExposureSafe];
    const DOUBLE target        = m_input.sensiLog103[expType];

    const bool willBeInTolerance = tolerance > std::abs(previousDelta) && m_bSettleArray[expType] == TRUE;
    const bool isChanging        = !(std::abs(desiredDelta - inputDelta) < static_cast<DOUBLE>(Epsilon));
    DOUBLE     output            = safe - inputDelta;
    if (!willBeInTolerance && matchDelta * previousDelta > 0.0 && isChanging)
    {
        output = DRCMovedOutput(expType, speed, desiredDelta, inputDelta);
    }

    // Never away from the target, never past it.
    const DOUBLE prevExposure = GetExposureInfo(KIROConvPrevious, expType);
    if ((output - prevExposure) * (target - prevExposure) < 0.0)
    {
        output = prevExposure;
    }
    output = (target - prevExposure > 0.0) ? std::min(target, output) : std::max(target, output);

    const FLOAT maxDeltaAbs = static_cast<FLOAT>(std::max(std::abs(desiredDelta), std::abs(inputDelta)));
    if (maxDeltaAbs < static_cast<FLOAT>(std::abs(safe - output)))
    {
        output = (safe < output) ? safe + static_cast<DOUBLE>(maxDeltaAbs) : safe - static_cast<DOUBLE>(maxDeltaAbs);
    }
    m_DRCOutput[expType] = output;
}

DOUBLE CKIROConvergence::DRCMovedOutput(UINT32 expType, FLOAT speed, DOUBLE desiredDelta, DOUBLE inputDelta) const
{
    const DOUBLE unitStep  = m_pTuning->unitStepSize;
    const UINT32 tolerance = m_pConvBase->value.tolerance;
    const DOUBLE target    = m_input.sensiLog103[expType];

    DOUBLE adjustment = static_cast<DOUBLE>(speed) * (desiredDelta - inputDelta);
    if (unitStep > std::abs(adjustment))
    {
        adjustment = SignedStep(unitStep, adjustment);
    }
    const DOUBLE output = m_DRCOutput[AECAlgoExposureSafe] - (inputDelta + adjustment);
    const bool   isLanding =
        static_cast<DOUBLE>(tolerance) > std::abs(output - target) && static_cast<FLOAT>(tolerance) < LandingTolerance;
    return isLanding ? target : output;
}

VOID CKIROConvergence::ConvergeSmoothNode(AECAlgoExposureType exposureType)
{
    const bool  isADRC   = exposureType == AECAlgoExposureShort;
    const auto& rTuning  = isADRC ? m_pTuning->smoothADRC : m_pTuning->smoothDarkBoost;
    auto&       rContext = isADRC ? m_smoothADRC : m_smoothDarkBoost;
    const FLOAT gainTarget =
        isADRC ? ADRCGainTarget()
               : RatioOfTargets(m_input.exposures[AECAlgoExposureLong], m_input.exposures[AECAlgoExposureSafe]);
    if (rTuning.nodesCount == 0)
    {
        return;
    }
    StepSmoothNode(rContext, rTuning, gainTarget);

    const DOUBLE safe     = exposurearithmetic::ExposureOfSensiLog103(m_input.sensiLog103[AECAlgoExposureSafe]);
    const DOUBLE gain     = rContext.gain;
    const DOUBLE oldValue = exposurearithmetic::ExposureOfSensiLog103(m_input.sensiLog103[exposureType]);
    DOUBLE       newValue = gain * safe;
    if (isADRC)
    {
        newValue = (rContext.gain < 1.0f) ? safe : safe / gain;
    }
    m_input.sensiLog103[exposureType] = LogOfRoundedExposure(exposurearithmetic::SaturateToUINT64(newValue + 0.5));
    STATS_LOG_TRACE("KIROCONVRG Video AEC smooth %s gain target %.3f index %d gainNode %.3f gain %.3f state %d old "
                    "target %.0f new target %.0f",
                    isADRC ? "ADRC" : "DarkBoost", gainTarget, rContext.nodeIndex, rContext.gainNode, rContext.gain,
                    rContext.state, oldValue, newValue);
}

FLOAT CKIROConvergence::ADRCGainTarget() const
{
    const FLOAT gainTarget =
        RatioOfTargets(m_input.exposures[AECAlgoExposureSafe], m_input.exposures[AECAlgoExposureShort]);
    if (m_rContextManager.m_bIsHybridHDR != TRUE)
    {
        return gainTarget;
    }
    CKIROBankManager& rBanks  = *m_rContextManager.m_pBankManager;
    const FLOAT       cap     = rBanks.GetDataTriggers(TriggerCtrlADRCCap)->value;
    const FLOAT       binning = rBanks.GetDataTriggers(TriggerCtrl3HDRBinning)->value;
    return (exposurearithmetic::SaturateToINT32(binning) == 1) ? std::min(gainTarget, cap) : gainTarget;
}

VOID CKIROConvergence::CalculateCompensationDarkBoostGain(const KIROConvergenceInput& rInput,
                                                          KIROConvergenceOutput&      rOutput) const
{
    const FLOAT longOverSafe =
        static_cast<FLOAT>(m_output.sensiLog103[AECAlgoExposureLong] - m_output.sensiLog103[AECAlgoExposureSafe]);
    const FLOAT normalDarkBoost = std::max(rOutput.mfhdrLongADRC * std::pow(IndexBase, longOverSafe), 1.0f);

    const AECAlgoHDRType   type      = m_rContextManager.GetInput()->HDRType;
    const AECFrameHistory* pPrevious = PreviousFrame();
    if ((type != StaggeredHDR && type != MultiframeHDR) || pPrevious == nullptr)
    {
        rOutput.compensationDarkBoost = normalDarkBoost;
        return;
    }
    if (rOutput.bIfConvProcRun != TRUE || m_bIsTargetFixed == TRUE || m_pBaseCoreData == nullptr)
    {
        rOutput.compensationDarkBoost = std::max(pPrevious->compensationDarkBoost, 1.0f);
        return;
    }
    rOutput.compensationDarkBoost = normalDarkBoost * ConvergeDarkCompensation(rInput, *pPrevious);
}

/// @return the part of the dark boost that the exposures do not give, at least 1
FLOAT CKIROConvergence::ConvergeDarkCompensation(const KIROConvergenceInput& rInput,
                                                 const AECFrameHistory&      rPrevious) const
{
    const auto& rPreviousSets = rPrevious.exposureSets;
    const FLOAT metered =
        std::max(m_rContextManager.m_pBankManager->GetDataSceneAnalyzer(DarkCompensationSlot)->value.start, 1.0f);
    const FLOAT previousNormal =
        std::max(static_cast<FLOAT>(rPreviousSets[AECAlgoExposureLong].exposure) * rPrevious.mfhdrLongADRC /
                     static_cast<FLOAT>(rPreviousSets[AECAlgoExposureSafe].exposure),
                 1.0f);
    const FLOAT targetNormal =
        std::max(static_cast<FLOAT>(m_input.exposures[AECAlgoExposureLong]) * rInput.mfhdrLongADRC /
                     static_cast<FLOAT>(m_input.exposures[AECAlgoExposureSafe]),
                 1.0f);
    const FLOAT desiredDelta = std::max(metered / targetNormal, 1.0f);
    const FLOAT unitStep     = m_pTuning->unitStepSize;

    FLOAT       compensation = std::max(rPrevious.compensationDarkBoost / previousNormal, 1.0f);
    const FLOAT target       = exposurearithmetic::IndexOfRatio(desiredDelta);
    const FLOAT remaining    = target - exposurearithmetic::IndexOfRatio(compensation);
    const bool  isHeld =
        static_cast<FLOAT>(m_pConvBase->value.tolerance) > std::abs(remaining) && !(std::abs(target) < Epsilon);
    if (!isHeld)
    {
        FLOAT offset = remaining * m_pBaseCoreData->drcSpeed;
        if (unitStep > std::abs(offset) && !(std::abs(offset) < Epsilon))
        {
            offset = SignedStep(unitStep, offset);
        }
        compensation *= std::pow(IndexBase, offset);
    }
    if (compensation == 0.0f)
    {
        return 1.0f;
    }
    const FLOAT steps = std::round(exposurearithmetic::IndexOfRatio(compensation) / unitStep);
    return std::max(1.0f, std::pow(IndexBase, steps * unitStep));
}
