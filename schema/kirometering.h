/// @file
/// Tuning module kirometering.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirometering
{

/// How the lux index follows from exposure and luma.
struct LuxIndexOperationType
{
    BOOL   enableCompensation;
    UINT64 refExposureForLuxIndexZero;
    float  filteringFactor;
};
TUNING_RECORD(LuxIndexOperationType)
    BOOLEAN(enableCompensation,
        .meaning = "On, the lux index is counted from the exposure refExposureForLuxIndexZero; off, from the zero of "
                   "exposure indices that the host gives.",
        .start = "true", .acts = Acts::NewTuning)
    MEMBER(refExposureForLuxIndexZero,
        .meaning = "Exposure (gain times ns) at which a scene on target has lux index 0; doubled, all lux indices "
                   "fall by 23.4. 0 counts as 1.",
        .unit = Unit::GainTimesNs, .range = AtLeast(1), .odd = AtLeast(0), .start = "100000", .acts = Acts::NewTuning,
        .when = "enableCompensation")
    MEMBER(filteringFactor,
        .meaning = "Share of the previous lux index in the new one: a higher share smooths noise and follows a change "
                   "of light later, 0 follows at once, and at 1 the index would never move.",
        .unit = Unit::Share, .range = Below(0, 1), .start = "0.2", .acts = Acts::NewTuning)
TUNING_RECORD_END

/// Exposure compensation while metering is locked; not read by the core.
struct DynamicMtrLockEVType
{
    BOOL         enable;
    StartEndType EVRange;
};
TUNING_RECORD(DynamicMtrLockEVType)
    BOOLEAN(enable,
        .meaning = "Whether exposure compensation acts while metering is locked; read by no stage.",
        .start = "false", .acts = Acts::Never)
    MEMBER(EVRange,
        .meaning = "Least and most EV that may be applied while metering is locked; read by no stage.",
        .unit = Unit::EV, .range = Any, .acts = Acts::Never)
TUNING_RECORD_END

/// Banding before range compression: the short exposure is kept up at the banding-free minimum.
struct AntibandingPrioOverADRCType
{
    BOOL  enableAntibandingPrioOverADRC;
    float exitThresholdAsFactorOfMinExposure;
};
TUNING_RECORD(AntibandingPrioOverADRCType)
    BOOLEAN(enableAntibandingPrioOverADRC,
        .meaning = "On, with correction for 50 or 60 Hz, a short exposure that is below safe and below the least "
                   "banding-free exposure is raised towards that, at the cost of ADRC gain and highlights.",
        .start = "true")
    MEMBER(exitThresholdAsFactorOfMinExposure,
        .meaning = "Share of the least banding-free exposure: a safe exposure at or below it leaves short alone, and "
                   "up to 1 the raise of short fades in. A lower share avoids bands in brighter scenes and costs more "
                   "ADRC gain there.",
        .unit = Unit::Share, .range = Between(0, 1), .odd = Above(0, 1), .start = "0.8",
        .when = "enableAntibandingPrioOverADRC")
TUNING_RECORD_END

/// Banding before luma: the safe exposure is pulled up to the banding-free minimum.
struct AntibandingPrioOverLumaType
{
    BOOL  enableAntibandingPrioOverLuma;
    float clampThresholdAsFactorOfMinExposure;
    float exitThresholdAsFactorOfMinExposure;
};
TUNING_RECORD(AntibandingPrioOverLumaType)
    BOOLEAN(enableAntibandingPrioOverLuma,
        .meaning = "On, a safe exposure just below the least banding-free exposure is raised towards it, so that the "
                   "picture is overexposed rather than banded; short and long keep their ratios to safe.",
        .start = "true")
    MEMBER(clampThresholdAsFactorOfMinExposure,
        .meaning = "Share of the least banding-free exposure above which safe is raised to it in full; it must be "
                   "above the exit threshold. A lower share avoids bands in brighter scenes, with more overexposure.",
        .unit = Unit::Share, .range = Above(0, 1), .start = "0.95", .when = "enableAntibandingPrioOverLuma")
    MEMBER(exitThresholdAsFactorOfMinExposure,
        .meaning = "Share of the least banding-free exposure at or below which safe stays as metered, bands or not; "
                   "up to the clamp threshold the raise fades in. A lower share avoids bands in brighter scenes, with "
                   "more overexposure.",
        .unit = Unit::Share, .range = Between(0, 1), .start = "0.8", .when = "enableAntibandingPrioOverLuma")
TUNING_RECORD_END

/// What is given up to avoid banding; factors are of the smallest exposure that shows none.
struct AntibandingMeteringType
{
    AntibandingPrioOverADRCType antibandingVsADRC;
    AntibandingPrioOverLumaType antibandingVsLuma;
};
TUNING_RECORD(AntibandingMeteringType)
    MEMBER(antibandingVsADRC,
        .meaning = "When the short exposure is raised to avoid bands, at the cost of ADRC gain; runs after "
                   "antibandingVsLuma.")
    MEMBER(antibandingVsLuma,
        .meaning = "When the safe exposure is raised to avoid bands, at the cost of overexposure.")
TUNING_RECORD_END

/// The module's record.
struct KIROMeteringType
{
    UINT32                  SymbolTableID;
    module_versionStruct    module_version;
    parameter_versionStruct parameter_version;
    UINT32                  moduleID;
    LuxIndexOperationType   luxIndexOperation;
    DynamicMtrLockEVType    dynamicMtrLockEV;
    StatsROIProcessType     trackerStatsROIProcess;
    AntibandingMeteringType antibandingMetering;
};
TUNING_RECORD(KIROMeteringType)
    MODULE_HEADER("Metering stage: lux index, lock and antibanding.")
    MEMBER(moduleID,
        .meaning = "Number of the module; stored and read by no stage.",
        .unit = Unit::ID, .range = AtLeast(0), .start = "1", .acts = Acts::Never)
    MEMBER(luxIndexOperation,
        .meaning = "How the lux index follows from exposure and luma. It is copied when the scene analyzers are "
                   "built, so that an edit, or a mode that differs in this alone, acts only once they are built anew.",
        .acts = Acts::NewTuning)
    MEMBER(dynamicMtrLockEV,
        .meaning = "Exposure compensation while metering is locked; read by no stage.",
        .acts = Acts::Never)
    MEMBER(trackerStatsROIProcess,
        .meaning = "How the regions of a tracker become statistics regions; read by no stage.",
        .acts = Acts::Never)
    MEMBER(antibandingMetering,
        .meaning = "What metered exposures give up to avoid bands; factors are of the least exposure that shows none. "
                   "The extension parameter AECExtParamFlickerControl, if there is one, can hold both stages off.")
TUNING_RECORD_END

} // namespace kirometering
