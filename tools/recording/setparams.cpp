#include "tools/recording/setparams.h"

#include <algorithm>

#include "interface/kirofic.h"

namespace recording
{

namespace
{

template <typename T> constexpr const tuning::RecordDescription* Of()
{
    return TuningRecordOf(static_cast<const T*>(nullptr));
}

/// Bytes that the core counts on, which are more than it reads of some.
constexpr UINT32 NumberSize = sizeof(UINT32);

constexpr SetParamRule Rules[] = {
    {AECAlgoSetParamOperationMode, NumberSize, Of<RecordedNumber>()},
    {AECAlgoSetParamTunaraData, sizeof(StatsTuningData), nullptr},
    {AECAlgoSetParamMeteringMode, NumberSize, Of<RecordedNumber>()},
    {AECAlgoSetParamExposureCompensation, NumberSize, Of<RecordedNumber>()},
    {AECAlgoSetParamFlickerCompensation, NumberSize, Of<RecordedNumber>()},
    {AECAlgoSetParamManualSetting, sizeof(AECAlgoManualSetting), Of<AECAlgoManualSetting>()},
    {AECAlgoSetParamAECLock, NumberSize, Of<RecordedNumber>()},
    {AECAlgoSetParamFPSRange, sizeof(AECAlgoFPSRange), Of<AECAlgoFPSRange>()},
    {AECAlgoSetParamLEDMode, NumberSize, Of<RecordedNumber>()},
    {AECAlgoSetParamTouchROI, sizeof(AECAlgoROIList), nullptr},
    {AECAlgoSetParamAWBState, sizeof(AECAlgoWhiteBalanceState), Of<AECAlgoWhiteBalanceState>()},
    {AECAlgoSetParamGyroInfo, sizeof(StatsGyroInfo), Of<StatsGyroInfo>()},
    {AECAlgoSetParamOverrideSetting, sizeof(AECAlgoOverrideSettingParam), Of<AECAlgoOverrideSettingParam>()},
    {AECAlgoSetParamFlashMeasurement, NumberSize, Of<RecordedNumber>()},
    {AECAlgoSetParamFlashCalibrationData, sizeof(AECAlgoFlashCalibrationData), nullptr},
    {AECAlgoSetParamDebugDataEnable, NumberSize, Of<RecordedNumber>()},
    {AECAlgoSetParamSensorInfo, sizeof(StatsSensorInfo), Of<StatsSensorInfo>()},
    {AECAlgoSetParamCameraInfo, sizeof(StatsCameraInfo), Of<StatsCameraInfo>()},
    {AECAlgoSetParamFlashMaximumCurrent, NumberSize, Of<RecordedNumber>()},
    {AECAlgoSetParamStartUpExpSensitivity, sizeof(AECAlgoStartupIndices), Of<AECAlgoStartupIndices>()},
    {AECAlgoSetParamCropWindow, sizeof(StatsRectangle), Of<StatsRectangle>()},
    {AECAlgoSetParamPipelineDelay, sizeof(UINT8), Of<RecordedByte>()},
    {AECAlgoSetParamPeerInfo, sizeof(StatsPeerInfoCombo), nullptr},
    {AECAlgoSetParamDualcamCalibrationInfo, sizeof(AECAlgoDCCalibrationInfo), Of<AECAlgoDCCalibrationInfo>()},
    {AECAlgoSetParamMultiExpSensorMode, NumberSize, Of<RecordedNumber>()},
    {AECAlgoSetParamUnstabilizedFaceROI, sizeof(UnstabilizedROIInformation), Of<UnstabilizedROIInformation>()},
    {AECAlgoSetParamControlPostRawSensitivityBoost, NumberSize, Of<RecordedNumber>()},
    {AECAlgoSetParamDisableADRC, 0, Of<RecordedNumber>()},
    {AECAlgoSetParamFlashInlineCalibrationData, 0, nullptr},
    {AECAlgoSetParamIsFlashInfluencedStats, NumberSize, Of<RecordedNumber>()},
    {AECAlgoSetParamFlashInlineCalibrationMode, NumberSize, Of<RecordedNumber>()},
    {AECAlgoSetParamTrackerROI, sizeof(UnstabilizedROIInformation), Of<UnstabilizedROIInformation>()},
    {AECAlgoSetParamSaliencyMapData, sizeof(AECAlgoSaliencyInfo), Of<AECAlgoSaliencyInfo>()},
    {AECAlgoSetParamLightInfo, sizeof(StatsLightInfo), Of<StatsLightInfo>()},
};

}  // namespace

const SetParamRule* RuleOf(AECAlgoSetParamType type)
{
    const auto* pFound = std::find_if(std::begin(Rules), std::end(Rules),
                                      [type](const SetParamRule& rRule) { return rRule.type == type; });
    return (pFound != std::end(Rules)) ? pFound : nullptr;
}

UINT64 LearnedSize(const BYTE* pHead)
{
    constexpr UINT64 sampleSize = 16;
    constexpr UINT64 kneeSize   = 24;
    constexpr UINT64 zoneSize   = 4;

    const UINT64 samples = pHead[0] | UINT64{pHead[1]} << 8;
    return (samples == 0 || samples > KIROFICRawDataCountMax)
               ? LearnedHeadSize
               : LearnedHeadSize + sampleSize * samples + kneeSize * pHead[2] + zoneSize * pHead[3];
}

}  // namespace recording
