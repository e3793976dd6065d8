/// @file
/// When gain and time are written to a sensor, so that both take effect in one frame.
///
/// A register of a sensor acts some frames after it was written, and the register of gain is often a frame quicker than
/// the one of time. Written together, each change of both would show a frame with the new gain at the old time: a flash
/// or a dip that the statistics show as well, with an exposure that was never decided. So the quicker register is
/// written later, by the difference.
#pragma once

#include <array>
#include <vector>

#include "host/kirohost.h"

/// Frames from a write to the statistics that show it.
struct RegisterDelays
{
    UINT8 gain;
    UINT8 time;
};

/// What goes to the sensor before a frame. Arrays are indexed by AECAlgoExposureType.
struct SensorWrite
{
    std::array<FLOAT, AECAlgoExposureCount>  gains;
    std::array<UINT64, AECAlgoExposureCount> times;  ///< ns
    FLOAT                                    FPS;    ///< the length of the frame goes with the times
};

class ExposureStaging
{
public:
    explicit ExposureStaging(const RegisterDelays& rDelays);

    /// A session begins: what the sensor does is known, and nothing is held back. @return what it stands at
    SensorWrite Begin(const KiroHostFrame& rStart);

    /// Takes the newest decision, once before each frame. @return what is to be written now
    SensorWrite Stage(const KiroHostFrame& rDecided);

private:
    SensorWrite Compose() const;

    size_t                   m_gainHold;  ///< frames that a gain waits
    size_t                   m_timeHold;
    std::vector<SensorWrite> m_decided;  ///< newest first; as many as the longer hold needs
};
