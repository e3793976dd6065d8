/// @file
/// Tuning module kirostartup.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirostartup
{

/// Exposures of the first frame, gain times ns, indexed by AECAlgoExposureType.
struct StartExposureType
{
    UINT64 initialExposure[3];
    float  luxIndex;
};
TUNING_RECORD(StartExposureType)
    MEMBER(initialExposure,
        .meaning = "Exposures of the first frame: short, long, safe; read by no stage.",
        .unit = Unit::GainTimesNs, .range = AtLeast(0), .acts = Acts::Never)
    MEMBER(luxIndex,
        .meaning = "Lux index that would go with them; read by no stage.",
        .unit = Unit::LuxIndex, .range = Any, .acts = Acts::Never)
TUNING_RECORD_END

/// The start in a context, in place of the default.
struct ModeStartType
{
    KIROTunaraEventType context;
    StartExposureType   start;
};
TUNING_RECORD(ModeStartType)
    MEMBER(context,
        .meaning = "Context that the start would be for; read by no stage.",
        .acts = Acts::Never)
    MEMBER(start,
        .meaning = "Exposures that such a context would start with; read by no stage.",
        .acts = Acts::Never)
TUNING_RECORD_END

/// Start with the exposures of the last session.
struct WarmStartType
{
    BOOL   enable;
    UINT32 maxIdleTime;
};
TUNING_RECORD(WarmStartType)
    BOOLEAN(enable,
        .meaning = "Would let a session start with the exposures of the last one; read by no stage, the host brings "
                   "them.",
        .acts = Acts::Never)
    MEMBER(maxIdleTime,
        .meaning = "Longest time since the last session for a warm start; read by no stage.",
        .unit = Unit::Milliseconds, .range = AtLeast(0), .acts = Acts::Never)
TUNING_RECORD_END

/// What the light sensor says about the first frame. Exposures are gain times ns.
struct LightDataTriggerDataType
{
    StartEndType exposureZone;
    UINT64       initialExposure[3];
};
TUNING_RECORD(LightDataTriggerDataType)
    MEMBER(exposureZone,
        .meaning = "Range of Safe, both ends included, within which the exposures that the host brings from the last "
                   "session stand; a wider range trusts them more than the light sensor. One that begins at 0 also "
                   "lets the zeros of a host stand that has none to bring.",
        .unit = Unit::GainTimesNs, .range = Above(0), .odd = AtLeast(0), .acts = Acts::NextStart)
    MEMBER(initialExposure,
        .meaning = "Exposures of the first frame otherwise: short, long, safe; doubled, the first picture is a stop "
                   "brighter. The targets are these over the host's EV factor.",
        .unit = Unit::GainTimesNs, .range = AtLeast(1), .acts = Acts::NextStart)
TUNING_RECORD_END

/// Zone of the light sensor's lux.
LEAF_ZONE(LightDataTriggerType, LightDataTriggerDataType, triggerData,
    .meaning = "Start of the zone.",
    .acts = Acts::NextStart)

/// Start with the help of a light sensor.
struct ExtSensorAssistStartType
{
    UINT32                tablesCount;
    UINT32                tablesID;
    LightDataTriggerType* tables;
};
TUNING_RECORD(ExtSensorAssistStartType)
    VARIABLE(tables,
        .meaning = "Zones of the light sensor's lux, in ascending order; the more of them, the nearer the first "
                   "exposure comes to the light. Without any, a start by the light sensor yields exposures of 0.",
        .entries = AtLeast(1), .acts = Acts::NextStart)
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
    MODULE_HEADER("Exposures to start with, before there are statistics.")
    MEMBER(defaultStart,
        .meaning = "Start where nothing better is known; read by no stage.",
        .acts = Acts::Never)
    VARIABLE(modeStarts,
        .meaning = "Starts of single contexts; read by no stage.",
        .entries = AtLeast(0), .acts = Acts::Never)
    MEMBER(warmStart,
        .meaning = "Start with the exposures of the last session; read by no stage, the host brings them.",
        .acts = Acts::Never)
    MEMBER(extSensorAssitStart,
        .meaning = "Start by a light sensor, where a host has one and asks for it; the name is misspelled in tuning "
                   "files, too.",
        .acts = Acts::NextStart)
TUNING_RECORD_END

} // namespace kirostartup
