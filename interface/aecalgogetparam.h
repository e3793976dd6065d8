/// @file
/// Queries of the host: a type, tagged inputs, and tagged outputs whose memory is the host's.
#pragma once

#include "interface/kiroexposure.h"
#include "interface/kiroextension.h"
#include "interface/kiroflash.h"

enum AECAlgoGetParamType : INT32
{
    AECAlgoGetParamInvalid                  = 0,
    AECAlgoGetParamStartExposure            = 1,
    AECAlgoGetParamSnapshotExposure         = 2,  ///< answered
    AECAlgoGetParamGainFromISOPreview       = 3,
    AECAlgoGetParamGainFromISOSnapshot      = 4,
    AECAlgoGetParamEVCapabilities           = 5,  ///< answered
    AECAlgoGetParamDebugData                = 6,
    AECAlgoGetParamSWVersion                = 7,
    AECAlgoGetParamFlashMeasurementConfig   = 8,
    AECAlgoGetParamFlashMeasurementResult   = 9,
    AECAlgoGetParamPublishingVendorTagsInfo = 10,
    AECAlgoGetParamDependentVendorTags      = 11,
    AECAlgoGetParamBGStatsConfig            = 12,
    AECAlgoGetParamPeerInfo                 = 13,  ///< answered
    AECAlgoGetParamBHistStatsConfig         = 14,
    AECAlgoGetParamDynamicCalibrationData   = 15,
    AECAlgoGetParamSnapshotType             = 16,
    AECAlgoGetParamCount                    = 17,
    AECAlgoGetParamMax                      = 18
};

enum AECAlgoGetParamInputType : INT32
{
    AECAlgoGetParamInputInvalid      = 0,
    AECAlgoGetParamInputSnapshotType = 1  ///< AECAlgoSnapshotConfig
};

enum AECAlgoGetParamOutputType : INT32
{
    AECAlgoGetParamOutputInvalid        = 0,
    AECAlgoGetParamOutputFrameControl   = 1,  ///< AECAlgoFrameControl
    AECAlgoGetParamOutputExposureSets   = 2,  ///< AECAlgoExposureSet
    AECAlgoGetParamOutputLEDCurrents    = 3,  ///< AECAlgoLEDCurrents
    AECAlgoGetParamOutputEXIFApex       = 4,  ///< AECAlgoAPEXData
    AECAlgoGetParamOutputAdditionalInfo = 5,  ///< AECAlgoAdditionalInfo
    AECAlgoGetParamOutputEVCapabilities = 6,  ///< AECAlgoEVCapabilities
    AECAlgoGetParamOutputPeerInfo       = 7   ///< VOID*, the address of the camera's own AECMultiCamInfo
};

struct AECAlgoGetParamInput
{
    AECAlgoGetParamInputType inputType;
    VOID*                    pInputData;
    UINT32                   sizeOfInputData;  ///< bytes
};

struct AECAlgoGetParamOutput
{
    VOID*                     pOutputData;
    UINT32                    sizeOfOutputData;         ///< bytes
    UINT32                    sizeOfWrittenOutputData;  ///< bytes, by the core
    AECAlgoGetParamOutputType outputType;
};

struct AECAlgoGetParamInputList
{
    AECAlgoGetParamInput* pAECGetParamList;
    UINT32                numberOfAECGetInputParams;
};

struct AECAlgoGetParamOutputList
{
    AECAlgoGetParamOutput* pAECOutputList;
    UINT32                 numberOfAECOutputs;
};

struct AECAlgoGetParam
{
    AECAlgoGetParamType       type;
    AECAlgoGetParamInputList  inputList;
    AECAlgoGetParamOutputList outputList;
};

struct AECAlgoEVCapabilities
{
    signed char minEV;  ///< stops
    signed char maxEV;  ///< stops
    signed char stepsPerEV;
};
static_assert(sizeof(AECAlgoEVCapabilities) == 3, "hosts reserve three bytes");

/// What the host is about to take.
struct AECAlgoSnapshotConfig
{
    KIROCoreSnapshotType snapshotType;
};

