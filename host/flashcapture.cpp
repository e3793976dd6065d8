#include "host/flashcapture.h"

#include <algorithm>

#include "host/channelnames.h"

namespace
{

constexpr FlashLamp LampOff  = {0, 0, 0.0f};
constexpr FLOAT     WholeLit = 1.0f;

/// @param ms below 0 counts as 0, above a minute as a minute
UINT64 NsOf(FLOAT ms)
{
    constexpr FLOAT nsPerMs = 1e6f;
    constexpr FLOAT maximum = 60000.0f;
    return (ms > 0.0f) ? static_cast<UINT64>(std::min(ms, maximum) * nsPerMs) : 0;
}

/// Convergence may go back and forth by its smallest move.
bool IsAlike(UINT64 first, UINT64 second)
{
    constexpr UINT64 percent = 100;
    const UINT64     larger  = std::max(first, second);
    return larger - std::min(first, second) <= larger / percent;
}

FlashLamp LampOf(const KIROAlgoFlashOutput& rCurrent, FLOAT litShare)
{
    return {rCurrent.LED1Setting, rCurrent.LED2Setting, litShare};
}

}  // namespace

FlashCapture::FlashCapture(KiroHost& rHost, const FlashCaptureConfig& rConfig)
    : m_rHost(rHost), m_config(rConfig), m_precisionHistory{}, m_phase(FlashCapturePhase::Idle), m_phaseFrames(0),
      m_stillFrames(0), m_stillExposure(0), m_isPrecisionAllowed(false), m_isMeteringDone(false),
      m_isPictureShown(false), m_lamp(LampOff), m_off(channelnames::Luma16Off, channelnames::Saturation16Off),
      m_low(channelnames::Luma16Low, channelnames::Saturation16Low), m_preview{}, m_result{}
{
    KIROCoreSetParam param = {KIROCorePrecisionFlashHistory, sizeof(m_precisionHistory), &m_precisionHistory};
    KIROSetInput     input{};
    input.source           = KIROCoreInternalParam;
    input.u.pKirocoreParam = &param;
    (VOID) m_rHost.Algo()->setInput(m_rHost.Algo(), &input);
    (VOID) m_rHost.SetParam(AECAlgoSetParamLEDMode, AECAlgoLEDModeOn);
    (VOID) m_rHost.SetParam(AECAlgoSetParamFlashMaximumCurrent, m_config.maxFlashCurrent);
}

FlashCapture::~FlashCapture()
{
    KIROCoreSetParam param = {KIROCorePrecisionFlashHistory, sizeof(m_precisionHistory), nullptr};
    KIROSetInput     input{};
    input.source           = KIROCoreInternalParam;
    input.u.pKirocoreParam = &param;
    (VOID) m_rHost.Algo()->setInput(m_rHost.Algo(), &input);
}

bool FlashCapture::Start(const AECAlgoWhiteBalanceState& rWhiteBalance, bool isPrecisionAllowed)
{
    if (m_phase != FlashCapturePhase::Idle)
    {
        return false;
    }
    m_isPrecisionAllowed  = isPrecisionAllowed;
    m_result              = {};
    m_result.whiteBalance = rWhiteBalance;
    (VOID) m_rHost.SetParam(AECAlgoSetParamAWBState, rWhiteBalance);
    m_rHost.Algo()->SetMeteringLock(m_rHost.Algo(), TRUE);
    Enter(FlashCapturePhase::Hold);
    return true;
}

VOID FlashCapture::Enter(FlashCapturePhase phase)
{
    m_phase       = phase;
    m_phaseFrames = 0;
}

const KiroHostFrame& FlashCapture::RunFrame(UINT64 frameID, KIROStatsList& rStats)
{
    m_isPictureShown = false;
    ++m_phaseFrames;
    switch (m_phase)
    {
    case FlashCapturePhase::Hold:
        RunHold(frameID, rStats);
        break;
    case FlashCapturePhase::Off:
        RunOff(frameID, rStats);
        break;
    case FlashCapturePhase::Preflash:
        RunPreflash(frameID, rStats);
        break;
    case FlashCapturePhase::Snapshot:
        RunSnapshot(frameID, rStats);
        break;
    case FlashCapturePhase::Readout:
        RunReadout(frameID, rStats);
        break;
    default:
        RunHost(frameID, rStats);
        break;
    }
    return m_rHost.LastFrame();
}

VOID FlashCapture::RunHost(UINT64 frameID, KIROStatsList& rStats)
{
    (VOID) m_rHost.RunFrame(frameID, rStats);
    if (IsAlike(SafeExposure(), m_stillExposure))
    {
        ++m_stillFrames;
    }
    else
    {
        m_stillFrames   = 0;
        m_stillExposure = SafeExposure();
    }
}

