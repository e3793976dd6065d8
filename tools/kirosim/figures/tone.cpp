#include "tools/kirosim/figures/tone.h"

#include <algorithm>
#include <cmath>

#include "tools/kirosim/figures/movement.h"

namespace kirosim
{

std::optional<DOUBLE> ToneSwing(std::span<const DOUBLE> times, std::span<const DOUBLE> values, DOUBLE hertz)
{
    if (times.size() < 2)
    {
        return std::nullopt;
    }
    constexpr DOUBLE rounding = 1e-9;
    // The last frame lasts as long as the one before it.
    const DOUBLE end     = 2.0 * times.back() - times[times.size() - 2];
    const DOUBLE periods = std::floor((end - times.front()) * hertz + rounding);
    if (periods < 1.0)
    {
        return std::nullopt;
    }
    const auto   first = std::lower_bound(times.begin(), times.end(), end - periods / hertz - rounding) - times.begin();
    const auto   wanted     = values.subspan(static_cast<size_t>(first));
    const DOUBLE mean       = MeanOf(wanted);
    constexpr DOUBLE twoPi  = 6.283185307179586;
    DOUBLE           sine   = 0.0;
    DOUBLE           cosine = 0.0;
    for (size_t index = 0; index < wanted.size(); ++index)
    {
        const DOUBLE angle = twoPi * hertz * times[static_cast<size_t>(first) + index];
        sine += (wanted[index] - mean) * std::sin(angle);
        cosine += (wanted[index] - mean) * std::cos(angle);
    }
    // The sums come to half the amplitude a frame, and the swing is twice the amplitude.
    return 4.0 * std::hypot(sine, cosine) / static_cast<DOUBLE>(wanted.size());
}

}  // namespace kirosim
