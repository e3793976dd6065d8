/// @file
/// What a tuning tool can watch of the running camera: numbers of each frame, under IDs that never change.
#pragma once

#include <optional>
#include <vector>

#include "host/kirohost.h"
#include "parameters/live/parameterctvalue.h"
#include "parameters/plist.h"

class TuningSetManager;

namespace controlvalues
{

/// Part of the tool protocol: an ID keeps its meaning for good, and new ones take numbers that were never used.
/// Times are ns, gains are linear, sensitivities are gain times ns, flags are 0 or 1.
enum ID : UINT32
{
    FrameNumber = 1,
    LuxIndex    = 2,  ///< steps of 3 percent, higher is darker
    CurrentLuma = 3,  ///< as metered, 0 to 255

    ShortExposureTime = 10,
    SafeExposureTime  = 11,
    LongExposureTime  = 12,

    ShortGain = 20,
    SafeGain  = 21,
    LongGain  = 22,

    ShortSensitivity = 30,
    SafeSensitivity  = 31,
    LongSensitivity  = 32,

    // The sensitivities that metering asks for and that convergence moves to.
    ShortTarget = 40,
    SafeTarget  = 41,
    LongTarget  = 42,

    ADRCGain       = 50,  ///< safe over short
    DarkBoostGain  = 51,  ///< long over safe
    PredictiveGain = 52,  ///< digital, until the sensor follows

    BrightnessSettled = 60,
    Settled           = 61,
    MeteringSkipped   = 62,
    TargetHeld        = 63,  ///< by a lock, a change of EV, a snapshot or the like
    ExposureLocked    = 64,

    FrameRate = 70,  ///< that the safe exposure allows, Hz

    // What the monitors say of a capture.
    MonitorFlash    = 80,  ///< it needs flash
    MonitorLowLight = 81,  ///< it needs a low-light snapshot
    MonitorLEDFocus = 82,  ///< autofocus needs the LED

    StatisticsDelay = 95  ///< frames from a decision to its statistics as they were seen; 0 until that is known
};

/// All of them in ascending order.
std::vector<UINT32> IDs();

/// @return the name in scripts, such as "luxIndex"; null for a number that is no ID
const CHAR* NameOf(UINT32 id);

/// Hands the values of each frame to the tuning store. Allocates for the first frame only.
class Publisher
{
public:
    /// @param rManager must outlive the publisher
    explicit Publisher(TuningSetManager& rManager) : m_rManager(rManager)
    {
    }

    /// Replaces the values of the frame before by those of this one, all IDs in ascending order.
    /// @param rStatisticsDelay as it was seen
    VOID Publish(UINT64 frameID, const KiroHostFrame& rFrame, const std::optional<UINT8>& rStatisticsDelay);

    /// What was published last.
    const PList<ParameterCTValue>& Values() const
    {
        return m_values;
    }

private:
    TuningSetManager&       m_rManager;
    PList<ParameterCTValue> m_values;
};

}  // namespace controlvalues