enum AECAlgoSnapshotType : INT32
{
    AECAlgoSnapshotNone  = 0,
    AECAlgoSnapshotPlain = 1,
    AECAlgoSnapshotFlash = 2,
    AECAlgoSnapshotHDR3  = 3
};

enum AECAlgoSeamlessMode : INT32
{
    AECAlgoSeamlessNone    = 0,
    AECAlgoSeamlessBinning = 1,
    AECAlgoSeamlessFull    = 2
};

struct AECAlgoApertureData
{
    FLOAT fNumber;
    BOOL  bSwitch;
};

struct AECAlgoFrameControl
{
    AECAlgoFlashStateType      flashState;
    FLOAT                      LEDInfluenceRatio;
    FLOAT                      LEDRGRatio;
    FLOAT                      LEDBGRatio;
    FLOAT                      luxIndex;
    UINT32                     ISOValue;
    AECYHistStretchData        stretchControl;
    FLOAT                      LEDFirstEntryRatio;
    FLOAT                      LEDLastEntryRatio;
    FLOAT                      predictiveGain;
    FLOAT                      digitalGainForSimulation;
    FLOAT                      compenADRCGain;
    BOOL                       isInSensorHDR3ExpSnapshot;
    AECAlgoApertureData        apertureSwitchInfo;
    InSensorHDR3ExpTriggerInfo inSensorHDR3ExpTriggerOutput;
    AECAlgoSnapshotType        snapshotIndicator;
    UINT64                     snapshotFlashDuration;  ///< ns
    FLOAT                      compensationDarkBoostGain;
    AECAlgoSeamlessMode        seamlessMode;
    UINT64                     meterTargetExp[3];
    FLOAT                      shortBlendRatio;
    INT32                      IRModeActivated;
    FLOAT                      IRLedIntensity;
};

struct AECAlgoExposureData
{
    UINT64 exposureTime;          ///< ns
    UINT64 snapshotExposureTime;  ///< ns
    FLOAT  linearGain;
    FLOAT  snapShotLinearGain;
    FLOAT  sensitivity;
    FLOAT  snapshotSensitivity;
    FLOAT  deltaEVFromTarget;
    FLOAT  compenADRCGain;
    FLOAT  fnumber;
};

struct AECAlgoExposureInfo
{
    AECAlgoExposureType exposureType;
    AECAlgoExposureData exposureData;
};

/// @note exposureInfoCount is at least 3, exposureInfoSize at least the size of AECAlgoExposureData; the memory holds
///       exposureInfoCount records.
struct AECAlgoExposureSet
{
    AECAlgoExposureInfo* pExposureInfo;
    UINT32               exposureInfoCount;
    UINT32               exposureInfoSize;  ///< bytes
    UINT32               exposureInfoOutputCount;
    UINT32               exposureInfoOutputSize;  ///< bytes
};

struct AECAlgoLEDCurrents
{
    UINT32 LED1Current;  ///< mA
    UINT32 LED2Current;  ///< mA
};
static_assert(sizeof(AECAlgoLEDCurrents) == 8, "hosts reserve eight bytes");

/// APEX values of one picture, as picture files carry them.
struct AECAlgoAPEXData
{
    FLOAT brightnessValue;
    FLOAT apertureValue;
    FLOAT speedValue;
    FLOAT timeValue;
    FLOAT exposureValue;
};

struct SensorRegisterControl
{
    UINT32 registerAddress;
    UINT32 registerData;
};

struct AECAlgoAdditionalInfo
{
    SensorRegisterControl sensorControl;  ///< cleared only
};

/// The outputs found in a query of a snapshot's exposure, each with the place of its written size.
struct KIROAlgoParsedGetExposureOutput
{
    AECAlgoFrameControl*   pFrameControl;
    UINT32*                pFrameControlWrittenData;
    AECAlgoExposureSet*    pExposureSet;
    UINT32*                pExposureSetWrittenData;
    AECAlgoLEDCurrents*    pLEDs;
    UINT32*                pLEDsWrittenData;
    AECAlgoAPEXData*       pAPEX;
    UINT32*                pAPEXWrittenData;
    AECAlgoAdditionalInfo* pAdditonalInfo;  // misspelled; hosts name it so
    UINT32*                pAdditonalInfoWrittenData;
};
