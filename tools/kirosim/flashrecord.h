/// @file
/// What a frame has to tell of the flash.
#pragma once

#include <optional>

#include "host/flashcapture.h"
#include "tools/kirosim/flashscene.h"

namespace kirosim
{

/// A picture with flash: what was decided, and what came of it.
struct FlashShot
{
    FlashCaptureResult decided;
    DOUBLE             nearLuma;    ///< mean of the picture, 0 to 255, without noise
    DOUBLE             farLuma;     ///< the same beyond
    DOUBLE             farLumaOff;  ///< the same in the frame kept without LED
    Colour             lamp;        ///< true colour of the LEDs in the picture
    DOUBLE             kneeError;   ///< mean distance of the mixes' colours, as the core took them, from the true ones
    std::vector<BYTE>  learned;     ///< by inline calibration so far, empty without it
};

struct FlashRecord
{
    FlashCapturePhase        phase;  ///< in which the frame was run
    FlashLamp                lamp;   ///< in the statistics of the frame
    std::optional<FlashShot> shot;   ///< in the frame that shows a picture
};

}  // namespace kirosim
