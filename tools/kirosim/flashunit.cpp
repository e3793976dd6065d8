#include "tools/kirosim/flashunit.h"

#include <cmath>
#include <stdexcept>

#include "host/flashcalibration.h"

namespace kirosim
{

namespace
{

constexpr UINT32 HoldFramesMax     = 30;
constexpr UINT32 PreflashFramesMax = 20;

FlashCaptureConfig ConfigOf(const Scene& rScene)
{
    return {rScene.flash->maxCurrent, HoldFramesMax, PreflashFramesMax};
}

/// A white balance that turns the light grey.
AECAlgoWhiteBalanceState BalanceOf(const Colour& rLight)
{
    AECAlgoWhiteBalanceState balance{};
    balance.isAuto    = TRUE;
    balance.redGain   = static_cast<FLOAT>(1.0 / rLight.rg);
    balance.greenGain = 1.0f;
    balance.blueGain  = static_cast<FLOAT>(1.0 / rLight.bg);
    balance.CCT       = 4000;
    return balance;
}

}  // namespace

FlashUnit::FlashUnit(const Scene& rScene, SensorModel& rSensor, KiroHost& rHost)
    : m_rScene(*rScene.flash), m_rModel(*rSensor.Flash()), m_rHost(rHost), m_capture(rHost, ConfigOf(rScene)),
      m_pipeline(rScene.sensor.Delay() - 1U, FlashLamp{}), m_pictures(0), m_farLumaOff(0.0)
{
    if (m_rScene.isCalibrated && !flashcalibration::Enable(m_rHost, m_rScene.learned))
    {
        throw std::runtime_error(
            "what an earlier run has learned of the flash is refused: damaged, or of another flash");
    }
}

VOID FlashUnit::Begin(DOUBLE time)
{
    constexpr DOUBLE     margin    = 1e-9;
    const FlashPictures& rPictures = m_rScene.pictures;
    const DOUBLE         next      = rPictures.first + m_pictures * rPictures.interval;
    if (m_pictures < rPictures.count && time + margin >= next && m_capture.Phase() == FlashCapturePhase::Idle)
    {
        StartPicture();
    }
    m_pipeline.push_back(m_capture.Lamp());
    m_rModel.SetLamp(m_pipeline.front());
    m_pipeline.pop_front();
}

VOID FlashUnit::StartPicture()
{
    const std::vector<Colour>& rLight = m_rScene.pictures.light;
    if (!rLight.empty())
    {
        m_rModel.SetLight(rLight[m_pictures % rLight.size()]);
    }
    ++m_pictures;
    (VOID) m_capture.Start(BalanceOf(m_rModel.Light()), m_rScene.pictures.isPrecision);
}

FlashRecord FlashUnit::RunFrame(UINT64 frameID, KIROStatsList& rStats)
{
    FlashRecord record{};
    record.phase = m_capture.Phase();
    record.lamp  = m_rModel.Lamp();
    if (record.phase == FlashCapturePhase::Off)
    {
        m_farLumaOff = m_rModel.FarLuma();
    }
    (VOID) m_capture.RunFrame(frameID, rStats);
    if (m_capture.IsPictureShown())
    {
        record.shot = Judge();
    }
    return record;
}

FlashShot FlashUnit::Judge() const
{
    FlashShot shot{};
    shot.decided    = m_capture.Result();
    shot.nearLuma   = m_rModel.NearLuma();
    shot.farLuma    = m_rModel.FarLuma();
    shot.farLumaOff = m_farLumaOff;
    shot.lamp       = m_rModel.ColourOf(m_rModel.Lamp().LED1Setting, m_rModel.Lamp().LED2Setting);
    shot.kneeError  = (KneeError(shot.decided.low) + KneeError(shot.decided.high)) / 2.0;
    if (m_rScene.isCalibrated)
    {
        shot.learned = flashcalibration::Store(m_rHost);
    }
    return shot;
}

/// Of the inner mixes: those at the ends are the factory's.
DOUBLE FlashUnit::KneeError(const KIROAlgoFlashOutput& rCurrent) const
{
    const auto isMix = [](const kiroflash::LEDMixType& rMix) { return rMix.LED1Setting != 0 || rMix.LED2Setting != 0; };
    DOUBLE     sum   = 0.0;
    UINT32     count = 0;
    for (UINT32 mix = 1; mix + 1 < KIROFlashMixCountMax && isMix(rCurrent.refTable[mix + 1]); ++mix)
    {
        const kiroflash::LEDMixType& rMix  = rCurrent.refTable[mix];
        const Colour                 truth = m_rModel.ColourOf(rMix.LED1Setting, rMix.LED2Setting);
        sum += std::hypot(static_cast<DOUBLE>(rMix.RGRatio) - truth.rg, static_cast<DOUBLE>(rMix.BGRatio) - truth.bg);
        ++count;
    }
    return (count > 0) ? sum / count : 0.0;
}

}  // namespace kirosim
