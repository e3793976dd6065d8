#include "host/arbitrationwalk.h"

#include <algorithm>
#include <cmath>

using namespace kirodbarbitrationorder;

namespace
{

constexpr FLOAT  ISOAtUnityGain = 100.0f;
constexpr DOUBLE NsPerSecond    = 1e9;

/// The bank in which a control's tuning lies.
KIROBankIDType BankOfControl(ArbitrationControl control)
{
    switch (control)
    {
    case ArbCtrlTable:
    case ArbCtrlMatchHistory:
        return BankIDArbitrationTable;
    case ArbCtrlFlicker50LUT:
    case ArbCtrlFlicker60LUT:
    case ArbCtrlFlickerArbitrary:
    case ArbCtrlCustomLUT:
    case ArbCtrlSnapshotEVLUT:
    case ArbCtrlGyro:
        return BankIDArbitrationLUT;
    default:
        return BankIDArbitrationRange;
    }
}

/// Controls that stand for a user setting apply only while the setting does.
bool IsInForce(ArbitrationControl control, const ArbitrationSettings& rSettings)
{
    const AECAlgoModeType manualMode = rSettings.manualSetting.manualMode;
    switch (control)
    {
    case ArbCtrlFlicker50LUT:
        return rSettings.flickerComp == StatisticsAntibanding50Hz ||
               rSettings.flickerComp == StatisticsAntibandingAuto_50HZ;
    case ArbCtrlFlicker60LUT:
        return rSettings.flickerComp == StatisticsAntibanding60Hz ||
               rSettings.flickerComp == StatisticsAntibandingAuto_60HZ;
    case ArbCtrlManualGain:
        return manualMode == AECAlgoModeManualGain || manualMode == AECAlgoModeManualFull;
    case ArbCtrlManualISO:
        return manualMode == AECAlgoModeManualISO;
    case ArbCtrlManualTime:
        return manualMode == AECAlgoModeManualExpTime || manualMode == AECAlgoModeManualFull;
    case ArbCtrlManualFull:
        return manualMode == AECAlgoModeManualFull;
    case ArbCtrlMasterTime:
        return rSettings.algoRole == StatsAlgoRoleSlave;
    case ArbCtrlSHDRTimeRange:
        return rSettings.HDRType == StaggeredHDR || rSettings.HDRType == MultiframeHDR;
    default:
        return true;
    }
}

AECAlgoExposureType ExposureTypeOf(KIROExposureSelection selection)
{
    switch (selection)
    {
    case ExposureShort:
        return AECAlgoExposureShort;
    case ExposureLong:
        return AECAlgoExposureLong;
    default:
        return AECAlgoExposureSafe;
    }
}

/// @return how much an exposure is above its target, EV
FLOAT DeltaEV(UINT64 exposure, UINT64 target)
{
    if (exposure == target)
    {
        return 0.0f;
    }
    return static_cast<FLOAT>(
        std::log2(std::max(static_cast<DOUBLE>(exposure), 1.0) / std::max(static_cast<DOUBLE>(target), 1.0)));
}

}  // namespace

ArbitrationWalk::ArbitrationWalk(IKIROCoreAlgo* pAlgo, const KIROSensorRange& rSensorRange, UINT64 indexZeroExposure)
    : m_pAlgo(pAlgo), m_input{}, m_sensorLimits{}
{
    m_input.sensorRange       = rSensorRange;
    m_input.indexZeroExposure = indexZeroExposure;
    m_sensorLimits.start.gain = rSensorRange.minGain;
    m_sensorLimits.start.time = rSensorRange.minTime;
    m_sensorLimits.start.corr = 1.0f;
    m_sensorLimits.end.gain   = rSensorRange.maxGain;
    m_sensorLimits.end.time   = rSensorRange.maxTime;
    m_sensorLimits.end.corr   = 1.0f;
}

KIROArbitratedLimits ArbitrationWalk::ComputeLimits(const ArbitrationSettings& rSettings, const UINT64* pExposures)
{
    KIROArbitratedLimits limits{};
    limits.indexZeroExposure = m_input.indexZeroExposure;
    WalkOrder(rSettings, pExposures, TRUE,
              [&](const KIROArbitrationInput& rResult) { limits.ranges[rResult.expType] = rResult.range; });
    return limits;
}

VOID ArbitrationWalk::SplitExposures(const ArbitrationSettings& rSettings, const UINT64* pExposures,
                                     KIROArbitrationOutput* pOutputs)
{
    UINT64 longestTime = 1;
    WalkOrder(rSettings, pExposures, FALSE,
              [&](const KIROArbitrationInput& rResult)
              {
                  const AECAlgoExposureType  type    = rResult.expType;
                  const KIROExposureSetType& rSet    = rResult.exposures[type];
                  KIROArbitrationOutput&     rOutput = pOutputs[type];
                  rOutput.expType                    = type;
                  rOutput.exposureSet                = rSet;
                  rOutput.range                      = rResult.range;
                  rOutput.deltaEVFromTarget          = DeltaEV(rSet.exposure, pExposures[type]);
                  longestTime                        = std::max(longestTime, rSet.time);
              });
    const FLOAT fastest = static_cast<FLOAT>(NsPerSecond / static_cast<DOUBLE>(longestTime));
    const FLOAT FPS     = std::max(std::min(fastest, rSettings.FPSRange.maximumFPS), rSettings.FPSRange.minimumFPS);
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        pOutputs[type].FPS = FPS;
    }
}

