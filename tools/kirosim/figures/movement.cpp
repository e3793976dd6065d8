#include "tools/kirosim/figures/movement.h"

#include <algorithm>
#include <cmath>

namespace kirosim
{

DOUBLE SwingOf(std::span<const DOUBLE> values)
{
    const auto [low, high] = std::minmax_element(values.begin(), values.end());
    return *high - *low;
}

DOUBLE MeanOf(std::span<const DOUBLE> values)
{
    DOUBLE sum = 0.0;
    for (const DOUBLE value : values)
    {
        sum += value;
    }
    return sum / static_cast<DOUBLE>(values.size());
}

DOUBLE LargestChange(std::span<const DOUBLE> values)
{
    DOUBLE largest = 0.0;
    for (size_t index = 1; index < values.size(); ++index)
    {
        largest = std::max(largest, std::abs(values[index] - values[index - 1]));
    }
    return largest;
}

UINT32 Reversals(std::span<const DOUBLE> exposuresEV)
{
    UINT32 count     = 0;
    DOUBLE direction = 0.0;
    for (size_t index = 1; index < exposuresEV.size(); ++index)
    {
        const DOUBLE change = exposuresEV[index] - exposuresEV[index - 1];
        if (std::abs(change) >= VisibleEV)
        {
            count += (change * direction < 0.0) ? 1U : 0U;
            direction = change;
        }
    }
    return count;
}

}  // namespace kirosim
