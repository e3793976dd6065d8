/// @file
/// What keeps a decided exposure from going on.
#pragma once

#include "tools/kirosim/camera.h"

namespace kirosim
{

enum class ExposureLimit
{
    None,
    SensorLowest,  ///< shortest time and lowest gain of the sensor
    SensorHighest,
    LowerBound,  ///< of what tuning and settings leave of the sensor's range
    UpperBound
};

ExposureLimit LimitOf(const KIROArbitrationOutput& rOutput, const Sensor& rSensor);

/// Such as "the sensor's longest time and highest gain". @param limit not None
const CHAR* NameOf(ExposureLimit limit);

}  // namespace kirosim
