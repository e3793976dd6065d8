/// @file
/// Tuning module kirospectralsensor.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirospectralsensor
{

/// How the sensor is run.
struct SpectralSensorCommParamType
{
    BOOL   enable;
    UINT32 sampleRate;
    UINT32 integrationTime;
};
TUNING_RECORD(SpectralSensorCommParamType)
    BOOLEAN(enable,
        .meaning = "Switches the spectral sensor on. Read by no stage; for the host.",
        .acts = Acts::Never)
    MEMBER(sampleRate,
        .meaning = "Samples per second that the sensor takes. Read by no stage; for the host.",
        .unit = Unit::Hertz, .range = AtLeast(0), .acts = Acts::Never, .when = "enable")
    MEMBER(integrationTime,
        .meaning = "Time for which a sample gathers light. Read by no stage; for the host.",
        .unit = Unit::Microseconds, .range = AtLeast(0), .acts = Acts::Never, .when = "enable")
TUNING_RECORD_END

/// When a reported flicker is not believed.
struct FakeFlickerDectionType
{
    BOOL   enable;
    float  confidenceThres;
    UINT32 consecutiveFrameCount;
};
TUNING_RECORD(FakeFlickerDectionType)
    BOOLEAN(enable,
        .meaning = "Doubts a reported flicker until it proves itself; off, each report is believed. Read by no stage; "
                   "for the host.",
        .acts = Acts::Never)
    MEMBER(confidenceThres,
        .meaning = "Least confidence with which a flicker is believed. Read by no stage; for the host.",
        .unit = Unit::Share, .range = {0, 1}, .acts = Acts::Never, .when = "enable")
    MEMBER(consecutiveFrameCount,
        .meaning = "Frames in a row for which a flicker must be reported before it is believed. Read by no stage; for "
                   "the host.",
        .unit = Unit::Frames, .range = AtLeast(0), .acts = Acts::Never, .when = "enable")
TUNING_RECORD_END

/// How often the sensor is read.
struct FrameSkipCtrlType
{
    BOOL   enable;
    UINT32 frameSkipNum;
};
TUNING_RECORD(FrameSkipCtrlType)
    BOOLEAN(enable,
        .meaning = "Reads the sensor in some frames only; off, in each. Read by no stage; for the host.",
        .acts = Acts::Never)
    MEMBER(frameSkipNum,
        .meaning = "Frames without a reading after each reading. Read by no stage; for the host.",
        .unit = Unit::Frames, .range = AtLeast(0), .acts = Acts::Never, .when = "enable")
TUNING_RECORD_END

/// When a new flicker frequency is passed on.
struct FlickerInfoUpdateType
{
    BOOL  enable;
    float frequencyTolerance;
};
TUNING_RECORD(FlickerInfoUpdateType)
    BOOLEAN(enable,
        .meaning = "Passes a flicker frequency on only when it has changed enough; off, each one. Read by no stage; "
                   "for the host.",
        .acts = Acts::Never)
    MEMBER(frequencyTolerance,
        .meaning = "Least change of the flicker frequency that is passed on. Read by no stage; for the host.",
        .unit = Unit::Hertz, .range = AtLeast(0), .odd = Any, .acts = Acts::Never, .when = "enable")
TUNING_RECORD_END

/// The module's record.
struct KIROSpectralSensorType
{
    UINT32                      SymbolTableID;
    module_versionStruct        module_version;
    parameter_versionStruct     parameter_version;
    SpectralSensorCommParamType SpectralSensorCommParam;
    FakeFlickerDectionType      FakeFlickerDection;
    FrameSkipCtrlType           FrameSkipCtrl;
    FlickerInfoUpdateType       FlickerInfoUpdate;
};
TUNING_RECORD(KIROSpectralSensorType)
    MODULE_HEADER("Spectral sensor and its flicker detection. The host reads this, the core does not.")
    MEMBER(SpectralSensorCommParam,
        .meaning = "How the sensor is run. Read by no stage; for the host.",
        .acts = Acts::Never)
    MEMBER(FakeFlickerDection,
        .meaning = "When a reported flicker is believed. Read by no stage; for the host.",
        .acts = Acts::Never)
    MEMBER(FrameSkipCtrl,
        .meaning = "How often the sensor is read. Read by no stage; for the host.",
        .acts = Acts::Never)
    MEMBER(FlickerInfoUpdate,
        .meaning = "When a new flicker frequency is passed on. Read by no stage; for the host.",
        .acts = Acts::Never)
TUNING_RECORD_END

} // namespace kirospectralsensor
