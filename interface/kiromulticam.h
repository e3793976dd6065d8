/// @file
/// What the core instances of two cameras tell one another. Arrays of three are indexed by AECAlgoExposureType.
///
/// Each instance owns its record and rewrites it at the end of a frame; the host carries the record's address to the
/// peer, which reads it unsynchronised.
#pragma once

#include "interface/aecalgoinput.h"
#include "platform/tavotypes.h"

struct AECMultiCamMtrInfo
{
    FLOAT  luxIndex;
    UINT64 targetExposure[3];  ///< metered targets
};

struct AECMultiCamExpInfo
{
    FLOAT  origExp[3];       ///< exposures as arbitrated
    FLOAT  normExp[3];       ///< the same without the module's sensitivity factor
    FLOAT  normExp_wCCT[3];  ///< and without the factor of the light's colour
    UINT64 exposureTime[3];  ///< ns
};

/// One frame of one camera.
struct AECMultiCamInfo
{
    BOOL               bSettle;
    BOOL               bBrightnessSettle;
    UINT64             statsFrameId;  ///< 0 before the first frame
    UINT32             cameraID;
    AECMultiCamMtrInfo meteringInfo;
    AECMultiCamExpInfo exposureInfo;
    INT32              CCT;  ///< kelvin
    StatsAlgoRole      algoRole;
};

/// Where the sensitivity factor between two modules comes from.
enum AECAlgoDualcamOTPDataStatus : INT32
{
    AECAlgoDualcamOTPInvalid      = 0,
    AECAlgoDualcamOTPSet          = 1,
    AECAlgoDualcamOTPSetUsingPeer = 2
};

/// Factory calibration as the core has taken it.
struct AECDualcamCalibrationInfo
{
    AECAlgoDualcamOTPDataStatus OTPStatus;
    FLOAT                       OTPExpCompMultiplier;  ///< linear exposure factor; meaningless unless set
    BOOL                        bAbsoluteOTPFormat;
};