UINT64 FlashCapture::SafeExposure() const
{
    return m_rHost.LastFrame().arbitration[AECAlgoExposureSafe].exposureSet.exposure;
}

/// Whether the next statistics show the exposure that was decided last: the core keeps the exposure of a flash frame
/// from its newest decision, so only a still one belongs to the statistics.
bool FlashCapture::IsStill() const
{
    return m_stillFrames >= m_rHost.PipelineDelay();
}

VOID FlashCapture::RunHold(UINT64 frameID, KIROStatsList& rStats)
{
    RunHost(frameID, rStats);
    if (IsStill() || m_phaseFrames >= m_config.maxHoldFrames)
    {
        Enter(FlashCapturePhase::Off);
    }
}

VOID FlashCapture::RunOff(UINT64 frameID, KIROStatsList& rStats)
{
    (VOID) m_off.Save(rStats);
    KIROExtFlashInfo info{};
    info.prepareBeforePreflash   = TRUE;
    rStats.prepareBeforePreflash = TRUE;
    m_rHost.SetFlashInfo(info);
    RunHost(frameID, rStats);
    rStats.prepareBeforePreflash = FALSE;
    m_rHost.SetFlashInfo({});

    // Entering the preflash keeps the newest frame as the one without LED.
    m_preview            = m_rHost.LastFrame();
    m_result.offExposure = SafeExposure();
    m_rHost.StartMode(AECAlgoOperationModePreflash, m_preview);
    m_rHost.Algo()->SetMeteringLock(m_rHost.Algo(), FALSE);
    m_result.low     = Current(KIROExtFlashCurrentType::Low);
    m_isMeteringDone = false;
    Enter(FlashCapturePhase::Preflash);
}

VOID FlashCapture::RunPreflash(UINT64 frameID, KIROStatsList& rStats)
{
    const bool isLit = m_phaseFrames > m_rHost.PipelineDelay();
    if (isLit && !m_isMeteringDone)
    {
        ++m_result.preflashFrames;
        m_result.isStoppedByMeter = !IsPreflashMeteringNeeded(rStats);
        m_isMeteringDone          = m_result.isStoppedByMeter || m_result.preflashFrames >= m_config.maxPreflashFrames;
        m_rHost.Algo()->SetMeteringLock(m_rHost.Algo(), m_isMeteringDone ? TRUE : FALSE);
    }
    if (m_isMeteringDone && IsStill())
    {
        FinishPreflash(frameID, rStats);
        return;
    }
    RunHost(frameID, rStats);
    m_lamp = LampOf(m_result.low, WholeLit);
}

bool FlashCapture::IsPreflashMeteringNeeded(const KIROStatsList& rStats)
{
    IKIROCoreAlgo* pAlgo = m_rHost.Algo();
    return !m_low.Save(rStats) || pAlgo->isPreflashMeteringNeeded(pAlgo, m_off.Channels(), FlashStats::ChannelCount,
                                                                  m_low.Channels(), FlashStats::ChannelCount) == TRUE;
}

VOID FlashCapture::FinishPreflash(UINT64 frameID, KIROStatsList& rStats)
{
    (VOID) m_low.Save(rStats);
    KIROExtFlashInfo info{};
    info.flashLowStatsSaved = TRUE;
    info.flashLowEst        = m_result.low;
    m_rHost.SetFlashInfo(info);
    RunHost(frameID, rStats);
    m_rHost.SetFlashInfo({});

    // Asking for the high current keeps the newest frame as the one under the low LED.
    m_result.lowExposure = SafeExposure();
    m_result.high        = Current(KIROExtFlashCurrentType::High);
    m_result.flux        = (m_result.low.flux > 0.0f) ? m_result.high.flux / m_result.low.flux : 1.0f;
    m_result.expIncrease = m_rHost.Trigger(TriggerFlashExpIncrease);
    m_rHost.SetTrigger(TriggerFlashFlux, m_result.flux);
    // Each run of the precision solver adds its part of the delay.
    m_rHost.SetTrigger(TriggerCtrlPrecisionFlashDelay, 0.0f);
    m_rHost.Algo()->SetMeteringLock(m_rHost.Algo(), FALSE);
    m_rHost.SetSnapshot(KIROCoreSnapshotType::Flash);
    m_precisionHistory.curReqID = static_cast<UINT32>(frameID + 1);
    m_precisionHistory.frameFPS = m_rHost.LastFrame().arbitration[AECAlgoExposureSafe].FPS;
    Enter(FlashCapturePhase::Snapshot);
}

