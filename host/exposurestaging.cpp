#include "host/exposurestaging.h"

#include <algorithm>

namespace
{

SensorWrite WriteOf(const KiroHostFrame& rDecided)
{
    SensorWrite write{};
    write.FPS = rDecided.arbitration[AECAlgoExposureSafe].FPS;
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        write.gains[type] = rDecided.arbitration[type].exposureSet.gain;
        write.times[type] = rDecided.arbitration[type].exposureSet.time;
    }
    return write;
}

}  // namespace

ExposureStaging::ExposureStaging(const RegisterDelays& rDelays)
    : m_gainHold(std::max(rDelays.gain, rDelays.time) - rDelays.gain),
      m_timeHold(std::max(rDelays.gain, rDelays.time) - rDelays.time), m_decided(std::max(m_gainHold, m_timeHold) + 1)
{
}

SensorWrite ExposureStaging::Begin(const KiroHostFrame& rStart)
{
    std::fill(m_decided.begin(), m_decided.end(), WriteOf(rStart));
    return Compose();
}

SensorWrite ExposureStaging::Stage(const KiroHostFrame& rDecided)
{
    std::rotate(m_decided.begin(), m_decided.end() - 1, m_decided.end());
    m_decided.front() = WriteOf(rDecided);
    return Compose();
}

SensorWrite ExposureStaging::Compose() const
{
    SensorWrite write = m_decided[m_timeHold];
    write.gains       = m_decided[m_gainHold].gains;
    return write;
}
