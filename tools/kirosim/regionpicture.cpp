#include "tools/kirosim/regionpicture.h"

#include <algorithm>
#include <cmath>

namespace kirosim
{

namespace
{

BYTE TransferCode(DOUBLE value)
{
    const DOUBLE level = std::clamp(value, 0.0, 1.0);
    const DOUBLE code  = (level <= 0.0031308) ? 12.92 * level : 1.055 * std::pow(level, 1.0 / 2.4) - 0.055;
    return static_cast<BYTE>(std::lround(code * 255.0));
}

/// @return how much more of a colour a region shows than a grey surface
DOUBLE Balanced(FLOAT ratio, DOUBLE ofLight)
{
    return (ofLight > 0.0) ? static_cast<DOUBLE>(ratio) / ofLight : 1.0;
}

}  // namespace

VOID DevelopRegions(const RegionView& rView, RegionPixels& rPixels)
{
    for (size_t region = 0; region < GridSize; ++region)
    {
        const DOUBLE red   = Balanced(rView.rg[region], rView.light.rg);
        const DOUBLE blue  = Balanced(rView.bg[region], rView.light.bg);
        const DOUBLE green = static_cast<DOUBLE>(rView.level[region]) / (0.2126 * red + 0.7152 + 0.0722 * blue);

        rPixels[3 * region]     = TransferCode(red * green);
        rPixels[3 * region + 1] = TransferCode(green);
        rPixels[3 * region + 2] = TransferCode(blue * green);
    }
}

}  // namespace kirosim
