/// @file
/// The closed loop over time: what the scene's events change, and a frame of the camera after the other.
#pragma once

#include <functional>

#include "tools/kirosim/camera.h"

namespace kirosim
{

class Simulation
{
public:
    /// @param rScene, rTuning must outlive the simulation
    /// @throws std::runtime_error when the core cannot be created
    Simulation(const Scene& rScene, LoadedTuning& rTuning, StatsLogger logger);

    /// Runs all frames of the scene. @param visit sees each frame once it is decided
    VOID Run(const std::function<VOID(const FrameRecord&)>& visit);

    Camera& MainCamera()
    {
        return m_camera;
    }

private:
    VOID ApplyEvents(DOUBLE time);

    const Scene& m_rScene;
    Camera       m_camera;
    size_t       m_nextEvent;
};

}  // namespace kirosim
