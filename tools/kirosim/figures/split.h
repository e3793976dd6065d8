/// @file
/// What the split of an exposure into gain and time costs: noise by gain, motion blur by time.
#pragma once

#include "interface/kiroexposure.h"
#include "tools/kirosim/scene.h"

namespace kirosim
{

/// Above the least gain with which the sensor could have reached the exposure, with its longest time. @return EV
DOUBLE GainAboveLeastEV(const KIROExposureSetType& rSet, const Sensor& rSensor);

/// Above the least time, with the sensor's highest gain. @return EV
DOUBLE TimeAboveLeastEV(const KIROExposureSetType& rSet, const Sensor& rSensor);

}  // namespace kirosim
