/// @file
/// The exposures that a session begins with: which source a host asks for them, and what it makes of the answer.
#pragma once

#include <optional>
#include <vector>

#include "interface/ikirocorealgo.h"
#include "interface/kirostartexposure.h"

/// What a host knows when a session begins.
struct KiroStartSituation
{
    bool isPreflash      = false;  ///< the session meters a preflash
    bool isFollowing     = false;  ///< a slave whose master is running
    bool hasPreviousMode = false;  ///< frames of an earlier session are in the core's history
    bool hasLightSensor  = false;
};

/// The sources that are worth asking, the best first; empty if only the fixed start is left.
std::vector<KIROAlgoStartExpType> KiroStartSources(const KiroStartSituation& rSituation);

/// Where a session begins. Arrays are indexed by AECAlgoExposureType.
struct KiroStartExposure
{
    std::optional<KIROAlgoStartExpType> source;        ///< that has answered; none for the fixed start
    UINT64                              targets[3];    ///< as metering would have them
    UINT64                              exposures[3];  ///< gain times ns
    FLOAT                               ADRCGain;
    FLOAT                               darkBoostGain;
    std::optional<FLOAT>                luxIndex;  ///< unless the source knows none
};

/// What a host hands in.
struct KiroStartRequest
{
    std::vector<KIROAlgoStartExpType> sources;           ///< asked in this order until one answers
    UINT64                            warmExposures[3];  ///< of the last session, 0 for none; the light sensor's check
    UINT64                            warmTargets[3];    ///< that went with them
    FLOAT                             evFactor;          ///< of the user's EV
    UINT64                            fixedExposure;     ///< of all three, if no source answers
};

/// Asks an instance. Its settings (light, peer, operation mode) must have been given before.
KiroStartExposure KiroAskStartExposure(IKIROCoreAlgo* pAlgo, const KiroStartRequest& rRequest);

/// Writes a start into the records of the start-up frame.
VOID KiroApplyStartExposure(const KiroStartExposure& rStart, KIROMeteringOutput& rMetering,
                            KIROConvergenceOutput& rConvergence);
