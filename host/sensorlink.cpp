#include "host/sensorlink.h"

#include <algorithm>

namespace
{

/// The oldest decision that the core knows.
constexpr UINT64 AgeMax = 10;

}  // namespace

SensorLink::SensorLink(KiroHost& rHost, const RegisterDelays& rDelays) : m_rHost(rHost), m_staging(rDelays), m_written{}
{
}

SensorWrite SensorLink::Begin()
{
    m_written.fill({});
    return m_staging.Begin(m_rHost.LastFrame());
}

SensorWrite SensorLink::Write(UINT64 frameID, UINT64 decidedIn, const KiroHostFrame& rDecided)
{
    m_written[frameID % m_written.size()] = {frameID, decidedIn};
    return m_staging.Stage(rDecided);
}

/// A decision in time is written a frame after its own, and shows a pipeline delay after its own.
VOID SensorLink::TakeStatistics(UINT64 frameID)
{
    const UINT64   delay  = m_rHost.PipelineDelay();
    const Written* pShown = Find(frameID + 1 - delay);
    const UINT64   age    = (pShown != nullptr) ? std::min(frameID - pShown->decidedIn, AgeMax) : delay;
    m_rHost.SetStatisticsAge(static_cast<UINT8>(age));
}

const SensorLink::Written* SensorLink::Find(UINT64 frameID) const
{
    const Written& rWritten = m_written[frameID % m_written.size()];
    return (rWritten.frameID == frameID && frameID != 0) ? &rWritten : nullptr;
}
