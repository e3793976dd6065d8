/// @file
/// Tuning module kirohdrsensor: exposures of a sensor with three exposures in one frame.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirohdrsensor
{

/// Which exposures of the sensor the statistics show.
enum SensorStatsModeType : INT32
{
    SensorStatsCombined = 0,  ///< the combined image
    SensorStatsShort    = 1,
    SensorStatsLong     = 2
};
TUNING_ENUM(SensorStatsModeType)
    ENUMERATOR(SensorStatsCombined)
    ENUMERATOR(SensorStatsShort)
    ENUMERATOR(SensorStatsLong)
TUNING_ENUM_END

/// When the ratio of the exposures counts as stable.
struct ExposureRatioStableType
{
    float  ratioTolerance;        ///< change of the ratio from frame to frame, as a share of it
    UINT32 stableCountThreshold;  ///< frames
};
TUNING_RECORD(ExposureRatioStableType)
    MEMBER(ratioTolerance)
    MEMBER(stableCountThreshold)
TUNING_RECORD_END

/// Switching between the binned and the full mode of the sensor.
struct HybridHDRType
{
    BOOL                            enableHybridHDR;
    float                           switchRatio;                    ///< exposure ratio of the switch, from 1.0
    TwoLevelTriggerSystemLevel1Type drcGainSwitchThresholdTrigger;  ///< over the lux index: gain below which to bin
    UINT32                          switchStableCountThreshold;     ///< frames between two switches
    ExposureRatioStableType         exposureRatioStable;
};
TUNING_RECORD(HybridHDRType)
    BOOLEAN(enableHybridHDR)
    MEMBER(switchRatio)
    MEMBER(drcGainSwitchThresholdTrigger)
    MEMBER(switchStableCountThreshold)
    MEMBER(exposureRatioStable)
TUNING_RECORD_END

/// The module.
struct KIROHDRSensorType
{
    UINT32                  SymbolTableID;
    module_versionStruct    module_version;
    parameter_versionStruct parameter_version;
    float                   esRatio;          ///< log exposure of Safe: 1 / (esRatio + 1) of the way from Short to Long
    HybridHDRType           hybridHDR;
    SensorStatsModeType     sensorStatsMode;
};
TUNING_RECORD(KIROHDRSensorType)
    MODULE_HEADER
    MEMBER(esRatio)
    MEMBER(hybridHDR)
    MEMBER(sensorStatsMode)
TUNING_RECORD_END

} // namespace kirohdrsensor
