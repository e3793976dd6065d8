/// @file
/// Stateless helpers that host and core share.
#pragma once

#include "interface/aecalgogetparam.h"
#include "interface/statstuningdata.h"
#include "platform/tavocommonutils.h"
#include "schema/kiroparamextension.h"

/// Which law turns an EV value into an exposure factor.
enum KIROEVType : INT32
{
    KIROEVPreview    = 0,  ///< table of factors
    KIROEVBracketing = 1   ///< formula with tuned adjustment
};

/// Named extension parameters; the value is the ID that a tuning entry should carry.
enum AECExtParamType : INT32
{
    AECExtParamMultiCamPriorityMap     = 0,
    AECExtParamUnstableFaceProcess     = 1,
    AECExtParamTrackerProcess          = 2,
    AECExtParamMFHDRFPSControl         = 3,
    AECExtParamMFHDRADRCControl        = 4,
    AECExtParamFlickerControl          = 5,
    AECExtParamAWBInfoFaceROIFactor    = 6,
    AECExtParamSnapshotExposureControl = 7,
    AECExtParamMax                     = 8
};

/// Names of AECExtParamType, in order.
extern const CHAR* const g_pAECExtParamStringArray[AECExtParamMax + 1];

class TAVO_VISIBLE CKIROCtrlCoreCommon
{
public:
    using Parameter = kiroparamextension::statsExtensionParamType;

    /// Picks the peer that this camera follows or serves.
    /// @param pPeers     may be null
    /// @param rpPeerInfo receives the peer's information, unchanged unless the result is 1
    /// @return 1 when a peer was found, otherwise 0
    static BOOL MapMultiCamPeerInfo(const StatsPeerInfoCombo* pPeers, const StatsCameraInfo& rCameraInfo,
                                    const StatsTuningData& rTuningData, VOID*& rpPeerInfo);

    /// @return the name of a trigger ID; most IDs share one name
    static const CHAR* GetTriggerString(UINT32 id);

    /// Exposure factor of an EV value. A value beyond the tuned range is logged and clamped.
    /// @param ev in steps of stepsPerEV per stop
    static FLOAT UtilGetEVMultiplier(const StatsTuningData* pTuningData, INT32 ev, KIROEVType type);

    /// Finds an extension parameter by name and data count.
    /// A wrong ID is logged and the entry is used all the same.
    /// @return 0, or 6 when there is no such entry
    static KiroResult ParseExtensionParam(const StatsTuningData& rTuningData, INT32 parameterType, UINT32 dataCount,
                                          Parameter& rParameter);

    /// Finds the five outputs of a query of a snapshot's exposure.
    /// @return 0, or 4 with a log when one is missing or has too little room
    static KiroResult UtilGetParamExposureOutput(const AECAlgoGetParam&           rQuery,
                                                 KIROAlgoParsedGetExposureOutput& rOutput);

    // ParseExtensionParam for one parameter each.
    static KiroResult GetUnstableFaceProcessExtParam(const StatsTuningData& rTuningData, Parameter& rParameter);
    static KiroResult GetTrackerProcessExtParam(const StatsTuningData& rTuningData, Parameter& rParameter);
    static KiroResult GetMFHDRFPSControlExtParam(const StatsTuningData& rTuningData, Parameter& rParameter);
    static KiroResult GetMFHDRADRCExtParam(const StatsTuningData& rTuningData, Parameter& rParameter);
    static KiroResult GetFlickerControlExtParam(const StatsTuningData& rTuningData, Parameter& rParameter);
    static KiroResult GetSnapshotExposureExtParam(const StatsTuningData& rTuningData, Parameter& rParameter);
};
