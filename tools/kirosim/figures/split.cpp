#include "tools/kirosim/figures/split.h"

#include <algorithm>
#include <cmath>

namespace kirosim
{

namespace
{

DOUBLE ProductOf(const KIROExposureSetType& rSet)
{
    return static_cast<DOUBLE>(rSet.gain) * static_cast<DOUBLE>(rSet.time);
}

/// An exposure of nothing is no split.
DOUBLE AboveEV(DOUBLE value, DOUBLE least)
{
    return (value > 0.0) ? std::max(std::log2(value / least), 0.0) : 0.0;
}

}  // namespace

DOUBLE GainAboveLeastEV(const KIROExposureSetType& rSet, const Sensor& rSensor)
{
    return AboveEV(static_cast<DOUBLE>(rSet.gain),
                   std::max(rSensor.minGain, ProductOf(rSet) / static_cast<DOUBLE>(rSensor.maxTime)));
}

DOUBLE TimeAboveLeastEV(const KIROExposureSetType& rSet, const Sensor& rSensor)
{
    return AboveEV(static_cast<DOUBLE>(rSet.time),
                   std::max(static_cast<DOUBLE>(rSensor.minTime), ProductOf(rSet) / rSensor.maxGain));
}

}  // namespace kirosim
