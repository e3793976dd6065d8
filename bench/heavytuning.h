/// @file
/// A tuning at the upper end of what a product ships with.
#pragma once

#include <string>

#include "platform/tavotypes.h"

/// What the calculators of the heavy tuning measure; the four that every tuning has are among the first counts.
namespace heavytuning
{

constexpr UINT32 WholeGridCount       = 8;   ///< weighted averages over the whole grid
constexpr UINT32 ROIGridCount         = 6;   ///< the same over a quarter of it
constexpr UINT32 HistWeightedCount    = 2;   ///< weighted averages over a histogram
constexpr UINT32 HistLumaRangeCount   = 3;   ///< averages over a range of luma
constexpr UINT32 HistPercentileCount  = 3;   ///< averages over a range of samples
constexpr UINT32 ExtremeColorCount    = 2;
constexpr UINT32 AnalyzerCount        = 8;

/// The frame's share that the ROI calculators measure.
constexpr FLOAT ROIStart = 0.25f;
constexpr FLOAT ROISize  = 0.5f;

/// Zones of luma by which the extreme colours weigh a region.
constexpr FLOAT LumaZones[2][2] = {{0.0f, 40.0f}, {80.0f, 255.0f}};

/// Boxes of the extreme colours in the plane of R/G and B/G: x, y, width, height.
constexpr FLOAT ColorBoxes[ExtremeColorCount][4] = {{0.3f, 0.3f, 0.3f, 0.3f}, {0.6f, 0.5f, 0.3f, 0.3f}};

/// @return the tuning as text
std::string Text();

} // namespace heavytuning
