/// @file
/// The argument of setInput.
#pragma once

#include "interface/aecalgoinput.h"

/// What pAECSetParam points to. The payload of each type is named in docs/architecture.md and in the context manager.
enum AECAlgoSetParamType : INT32
{
    AECAlgoSetParamExpTableRange                  = 0,
    AECAlgoSetParamOperationMode                  = 1,
    AECAlgoSetParamTunaraData                     = 2,
    AECAlgoSetParamMeteringMode                   = 3,
    AECAlgoSetParamExposureCompensation           = 4,
    AECAlgoSetParamFlickerCompensation            = 5,
    AECAlgoSetParamManualSetting                  = 6,
    AECAlgoSetParamAECLock                        = 7,
    AECAlgoSetParamFPSRange                       = 8,
    AECAlgoSetParamLEDMode                        = 9,
    AECAlgoSetParamTouchROI                       = 10,
    AECAlgoSetParamFaceROI                        = 11,
    AECAlgoSetParamAWBState                       = 12,
    AECAlgoSetParamGyroInfo                       = 13,
    AECAlgoSetParamOverrideSetting                = 14,
    AECAlgoSetParamFlashMeasurement               = 15,
    AECAlgoSetParamFlashCalibrationData           = 16,
    AECAlgoSetParamDebugDataEnable                = 17,
    AECAlgoSetParamSensorInfo                     = 18,
    AECAlgoSetParamCameraInfo                     = 19,
    AECAlgoSetParamFlashMaximumCurrent            = 20,
    AECAlgoSetParamSetDiagTestConfig              = 21,
    AECAlgoSetParamStartUpExpSensitivity          = 22,
    AECAlgoSetParamStatsCapability                = 23,
    AECAlgoSetParamCropWindow                     = 24,
    AECAlgoSetParamPipelineDelay                  = 25,
    AECAlgoSetParamPeerInfo                       = 26,
    AECAlgoSetParamDualcamCalibrationInfo         = 27,
    AECAlgoSetParamMultiExpSensorMode             = 28,
    AECAlgoSetParamIsDualCamera                   = 29,
    AECAlgoSetParamUnstabilizedFaceROI            = 30,
    AECAlgoSetParamControlPostRawSensitivityBoost = 31,
    AECAlgoSetParamCustomExposureTable            = 32,
    AECAlgoSetParamCustomMeteringTable            = 33,
    AECAlgoSetParamDisableADRC                    = 34,
    AECAlgoSetParamConvergenceSpeed               = 35,
    AECAlgoSetParamFlashInlineCalibrationData     = 36,
    AECAlgoSetParamIsFlashInfluencedStats         = 37,
    AECAlgoSetParamFlashInlineCalibrationMode     = 38,
    AECAlgoSetParamTrackerROI                     = 39,
    AECAlgoSetParamframeID                        = 40,
    AECAlgoSetParamApertureCalibrationInfo        = 41,
    AECAlgoSetParamAmbientRaw                     = 42,
    AECAlgoSetParamSaliencyMapData                = 43,
    AECAlgoSetParamZLLData                        = 44,
    AECAlgoSetParamMagnetometerInfo               = 45,
    AECAlgoSetParamLightInfo                      = 46,
    AECAlgoSetParamAFDFrameInfo                   = 47,
    AECAlgoSetParamBPSCamera                      = 48,
    AECAlgoSetParamDCGMode                        = 49,
    AECAlgoSetParamCount                          = 50,
    AECAlgoSetParamMax                            = 51
};

struct AECAlgoSetParam
{
    VOID*               pAECSetParam;
    UINT32              sizeOfAECSetParam;  ///< bytes
    AECAlgoSetParamType setParamType;
};

/// Facts about the scene from precision flash. The record stays the host's and must outlive the instance's use.
struct KIROPrecisionFlashHistory
{
    BOOL   sceneDetected;
    UINT32 previousReqID;
    UINT32 curReqID;
    FLOAT  frameFPS;
    FLOAT  hysteresis;
};

enum KIROCoreSetParamType : INT32
{
    KIROCorePrecisionFlashHistory = 0,
    KIROCoreParamMax              = 1
};

struct KIROCoreSetParam
{
    KIROCoreSetParamType setParamType;
    UINT32               sizeOfParam;
    VOID*                pSetParam;
};

/// Selects the member of the union in KIROSetInput.
enum KIROSetInputSource : INT32
{
    AECPEKSetParam        = 0,  ///< pPEKInput
    KIROCoreSnapshot      = 1,  ///< snapshotMode
    KIROCoreInternalParam = 2   ///< pKirocoreParam
};

struct KIROSetInput
{
    KIROSetInputSource source;
    union
    {
        AECAlgoSetParam*     pPEKInput;
        KIROCoreSnapshotType snapshotMode;
        KIROCoreSetParam*    pKirocoreParam;
    } u;
    BOOL bResetFrameSkip;  ///< output: the host restarts its frame skipping
};
