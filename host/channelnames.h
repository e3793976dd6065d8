/// @file
/// Channels of statistics that this repository's hosts deliver, by the names under which a tuning asks for them.
#pragma once

#include "schema/kiroenums.h"

namespace channelnames
{

/// Channels of one exposure.
struct OfExposure
{
    const CHAR* pLuma;
    const CHAR* pSaturation;
    const CHAR* pRG;
    const CHAR* pBG;
    const CHAR* pHistogram;
};

/// By AECAlgoExposureType.
inline constexpr OfExposure Exposures[AECAlgoExposureCount] = {
    {"ShortLuma", "ShortSaturation", "ShortRG", "ShortBG", "ShortHist"},
    {"LongLuma", "LongSaturation", "LongRG", "LongBG", "LongHist"},
    {"SafeLuma", "SafeSaturation", "SafeRG", "SafeBG", "SafeHist"}};

// Colours of the frame, by names that are the core's.
inline constexpr const CHAR* GridRG = "gridRGratio";
inline constexpr const CHAR* GridBG = "gridBGratio";

// Small grids of a frame that a flash compares: those of this frame, and in the statistics of a flash snapshot those
// without LED and under the low LED.
inline constexpr const CHAR* Luma16          = "luma16";
inline constexpr const CHAR* Saturation16    = "sat16";
inline constexpr const CHAR* Luma16Off       = "luma16Off";
inline constexpr const CHAR* Saturation16Off = "sat16Off";
inline constexpr const CHAR* Luma16Low       = "luma16Low";
inline constexpr const CHAR* Saturation16Low = "sat16Low";

}  // namespace channelnames
