// The dark boost: Long over Safe, of exposures and of what HDR adds digitally.

#include <algorithm>
#include <cmath>

#include "core/base/exposurearithmetic.h"
#include "core/convergence/ckiromodconvergence.h"
#include "core/convergence/movearithmetic.h"

using exposurearithmetic::Epsilon;
using exposurearithmetic::IndexBase;
using exposurearithmetic::IndexOfRatio;

namespace
{

/// Analyzer output that holds the metered dark compensation.
constexpr INT32 DarkCompensationSlot = 207;

/// @return the dark boost of exposures and their long compensation, at least 1
FLOAT NormalDarkBoost(UINT64 longExposure, UINT64 safe, FLOAT mfhdrLongADRC)
{
    return std::max(static_cast<FLOAT>(longExposure) * mfhdrLongADRC / static_cast<FLOAT>(safe), 1.0f);
}

}  // namespace

FLOAT CKIROConvergence::CalculateCompensationDarkBoostGain(const KIROConvergenceInput&  rInput,
                                                           const KIROConvergenceOutput& rOutput) const
{
    const FLOAT longOverSafe =
        static_cast<FLOAT>(m_output.sensiLog103[AECAlgoExposureLong] - m_output.sensiLog103[AECAlgoExposureSafe]);
    const FLOAT normalDarkBoost = std::max(rOutput.mfhdrLongADRC * std::pow(IndexBase, longOverSafe), 1.0f);

    const AECFrameHistory* pPrevious = PreviousFrame();
    if (!IsLongCompensated() || pPrevious == nullptr)
    {
        return normalDarkBoost;
    }
    if (rOutput.bIfConvProcRun != TRUE || m_bIsTargetFixed == TRUE || m_pBaseCoreData == nullptr)
    {
        return std::max(pPrevious->compensationDarkBoost, 1.0f);
    }
    const auto& rSets          = pPrevious->exposureSets;
    const FLOAT previousNormal = NormalDarkBoost(rSets[AECAlgoExposureLong].exposure,
                                                 rSets[AECAlgoExposureSafe].exposure, pPrevious->mfhdrLongADRC);
    const FLOAT targetNormal   = NormalDarkBoost(m_input.exposures[AECAlgoExposureLong],
                                                 m_input.exposures[AECAlgoExposureSafe], rInput.mfhdrLongADRC);
    const FLOAT metered =
        std::max(m_rContextManager.m_pBankManager->GetDataSceneAnalyzer(DarkCompensationSlot)->value.start, 1.0f);
    return normalDarkBoost * convergencestages::ConvergeDarkCompensation(
                                 {*m_pTuning, m_pConvBase->value, *m_pBaseCoreData},
                                 std::max(metered / targetNormal, 1.0f),
                                 std::max(pPrevious->compensationDarkBoost / previousNormal, 1.0f));
}

namespace convergencestages
{

FLOAT ConvergeDarkCompensation(const MoveTuning& rTuning, FLOAT desired, FLOAT converged)
{
    const FLOAT unitStep  = rTuning.module.unitStepSize;
    const FLOAT target    = IndexOfRatio(desired);
    const FLOAT remaining = target - IndexOfRatio(converged);
    const bool  isHeld =
        static_cast<FLOAT>(rTuning.base.tolerance) > std::abs(remaining) && !(std::abs(target) < Epsilon);
    if (!isHeld)
    {
        FLOAT offset = remaining * rTuning.speeds.drcSpeed;
        if (unitStep > std::abs(offset) && !(std::abs(offset) < Epsilon))
        {
            offset = SignedStep(unitStep, offset);
        }
        converged *= std::pow(IndexBase, offset);
    }
    if (converged == 0.0f)
    {
        return 1.0f;
    }
    const FLOAT steps = std::round(IndexOfRatio(converged) / unitStep);
    return std::max(1.0f, std::pow(IndexBase, steps * unitStep));
}

}  // namespace convergencestages