KIROAlgoFlashOutput FlashCapture::Current(KIROExtFlashCurrentType type)
{
    IKIROCoreAlgo*                    pAlgo       = m_rHost.Algo();
    const AECAlgoFlashCalibrationData calibration = pAlgo->GetFlashCalibInfo(pAlgo);
    const AECAlgoWhiteBalanceState&   rBalance    = m_result.whiteBalance;

    KIROAlgoFlashInput input{};
    input.flashCurrentType = type;
    input.pFlashCalib      = &calibration;
    input.wbFlashOff       = rBalance;
    input.maxFlashCurrent  = m_config.maxFlashCurrent;
    input.AWBRG            = rBalance.greenGain / rBalance.redGain;
    input.AWBBG            = rBalance.greenGain / rBalance.blueGain;
    input.bBackupState     = TRUE;
    KIROAlgoFlashOutput output{};
    if (pAlgo->getFlashCurrent(pAlgo, &input, &output) != 0)
    {
        output = {};
    }
    return output;
}

/// The first frame decides a plain flash; where a split exposure does better, a second one decides that.
VOID FlashCapture::RunSnapshot(UINT64 frameID, const KIROStatsList& rStats)
{
    KIROStatsList list = flashstats::Compose(rStats, m_off, m_low);
    RunHost(frameID, list);
    if (m_phaseFrames == 1)
    {
        m_result.target = m_rHost.AnalyzerValue(TargetDataID);
        if (PreparePrecision())
        {
            return;
        }
    }
    FinishSnapshot();
}

/// @return whether the picture will be exposed in two parts
bool FlashCapture::PreparePrecision()
{
    m_result.e1 = m_rHost.Trigger(TriggerCtrlPrecisionFlashE1);
    m_result.e2 = m_rHost.Trigger(TriggerCtrlPrecisionFlashE2);
    const bool isDetected =
        m_rHost.Trigger(TriggerCtrlPrecisionFlashOk) > 0.0f && m_result.e1 > 0.0f && m_result.e2 > 0.0f;
    m_precisionHistory.sceneDetected = isDetected ? TRUE : FALSE;
    if (isDetected)
    {
        m_precisionHistory.previousReqID = m_precisionHistory.curReqID;
    }
    if (!isDetected || !m_isPrecisionAllowed)
    {
        return false;
    }
    m_result.isPrecision = true;

    KIROPrecisionFlashInfo info{};
    info.e1ToE1PlusE2            = m_result.e1 / (m_result.e1 + m_result.e2);
    info.minFlashTime            = NsOf(m_rHost.Trigger(TriggerCtrlPrecisionFlashMinTime));
    info.maxExpoTime             = NsOf(m_rHost.Trigger(TriggerCtrlPrecisionFlashMaxExpTimeMs));
    info.rollingShutterDelayTime = NsOf(m_rHost.Trigger(TriggerCtrlPrecisionFlashDelay));
    m_rHost.SetPrecisionFlash(&info);
    m_rHost.SetSnapshot(KIROCoreSnapshotType::PrecisionFlash);
    return true;
}

VOID FlashCapture::FinishSnapshot()
{
    const FLOAT litShare  = m_result.isPrecision ? m_result.e1 / (m_result.e1 + m_result.e2) : WholeLit;
    m_lamp                = LampOf(m_result.high, litShare);
    m_result.mainExposure = SafeExposure();
    m_rHost.SetPrecisionFlash(nullptr);
    m_rHost.SetSnapshot(KIROCoreSnapshotType::None);
    m_rHost.SetMetered(false);
    Enter(FlashCapturePhase::Readout);
}

VOID FlashCapture::RunReadout(UINT64 frameID, KIROStatsList& rStats)
{
    m_isPictureShown = m_phaseFrames >= m_rHost.PipelineDelay();
    KIROExtFlashInfo info{};
    info.flashHighEst = m_result.high;
    m_rHost.SetFlashInfo(info);
    (VOID) m_rHost.SetParam(AECAlgoSetParamIsFlashInfluencedStats, m_isPictureShown ? BOOL{TRUE} : BOOL{FALSE});
    RunHost(frameID, rStats);
    m_lamp = LampOff;
    if (!m_isPictureShown)
    {
        return;
    }
    m_rHost.SetFlashInfo({});
    (VOID) m_rHost.SetParam(AECAlgoSetParamIsFlashInfluencedStats, BOOL{FALSE});
    m_rHost.SetMetered(true);
    // Preview goes on as if there had been no flash.
    m_rHost.SetTrigger(TriggerCtrlLux, m_preview.luxIndex);
    m_rHost.StartMode(AECAlgoOperationModeStreaming, m_preview);
    Enter(FlashCapturePhase::Idle);
}
