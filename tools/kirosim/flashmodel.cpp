#include "tools/kirosim/flashmodel.h"

namespace kirosim
{

namespace
{

constexpr DOUBLE MilliamperesPerAmpere = 1000.0;
constexpr DOUBLE LumaFullScale         = 255.0;
constexpr UINT32 SmallSide             = 16;
constexpr UINT32 CellWidth             = GridWidth / SmallSide;
constexpr UINT32 CellHeight            = GridHeight / SmallSide;

/// Light of an LED at 1 m, lux.
DOUBLE LuxOf(const FlashLED& rLED, INT32 current)
{
    return rLED.luxPerAmpere * current / MilliamperesPerAmpere;
}

}  // namespace

FlashModel::FlashModel(const FlashScene& rScene, const Colour& rLight)
    : m_rScene(rScene), m_light(rLight), m_lamp{}, m_luma16{}, m_saturation16{}, m_nearLuma(0.0), m_farLuma(0.0)
{
}

bool FlashModel::IsNear(UINT32 region) const
{
    return IsInBox(region % GridWidth, region / GridWidth, m_rScene.nearArea, 0.5);
}

/// Light falls off with the square of the distance.
DOUBLE FlashModel::LuxAt(UINT32 region) const
{
    const DOUBLE atOneMetre = LuxOf(m_rScene.leds[0], m_lamp.LED1Setting) + LuxOf(m_rScene.leds[1], m_lamp.LED2Setting);
    const DOUBLE distance   = IsNear(region) ? m_rScene.nearDistance : m_rScene.farDistance;
    return atOneMetre * static_cast<DOUBLE>(m_lamp.litShare) / (distance * distance);
}

Colour FlashModel::ColourOf(INT32 led1, INT32 led2) const
{
    const FlashLED* pLEDs = m_rScene.leds.data();
    const DOUBLE    lux1  = LuxOf(pLEDs[0], led1);
    const DOUBLE    lux2  = LuxOf(pLEDs[1], led2);
    const DOUBLE    sum   = lux1 + lux2;
    if (sum <= 0.0)
    {
        return {0.0, 0.0};
    }
    return {(lux1 * pLEDs[0].colour.rg + lux2 * pLEDs[1].colour.rg) / sum,
            (lux1 * pLEDs[0].colour.bg + lux2 * pLEDs[1].colour.bg) / sum};
}

Colour FlashModel::ColourAt(UINT32 region, DOUBLE lux, const Colour& rLight) const
{
    const DOUBLE lampLux = LuxAt(region);
    const Colour lamp    = ColourOf(m_lamp.LED1Setting, m_lamp.LED2Setting);
    const DOUBLE share   = (lampLux > 0.0) ? lampLux / (lampLux + lux) : 0.0;
    return {rLight.rg + share * (lamp.rg - rLight.rg), rLight.bg + share * (lamp.bg - rLight.bg)};
}

VOID FlashModel::TakePicture(const DOUBLE* pLevels, const DOUBLE* pSaturated)
{
    constexpr DOUBLE cellSize = CellWidth * CellHeight;

    std::array<DOUBLE, FlashStats::RegionCount> luma{};
    std::array<DOUBLE, FlashStats::RegionCount> saturation{};
    DOUBLE                                      sums[2]   = {};
    UINT32                                      counts[2] = {};
    for (UINT32 region = 0; region < GridSize; ++region)
    {
        const UINT32 cell = region / GridWidth / CellHeight * SmallSide + region % GridWidth / CellWidth;
        luma[cell] += pLevels[region] / cellSize * LumaFullScale;
        saturation[cell] += pSaturated[region] / cellSize * LumaFullScale;
        const UINT32 part = IsNear(region) ? 0 : 1;
        sums[part] += pLevels[region] * LumaFullScale;
        ++counts[part];
    }
    for (UINT32 cell = 0; cell < FlashStats::RegionCount; ++cell)
    {
        m_luma16[cell]       = static_cast<FLOAT>(luma[cell]);
        m_saturation16[cell] = static_cast<FLOAT>(saturation[cell]);
    }
    m_nearLuma = (counts[0] > 0) ? sums[0] / counts[0] : 0.0;
    m_farLuma  = (counts[1] > 0) ? sums[1] / counts[1] : 0.0;
}

}  // namespace kirosim
