#include "tools/kirosim/exposurelimit.h"

#include <cmath>

namespace kirosim
{

namespace
{

bool IsAt(const KIROExposureSetType& rSet, DOUBLE gain, UINT64 time)
{
    constexpr DOUBLE tolerance = 1e-3;
    const DOUBLE     limit     = gain * static_cast<DOUBLE>(time);
    return std::abs(static_cast<DOUBLE>(rSet.gain) * static_cast<DOUBLE>(rSet.time) - limit) <= limit * tolerance;
}

}  // namespace

ExposureLimit LimitOf(const KIROArbitrationOutput& rOutput, const Sensor& rSensor)
{
    const KIROExposureSetType& rSet   = rOutput.exposureSet;
    const KIROExposureRange&   rRange = rOutput.range;
    if (IsAt(rSet, rSensor.minGain, rSensor.minTime))
    {
        return ExposureLimit::SensorLowest;
    }
    if (IsAt(rSet, rSensor.maxGain, rSensor.maxTime))
    {
        return ExposureLimit::SensorHighest;
    }
    if (IsAt(rSet, static_cast<DOUBLE>(rRange.start.gain), rRange.start.time))
    {
        return ExposureLimit::LowerBound;
    }
    return IsAt(rSet, static_cast<DOUBLE>(rRange.end.gain), rRange.end.time) ? ExposureLimit::UpperBound
                                                                             : ExposureLimit::None;
}

const CHAR* NameOf(ExposureLimit limit)
{
    switch (limit)
    {
    case ExposureLimit::SensorLowest:
        return "the sensor's shortest time and lowest gain";
    case ExposureLimit::SensorHighest:
        return "the sensor's longest time and highest gain";
    case ExposureLimit::LowerBound:
        return "the lower bound of tuning and settings";
    case ExposureLimit::UpperBound:
        return "the upper bound of tuning and settings";
    default:
        return "no limit";
    }
}

}  // namespace kirosim
