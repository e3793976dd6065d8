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
    : m_rScene(rScene), m_rTuning(rTuning), m_sensor(rScene), m_host(m_library, HostConfig(), logger),
      m_bracket(m_host, rScene.sensor.latency), m_watch(m_host.Algo(), rScene.detectors.watched), m_outside(rScene),
      m_decided(m_host.LastFrame())
{
    // The decision of frame n is in the statistics of frame n + latency.
    m_pipeline.assign(rScene.sensor.latency - 1U, Quantize(m_decided));
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
    m_pipeline.push_back(Quantize(m_decided));
    const AppliedExposures applied = m_pipeline.front();
    m_pipeline.pop_front();
    if (m_pFlash != nullptr)
    {
        m_pFlash->Begin(time);
    }
    KIROStatsList& rStats = m_sensor.Capture(frame, time, applied.data(), record.truth);
    m_outside.Deliver(time, m_host.ExternalData());
    if (m_pFlash != nullptr)
    {
        record.flash = m_pFlash->RunFrame(frame, rStats);
        m_decided    = m_host.LastFrame();
    }
    else
    {
        m_decided             = m_bracket.RunFrame(frame, rStats);
        record.picture        = m_bracket.LastPicture();
        record.isPictureShown = m_bracket.HasShownPicture();
    }
    record.decided   = m_decided;
    record.detectors = m_watch.Read();
    record.outside   = m_outside.StateOf(m_host.ExternalData());
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
    if (rEvent.hdr.has_value())
    {
        m_host.SetHDRType(*rEvent.hdr);
    }
    if (rEvent.manual.has_value())
    {
        m_host.SetManual(*rEvent.manual);
    }
    if (rEvent.bracket.has_value())
    {
        m_bracket.Start(*rEvent.bracket);
    }
    if (rEvent.LEDMode.has_value())
    {
        m_host.SetLEDMode(*rEvent.LEDMode);
    }
}

}  // namespace kirosim
