/// @file
/// What hangs on a frame beside the control of exposure, all of it on: detectors, maps from outside, filters over time,
/// generated tables, monitors.
#pragma once

#include <string>

#include "platform/tavotypes.h"

namespace everythingtuning
{

constexpr UINT32 DetectorCount  = 8;
constexpr UINT32 MapCount       = 4;
constexpr UINT32 VectorCount    = 6;
constexpr UINT32 GeneratorCount = 4;  ///< half of them from statistics, half from a map

/// Channel of 16 x 16 regions that the generators read.
constexpr const CHAR* SmallLuma = "SmallLuma";

/// Entry of the bank of 2D weights that holds the map from outside.
constexpr INT32 FirstMapID = 300;

/// The detectors' module, as text below "modules:". Anchors lux and everywhere stand before it.
std::string DetectorsText(UINT32 count);

/// Modules of the Default mode, as text below "modules:".
std::string ModulesText();

}  // namespace everythingtuning
