#include "host/sensorlink.h"

#include <algorithm>

#include "host/channelnames.h"
#include "host/flashstats.h"

namespace
{

/// The oldest decision that the core knows.
constexpr UINT64 AgeMax = 10;

// Of the stats log.
constexpr UINT32 LogGroup     = 2;
constexpr UINT32 LevelWarning = 4;

DOUBLE SafeExposure(const KiroHostFrame& rDecided)
{
    const KIROExposureSetType& rSafe = rDecided.arbitration[AECAlgoExposureSafe].exposureSet;
    return static_cast<DOUBLE>(rSafe.gain) * static_cast<DOUBLE>(rSafe.time);
}

/// The channel that shows the safe exposure; null if there is none that can be read.
const KIROCntStatsOut* SafeLuma(const KIROStatsList& rStats)
{
    const KIROCntStatsOut* pLuma  = flashstats::Find(rStats, channelnames::Exposures[AECAlgoExposureSafe].pLuma);
    const bool             isGrid = pLuma != nullptr && pLuma->type == kiroglobalelements::KIROStatsGrid &&
                        pLuma->channelData.bChannelEnabled != FALSE && pLuma->channelData.Data.pFData != nullptr;
    return isGrid ? pLuma : nullptr;
}

}  // namespace

SensorLink::SensorLink(KiroHost& rHost, const RegisterDelays& rDelays, bool isDelayCorrected, StatsLogger logger)
    : m_rHost(rHost), m_staging(rDelays), m_written{}, m_isDelayCorrected(isDelayCorrected), m_logger(logger)
{
}

SensorWrite SensorLink::Begin()
{
    m_written.fill({});
    m_watch.Restart(SafeExposure(m_rHost.LastFrame()));
    return m_staging.Begin(m_rHost.LastFrame());
}

SensorWrite SensorLink::Write(UINT64 frameID, UINT64 decidedIn, const KiroHostFrame& rDecided)
{
    m_written[frameID % m_written.size()] = {frameID, decidedIn};
    m_watch.AddExposure(frameID, SafeExposure(rDecided));
    return m_staging.Stage(rDecided);
}

/// A decision in time is written a frame after its own, and shows a pipeline delay after its own.
VOID SensorLink::TakeStatistics(UINT64 frameID, const KIROStatsList& rStats, bool isLit)
{
    if (isLit)
    {
        m_watch.PassOver();
    }
    else
    {
        Watch(frameID, rStats);
    }
    const UINT64   delay  = m_rHost.PipelineDelay();
    const Written* pShown = Find(frameID + 1 - delay);
    const UINT64   age    = (pShown != nullptr) ? std::min(frameID - pShown->decidedIn, AgeMax) : delay;
    m_rHost.SetStatisticsAge(static_cast<UINT8>(age));
}

VOID SensorLink::Watch(UINT64 frameID, const KIROStatsList& rStats)
{
    if (const KIROCntStatsOut* pLuma = SafeLuma(rStats); pLuma != nullptr)
    {
        m_watch.AddStatistics(frameID, *pLuma);
    }
    const UINT8 told = m_rHost.PipelineDelay();
    const UINT8 seen = m_watch.Delay().value_or(told);
    if (seen == told)
    {
        return;
    }
    if (!m_isWarned)
    {
        m_isWarned = true;
        m_logger(__FILE_NAME__, __LINE__, __func__, LogGroup, LevelWarning,
                 "statistics follow a decision after %u frames, the pipeline delay says %u", UINT32{seen},
                 UINT32{told});
    }
    if (m_isDelayCorrected)
    {
        m_rHost.SetPipelineDelay(seen);
    }
}

const SensorLink::Written* SensorLink::Find(UINT64 frameID) const
{
    const Written& rWritten = m_written[frameID % m_written.size()];
    return (rWritten.frameID == frameID && frameID != 0) ? &rWritten : nullptr;
}
