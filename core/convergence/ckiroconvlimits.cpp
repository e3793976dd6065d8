// The grid and the limits of the exposures that a frame ends with.

#include <algorithm>
#include <cmath>

#include "core/base/exposurearithmetic.h"
#include "core/convergence/convergencestages.h"

namespace convergencestages
{

namespace
{

constexpr FLOAT DefaultGridStep = 0.5f;

/// A long compensation above this lets Long stay below Safe.
constexpr FLOAT CompensationInForce = 1.0000001f;

}  // namespace

FLOAT GridStep(FLOAT unitStepSize)
{
    return (unitStepSize > 0.0f && unitStepSize <= 1.0f) ? unitStepSize : DefaultGridStep;
}

VOID AdjustExpWithUnitStepSize(const KIROArbitratedLimits& rLimits, FLOAT gridStep, KIROLogExposures& rLogExposures)
{
    const UINT64 indexZero = rLimits.indexZeroExposure;
    const FLOAT  expIndexOffset =
        (indexZero == 0) ? 0.0f : exposurearithmetic::SensiLog103(static_cast<FLOAT>(indexZero));
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        const KIROExposureRange& rRange   = rLimits.ranges[type];
        const FLOAT              exposure = static_cast<FLOAT>(rLogExposures[type]);
        const FLOAT              expIndex = exposure - expIndexOffset;
        if (rRange.start.indx < expIndex && rRange.end.indx > expIndex)
        {
            rLogExposures[type] = static_cast<DOUBLE>(std::round(exposure / gridStep) * gridStep);
        }
    }
}

FLOAT CapExposure(const KIROArbitratedLimits& rLimits, FLOAT mfhdrLongADRC, FLOAT predGain, UINT64* pExposures)
{
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        const KIROExposureRange& rRange = rLimits.ranges[type];
        pExposures[type] = std::min(std::max(pExposures[type], rRange.start.exposure), rRange.end.exposure);
    }
    UINT64& rShort = pExposures[AECAlgoExposureShort];
    UINT64& rSafe  = pExposures[AECAlgoExposureSafe];
    UINT64& rLong  = pExposures[AECAlgoExposureLong];
    rShort         = std::min({rLong, rShort, rSafe});
    if (mfhdrLongADRC < CompensationInForce)
    {
        rLong = std::max(rLong, rSafe);
    }
    return std::min(predGain, static_cast<FLOAT>(rSafe) / static_cast<FLOAT>(rShort));
}

}  // namespace convergencestages
