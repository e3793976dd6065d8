#include "tools/kirosim/patternlight.h"

#include <algorithm>

#include "tools/kirosim/deterministic.h"

namespace kirosim
{

namespace
{

/// EV of the natural pattern's 4 x 4 blocks around the mean, row by row.
constexpr DOUBLE NaturalBlocksEV[16] = {0.5, 0.0,  -0.5, 0.3, -0.3, 0.7, -0.7, 0.0,
                                        0.5, -0.5, 0.0,  1.0, -1.0, 0.5, -0.5, 0.0};

/// EV of a region relative to the frame, before texture.
DOUBLE RegionEV(const Pattern& rPattern, UINT32 column, UINT32 row)
{
    switch (rPattern.kind)
    {
    case PatternKind::Natural:
        return NaturalBlocksEV[row * 4 / GridHeight * 4 + column * 4 / GridWidth];
    case PatternKind::HighContrast:
        return ((column + 0.5) / GridWidth < rPattern.area) ? rPattern.contrastEV / 2.0 : -rPattern.contrastEV / 2.0;
    case PatternKind::Window:
        return IsInBox(column, row, rPattern.area, 0.45) ? rPattern.contrastEV / 2.0 : -rPattern.contrastEV / 2.0;
    case PatternKind::Subject:
        return IsInBox(column, row, rPattern.area, 0.5) ? -rPattern.contrastEV : 0.0;
    default:
        return 0.0;
    }
}

/// Deviates of the texture. It is part of the scene: the same for every seed of the noise.
const std::vector<FLOAT>& TextureDeviates()
{
    static const std::vector<FLOAT> deviates = []
    {
        RandomStream       texture(7);
        std::vector<FLOAT> drawn(static_cast<size_t>(GridSize) * SamplesPerRegion);
        std::generate(drawn.begin(), drawn.end(), [&] { return static_cast<FLOAT>(texture.NextGaussian()); });
        return drawn;
    }();
    return deviates;
}

}  // namespace

UINT32 PatternSampleCount(const Pattern& rPattern)
{
    return (rPattern.textureEV > 0.0) ? SamplesPerRegion : 1;
}

VOID FillWithPattern(const Pattern& rPattern, RegionSamples& rSamples)
{
    const FLOAT* pDeviate = TextureDeviates().data();
    const FLOAT  texture  = static_cast<FLOAT>(rPattern.textureEV);
    DOUBLE       sum      = 0.0;
    for (UINT32 region = 0; region < GridSize; ++region)
    {
        const FLOAT ev = static_cast<FLOAT>(RegionEV(rPattern, region % GridWidth, region / GridWidth));
        for (UINT32 sample = 0; sample < rSamples.Count(); ++sample)
        {
            const FLOAT value           = PowerOfTwo(ev + texture * *pDeviate++);
            rSamples.At(region, sample) = value;
            sum += static_cast<DOUBLE>(value);
        }
    }
    const FLOAT scale = static_cast<FLOAT>(static_cast<DOUBLE>(rSamples.All().size()) / sum);
    for (FLOAT& rValue : rSamples.All())
    {
        rValue *= scale;
    }
}

}  // namespace kirosim
