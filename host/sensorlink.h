/// @file
/// What lies between a host's decisions and a sensor: when each is written, which of them the statistics show, and
/// whether the pipeline delay is the true one.
#pragma once

#include <array>
#include <optional>

#include "host/delaywatch.h"
#include "host/exposurestaging.h"

class SensorLink
{
public:
    /// @param rHost            must outlive this object
    /// @param isDelayCorrected whether the pipeline delay follows what the watch has seen
    /// @param logger           is warned once of a pipeline delay that is not the true one
    SensorLink(KiroHost& rHost, const RegisterDelays& rDelays, bool isDelayCorrected, StatsLogger logger);

    /// The host has begun a session. @return what the sensor stands at
    SensorWrite Begin();

    /// Once before each frame, with the newest decision that is there.
    /// @param frameID   of the frame that comes next
    /// @param decidedIn frame of the decision: the one before, or an older one if that has come too late
    /// @return what is to be written now
    SensorWrite Write(UINT64 frameID, UINT64 decidedIn, const KiroHostFrame& rDecided);

    /// Before the host runs a frame: tells it which decision the frame's statistics show.
    /// @param isLit by a flash of the host
    VOID TakeStatistics(UINT64 frameID, const KIROStatsList& rStats, bool isLit);

    /// Frames from a decision to its statistics as they have been seen; none until there was enough change.
    const std::optional<UINT8>& SeenDelay() const
    {
        return m_watch.Delay();
    }

private:
    /// A write, and whose decision it was.
    struct Written
    {
        UINT64 frameID;
        UINT64 decidedIn;
    };

    VOID           Watch(UINT64 frameID, const KIROStatsList& rStats);
    const Written* Find(UINT64 frameID) const;

    KiroHost&               m_rHost;
    ExposureStaging         m_staging;
    DelayWatch              m_watch;
    std::array<Written, 16> m_written;  ///< by frame; longer than any pipeline
    bool                    m_isDelayCorrected;
    StatsLogger             m_logger;
    bool                    m_isWarned = false;
};
