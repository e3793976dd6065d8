/// @file
/// What the core instances of two cameras tell one another. Arrays of three are indexed by AECAlgoExposureType.
///
/// Each instance owns its record and rewrites it in runEndOfFrame; a frame without tuned sync (module kirosync),
/// without arbitrated exposures or of a flash in preflash mode leaves it as it was. The host asks for the record's
/// address with the query AECAlgoGetParamPeerInfo, which is answered once for the life of the instance, and carries it
/// to the peer in StatsPeerInfoCombo. The peer reads the record in place, unsynchronised: the host serialises the two
/// instances.
#pragma once

#include "interface/aecalgoinput.h"
#include "platform/tavotypes.h"
#include "schema/exposureindex.h"
#include "schema/tuningrecord.h"

/// What a camera has metered.
struct AECMultiCamMtrInfo
{
    FLOAT  luxIndex;           ///< grows as the scene darkens
    UINT64 targetExposure[3];  ///< targets, as runEndOfFrame was given them
};
TUNING_RECORD(AECMultiCamMtrInfo)
    MEMBER(luxIndex)
    PER_EXPOSURE(targetExposure)
TUNING_RECORD_END

/// How a camera exposes. A follower multiplies its own factors back in, so that the exposures meet in a space without
/// modules. A factor of 0 divides nothing: the value of the frame before stands.
struct AECMultiCamExpInfo
{
    FLOAT  origExp[3];       ///< exposures as arbitrated
    FLOAT  normExp[3];       ///< the same without the module's sensitivity factor
    FLOAT  normExp_wCCT[3];  ///< and without the factor of the light's colour
    UINT64 exposureTime[3];  ///< ns
};
TUNING_RECORD(AECMultiCamExpInfo)
    PER_EXPOSURE(origExp)
    PER_EXPOSURE(normExp)
    PER_EXPOSURE(normExp_wCCT)
    PER_EXPOSURE(exposureTime)
TUNING_RECORD_END

/// One frame of one camera.
struct AECMultiCamInfo
{
    BOOL               bSettle;            ///< of KIROConvergenceOutput
    BOOL               bBrightnessSettle;  ///< of KIROConvergenceOutput
    UINT64             statsFrameId;       ///< of runStartOfFrame; 0 before the first frame of an operation mode
    UINT32             cameraID;           ///< of StatsCameraInfo
    AECMultiCamMtrInfo meteringInfo;       ///< read by mixMetering
    AECMultiCamExpInfo exposureInfo;       ///< read by followMasterConvExposure, start exposures and arbitration
    INT32              CCT;                ///< kelvin, of the white balance
    StatsAlgoRole      algoRole;           ///< of StatsCameraInfo
};
TUNING_RECORD(AECMultiCamInfo)
    MEMBER(bSettle)
    MEMBER(bBrightnessSettle)
    MEMBER(statsFrameId)
    MEMBER(cameraID)
    MEMBER(meteringInfo)
    MEMBER(exposureInfo)
    MEMBER(CCT)
    NUMBER(algoRole)
TUNING_RECORD_END

/// Where the sensitivity factor between two modules comes from.
enum AECAlgoDualcamOTPDataStatus : INT32
{
    AECAlgoDualcamOTPInvalid      = 0,  ///< tuning, or none
    AECAlgoDualcamOTPSet          = 1,  ///< factory calibration; never replaced
    AECAlgoDualcamOTPSetUsingPeer = 2   ///< not used
};

/// Factory calibration as the core has taken it from AECAlgoDCCalibrationInfo; hosts do not see it.
struct AECDualcamCalibrationInfo
{
    AECAlgoDualcamOTPDataStatus OTPStatus;             ///< Set once one was usable
    FLOAT                       OTPExpCompMultiplier;  ///< linear exposure factor; meaningless unless set
    BOOL                        bAbsoluteOTPFormat;    ///< 1 for the absolute layout
};
