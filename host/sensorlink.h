/// @file
/// What lies between a host's decisions and a sensor: when each is written, and which of them the statistics show.
#pragma once

#include <array>
#include <optional>

#include "host/exposurestaging.h"

class SensorLink
{
public:
    /// @param rHost must outlive this object
    SensorLink(KiroHost& rHost, const RegisterDelays& rDelays);

    /// The host has begun a session. @return what the sensor stands at
    SensorWrite Begin();

    /// Once before each frame, with the newest decision that is there.
    /// @param frameID   of the frame that comes next
    /// @param decidedIn frame of the decision: the one before, or an older one if that has come too late
    /// @return what is to be written now
    SensorWrite Write(UINT64 frameID, UINT64 decidedIn, const KiroHostFrame& rDecided);

    /// Before the host runs a frame: tells it which decision the frame's statistics show.
    VOID TakeStatistics(UINT64 frameID);

private:
    /// A write, and whose decision it was.
    struct Written
    {
        UINT64 frameID;
        UINT64 decidedIn;
    };

    const Written* Find(UINT64 frameID) const;

    KiroHost&               m_rHost;
    ExposureStaging         m_staging;
    std::array<Written, 16> m_written;  ///< by frame; longer than any pipeline
};
