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
    : m_rScene(rScene), m_light(rLight), m_lamp{}, m_lampColour{}, m_nearLux(0.0),
      m_farLux(0.0), m_luma16{}, m_saturation16{}, m_nearLuma(0.0), m_farLuma(0.0)
{
    for (UINT32 region = 0; region < GridSize; ++region)
    {
        m_isNear[region] = IsInBox(region % GridWidth, region / GridWidth, m_rScene.nearArea, 0.5);
    }
}

/// Light falls off with the square of the distance.
VOID FlashModel::SetLamp(const FlashLamp& rLamp)
{
    const DOUBLE atOneMetre = LuxOf(m_rScene.leds[0], rLamp.LED1Setting) + LuxOf(m_rScene.leds[1], rLamp.LED2Setting);
    const DOUBLE lit        = atOneMetre * static_cast<DOUBLE>(rLamp.litShare);
    m_lamp                  = rLamp;
    m_lampColour            = ColourOf(rLamp.LED1Setting, rLamp.LED2Setting);
    m_nearLux               = lit / (m_rScene.nearDistance * m_rScene.nearDistance);
    m_farLux                = lit / (m_rScene.farDistance * m_rScene.farDistance);
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
    const DOUBLE share   = (lampLux > 0.0) ? lampLux / (lampLux + lux) : 0.0;
    return {rLight.rg + share * (m_lampColour.rg - rLight.rg), rLight.bg + share * (m_lampColour.bg - rLight.bg)};
}

VOID FlashModel::TakePicture(const FLOAT* pLevels, const FLOAT* pSaturation, FLOAT fullScale)
{
    constexpr DOUBLE cellSize = CellWidth * CellHeight;

    std::array<DOUBLE, FlashStats::RegionCount> luma{};
    std::array<DOUBLE, FlashStats::RegionCount> saturation{};
    DOUBLE                                      sums[2]   = {};
    UINT32                                      counts[2] = {};
    for (UINT32 region = 0; region < GridSize; ++region)
    {
        const UINT32 cell  = region / GridWidth / CellHeight * SmallSide + region % GridWidth / CellWidth;
        const DOUBLE level = static_cast<DOUBLE>(pLevels[region]);
        luma[cell] += level / cellSize * LumaFullScale;
        saturation[cell] += static_cast<DOUBLE>(pSaturation[region] / fullScale) / cellSize * LumaFullScale;
        const UINT32 part = m_isNear[region] ? 0 : 1;
        sums[part] += level * LumaFullScale;
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
