/// @file
/// Tuning module kirohdrsensor.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirohdrsensor
{

/// Which exposures of the sensor the statistics show.
enum SensorStatsModeType : INT32
{
    SensorStatsCombined = 0,
    SensorStatsShort    = 1,
    SensorStatsLong     = 2
};
TUNING_ENUM(SensorStatsModeType)
    ENUMERATOR(SensorStatsCombined, "The statistics show the combined image. Read by no stage.")
    ENUMERATOR(SensorStatsShort, "The statistics show the short exposure. Read by no stage.")
    ENUMERATOR(SensorStatsLong, "The statistics show the long exposure. Read by no stage.")
TUNING_ENUM_END

/// When the ratio of the exposures counts as stable.
struct ExposureRatioStableType
{
    float  ratioTolerance;
    UINT32 stableCountThreshold;
};
TUNING_RECORD(ExposureRatioStableType)
    MEMBER(ratioTolerance,
        .meaning = "Change of the exposure ratio from frame to frame, as a share of it, up to which it is meant to "
                   "count as stable. Read by no stage.",
        .unit = Unit::Share, .range = AtLeast(0), .odd = Any, .start = "0.1", .acts = Acts::Never,
        .when = "enableHybridHDR")
    MEMBER(stableCountThreshold,
        .meaning = "Frames for which the ratio is meant to stay within the tolerance. Read by no stage.",
        .unit = Unit::Frames, .range = AtLeast(0), .start = "3", .acts = Acts::Never, .when = "enableHybridHDR")
TUNING_RECORD_END

/// Switching between the binned and the full mode of the sensor.
struct HybridHDRType
{
    BOOL                            enableHybridHDR;
    float                           switchRatio;
    TwoLevelTriggerSystemLevel1Type drcGainSwitchThresholdTrigger;
    UINT32                          switchStableCountThreshold;
    ExposureRatioStableType         exposureRatioStable;
};
TUNING_RECORD(HybridHDRType)
    BOOLEAN(enableHybridHDR,
        .meaning = "Lets the sensor switch between its binned and its full mode by the ADRC gain, in sessions with "
                   "three exposures in a frame; while binned, smoothed ADRC is capped by trigger 54. Off, the sensor "
                   "stays in the mode it is in, at first the binned one, without the cap.",
        .start = "false", .acts = Acts::NewTuning)
    MEMBER(switchRatio,
        .meaning = "Exposure ratio meant for the switch between the modes. Read by no stage: "
                   "drcGainSwitchThresholdTrigger decides.",
        .unit = Unit::Factor, .range = AtLeast(1), .odd = Any, .start = "2.0", .acts = Acts::Never,
        .when = "enableHybridHDR")
    MEMBER(drcGainSwitchThresholdTrigger,
        .meaning = "ADRC gain below which the sensor bins, over the lux index in trigger2Data; the range of the first "
                   "level decides nothing. Raised, the full mode waits for more contrast, and above what ADRC may "
                   "reach while binned (trigger 54, 3.0 unless set) it never comes.",
        .when = "enableHybridHDR")
    MEMBER(switchStableCountThreshold,
        .meaning = "Frames that must have gone by since the last switch, and one more, before the next. Doubled, the "
                   "sensor switches half as often at most and answers later to contrast.",
        .unit = Unit::Frames, .range = AtLeast(0), .start = "15", .when = "enableHybridHDR")
    MEMBER(exposureRatioStable,
        .meaning = "When the ratio of the exposures is meant to count as stable. Read by no stage.",
        .acts = Acts::Never, .when = "enableHybridHDR")
TUNING_RECORD_END

/// The module.
struct KIROHDRSensorType
{
    UINT32                  SymbolTableID;
    module_versionStruct    module_version;
    parameter_versionStruct parameter_version;
    float                   esRatio;
    HybridHDRType           hybridHDR;
    SensorStatsModeType     sensorStatsMode;
};
TUNING_RECORD(KIROHDRSensorType)
    MODULE_HEADER("Exposures of a sensor with three exposures in one frame.")
    MEMBER(esRatio,
        .meaning = "How far long lies above safe against how far safe lies above short, in stops: safe is put 1 / "
                   "(esRatio + 1) of the way from short to long, in sessions with three exposures in a frame only. "
                   "Doubled, safe moves towards short; 0 puts it on long.",
        .unit = Unit::Factor, .range = AtLeast(0), .start = "1.0")
    MEMBER(hybridHDR,
        .meaning = "Switching between the binned and the full mode of the sensor.")
    MEMBER(sensorStatsMode,
        .meaning = "Which exposures of the sensor the statistics show. Read by no stage.",
        .start = "SensorStatsCombined", .acts = Acts::Never)
TUNING_RECORD_END

} // namespace kirohdrsensor
