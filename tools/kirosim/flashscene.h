/// @file
/// A flash in a scene: its LEDs, what stands near and far, and when pictures are taken.
#pragma once

#include <array>
#include <vector>

#include "platform/tavotypes.h"

namespace kirosim
{

/// Colour as red over green and blue over green, as the sensor sees it on a grey surface.
struct Colour
{
    DOUBLE rg;
    DOUBLE bg;
};

struct FlashLED
{
    DOUBLE luxPerAmpere = 100.0;  ///< at 1 m
    Colour colour       = {0.6, 0.6};
};

/// A series of pictures with flash.
struct FlashPictures
{
    DOUBLE              first       = 2.0;  ///< s
    DOUBLE              interval    = 1.0;  ///< s; a picture that is not done by then delays the next one
    UINT32              count       = 1;
    bool                isPrecision = false;  ///< a split exposure is allowed
    std::vector<Colour> light;                ///< of the surroundings, one per picture, over and over; empty for the
                                              ///< scene's
};

struct FlashScene
{
    std::array<FlashLED, 2> leds;
    INT32                   maxCurrent   = 1000;   ///< mA that the camera allows, both LEDs together
    DOUBLE                  nearDistance = 1.0;    ///< m
    DOUBLE                  nearArea     = 0.25;   ///< share of the frame, in its middle
    DOUBLE                  farDistance  = 5.0;    ///< m, the rest
    bool                    isCalibrated = false;  ///< inline calibration is on
    FlashPictures           pictures;
    std::vector<BYTE>       learned;  ///< by inline calibration in an earlier run; not part of the scene's text
};

}  // namespace kirosim
