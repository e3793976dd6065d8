/// @file
/// Metering stage: lux index, lock and antibanding.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirometering
{

/// How the lux index follows from exposure and luma.
struct LuxIndexOperationType
{
    BOOL   enableCompensation;          ///< take the index from the exposure rather than from the exposure table
    UINT64 refExposureForLuxIndexZero;  ///< exposure at which the index is 0; 0 counts as 1
    float  filteringFactor;             ///< share of the previous index in the new one, 0 to 1; 0 follows at once
};
TUNING_RECORD(LuxIndexOperationType)
    BOOLEAN(enableCompensation)
    MEMBER(refExposureForLuxIndexZero)
    MEMBER(filteringFactor)
TUNING_RECORD_END

/// Exposure compensation while metering is locked; not read by the core.
struct DynamicMtrLockEVType
{
    BOOL         enable;
    StartEndType EVRange;  ///< EV that may be applied under lock, in stops
};
TUNING_RECORD(DynamicMtrLockEVType)
    BOOLEAN(enable)
    MEMBER(EVRange)
TUNING_RECORD_END

/// Banding before range compression: the short exposure is kept up at the banding-free minimum.
struct AntibandingPrioOverADRCType
{
    BOOL  enableAntibandingPrioOverADRC;
    float exitThresholdAsFactorOfMinExposure;  ///< above 0, at most 1; a safe exposure at or below it is left alone
};
TUNING_RECORD(AntibandingPrioOverADRCType)
    BOOLEAN(enableAntibandingPrioOverADRC)
    MEMBER(exitThresholdAsFactorOfMinExposure)
TUNING_RECORD_END

/// Banding before luma: the safe exposure is pulled up to the banding-free minimum.
struct AntibandingPrioOverLumaType
{
    BOOL  enableAntibandingPrioOverLuma;
    float clampThresholdAsFactorOfMinExposure;  ///< above the exit threshold, at most 1; above it the pull is full
    float exitThresholdAsFactorOfMinExposure;   ///< above 0, at most 1; at or below it there is no pull
};
TUNING_RECORD(AntibandingPrioOverLumaType)
    BOOLEAN(enableAntibandingPrioOverLuma)
    MEMBER(clampThresholdAsFactorOfMinExposure)
    MEMBER(exitThresholdAsFactorOfMinExposure)
TUNING_RECORD_END

/// What is given up to avoid banding; factors are of the smallest exposure that shows none.
struct AntibandingMeteringType
{
    AntibandingPrioOverADRCType antibandingVsADRC;
    AntibandingPrioOverLumaType antibandingVsLuma;
};
TUNING_RECORD(AntibandingMeteringType)
    MEMBER(antibandingVsADRC)
    MEMBER(antibandingVsLuma)
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
    StatsROIProcessType     trackerStatsROIProcess;  ///< not read by the core
    AntibandingMeteringType antibandingMetering;
};
TUNING_RECORD(KIROMeteringType)
    MODULE_HEADER
    MEMBER(moduleID)
    MEMBER(luxIndexOperation)
    MEMBER(dynamicMtrLockEV)
    MEMBER(trackerStatsROIProcess)
    MEMBER(antibandingMetering)
TUNING_RECORD_END

} // namespace kirometering
