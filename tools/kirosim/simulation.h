/// @file
/// The closed loop over time: what the scene's events change, and a frame of the camera after the other.
#pragma once

#include <functional>

#include "host/cameragroup.h"
#include "tools/kirosim/camera.h"
#include "tools/kirosim/frameclock.h"

namespace kirosim
{

/// How long a run goes on, and how fast.
struct RunPlan
{
    std::optional<UINT64> rounds = 1;  ///< of the scene; none to go on for ever

    /// Told when the frame starts, s since the run's first; may wait for it. False ends the run. May be empty.
    std::function<bool(DOUBLE time)> beforeFrame;
};

class Simulation
{
public:
    /// @param rScene, rTuning must outlive the simulation
    /// @param rDecorate of all cameras, see KiroCoreLibrary; may be empty
    /// @throws std::runtime_error when the core cannot be created
    Simulation(const Scene& rScene, LoadedTuning& rTuning, StatsLogger logger,
               const KiroTableDecorator& rDecorate = {});

    using Visitor = std::function<VOID(const FrameRecord&)>;

    /// Runs all frames of the scene, once or round after round: then light and events start again while the cameras run
    /// on. What an event has set stays set until an event changes it, but for roles of cameras and colour of the light,
    /// which are the scene's. A further call goes on behind the last frame. Frames follow at the rate that the camera
    /// has decided; two cameras run in step, at the slower one's.
    /// @param visit       sees each frame of the first camera once both cameras have decided theirs
    /// @param visitSecond sees each frame of the second camera before that; may be empty
    VOID Run(const Visitor& visit, const Visitor& visitSecond = {}, const RunPlan& rPlan = {});

    /// The first camera.
    Camera& MainCamera()
    {
        return m_camera;
    }

    /// Null without a second camera.
    Camera* SecondCamera()
    {
        return m_pSecond.get();
    }

private:
    VOID StartRound();
    VOID RestoreRole(size_t camera, StatsAlgoRole role);
    VOID RunFrame(UINT64 index, const Visitor& visit, const Visitor& visitSecond);
    VOID Advance(DOUBLE fps);
    VOID ApplyEvents(DOUBLE sceneTime);
    VOID Apply(const Event& rEvent, DOUBLE sceneTime);
    bool IsSecondMaster() const;

    const Scene&            m_rScene;
    Camera                  m_camera;
    std::unique_ptr<Camera> m_pSecond;  ///< null without a second camera
    CameraGroup             m_group;    ///< of both; empty without a second camera
    size_t                  m_nextEvent;
    UINT64                  m_framesRun;
    FrameClock              m_clock;       ///< of the run
    FrameClock              m_roundClock;  ///< of the round
};

}  // namespace kirosim
