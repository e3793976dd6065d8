/// @file
/// Tuning module kirostartup: exposures to start with, before there are statistics.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirostartup
{

/// Exposures of the first frame, gain times ns, indexed by AECAlgoExposureType.
struct StartExposureType
{
    UINT64 initialExposure[3];  ///< short, long, safe
    float  luxIndex;            ///< lux index to go with them
};
TUNING_RECORD(StartExposureType)
    MEMBER(initialExposure)
    MEMBER(luxIndex)
TUNING_RECORD_END

/// The start in a context, in place of the default.
struct ModeStartType
{
    KIROTunaraEventType context;
    StartExposureType   start;
};
TUNING_RECORD(ModeStartType)
    MEMBER(context)
    MEMBER(start)
TUNING_RECORD_END

/// Start with the exposures of the last session.
struct WarmStartType
{
    BOOL   enable;
    UINT32 maxIdleTime;  ///< ms since the last session
};
TUNING_RECORD(WarmStartType)
    BOOLEAN(enable)
    MEMBER(maxIdleTime)
TUNING_RECORD_END

/// What the light sensor says about the first frame. Exposures are gain times ns.
struct LightDataTriggerDataType
{
    StartEndType exposureZone;        ///< a warm start whose Safe lies in here stands
    UINT64       initialExposure[3];  ///< otherwise: short, long, safe
};
TUNING_RECORD(LightDataTriggerDataType)
    MEMBER(exposureZone)
    MEMBER(initialExposure)
TUNING_RECORD_END

/// Zone of the light sensor's lux.
LEAF_ZONE(LightDataTriggerType, LightDataTriggerDataType, triggerData)

/// Start with the help of a light sensor.
struct ExtSensorAssistStartType
{
    UINT32                tablesCount;  ///< at least 1
    UINT32                tablesID;
    LightDataTriggerType* tables;       ///< in ascending trigger
};
TUNING_RECORD(ExtSensorAssistStartType)
    VARIABLE(tables)
TUNING_RECORD_END

/// The module.
struct KIROStartUpType
{
    UINT32                   SymbolTableID;
    module_versionStruct     module_version;
    parameter_versionStruct  parameter_version;
    StartExposureType        defaultStart;
    UINT32                   modeStartsCount;
    UINT32                   modeStartsID;
    ModeStartType*           modeStarts;
    WarmStartType            warmStart;
    ExtSensorAssistStartType extSensorAssitStart;  // misspelled; tuning files hold the hash of the name as it stands
};
TUNING_RECORD(KIROStartUpType)
    MODULE_HEADER
    MEMBER(defaultStart)
    VARIABLE(modeStarts)
    MEMBER(warmStart)
    MEMBER(extSensorAssitStart)
TUNING_RECORD_END

} // namespace kirostartup
