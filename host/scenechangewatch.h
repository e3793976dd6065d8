/// @file
/// What the scene change detectors say, frame by frame, for a host that acts on scene changes of its own.
///
/// The detector that holds convergence is brought back to rest by the core once the exposure has settled. One that only
/// the host heeds stays where it is until the host has taken note of the change and says so.
#pragma once

#include <string>
#include <vector>

#include "interface/ikirocorealgo.h"

struct SceneChangeDetector
{
    UINT32 id;
    bool   isHosts;  ///< heeded by the host alone
};

/// A detector after a frame.
struct SceneChangeReading
{
    UINT32           id;
    std::string      name;     ///< a copy: the tuning's goes with it. Empty until the detector has been at rest once
    bool             isTuned;  ///< otherwise the states are those of rest
    KIROSCDStateType scState;
    KIROHoldTimeType htState;
};

class SceneChangeWatch
{
public:
    /// @param pAlgo must outlive this object
    SceneChangeWatch(IKIROCoreAlgo* pAlgo, const std::vector<SceneChangeDetector>& rDetectors);

    /// To be called after a frame. Brings the host's own detectors back to rest once the scene is stable after a
    /// change.
    /// @return a reading per detector, as they stood at the end of the frame
    std::vector<SceneChangeReading> Read();

private:
    IKIROCoreAlgo*                   m_pAlgo;
    std::vector<SceneChangeDetector> m_detectors;
};
