// The speed law of the Safe exposure, and its rest once it is settled.

#include <cmath>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/convergence/convergencestages.h"
#include "core/convergence/movearithmetic.h"

using kirodbconvbase::CappingTypeAbsolute;
using kirodbconvbase::CappingTypeRatio;

namespace convergencestages
{

namespace
{

bool IsSettledInTolerance(const ExposureMove& rMove, UINT32 tolerance, FLOAT previousShortStretch)
{
    const bool isInside = static_cast<DOUBLE>(tolerance) > std::abs(rMove.tgtPreviousDelta) && rMove.isSettled;
    if (isInside && !(std::abs(previousShortStretch) > 0.0f))
    {
        STATS_LOG_TRACE("Skip safe convergence. willBeIntolerance:%d, prevDelta:%f, tol:%d.", isInside,
                        rMove.tgtPreviousDelta, tolerance);
        return true;
    }
    return false;
}

/// @return the largest move of this frame, with its sign
DOUBLE MoveCap(const MoveTuning& rTuning, const ExposureMove& rMove, UINT8 systemLatency)
{
    const DOUBLE capping = rTuning.speeds.baseCapping;
    switch (rTuning.base.cappingType)
    {
    case CappingTypeRatio:
        return capping * rMove.tgtMatchDelta;
    case CappingTypeAbsolute:
        return (rMove.tgtPreviousDelta < 0.0) ? -capping : capping;
    default:
        return rMove.tgtMatchDelta / static_cast<DOUBLE>(systemLatency);
    }
}

/// @return the move of this frame
DOUBLE SafeDelta(const MoveTuning& rTuning, const ExposureMove& rMove, UINT8 systemLatency)
{
    if (rMove.tgtMatchDelta * rMove.tgtPreviousDelta < 0.0)
    {
        return 0.0;
    }
    DOUBLE       delta = static_cast<DOUBLE>(rTuning.speeds.baseSpeed) * rMove.tgtPreviousDelta;
    const DOUBLE cap   = MoveCap(rTuning, rMove, systemLatency);
    if (std::abs(delta) > std::abs(cap))
    {
        delta = cap;
    }
    const bool isMoving = !(static_cast<FLOAT>(std::abs(delta)) < exposurearithmetic::Epsilon);
    if (isMoving && IsLanding(rTuning.base.tolerance, rMove.target - (delta + rMove.previous)))
    {
        delta = rMove.target - rMove.previous;
    }
    const DOUBLE unitStep = rTuning.module.unitStepSize;
    return (unitStep > std::abs(delta)) ? SignedStep(unitStep, delta) : delta;
}

}  // namespace

DOUBLE ComputeBasicSafeConvergence(const MoveTuning& rTuning, const ExposureMove& rMove, UINT8 systemLatency,
                                   FLOAT previousShortStretch)
{
    return IsSettledInTolerance(rMove, rTuning.base.tolerance, previousShortStretch)
               ? rMove.previous
               : rMove.previous + SafeDelta(rTuning, rMove, systemLatency);
}

}  // namespace convergencestages
