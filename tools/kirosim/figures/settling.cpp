#include "tools/kirosim/figures/settling.h"

#include <algorithm>

namespace kirosim
{

std::optional<size_t> SettledFrom(std::span<const DOUBLE> valuesEV, DOUBLE restEV)
{
    size_t from = valuesEV.size();
    while (from > 0 && std::abs(valuesEV[from - 1] - restEV) <= SettledToleranceEV())
    {
        --from;
    }
    return (from + 1 < valuesEV.size()) ? std::optional<size_t>(from) : std::nullopt;
}

DOUBLE OvershootOf(std::span<const DOUBLE> valuesEV, DOUBLE fromEV, DOUBLE restEV)
{
    const DOUBLE direction = (restEV >= fromEV) ? 1.0 : -1.0;
    DOUBLE       overshoot = 0.0;
    for (const DOUBLE value : valuesEV)
    {
        overshoot = std::max(overshoot, direction * (value - restEV));
    }
    constexpr DOUBLE rounding = 1e-9;  // of the mean that says where values rest
    return (overshoot > rounding) ? overshoot : 0.0;
}

}  // namespace kirosim
