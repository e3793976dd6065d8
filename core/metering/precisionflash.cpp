#include "core/metering/precisionflash.h"

#include <cmath>

namespace
{

constexpr FLOAT OneMillion = 1e6f;

/// The background's share of its luma without LED that is tried for, in percent: coarse steps first, finer ones as
/// little is left.
constexpr INT32 BackgroundPercents[] = {100, 95, 90, 85, 80, 75, 70, 65, 60, 55, 50, 45, 40, 35, 30,
                                        28,  26, 24, 22, 20, 18, 16, 14, 12, 10, 9,  8,  7,  6,  5};

}  // namespace

namespace precisionflash
{

FLOAT LumaAtHighFlash(FLOAT lumaOff, FLOAT lumaOn, FLOAT expInc, FLOAT flux)
{
    return std::fma(std::fma(lumaOn, expInc, -lumaOff), flux, lumaOff);
}

PrecisionFlashShares SharesOf(const PrecisionFlashTimes& rTimes, FLOAT safeCoff)
{
    return {safeCoff * rTimes.miniFlashTime / rTimes.maxExpoTime, 1.0f - rTimes.flashDelayTime / rTimes.maxExpoTime};
}

PrecisionFlashSplit Solve(const PrecisionFlashScene& rScene, const PrecisionFlashShares& rShares)
{
    // Luma per exposure: e1 r3 + e2 r1 is the background's luma, e1 r2 + e2 r4 the foreground's.
    const FLOAT r1  = rScene.off.bkGrd * OneMillion / rScene.expOff;
    const FLOAT r2  = rScene.high.frGrd * OneMillion / rScene.expOff;
    const FLOAT r3  = rScene.high.bkGrd * OneMillion / rScene.expOff;
    const FLOAT r4  = rScene.off.frGrd * OneMillion / rScene.expOff;
    const FLOAT det = r3 * r4 - r2 * r1;

    PrecisionFlashSplit split{};
    for (INT32 percent : BackgroundPercents)
    {
        const FLOAT target    = static_cast<FLOAT>(percent) * rScene.off.bkGrd / 100.0f;
        split.bkGrdLumaTarget = target;
        // Without a solution e1 and e2 are no numbers, or infinite, and pass no test.
        const FLOAT e1    = (r4 * target - rScene.main.frGrd * r1) * OneMillion / det;
        const FLOAT e2    = (rScene.main.frGrd * r3 - r2 * target) * OneMillion / det;
        const FLOAT total = e1 + e2;
        if (e1 > 0.0f && e2 > 0.0f && total * rShares.min < e1 && total * rShares.max > e1)
        {
            split.bFound = true;
            split.e1     = e1;
            split.e2     = e2;
            return split;
        }
    }
    return split;
}

bool IsSplitNeeded(const PrecisionFlashScene& rScene, const PrecisionFlashSplit& rSplit, FLOAT hysteresis)
{
    return !((hysteresis + 1.0f) * rSplit.bkGrdLumaTarget <= rScene.main.bkGrd);
}

FLOAT InfluenceRatio(FLOAT normalRatio, FLOAT e1, FLOAT e2)
{
    return (e1 > 0.0f && e2 > 0.0f) ? (normalRatio * e1 + e2) / (e1 + e2) : normalRatio;
}

}  // namespace precisionflash
