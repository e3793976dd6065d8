#include "tools/kirosim/camera.h"

#include <cmath>

namespace kirosim
{

namespace
{

/// Level that a start exposure without offset gives a mean region, share of full scale.
constexpr DOUBLE MidGrey = 0.18;

bool UsesLightSensor(const StartPlan& rPlan)
{
    return rPlan.source == KIROStartExpExtLightData || rPlan.lux.has_value();
}

/// Sources that a scene's start asks.
std::vector<KIROAlgoStartExpType> SourcesOf(const StartPlan& rPlan, const KiroStartSituation& rSituation)
{
    if (rPlan.isFixed)
    {
        return {};
    }
    return rPlan.source.has_value() ? std::vector<KIROAlgoStartExpType>{*rPlan.source} : KiroStartSources(rSituation);
}

RegisterDelays DelaysOf(const Sensor& rSensor)
{
    return {rSensor.GainDelay(), rSensor.TimeDelay()};
}

/// Start exposure of a scene that says nothing: 10 ms at unity gain.
constexpr UINT64 DefaultStartExposure = 10000000;

}  // namespace

UINT64 FixedStartExposure(const Scene& rScene)
{
    if (!rScene.startOffsetEV.has_value())
    {
        return DefaultStartExposure;
    }
    const DOUBLE seconds = MidGrey / (rScene.LuxAt(0.0) * SignalPerLuxSecond * rScene.sensor.sensitivity);
    return static_cast<UINT64>(seconds * std::pow(2.0, *rScene.startOffsetEV) * NsPerSecond);
}

Camera::Camera(const Scene& rScene, LoadedTuning& rTuning, StatsLogger logger, const KiroTableDecorator& rDecorate)
    : m_rScene(rScene), m_rTuning(rTuning), m_sensor(rScene), m_library(KiroCoreLibraryName, rDecorate),
      m_host(m_library, HostConfig(), logger), m_bracket(m_host), m_watch(m_host.Algo(), rScene.detectors.watched),
      m_outside(rScene), m_link(m_host, DelaysOf(rScene.sensor), rScene.sensor.isDelayCorrected, logger),
      m_registers(DelaysOf(rScene.sensor)), m_faults(rScene), m_decided{}, m_decidedBefore{}, m_isStarting(true)
{
    SetCCT(m_rScene.CCT);
    if (m_rScene.camera.calibration.has_value())
    {
        m_host.SetCalibration(*m_rScene.camera.calibration);
    }
    FillPipeline();
    if (rScene.flash.has_value())
    {
        m_pFlash = std::make_unique<FlashUnit>(rScene, m_sensor, m_host);
    }
}

/// The sensor stands at the start exposure until the first decision has come through.
VOID Camera::FillPipeline()
{
    m_decided       = m_host.LastFrame();
    m_decidedBefore = m_decided;
    m_registers.Begin(m_link.Begin());
    m_isStarting = true;
}

VOID Camera::Begin(const StartPlan& rPlan, DOUBLE sceneTime)
{
    const bool isPreflash = rPlan.source == KIROStartExpPreflash;
    const auto mode       = isPreflash ? AECAlgoOperationModePreflash : AECAlgoOperationModeFastAEC;
    if (UsesLightSensor(rPlan) || m_host.StartSituation(mode).hasLightSensor)
    {
        m_host.SetLightSensor(static_cast<FLOAT>(rPlan.lux.value_or(m_rScene.LuxAt(sceneTime))));
    }
    m_host.BeginSession(mode, SourcesOf(rPlan, m_host.StartSituation(mode)));
    FillPipeline();
}

VOID Camera::StartRound()
{
    SetCCT(m_rScene.CCT);
    m_sensor.StartRound();
    m_faults.StartRound();
    m_outside.StartRound();
    if (m_pFlash != nullptr)
    {
        m_pFlash->StartRound();
    }
}

VOID Camera::SetCCT(DOUBLE CCT)
{
    m_sensor.SetColourSensitivity(m_rScene.camera.SensitivityAt(CCT));
    m_host.SetCCT(static_cast<UINT32>(CCT));
}

KiroHostConfig Camera::HostConfig() const
{
    const Sensor&  rSensor = m_rScene.sensor;
    const FLOAT    fps     = static_cast<FLOAT>(m_rScene.fps);
    KiroHostConfig config{};
    config.tuning      = m_rTuning.Data(m_rScene.camera.modes.empty() ? DefaultSelectors() : m_rScene.camera.modes);
    config.sensorRange = {static_cast<FLOAT>(rSensor.minGain), static_cast<FLOAT>(rSensor.maxGain), rSensor.minTime,
                          rSensor.maxTime};
    config.indexZeroExposure = rSensor.minTime;
    config.startExposure     = FixedStartExposure(m_rScene);
    config.systemLatency     = static_cast<UINT8>(rSensor.ToldDelay());
    config.FPSRange          = {fps, fps};
    if (m_rScene.start.has_value())
    {
        const StartPlan& rPlan = *m_rScene.start;
        if (UsesLightSensor(rPlan))
        {
            config.lightLux = static_cast<FLOAT>(rPlan.lux.value_or(m_rScene.LuxAt(0.0)));
        }
        config.startSources = SourcesOf(rPlan, {false, false, false, config.lightLux.has_value()});
    }
    return config;
}

FrameRecord Camera::RunFrame(UINT64 frame, DOUBLE time, DOUBLE sceneTime)
{
    FrameRecord record{};
    record.frame              = frame;
    record.time               = time;
    record.sceneTime          = sceneTime;
    record.fault              = m_faults.Next();
    const SensorFrame applied = Expose(frame, record.fault);
    record.fps                = applied.fps;
    if (m_pFlash != nullptr)
    {
        m_pFlash->Begin(sceneTime);
    }
    KIROStatsList& rStats = m_sensor.Capture(frame, sceneTime, applied.exposures.data(), record.truth);
    m_outside.Deliver(sceneTime, m_host.ExternalData());
    m_decidedBefore = m_decided;
    if (!record.fault.isDropped)
    {
        Decide(frame, rStats, record);
    }
    record.decided   = m_decided;
    record.delay     = {m_host.PipelineDelay(), m_link.SeenDelay()};
    record.detectors = m_watch.Read();
    record.outside   = m_outside.StateOf(m_host.ExternalData());
    if (m_isStarting)
    {
        record.start = m_host.Start();
        m_isStarting = false;
    }
    if (m_controlValues.has_value())
    {
        m_controlValues->Publish(frame, m_decided, record.delay.seen);
    }
    return record;
}

/// What the sensor does in a frame, with what has been written before it.
Camera::SensorFrame Camera::Expose(UINT64 frame, const FrameFault& rFault)
{
    const KiroHostFrame& rNewest   = rFault.isLate ? m_decidedBefore : m_decided;
    const UINT64         decidedIn = rFault.isLate ? frame - 2 : frame - 1;
    return Quantize(m_registers.Write(m_link.Write(frame, decidedIn, rNewest)));
}

/// Without statistics there is no decision: the last one stands, as if it had been made again.
VOID Camera::Decide(UINT64 frame, KIROStatsList& rStats, FrameRecord& rRecord)
{
    m_link.TakeStatistics(frame, rStats, m_pFlash != nullptr && m_pFlash->IsBusy());
    if (m_pFlash != nullptr)
    {
        rRecord.flash = m_pFlash->RunFrame(frame, rStats);
        m_decided     = m_host.LastFrame();
        return;
    }
    m_decided              = m_bracket.RunFrame(frame, rStats);
    rRecord.picture        = m_bracket.LastPicture();
    rRecord.isPictureShown = m_bracket.HasShownPicture();
}

Camera::SensorFrame Camera::Quantize(const SensorWrite& rActing) const
{
    SensorFrame applied{};
    applied.fps = static_cast<DOUBLE>(rActing.FPS);
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        KIROExposureSetType set{};
        set.gain                = rActing.gains[type];
        set.time                = rActing.times[type];
        applied.exposures[type] = m_sensor.Quantize(set);
    }
    return applied;
}

VOID Camera::Apply(const Event& rEvent)
{
    if (!rEvent.modes.empty())
    {
        m_host.SetTuning(m_rTuning.Data(rEvent.modes));
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
