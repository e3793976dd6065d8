#include "tools/kirosim/camera.h"

#include <cmath>

namespace kirosim
{

namespace
{

constexpr DOUBLE NsPerSecond = 1e9;

/// Level that a start exposure without offset gives a mean region, share of full scale.
constexpr DOUBLE MidGrey = 0.18;

/// Start exposure of a scene that says nothing: 10 ms at unity gain.
constexpr UINT64 DefaultStartExposure = 10000000;

}  // namespace

Camera::Camera(const Scene& rScene, LoadedTuning& rTuning, StatsLogger logger)
    : m_rScene(rScene), m_rTuning(rTuning), m_sensor(rScene), m_host(m_library, HostConfig(), logger)
{
    // The decision of frame n is in the statistics of frame n + latency.
    m_pipeline.assign(rScene.sensor.latency - 1U, Quantize(m_host.LastFrame()));
    if (rScene.flash.has_value())
    {
        m_pFlash = std::make_unique<FlashUnit>(rScene, m_sensor, m_host);
    }
}

KiroHostConfig Camera::HostConfig() const
{
    const Sensor&  rSensor = m_rScene.sensor;
    const FLOAT    fps     = static_cast<FLOAT>(m_rScene.fps);
    KiroHostConfig config{};
    config.tuning      = m_rTuning.Data(DefaultSelectors());
    config.sensorRange = {static_cast<FLOAT>(rSensor.minGain), static_cast<FLOAT>(rSensor.maxGain), rSensor.minTime,
                          rSensor.maxTime};
    config.indexZeroExposure = rSensor.minTime;
    config.startExposure     = StartExposure();
    config.systemLatency     = rSensor.latency;
    config.FPSRange          = {fps, fps};
    return config;
}

UINT64 Camera::StartExposure() const
{
    if (!m_rScene.startOffsetEV.has_value())
    {
        return DefaultStartExposure;
    }
    const DOUBLE seconds = MidGrey / (m_rScene.LuxAt(0.0) * SignalPerLuxSecond);
    return static_cast<UINT64>(seconds * std::pow(2.0, *m_rScene.startOffsetEV) * NsPerSecond);
}

FrameRecord Camera::RunFrame(UINT64 frame, DOUBLE time)
{
    FrameRecord record{};
    record.frame = frame;
    record.time  = time;
    m_pipeline.push_back(Quantize(m_host.LastFrame()));
    const AppliedExposures applied = m_pipeline.front();
    m_pipeline.pop_front();
    if (m_pFlash != nullptr)
    {
        m_pFlash->Begin(time);
    }
    KIROStatsList& rStats = m_sensor.Capture(frame, time, applied.data(), record.truth);
    if (m_pFlash != nullptr)
    {
        record.flash   = m_pFlash->RunFrame(frame, rStats);
        record.decided = m_host.LastFrame();
    }
    else
    {
        record.decided = m_host.RunFrame(frame, rStats);
    }
    return record;
}

Camera::AppliedExposures Camera::Quantize(const KiroHostFrame& rFrame) const
{
    AppliedExposures applied;
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        applied[type] = m_sensor.Quantize(rFrame.arbitration[type].exposureSet);
    }
    return applied;
}

VOID Camera::Apply(const Event& rEvent)
{
    if (rEvent.modes.has_value())
    {
        m_host.SetTuning(m_rTuning.Data(*rEvent.modes));
    }
    if (rEvent.ev.has_value())
    {
        m_host.SetExposureCompensation(*rEvent.ev);
    }
    if (rEvent.lock.has_value())
    {
        m_host.SetLock(*rEvent.lock);
    }
    if (rEvent.touch.has_value() || rEvent.isTouchEnd)
    {
        m_host.SetTouch(rEvent.touch.has_value() ? &*rEvent.touch : nullptr);
    }
    if (rEvent.antibanding.has_value())
    {
        m_host.SetFlickerCompensation(*rEvent.antibanding);
    }
    if (rEvent.fps.has_value())
    {
        m_host.SetFPSRange(*rEvent.fps);
    }
    if (rEvent.manual.has_value())
    {
        m_host.SetManual(*rEvent.manual);
    }
}

}  // namespace kirosim
