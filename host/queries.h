/// @file
/// The typed queries of an instance, as a host asks them.
#pragma once

#include <optional>
#include <vector>

#include "interface/aecalgogetparam.h"
#include "interface/ikirocorealgo.h"
#include "interface/kiromulticam.h"

/// The range of the user's EV; none if the core refuses.
std::optional<AECAlgoEVCapabilities> QueryEVCapabilities(IKIROCoreAlgo* pAlgo);

/// The record in which the instance describes itself to the other cameras. It lives as long as the instance.
const AECMultiCamInfo* QueryPeerInfo(IKIROCoreAlgo* pAlgo);

/// What the core answers about a snapshot.
struct SnapshotAnswer
{
    KiroResult                       result = 0;
    AECAlgoFrameControl              frameControl{};
    std::vector<AECAlgoExposureInfo> exposures;
    AECAlgoLEDCurrents               LEDs{};
    AECAlgoAPEXData                  APEX{};
    AECAlgoAdditionalInfo            additionalInfo{};
};
SnapshotAnswer QuerySnapshotExposure(IKIROCoreAlgo* pAlgo, KIROCoreSnapshotType type);

/// A query without inputs and with one output of no use, for the types that the core does not answer.
KiroResult QueryUnanswered(IKIROCoreAlgo* pAlgo, AECAlgoGetParamType type);
