/// @file
/// Spectral sensor and its flicker detection. The host reads this, the core does not.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirospectralsensor
{

/// How the sensor is run.
struct SpectralSensorCommParamType
{
    BOOL   enable;
    UINT32 sampleRate;       ///< Hz
    UINT32 integrationTime;  ///< us
};
TUNING_RECORD(SpectralSensorCommParamType)
    BOOLEAN(enable)
    MEMBER(sampleRate)
    MEMBER(integrationTime)
TUNING_RECORD_END

/// When a reported flicker is not believed.
struct FakeFlickerDectionType
{
    BOOL   enable;
    float  confidenceThres;        ///< least confidence, 0 to 1
    UINT32 consecutiveFrameCount;  ///< frames for which a flicker must be reported
};
TUNING_RECORD(FakeFlickerDectionType)
    BOOLEAN(enable)
    MEMBER(confidenceThres)
    MEMBER(consecutiveFrameCount)
TUNING_RECORD_END

/// How often the sensor is read.
struct FrameSkipCtrlType
{
    BOOL   enable;
    UINT32 frameSkipNum;  ///< frames without a reading after each reading
};
TUNING_RECORD(FrameSkipCtrlType)
    BOOLEAN(enable)
    MEMBER(frameSkipNum)
TUNING_RECORD_END

/// When a new flicker frequency is passed on.
struct FlickerInfoUpdateType
{
    BOOL  enable;
    float frequencyTolerance;  ///< least change of the frequency, Hz
};
TUNING_RECORD(FlickerInfoUpdateType)
    BOOLEAN(enable)
    MEMBER(frequencyTolerance)
TUNING_RECORD_END

/// The module's record.
struct KIROSpectralSensorType
{
    UINT32                      SymbolTableID;
    module_versionStruct        module_version;
    parameter_versionStruct     parameter_version;
    SpectralSensorCommParamType SpectralSensorCommParam;
    FakeFlickerDectionType      FakeFlickerDection;  ///< tuning data depends on the spelling
    FrameSkipCtrlType           FrameSkipCtrl;
    FlickerInfoUpdateType       FlickerInfoUpdate;
};
TUNING_RECORD(KIROSpectralSensorType)
    MODULE_HEADER
    MEMBER(SpectralSensorCommParam)
    MEMBER(FakeFlickerDection)
    MEMBER(FrameSkipCtrl)
    MEMBER(FlickerInfoUpdate)
TUNING_RECORD_END

} // namespace kirospectralsensor
