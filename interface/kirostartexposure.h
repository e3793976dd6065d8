/// @file
/// The exposures that a new mode begins with, before there are statistics.
#pragma once

#include "platform/tavotypes.h"
#include "schema/exposureindex.h"
#include "schema/tuningrecord.h"

/// Where start exposures come from. What a source does not name below keeps the host's value.
///
/// - Preflash, in the operation mode Preflash alone: exposures, targets and lux index of the frame that was kept when
///   the mode began; if there was none to keep, those of the preflash before, at first zeros.
/// - PrevMode: exposures, targets and lux index of the last frame of the streaming or fast mode before, else of the
///   newest frame of this mode that is no picture. Both compensations come with them: where the camera leaves staggered
///   or multi-frame HDR, short comes to at least a quarter of safe, by a whole divisor, and long takes the dark boost,
///   by a whole factor; where it enters it, long is safe. With another EV than then, exposures are the targets times
///   the present EV. No answer if there is no frame, or if it was fully manual.
/// - DCFollow, on a camera that follows a peer: its exposures, as this camera takes them, for exposures and targets.
///   The result is ResultFailed also with an answer; without one the exposures keep the host's values.
/// - ExtLightData, with the module kirostartup and a light sensor that is enabled: tuned exposures for its reading, and
///   targets as these over evFactor. The host's warm start stands, and nothing is written, if its safe exposure lies in
///   the tuned zone for that reading. The result is 0 in both cases.
enum KIROAlgoStartExpType : INT32
{
    KIROStartExpPreflash         = 0,  ///< the frame before the flash
    KIROStartExpPrevMode         = 1,  ///< where the last mode ended
    KIROStartExpDCFollow         = 2,  ///< the master's exposures
    KIROStartExpExtLightData     = 3,  ///< the light sensor of AECAlgoSetParamLightInfo
    KIROStartExpFlashMeasurement = 4,  ///< has no answer
    KIROStartExpCustom1          = 5,  ///< has no answer
    KIROStartExpCustom2          = 6,  ///< has no answer
    KIROStartExpMax              = 7   ///< no source
};

/// A question to GetStartUpExposure and its answer; the host's, needed for the call alone. The host fills it with
/// zeros, but for what it gives. Exposures are ns times linear gain; arrays are indexed by AECAlgoExposureType. Without
/// an answer the members keep what the host gave.
struct KIROAlgoStartExposureInfo
{
    KIROAlgoStartExpType type;                   ///< by the host: the source
    UINT64               targetExposures[3];     ///< by the core: metering targets; by the host with a warm start
    UINT64               convergedExposures[3];  ///< by the core: to start with; by the host: the warm start, or 0
    FLOAT                evFactor;               ///< by the host for ExtLightData: exposure factor of the EV, above 0
    FLOAT                luxIndex;               ///< by the core: steps of 3 percent; of the frame that was used
    BOOL                 bIsLuxInitialized;      ///< by the core: 1 if luxIndex is filled (Preflash, PrevMode)
    FLOAT                compenADRCGain;         ///< by the core: safe over short to start with (PrevMode)
    FLOAT                compensationDarkBoostGain;  ///< by the core: long over safe to start with (PrevMode)
};
TUNING_RECORD(KIROAlgoStartExposureInfo)
    NUMBER(type)
    PER_EXPOSURE(targetExposures)
    PER_EXPOSURE(convergedExposures)
    MEMBER(evFactor)
    MEMBER(luxIndex)
    MEMBER(bIsLuxInitialized)
    MEMBER(compenADRCGain)
    MEMBER(compensationDarkBoostGain)
TUNING_RECORD_END
