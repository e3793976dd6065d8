#include "tools/panorama/spheremean.h"

#include <cmath>

namespace panorama
{

DOUBLE MeanLog2Luminance(const RadianceMap& rMap)
{
    constexpr DOUBLE halfTurn = 3.141592653589793;
    DOUBLE           sum      = 0.0;
    DOUBLE           area     = 0.0;
    for (UINT32 row = 0; row < rMap.height; ++row)
    {
        const DOUBLE weight = std::sin(halfTurn * (row + 0.5) / rMap.height);
        for (UINT32 column = 0; column < rMap.width; ++column)
        {
            const FLOAT luminance = Luminance(rMap.pixels[static_cast<size_t>(row) * rMap.width + column]);
            if (luminance > 0.0f)
            {
                sum += weight * std::log2(static_cast<DOUBLE>(luminance));
                area += weight;
            }
        }
    }
    return sum / area;
}

}  // namespace panorama
