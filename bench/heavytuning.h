/// @file
/// A tuning at the upper end of what a product ships with: the phone example with more to measure and to weigh.
#pragma once

#include <vector>

#include "platform/tavotypes.h"

namespace heavytuning
{

// What the calculators measure; the four that every tuning has are among the first and the luma ranges.
constexpr UINT32 WholeGridCount      = 8;  ///< weighted averages over the whole grid
constexpr UINT32 ROIGridCount        = 6;  ///< the same over a quarter of it
constexpr UINT32 HistWeightedCount   = 2;  ///< weighted averages over a histogram
constexpr UINT32 HistLumaRangeCount  = 3;  ///< averages over a range of luma
constexpr UINT32 HistPercentileCount = 3;  ///< averages over a range of samples
constexpr UINT32 HistCount           = HistWeightedCount + HistLumaRangeCount + HistPercentileCount;
constexpr UINT32 ExtremeColorCount   = 2;
constexpr UINT32 AnalyzerCount       = 8;

/// The ROI, fractions of the frame in both directions.
constexpr FLOAT ROIStart = 0.25f;
constexpr FLOAT ROISize  = 0.5f;

/// A region counts in full up to the first luma and not at all from the second on; the extreme colours weigh by it.
constexpr FLOAT LumaFull = 40.0f;
constexpr FLOAT LumaNone = 80.0f;

/// Boxes of the extreme colours in the plane of R/G and B/G: x, y, width, height; and the fall-off around them.
constexpr FLOAT ColorBoxes[ExtremeColorCount][4] = {{0.3f, 0.3f, 0.3f, 0.3f}, {0.6f, 0.5f, 0.3f, 0.3f}};
constexpr FLOAT ColorFallOff                     = 0.1f;

/// @param isEverythingOn adds detectors, maps, filters, generated tables and monitors
/// @return the parameter file. @throws tuningfile::InputError if the phone example cannot be read
std::vector<BYTE> Compile(bool isEverythingOn);

}  // namespace heavytuning
