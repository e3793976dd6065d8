#include "tools/kirosim/figures/leastloss.h"

#include <algorithm>
#include <array>
#include <bit>

namespace kirosim
{

namespace
{

// Eight bins an octave: the exponent of a number and the first three bits behind its point, which lie side by side.
constexpr UINT32 ShiftOfBin = 20;
constexpr size_t LossBins   = size_t{1} << (31 - ShiftOfBin);

/// From black to clipped: 8 octaves.
constexpr size_t ShownBins = 64;

}  // namespace

DOUBLE LeastLoss(std::span<const FLOAT> samples)
{
    std::array<UINT32, LossBins> counts{};
    for (const FLOAT sample : samples)
    {
        ++counts[(std::bit_cast<UINT32>(sample) >> ShiftOfBin) % LossBins];
    }
    UINT32 shown = 0;
    UINT32 most  = 0;
    // Zero and what is next to it, the first bin, are black in every exposure.
    for (size_t end = 1; end < LossBins; ++end)
    {
        shown += counts[end];
        shown -= (end > ShownBins) ? counts[end - ShownBins] : 0;
        most = std::max(most, shown);
    }
    return 1.0 - static_cast<DOUBLE>(most) / static_cast<DOUBLE>(samples.size());
}

}  // namespace kirosim
