/// @file
/// The exposures that a new mode begins with, before there are statistics.
#pragma once

#include "platform/tavotypes.h"

/// Where start exposures come from.
enum KIROAlgoStartExpType : INT32
{
    KIROStartExpPreflash         = 0,  ///< the frame before the flash; in preflash mode only
    KIROStartExpPrevMode         = 1,  ///< where the last mode ended
    KIROStartExpDCFollow         = 2,  ///< the master's exposures; filled although the result is 1
    KIROStartExpExtLightData     = 3,  ///< the light sensor, unless the host's warm start fits it
    KIROStartExpFlashMeasurement = 4,  ///< not supported
    KIROStartExpCustom1          = 5,  ///< not supported
    KIROStartExpCustom2          = 6,  ///< not supported
    KIROStartExpMax              = 7
};

/// Arrays are indexed by AECAlgoExposureType.
struct KIROAlgoStartExposureInfo
{
    KIROAlgoStartExpType type;                       ///< by the host
    UINT64               targetExposures[3];         ///< metering targets
    UINT64               convergedExposures[3];      ///< by the host for a warm start
    FLOAT                evFactor;                   ///< by the host, for the light sensor
    FLOAT                luxIndex;                   ///< of the frame that was used
    BOOL                 bIsLuxInitialized;          ///< luxIndex is filled
    FLOAT                compenADRCGain;             ///< to start with
    FLOAT                compensationDarkBoostGain;  ///< to start with
};
