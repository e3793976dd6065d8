#include "tools/kirosim/development.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "tools/kirosim/plaincolour.h"

namespace kirosim
{

namespace
{

// A pixel is a quarter of a region, upper left, upper right, lower left and lower right, whose samples lie side by
// side.
constexpr INT SamplesOfPixel = 4;
static_assert(4 * SamplesOfPixel == SamplesPerRegion);

constexpr FLOAT DarkLevel = 1.0f / 256.0f;

/// What is marked is still to be seen between the stripes, pixels.
constexpr UINT32 StripePeriod = 6;

UINT32 RegionAt(UINT32 x, UINT32 y)
{
    return y / 2 * GridWidth + x / 2;
}

std::span<const FLOAT> SamplesAt(const SensorView& rView, UINT32 x, UINT32 y)
{
    const size_t quarter = y % 2 * 2 + x % 2;
    return std::span(rView.samples)
        .subspan(RegionAt(x, y) * size_t{SamplesPerRegion} + quarter * SamplesOfPixel, SamplesOfPixel);
}

/// One for a gain of one; else it has the slope of one in the shadows, and the brightest that short holds is white.
DOUBLE ADRCCurve(DOUBLE value, DOUBLE gain)
{
    return std::min(value * (1.0 + value / (gain * gain)) / (1.0 + value), 1.0);
}

}  // namespace

std::vector<BYTE> Develop(const SensorView& rView)
{
    static const TransferTable table;
    const DOUBLE               gain = std::max(rView.shortRoom, 1.0);
    std::vector<BYTE>          pixels;
    pixels.reserve(size_t{3} * DevelopedWidth * DevelopedHeight);
    for (UINT32 y = 0; y < DevelopedHeight; ++y)
    {
        for (UINT32 x = 0; x < DevelopedWidth; ++x)
        {
            DOUBLE luma = 0.0;
            for (const FLOAT sample : SamplesAt(rView, x, y))
            {
                luma += ADRCCurve(std::min(static_cast<DOUBLE>(sample), gain), gain) / SamplesOfPixel;
            }
            const ChannelShares shares = SharesOf(rView.colours[RegionAt(x, y)], rView.light);
            for (const DOUBLE share : {shares.red, shares.green, shares.blue})
            {
                pixels.push_back(table.CodeOf(luma * share));
            }
        }
    }
    return pixels;
}

ExposureMarks MarkExposure(const SensorView& rView)
{
    constexpr std::array<BYTE, 4> overColour  = {0xd5, 0x5e, 0x00, 0xff};
    constexpr std::array<BYTE, 4> underColour = {0x00, 0x72, 0xb2, 0xff};
    const FLOAT                   white       = static_cast<FLOAT>(std::max(rView.shortRoom, 1.0));
    const auto                    isOver      = [white](FLOAT sample) { return sample >= white; };
    const auto                    isUnder     = [](FLOAT sample) { return sample < DarkLevel; };
    ExposureMarks                 marks{};
    marks.pixels.reserve(size_t{4} * DevelopedWidth * DevelopedHeight);
    for (UINT32 y = 0; y < DevelopedHeight; ++y)
    {
        for (UINT32 x = 0; x < DevelopedWidth; ++x)
        {
            const auto          samples = SamplesAt(rView, x, y);
            const auto          over    = std::count_if(samples.begin(), samples.end(), isOver);
            const auto          under   = std::count_if(samples.begin(), samples.end(), isUnder);
            std::array<BYTE, 4> colour{};
            const bool          isStripe = (x + y) % StripePeriod < StripePeriod / 2;
            if (isStripe && std::max(over, under) * 2 >= SamplesOfPixel)
            {
                colour = (over >= under) ? overColour : underColour;
            }
            marks.over += static_cast<DOUBLE>(over);
            marks.under += static_cast<DOUBLE>(under);
            marks.pixels.insert(marks.pixels.end(), colour.begin(), colour.end());
        }
    }
    marks.over /= static_cast<DOUBLE>(rView.samples.size());
    marks.under /= static_cast<DOUBLE>(rView.samples.size());
    return marks;
}

}  // namespace kirosim
