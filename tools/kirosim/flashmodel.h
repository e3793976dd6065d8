/// @file
/// The light of the flash on the scene, its colour, and the channels that a flash needs.
#pragma once

#include <array>
#include <bitset>
#include <memory>

#include "host/flashcapture.h"
#include "tools/kirosim/flashscene.h"
#include "tools/kirosim/scenegrid.h"

namespace kirosim
{

class FlashModel
{
public:
    /// @param rScene must outlive this object
    FlashModel(const FlashScene& rScene, const Colour& rLight);

    VOID SetLamp(const FlashLamp& rLamp);

    const FlashLamp& Lamp() const
    {
        return m_lamp;
    }

    /// Colour of the light of the surroundings.
    VOID SetLight(const Colour& rLight)
    {
        m_light = rLight;
    }

    const Colour& Light() const
    {
        return m_light;
    }

    /// What the LEDs add to a region's light over the frame's exposure, lux.
    DOUBLE LuxAt(UINT32 region) const
    {
        return m_isNear[region] ? m_nearLux : m_farLux;
    }

    /// Colour of a grey region. @param lux, rLight of the surroundings
    Colour ColourAt(UINT32 region, DOUBLE lux, const Colour& rLight) const;

    /// Colour of the two LEDs together; {0, 0} for no light.
    Colour ColourOf(INT32 led1, INT32 led2) const;

    /// Takes the levels of the frame's safe exposure, shares of full scale.
    /// @param pSaturation samples of a region that are clipped, fullScale for all of them
    VOID TakePicture(const FLOAT* pLevels, const FLOAT* pSaturation, FLOAT fullScale);

    // The last picture's mean luma, 0 to 255, without noise.
    DOUBLE NearLuma() const
    {
        return m_nearLuma;
    }
    DOUBLE FarLuma() const
    {
        return m_farLuma;
    }

    // Channels of the last picture, 16 x 16 of 8 bits.
    FLOAT* Luma16()
    {
        return m_luma16.data();
    }
    FLOAT* Saturation16()
    {
        return m_saturation16.data();
    }

private:
    const FlashScene&                          m_rScene;
    Colour                                     m_light;
    std::bitset<GridSize>                      m_isNear;  ///< regions that show what is near
    FlashLamp                                  m_lamp;
    Colour                                     m_lampColour;
    DOUBLE                                     m_nearLux;  ///< of the LEDs
    DOUBLE                                     m_farLux;
    std::array<FLOAT, FlashStats::RegionCount> m_luma16;
    std::array<FLOAT, FlashStats::RegionCount> m_saturation16;
    DOUBLE                                     m_nearLuma;
    DOUBLE                                     m_farLuma;
};

}  // namespace kirosim
