// The distances of Short and Long from Safe.

#include <algorithm>
#include <cmath>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/convergence/convergencestages.h"
#include "core/convergence/movearithmetic.h"

using exposurearithmetic::Epsilon;
using exposurearithmetic::SensiLog103;

namespace convergencestages
{

namespace
{

/// @return rounded half up, as a log
DOUBLE LogOfRoundedExposure(DOUBLE exposure)
{
    return SensiLog103(static_cast<FLOAT>(exposurearithmetic::SaturateToUINT64(exposure + 0.5)));
}

/// @return the exposure at a distance that has moved by the DRC speed
DOUBLE DRCMovedOutput(const MoveTuning& rTuning, const ExposureMove& rMove, DOUBLE safe)
{
    const DOUBLE unitStep   = rTuning.module.unitStepSize;
    DOUBLE       adjustment = static_cast<DOUBLE>(rTuning.speeds.drcSpeed) * (rMove.drcCurrDelta - rMove.drcPrevDelta);
    if (unitStep > std::abs(adjustment))
    {
        adjustment = SignedStep(unitStep, adjustment);
    }
    const DOUBLE output = safe - (rMove.drcPrevDelta + adjustment);
    return IsLanding(rTuning.base.tolerance, output - rMove.target) ? rMove.target : output;
}

/// @return the exposure with a move that leads neither away from the target nor past it
DOUBLE TowardsTarget(const ExposureMove& rMove, DOUBLE output)
{
    if ((output - rMove.previous) * (rMove.target - rMove.previous) < 0.0)
    {
        output = rMove.previous;
    }
    return (rMove.target - rMove.previous > 0.0) ? std::min(rMove.target, output) : std::max(rMove.target, output);
}

}  // namespace

DOUBLE ConvergeSmoothNode(AECAlgoExposureType exposureType, const kiroconvergence::DRCSmoothType& rTuning,
                          FLOAT gainTarget, const DOUBLE* pTargets, SmoothNodeConvergenceContext& rContext)
{
    if (rTuning.nodesCount == 0)
    {
        return pTargets[exposureType];
    }
    StepSmoothNode(rContext, rTuning, gainTarget);

    const bool   isADRC   = exposureType == AECAlgoExposureShort;
    const DOUBLE safe     = exposurearithmetic::ExposureOfSensiLog103(pTargets[AECAlgoExposureSafe]);
    const DOUBLE gain     = rContext.gain;
    const DOUBLE oldValue = exposurearithmetic::ExposureOfSensiLog103(pTargets[exposureType]);
    DOUBLE       newValue = gain * safe;
    if (isADRC)
    {
        newValue = (rContext.gain < 1.0f) ? safe : safe / gain;
    }
    STATS_LOG_TRACE("KIROCONVRG Video AEC smooth %s gain target %.3f index %d gainNode %.3f gain %.3f state %d old "
                    "target %.0f new target %.0f",
                    isADRC ? "ADRC" : "DarkBoost", gainTarget, rContext.nodeIndex, rContext.gainNode, rContext.gain,
                    rContext.state, oldValue, newValue);
    return LogOfRoundedExposure(newValue);
}

DOUBLE DRCDeltaConvergence(const MoveTuning& rTuning, const ExposureMove& rMove, DOUBLE safe)
{
    const DOUBLE tolerance         = rTuning.base.tolerance;
    const bool   willBeInTolerance = tolerance > std::abs(rMove.tgtPreviousDelta) && rMove.isSettled;
    const bool   isChanging = !(std::abs(rMove.drcCurrDelta - rMove.drcPrevDelta) < static_cast<DOUBLE>(Epsilon));
    const bool   isMoving   = !willBeInTolerance && rMove.tgtMatchDelta * rMove.tgtPreviousDelta > 0.0 && isChanging;
    const DOUBLE output =
        TowardsTarget(rMove, isMoving ? DRCMovedOutput(rTuning, rMove, safe) : safe - rMove.drcPrevDelta);

    const FLOAT maxDeltaAbs = static_cast<FLOAT>(std::max(std::abs(rMove.drcCurrDelta), std::abs(rMove.drcPrevDelta)));
    if (maxDeltaAbs < static_cast<FLOAT>(std::abs(safe - output)))
    {
        return (safe < output) ? safe + static_cast<DOUBLE>(maxDeltaAbs) : safe - static_cast<DOUBLE>(maxDeltaAbs);
    }
    return output;
}

}  // namespace convergencestages
