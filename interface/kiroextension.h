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

struct AECYHistStretchData
{
    BOOL  enable;
    FLOAT clamp;
    FLOAT scaling;
};

enum InSensorHDR3ExpTriggeResult : INT32
{
    InSensorHDR3ExpTriggerOff = 0,
    InSensorHDR3ExpTriggerOn  = 1
};

struct CDFSet
{
    FLOAT resultCDF0;
    FLOAT resultCDF1;
    FLOAT resultCDF2;
    FLOAT resultCDF3;
    FLOAT resultCDF4;
    FLOAT resultCDF5;
    FLOAT realDRCGain;
    FLOAT ambientRaw;
    FLOAT faceLuma;
};

struct InSensorHDR3ExpTriggerInfo
{
    BOOL                        isTriggerInfoValid;
    InSensorHDR3ExpTriggeResult finalTriggerResult;
    CDFSet                      calculatedCDF;
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
