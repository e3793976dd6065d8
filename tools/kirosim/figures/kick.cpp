#include "tools/kirosim/figures/kick.h"

#include <algorithm>
#include <cmath>

#include "tools/kirosim/figures/movement.h"

namespace kirosim
{

DOUBLE KickOf(std::span<const DOUBLE> exposuresEV, std::span<const DOUBLE> lightsEV, size_t begin, size_t end)
{
    constexpr size_t cause = 10;  // frames
    DOUBLE           kick  = 0.0;
    for (size_t index = std::max<size_t>(begin, 1); index < end; ++index)
    {
        const DOUBLE change = std::abs(exposuresEV[index] - exposuresEV[index - 1]);
        if (change > kick)
        {
            const size_t first = index - std::min(index, cause);
            kick               = std::max(kick, change - LargestChange(lightsEV.subspan(first, index + 1 - first)));
        }
    }
    return kick;
}

}  // namespace kirosim
