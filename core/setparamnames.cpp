#include "core/setparamnames.h"

#include <algorithm>
#include <iterator>

namespace
{

constexpr UINT32 SetParamNameLast = AECAlgoSetParamMax;

/// Names of AECAlgoSetParamType, in order.
const CHAR* const g_pAECSetParamStringArray[] = {
    "AECAlgoSetParamExpTableRange",
    "AECAlgoSetParamOperationMode",
    "AECAlgoSetParamTunaraData",
    "AECAlgoSetParamMeteringMode",
    "AECAlgoSetParamExposureCompensation",
    "AECAlgoSetParamFlickerCompensation",
    "AECAlgoSetParamManualSetting",
    "AECAlgoSetParamAECLock",
    "AECAlgoSetParamFPSRange",
    "AECAlgoSetParamLEDMode",
    "AECAlgoSetParamTouchROI",
    "AECAlgoSetParamFaceROI",
    "AECAlgoSetParamAWBState",
    "AECAlgoSetParamGyroInfo",
    "AECAlgoSetParamOverrideSetting",
    "AECAlgoSetParamFlashMeasurement",
    "AECAlgoSetParamFlashCalibrationData",
    "AECAlgoSetParamDebugDataEnable",
    "AECAlgoSetParamSensorInfo",
    "AECAlgoSetParamCameraInfo",
    "AECAlgoSetParamFlashMaximumCurrent",
    "AECAlgoSetParamSetDiagTestConfig",
    "AECAlgoSetParamStartUpExpSensitivity",
    "AECAlgoSetParamStatsCapability",
    "AECAlgoSetParamCropWindow",
    "AECAlgoSetParamPipelineDelay",
    "AECAlgoSetParamPeerInfo",
    "AECAlgoSetParamDualcamCalibrationInfo",
    "AECAlgoSetParamMultiExpSensorMode",
    "AECAlgoSetParamIsDualCamera",
    "AECAlgoSetParamUnstabilizedFaceROI",
    "AECAlgoSetParamControlPostRawSensitivityBoost",
    "AECAlgoSetParamCustomExposureTable",
    "AECAlgoSetParamCustomMeteringTable",
    "AECAlgoSetParamDisableADRC",
    "AECAlgoSetParamConvergenceSpeed",
    "AECAlgoSetParamFlashInlineCalibrationData",
    "AECAlgoSetParamIsFlashInfluencedStats",
    "AECAlgoSetParamFlashInlineCalibrationMode",
    "AECAlgoSetParamTrackerROI",
    "AECAlgoSetParamframeID",
    "AECAlgoSetParamApertureCalibrationInfo",
    "AECAlgoSetParamAmbientRaw",
    "AECAlgoSetParamSaliencyMapData",
    "AECAlgoSetParamZLLData",
    "AECAlgoSetParamMagnetometerInfo",
    "AECAlgoSetParamLightInfo",
    "AECAlgoSetParamAFDFrameInfo",
    "AECAlgoSetParamBPSCamera",
    "AECAlgoSetParamDCGMode",
    "AECAlgoSetParamCount",
    "AECAlgoSetParamMax",
};
static_assert(std::size(g_pAECSetParamStringArray) == SetParamNameLast + 1, "a type has no name");

}  // namespace

const CHAR* SetParamName(AECAlgoSetParamType type)
{
    return g_pAECSetParamStringArray[std::min(static_cast<UINT32>(type), SetParamNameLast)];
}
