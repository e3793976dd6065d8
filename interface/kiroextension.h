/// @file
/// What hangs on a frame's result: flags for capture decisions, histogram stretch, switching.
#pragma once

#include "platform/tavotypes.h"

struct KIROExtFlagsMonitorOutput
{
    BOOL bFlashNeeded;
    BOOL bFDFlashDelayNeeded;
    BOOL bLEDAFNeeded;
    BOOL bLLSNeeded;
    BOOL bZLLEnabled;
    BOOL bZLLEnforced;
};

/// How the luma histogram is to be stretched.
struct AECYHistStretchData
{
    BOOL  enable;
    FLOAT clamp;
    FLOAT scaling;  ///< at least 1.0, which leaves the histogram as it is
};

constexpr UINT32 InSensorHDR3ExpFlagCount = 3;

/// Which of the tuned scenes ask for three exposures.
struct InSensorHDR3ExpTriggeResult
{
    BOOL flags[InSensorHDR3ExpFlagCount];
};

struct CDFSet
{
    FLOAT resultCDF0;
    FLOAT resultCDF5;
};

/// What the decision rests on; zeros where the tuning does not measure it.
struct InSensorHDR3ExpTriggerInfo
{
    BOOL                        isTriggerInfoValid;
    InSensorHDR3ExpTriggeResult finalTriggerResult;
    CDFSet                      calculatedCDF;
    FLOAT                       realDRCGain;
    FLOAT                       ambientRaw;
    FLOAT                       faceLuma;
};

struct KIROExt3HDRMonitorOutput
{
    InSensorHDR3ExpTriggerInfo IHDRTriggers;
    BOOL                       bIs3HDRSnapshot;
};

struct KIROExtensionOutput
{
    KIROExtFlagsMonitorOutput monitoredFlags;
    AECYHistStretchData       histStretchData;
    KIROExt3HDRMonitorOutput  snapshot3HDRTriggers;
    BOOL                      bIsSeamlessBinning;
};
