/// @file
/// States of a running camera that its trace does not tell: limits, locks, detectors, monitors, flash.
#pragma once

#include "tools/kirosim/camera.h"
#include "tools/kirosim/statebands.h"

namespace kirosim
{

/// Says the states of a frame that has been begun which stand in what was decided.
VOID SetDecidedBands(const KiroHostFrame& rFrame, StateBands& rBands);

/// Says all states of a frame that has been begun.
VOID SetBands(const FrameRecord& rRecord, const Scene& rScene, StateBands& rBands);

}  // namespace kirosim
