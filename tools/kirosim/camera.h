/// @file
/// One camera of the simulation: a sensor that looks at the scene, a host with its core, and the decisions on their way
/// from the one to the other.
#pragma once

#include "host/bracketcapture.h"
#include "host/controlvalues.h"
#include "host/kirohost.h"
#include "host/scenechangewatch.h"
#include "host/sensorlink.h"
#include "tools/kirosim/flashunit.h"
#include "tools/kirosim/framefaults.h"
#include "tools/kirosim/loadedtuning.h"
#include "tools/kirosim/outsidesources.h"
#include "tools/kirosim/sensormodel.h"
#include "tools/kirosim/sensorregisters.h"

namespace kirosim
{

/// What the host makes of the pipeline delay, frames.
struct DelayReading
{
    UINT8                told;  ///< by which it goes
    std::optional<UINT8> seen;  ///< by its watch; none until there was enough change to tell
};

/// One frame of one camera, as it is written to the trace.
struct FrameRecord
{
    UINT64        frame;
    DOUBLE        time;       ///< s
    DOUBLE        sceneTime;  ///< within the present round of the scene, s
    DOUBLE        fps;        ///< at which the sensor took it; the next one starts a period later
    FrameTruth    truth;
    KiroHostFrame decided;
    FrameFault    fault;  ///< of its statistics, and of what was written before it
    DelayReading  delay;

    std::optional<BracketPicture>    picture;         ///< the frame is one of a bracket, and no preview
    bool                             isPictureShown;  ///< the truth is of such a frame
    std::vector<SceneChangeReading>  detectors;       ///< those that the scene watches
    OutsideState                     outside;
    FlashRecord                      flash;
    std::optional<KiroStartExposure> start;  ///< a session began with this frame
};

/// Exposure with which a camera starts if nothing better is known, gain times ns.
UINT64 FixedStartExposure(const Scene& rScene);

class Camera
{
public:
    /// @param rScene, rTuning must outlive the camera
    /// @param rDecorate see KiroCoreLibrary; may be empty
    /// @throws std::runtime_error when the core cannot be created
    Camera(const Scene& rScene, LoadedTuning& rTuning, StatsLogger logger, const KiroTableDecorator& rDecorate = {});

    VOID Apply(const Event& rEvent);

    /// Begins a session anew. @param sceneTime of the next frame, s
    VOID Begin(const StartPlan& rPlan, DOUBLE sceneTime);

    /// The scene starts again before the next frame, light, noise and flash pictures alike; host and core run on.
    VOID StartRound();

    /// The light has another colour; white balance finds it at once.
    VOID SetCCT(DOUBLE CCT);

    /// @param time, sceneTime of the frame's start, s; the latter begins again with each round of the scene
    FrameRecord RunFrame(UINT64 frame, DOUBLE time, DOUBLE sceneTime);

    /// Publishes the values of each frame from the next one on. @param rManager must outlive the camera
    VOID PublishControlValues(TuningSetManager& rManager)
    {
        m_controlValues.emplace(rManager);
    }

    /// Lets the core fill the debug record from the next frame on.
    VOID EnableDebugData()
    {
        m_host.SetDebugDataEnabled(true);
    }

    /// The record of the last frame.
    const AECDebugData& DebugData()
    {
        return m_host.DebugData();
    }

    /// What the safe exposure of the last frame saw.
    VOID View(RegionView& rView) const
    {
        m_sensor.View(rView);
    }

    KiroHost& Host()
    {
        return m_host;
    }

    /// What the sensor saw of the last frame.
    SensorView View() const
    {
        return m_sensor.View();
    }

private:
    /// What the sensor does for one frame.
    struct SensorFrame
    {
        std::array<AppliedExposure, AECAlgoExposureCount> exposures;
        DOUBLE                                            fps;
    };

    KiroHostConfig HostConfig() const;
    VOID           FillPipeline();
    SensorFrame    Expose(UINT64 frame, const FrameFault& rFault);
    VOID           Decide(UINT64 frame, KIROStatsList& rStats, FrameRecord& rRecord);
    SensorFrame    Quantize(const SensorWrite& rActing) const;

    const Scene&               m_rScene;
    LoadedTuning&              m_rTuning;
    SensorModel                m_sensor;
    KiroCoreLibrary            m_library;
    KiroHost                   m_host;
    BracketCapture             m_bracket;
    SceneChangeWatch           m_watch;
    OutsideSources             m_outside;
    SensorLink                 m_link;
    SensorRegisters            m_registers;
    FrameFaults                m_faults;
    KiroHostFrame              m_decided;        ///< of the last frame
    KiroHostFrame              m_decidedBefore;  ///< of the one before it
    bool                       m_isStarting;     ///< the next frame is the first of its session
    std::unique_ptr<FlashUnit> m_pFlash;         ///< null without flash

    std::optional<controlvalues::Publisher> m_controlValues;  ///< none unless somebody may watch
};

}  // namespace kirosim