template <typename Visit>
VOID ArbitrationWalk::WalkOrder(const ArbitrationSettings& rSettings, const UINT64* pExposures, BOOL bIsConvRange,
                                Visit&& visit)
{
    KIROGetBankData query = {BankIDArbitrationOrder, 0, nullptr, sizeof(DBArbitrationOrderPayload)};
    if (m_pAlgo->getBankData(m_pAlgo, &query) != 0 || query.pData == nullptr)
    {
        return;
    }
    const ArbitrationControlOrder& rOrder = static_cast<const DBArbitrationOrderPayload*>(query.pData)->value;

    m_input.bIsConvRange         = bIsConvRange;
    m_input.bFPrecisionFlashFlag = rSettings.precisionFlash.has_value() ? TRUE : FALSE;
    m_input.precisionFlashInfo   = rSettings.precisionFlash.value_or(KIROPrecisionFlashInfo{});
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        m_input.exposures[type]          = m_sensorLimits.start;
        m_input.exposures[type].exposure = pExposures[type];
    }
    for (const ArbitrationControlExposureType& rExposure : rOrder.exposureTypes)
    {
        if (rExposure.exposureType != ExposureNone)
        {
            m_input.expType = ExposureTypeOf(rExposure.exposureType);
            WalkControls(rSettings, rExposure);
            visit(m_input);
        }
    }
}

VOID ArbitrationWalk::WalkControls(const ArbitrationSettings& rSettings, const ArbitrationControlExposureType& rOrder)
{
    // Every list starts from what the sensor can do; each control narrows it.
    m_input.pTable = nullptr;
    m_input.range  = m_sensorLimits;

    KIROArbitrationOutput output;
    output.expType           = {};
    output.deltaEVFromTarget = 0.0f;
    output.FPS               = 0.0f;
    for (UINT32 index = 0; index < rOrder.controlsCount; ++index)
    {
        const OrderType& rControl = rOrder.controls[index];
        if (rControl.enableControl != TRUE || !IsInForce(rControl.controlID, rSettings))
        {
            continue;
        }
        PrepareControl(rSettings, rControl);
        m_input.controlID     = rControl.controlID;
        m_input.controlBank   = BankOfControl(rControl.controlID);
        m_input.controlDataID = rControl.dataID;

        output.exposureSet = {};
        output.range       = m_input.range;
        // A control that fails or does not apply leaves exposure and limits as they were. So does a reference frame
        // that the exposure lies on the wrong side of: its control succeeds without an answer.
        if (m_pAlgo->runArbitration(m_pAlgo, &m_input, &output) == 0 && output.exposureSet.exposure != 0)
        {
            m_input.exposures[m_input.expType] = output.exposureSet;
            m_input.range                      = output.range;
        }
    }
}

/// Ranges that stand for user settings take their bounds from the settings.
VOID ArbitrationWalk::PrepareControl(const ArbitrationSettings& rSettings, const OrderType& rControl)
{
    const AECAlgoManualSetting& rManual = rSettings.manualSetting;
    switch (rControl.controlID)
    {
    case ArbCtrlFPS:
        OverrideRange(rControl.dataID, 1.0f,
                      static_cast<FLOAT>(std::min(NsPerSecond / static_cast<DOUBLE>(rSettings.FPSRange.minimumFPS),
                                                  static_cast<DOUBLE>(m_input.sensorRange.maxTime))),
                      true);
        break;
    case ArbCtrlManualGain:
        OverrideRange(rControl.dataID, rManual.gain, rManual.gain, false);
        break;
    case ArbCtrlManualISO:
        OverrideRange(rControl.dataID, static_cast<FLOAT>(rManual.ISOValue) / ISOAtUnityGain,
                      static_cast<FLOAT>(rManual.ISOValue) / ISOAtUnityGain, false);
        break;
    case ArbCtrlManualTime:
        OverrideRange(rControl.dataID, static_cast<FLOAT>(rManual.exposureTime),
                      static_cast<FLOAT>(rManual.exposureTime), false);
        break;
    default:
        break;
    }
}

VOID ArbitrationWalk::OverrideRange(INT32 dataID, FLOAT start, FLOAT end, bool isStartKept)
{
    KIROGetBankData query = {BankIDArbitrationRange, dataID, nullptr, sizeof(RangePayload)};
    if (m_pAlgo->getBankData(m_pAlgo, &query) != 0 || query.pData == nullptr)
    {
        return;
    }
    RangePayload payload    = *static_cast<const RangePayload*>(query.pData);
    payload.value.start.val = start;
    payload.value.end.val   = end;
    payload.value.end.adj   = kirodbarbitrationrange::ArbRangeAbsolute;
    payload.value.start.adj =
        isStartKept ? kirodbarbitrationrange::ArbRangeRelativeFactor : kirodbarbitrationrange::ArbRangeAbsolute;
    RangePayload& rOverride   = m_overrides[dataID];
    rOverride                 = payload;
    const KIROSetBankData set = {BankIDArbitrationRange, &rOverride, sizeof(rOverride)};
    (VOID) m_pAlgo->setBankData(m_pAlgo, &set);
}
