/// @file
/// From what a sensor saw to a picture that a person can look at.
#pragma once

#include "tools/kirosim/sensormodel.h"
#include "tools/report/page.h"

namespace kirosim
{

constexpr UINT32 DevelopedWidth  = GridWidth * 2;
constexpr UINT32 DevelopedHeight = GridHeight * 2;

/// Develops plainly: white balance for the scene's light, the ADRC gain as a curve that leaves shadows as the safe
/// exposure has them and brings what the short exposure still holds below white, and the sRGB transfer.
/// @return pixels of 8 bits, red, green and blue, row by row
std::vector<BYTE> Develop(const SensorView& rView);

/// What is clipped even in the short exposure, and what is below one step of 8 bits in the safe one.
struct ExposureMarks
{
    std::vector<BYTE> pixels;  ///< red, green, blue and alpha, row by row; transparent where there is nothing to mark
    DOUBLE            over;    ///< share of the samples
    DOUBLE            under;   ///< share of the samples
};
ExposureMarks MarkExposure(const SensorView& rView);

}  // namespace kirosim
