#include "tools/kirosim/scene.h"

#include <cmath>

#include "tools/kirosim/deterministic.h"

namespace kirosim
{

namespace
{

/// EV of the light curve.
DOUBLE CurveEV(const std::vector<LightPoint>& rLight, DOUBLE time)
{
    const LightPoint* pBefore = nullptr;
    for (const LightPoint& rPoint : rLight)
    {
        if (rPoint.time > time)
        {
            if (!rPoint.isRamp)
            {
                break;
            }
            const DOUBLE startTime = (pBefore != nullptr) ? pBefore->time : 0.0;
            const DOUBLE startEV   = (pBefore != nullptr) ? pBefore->ev : 0.0;
            return startEV + (rPoint.ev - startEV) * (time - startTime) / (rPoint.time - startTime);
        }
        pBefore = &rPoint;
    }
    return (pBefore != nullptr) ? pBefore->ev : 0.0;
}

}  // namespace

DOUBLE Scene::LightEV(DOUBLE time) const
{
    const DOUBLE curveEV = CurveEV(light, time);
    return panorama.has_value() ? curveEV + std::log2(panorama->LuxAt(time, lux) / lux) : curveEV;
}

DOUBLE Scene::LuxAt(DOUBLE time) const
{
    DOUBLE factor = 1.0;
    if (ripple.hertz > 0.0 && time >= ripple.start)
    {
        constexpr DOUBLE quarterTurn = 0.25;  // a sine
        factor += ripple.percent / 100.0 * CosineOfTurns(ripple.hertz * (time - ripple.start) - quarterTurn);
    }
    return lux * std::pow(2.0, LightEV(time)) * factor;
}

}  // namespace kirosim
