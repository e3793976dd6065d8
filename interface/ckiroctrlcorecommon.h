/// @file
/// Stateless helpers that host and core share. They need no instance, but a logger, which the first creation of one
/// brings, and may be called from any thread. What they answer with of a tuning stays the store's, and lasts until its
/// next reload or unloading.
#pragma once

#include "interface/aecalgogetparam.h"
#include "interface/statstuningdata.h"
#include "platform/tavocommonutils.h"
#include "schema/kiroparamextension.h"

/// Which law turns an EV value into an exposure factor.
enum KIROEVType : INT32
{
    KIROEVPreview    = 0,  ///< tuned table of factors, one for each step from the lowest EV on
    KIROEVBracketing = 1   ///< 2 to the power of the stops; a tuned adjustment comes in over the first 2 stops
};

/// Named extension parameters; the value is the ID that a tuning entry should carry.
enum AECExtParamType : INT32
{
    AECExtParamMultiCamPriorityMap     = 0,  ///< read by the core under another name; see MapMultiCamPeerInfo
    AECExtParamUnstableFaceProcess     = 1,  ///< for hosts; any number of data
    AECExtParamTrackerProcess          = 2,  ///< for hosts; any number of data
    AECExtParamMFHDRFPSControl         = 3,  ///< for hosts; any number of data
    AECExtParamMFHDRADRCControl        = 4,  ///< long ADRC of staggered and multi-frame HDR: 3 or 4 data, 3 triggers
    AECExtParamFlickerControl          = 5,  ///< whether antibanding pulls the safe target: 2 data
    AECExtParamAWBInfoFaceROIFactor    = 6,  ///< not read
    AECExtParamSnapshotExposureControl = 7,  ///< for hosts; any number of data
    AECExtParamMax                     = 8   ///< how many there are
};

/// Names of AECExtParamType, in order, by which tuning entries are found. For the library alone: it is not exported.
extern const CHAR* const g_pAECExtParamStringArray[AECExtParamMax + 1];

/// The helpers. A class without data, to be called by its name.
class TAVO_VISIBLE CKIROCtrlCoreCommon
{
public:
    /// Record of an extension parameter. Its data, triggers and name stay the tuning's.
    using Parameter = kiroparamextension::statsExtensionParamType;

    /// Picks the peer that this camera follows or serves, as AECAlgoSetParamPeerInfo does. A master takes the first of
    /// the three camera IDs of the tuned parameter "AECMulticamPriorityMap" (ID 0) that is an active peer, or without
    /// that parameter, or with it off, the first active peer; a slave takes the first active peer that is a master. A
    /// camera with its own ID is no peer of a master.
    /// @param pPeers     may be null
    /// @param rpPeerInfo receives the peer's information, which may be null; unchanged unless the result is 1
    /// @return 1 when a peer was found; otherwise 0: without peers or needSync, without one that fits, or in another
    ///         role
    static BOOL MapMultiCamPeerInfo(const StatsPeerInfoCombo* pPeers, const StatsCameraInfo& rCameraInfo,
                                    const StatsTuningData& rTuningData, VOID*& rpPeerInfo);

    /// @param id of KIROTriggerType
    /// @return a constant text: the name of a trigger from TriggerCtrlPrev to TriggerSCDExternal2, one name for all
    ///         others, and "InavlidTrigger" from TriggerCtrlMax on
    static const CHAR* GetTriggerString(UINT32 id);

    /// Exposure factor of an EV value. A value beyond the tuned range is logged and clamped.
    /// @param pTuningData not null
    /// @param ev          in steps of stepsPerEV per stop
    /// @return linear factor. Without the module kiroev 0 for the preview, 1 for a bracket
    static FLOAT UtilGetEVMultiplier(const StatsTuningData* pTuningData, INT32 ev, KIROEVType type);

    /// Finds an extension parameter by name and data count, the first that matches. A wrong ID is logged and the entry
    /// is used all the same; so is one that is switched off: the caller looks at its enableFlag.
    /// @param parameterType of AECExtParamType, 0 to AECExtParamMax; it is not tested
    /// @param dataCount     must be the entry's; 0xFFFFFFFF for any
    /// @param rParameter    receives a copy of the entry; unchanged on failure
    /// @return 0, or ResultNotFound (6) when there is no such entry, or no module kiroparamextension
    static KiroResult ParseExtensionParam(const StatsTuningData& rTuningData, INT32 parameterType, UINT32 dataCount,
                                          Parameter& rParameter);

    /// Finds the five outputs of a query of a snapshot's exposure.
    /// @param rOutput receives their addresses, also on failure: null for what is missing
    /// @return 0, or ResultInvalidArgument (4) with a log when one is missing or has too little room
    static KiroResult UtilGetParamExposureOutput(const AECAlgoGetParam&           rQuery,
                                                 KIROAlgoParsedGetExposureOutput& rOutput);

    /// ParseExtensionParam of AECExtParamUnstableFaceProcess, with any data count.
    static KiroResult GetUnstableFaceProcessExtParam(const StatsTuningData& rTuningData, Parameter& rParameter);
    /// ParseExtensionParam of AECExtParamTrackerProcess, with any data count.
    static KiroResult GetTrackerProcessExtParam(const StatsTuningData& rTuningData, Parameter& rParameter);
    /// ParseExtensionParam of AECExtParamMFHDRFPSControl, with any data count.
    static KiroResult GetMFHDRFPSControlExtParam(const StatsTuningData& rTuningData, Parameter& rParameter);
    /// ParseExtensionParam of AECExtParamMFHDRADRCControl, with 3 data or else with 4.
    static KiroResult GetMFHDRADRCExtParam(const StatsTuningData& rTuningData, Parameter& rParameter);
    /// ParseExtensionParam of AECExtParamFlickerControl, with 2 data.
    static KiroResult GetFlickerControlExtParam(const StatsTuningData& rTuningData, Parameter& rParameter);
    /// ParseExtensionParam of AECExtParamSnapshotExposureControl, with any data count.
    static KiroResult GetSnapshotExposureExtParam(const StatsTuningData& rTuningData, Parameter& rParameter);
};
