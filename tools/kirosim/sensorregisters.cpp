#include "tools/kirosim/sensorregisters.h"

#include <algorithm>

namespace kirosim
{

SensorRegisters::SensorRegisters(const RegisterDelays& rDelays)
    : m_delays(rDelays), m_written(std::max(rDelays.gain, rDelays.time))
{
}

VOID SensorRegisters::Begin(const SensorWrite& rWrite)
{
    std::fill(m_written.begin(), m_written.end(), rWrite);
}

/// A delay of 1 shows in the frame that is exposed next.
SensorWrite SensorRegisters::Write(const SensorWrite& rWrite)
{
    std::rotate(m_written.begin(), m_written.begin() + 1, m_written.end());
    m_written.back()   = rWrite;
    SensorWrite acting = m_written[m_written.size() - m_delays.time];
    acting.gains       = m_written[m_written.size() - m_delays.gain].gains;
    return acting;
}

}  // namespace kirosim
