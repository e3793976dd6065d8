#include "tools/kirosim/scene.h"

#include <cmath>

#include "tools/kirosim/deterministic.h"

namespace kirosim
{

DOUBLE Scene::LightEV(DOUBLE time) const
{
    const LightPoint* pBefore = nullptr;
    for (const LightPoint& rPoint : light)
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
