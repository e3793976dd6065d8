/// @file
/// The closed loop over time: what the scene's events change, and a frame of the camera after the other.
#pragma once

#include <functional>

#include "host/cameragroup.h"
#include "tools/kirosim/camera.h"

namespace kirosim
{

class Simulation
{
public:
    /// @param rScene, rTuning must outlive the simulation
    /// @throws std::runtime_error when the core cannot be created
    Simulation(const Scene& rScene, LoadedTuning& rTuning, StatsLogger logger);

    using Visitor = std::function<VOID(const FrameRecord&)>;

    /// Runs all frames of the scene.
    /// @param visit       sees each frame of the first camera once both cameras have decided theirs
    /// @param visitSecond sees each frame of the second camera before that; may be empty
    VOID Run(const Visitor& visit, const Visitor& visitSecond = {});

    /// The first camera.
    Camera& MainCamera()
    {
        return m_camera;
    }

private:
    VOID ApplyEvents(DOUBLE time);
    VOID Apply(const Event& rEvent, DOUBLE time);
    bool IsSecondMaster() const;

    const Scene&            m_rScene;
    Camera                  m_camera;
    std::unique_ptr<Camera> m_pSecond;  ///< null without a second camera
    CameraGroup             m_group;    ///< of both; empty without a second camera
    size_t                  m_nextEvent;
};

}  // namespace kirosim
