/// @file
/// What the figures of merit need of a frame.
#pragma once

#include <vector>

#include "tools/kirosim/camera.h"

namespace kirosim
{

struct RunSample
{
    UINT64 frame;
    DOUBLE time;        ///< in the scene, s
    DOUBLE curveEV;     ///< light of the light curve
    DOUBLE lightEV;     ///< light that the frame shows, ripple included; of any unit
    DOUBLE shownEV;     ///< exposure of the frame, log2 of gain times ns; so are exposures below
    DOUBLE targetEV;    ///< metered, with the user's EV, as far as the sensor reaches
    DOUBLE exposureEV;  ///< what the sensor made of the frame's decision; later frames show it
    DOUBLE pictureEV;   ///< mean, full scale is 0
    DOUBLE clipped;     ///< share of the samples, as the two below
    DOUBLE black;
    DOUBLE lost;     ///< beyond the least of any exposure
    DOUBLE gainEV;   ///< of the decision, above the least
    DOUBLE timeEV;   ///< the same
    DOUBLE lineEV;   ///< by which one line of the sensor more would be brighter
    DOUBLE banding;  ///< share of the mean
    bool   isStart;  ///< of a session
    bool   isPinned;
    bool   isDecided;  ///< exposureEV is known
    UINT32 changed;    ///< detectors that do not rest, one bit each in the order of the scene
    UINT32 tuned;      ///< detectors that the tuning has
    UINT32 flags;      ///< of the monitors, one bit each
};

/// @param leastLoss of the frame's light
RunSample SampleOf(const FrameRecord& rRecord, const Scene& rScene, DOUBLE leastLoss);

/// Whether a frame is of the preview, or else a picture of its own.
bool IsPreview(const FrameRecord& rRecord);

}  // namespace kirosim
