/// @file
/// The closed loop: scene, sensor, statistics, host, core, and the decided exposures back into the sensor.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "host/kirohost.h"
#include "parameters/tuningsetmanager.h"
#include "tools/kirosim/sensormodel.h"

namespace kirosim
{

/// One frame, as it is written to the trace.
struct FrameRecord
{
    UINT64        frame;
    DOUBLE        time;  ///< s
    FrameTruth    truth;
    KiroHostFrame decided;
};

/// A tuning in a store, from a parameter file or from text.
class LoadedTuning
{
public:
    /// @throws tuningfile::InputError if the file cannot be read or the store refuses it
    explicit LoadedTuning(const std::string& rPath);

    /// @param rSelectors seven, Default first; they stay valid until the next call
    StatsTuningData Data(const std::vector<TuningMode>& rSelectors);

private:
    TuningSetManager        m_manager;
    std::vector<TuningMode> m_selectors;
};

class Simulation
{
public:
    /// @throws std::runtime_error when the core cannot be created
    Simulation(const Scene& rScene, LoadedTuning& rTuning, StatsLogger logger);

    /// Runs all frames of the scene. @param visit sees each frame once it is decided
    VOID Run(const std::function<VOID(const FrameRecord&)>& visit);

private:
    using AppliedExposures = std::array<AppliedExposure, AECAlgoExposureCount>;

    KiroHostConfig   HostConfig() const;
    UINT64           StartExposure() const;
    VOID             ApplyEvents(DOUBLE time);
    VOID             ApplyEvent(const Event& rEvent);
    AppliedExposures Quantize(const KiroHostFrame& rFrame) const;

    const Scene&                 m_rScene;
    LoadedTuning&                m_rTuning;
    SensorModel                  m_sensor;
    KiroCoreLibrary              m_library;
    KiroHost                     m_host;
    std::deque<AppliedExposures> m_pipeline;  ///< decisions on their way to the sensor, oldest first
    size_t                       m_nextEvent;
};

/// Selectors of the tuning's Default mode.
std::vector<TuningMode> DefaultSelectors();

}  // namespace kirosim
