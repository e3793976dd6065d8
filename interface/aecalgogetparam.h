/// @file
/// Queries of the host: a type, tagged inputs, and tagged outputs whose memory is the host's.
///
/// Three types are answered. Entries of the lists are found by their tags, in any order, the first that fits; a fitting
/// output has the tag, room for its record and a pointer that is not null. All of it needs to live for the call alone.
///
/// - EVCapabilities: the output of that name, from the tuning; zeros without the module kiroev. ResultInvalidArgument
///   without a fitting output.
/// - PeerInfo: the output of that name receives the address of the instance's own AECMultiCamInfo, which lives as long
///   as the instance and changes in runEndOfFrame. Without a fitting output the result is 0, and nothing is written.
/// - SnapshotExposure: clears the five outputs FrameControl, ExposureSets, LEDCurrents, EXIFApex and AdditionalInfo,
///   and their written sizes. With an input SnapshotType it then sets in the frame control ISOValue 100, predictiveGain
///   and digitalGainForSimulation 1, and stretchControl as the last runExtension left it. Nothing else is worked out: a
///   host takes the exposures of a picture from its frames. ResultInvalidArgument, with nothing written, if one of the
///   five has no fitting output; another number of outputs than five is only logged.
#pragma once

#include "interface/kiroexposure.h"
#include "interface/kiroextension.h"
#include "interface/kiroflash.h"
#include "schema/exposureindex.h"
#include "schema/tuningrecord.h"

/// What is asked. A type that is not answered yields ResultUnsupportedQuery, with nothing written.
enum AECAlgoGetParamType : INT32
{
    AECAlgoGetParamInvalid                  = 0,   ///< not answered
    AECAlgoGetParamStartExposure            = 1,   ///< not answered; see GetStartUpExposure
    AECAlgoGetParamSnapshotExposure         = 2,   ///< answered
    AECAlgoGetParamGainFromISOPreview       = 3,   ///< not answered
    AECAlgoGetParamGainFromISOSnapshot      = 4,   ///< not answered
    AECAlgoGetParamEVCapabilities           = 5,   ///< answered
    AECAlgoGetParamDebugData                = 6,   ///< not answered; see IKIRODebugData
    AECAlgoGetParamSWVersion                = 7,   ///< not answered
    AECAlgoGetParamFlashMeasurementConfig   = 8,   ///< not answered
    AECAlgoGetParamFlashMeasurementResult   = 9,   ///< not answered
    AECAlgoGetParamPublishingVendorTagsInfo = 10,  ///< not answered
    AECAlgoGetParamDependentVendorTags      = 11,  ///< not answered
    AECAlgoGetParamBGStatsConfig            = 12,  ///< not answered
    AECAlgoGetParamPeerInfo                 = 13,  ///< answered
    AECAlgoGetParamBHistStatsConfig         = 14,  ///< not answered
    AECAlgoGetParamDynamicCalibrationData   = 15,  ///< not answered
    AECAlgoGetParamSnapshotType             = 16,  ///< not answered
    AECAlgoGetParamCount                    = 17,  ///< how many there are; not answered
    AECAlgoGetParamMax                      = 18   ///< not answered
};

/// What pInputData points to.
enum AECAlgoGetParamInputType : INT32
{
    AECAlgoGetParamInputInvalid      = 0,  ///< passed over
    AECAlgoGetParamInputSnapshotType = 1   ///< AECAlgoSnapshotConfig
};

/// What pOutputData points to.
enum AECAlgoGetParamOutputType : INT32
{
    AECAlgoGetParamOutputInvalid        = 0,  ///< passed over
    AECAlgoGetParamOutputFrameControl   = 1,  ///< AECAlgoFrameControl
    AECAlgoGetParamOutputExposureSets   = 2,  ///< AECAlgoExposureSet
    AECAlgoGetParamOutputLEDCurrents    = 3,  ///< AECAlgoLEDCurrents
    AECAlgoGetParamOutputEXIFApex       = 4,  ///< AECAlgoAPEXData
    AECAlgoGetParamOutputAdditionalInfo = 5,  ///< AECAlgoAdditionalInfo
    AECAlgoGetParamOutputEVCapabilities = 6,  ///< AECAlgoEVCapabilities
    AECAlgoGetParamOutputPeerInfo       = 7   ///< VOID*, the address of the camera's own AECMultiCamInfo
};

/// A tagged input.
struct AECAlgoGetParamInput
{
    AECAlgoGetParamInputType inputType;        ///< tag by which it is found
    VOID*                    pInputData;       ///< the record of the tag; not read, may be null
    UINT32                   sizeOfInputData;  ///< bytes, at least the record's
};

/// A tagged output.
struct AECAlgoGetParamOutput
{
    VOID*                     pOutputData;              ///< room for the record of the tag
    UINT32                    sizeOfOutputData;         ///< bytes, at least the record's
    UINT32                    sizeOfWrittenOutputData;  ///< by the core: bytes; 0 for all outputs of SnapshotExposure
    AECAlgoGetParamOutputType outputType;               ///< tag by which it is found
};

/// The inputs of a query.
struct AECAlgoGetParamInputList
{
    AECAlgoGetParamInput* pAECGetParamList;           ///< null counts as none
    UINT32                numberOfAECGetInputParams;  ///< entries
};

/// The outputs of a query.
struct AECAlgoGetParamOutputList
{
    AECAlgoGetParamOutput* pAECOutputList;      ///< null counts as none that fits
    UINT32                 numberOfAECOutputs;  ///< entries; 0 yields ResultInvalidArgument for any type
};

/// A query, the argument of queryMetaData.
struct AECAlgoGetParam
{
    AECAlgoGetParamType       type;        ///< what is asked
    AECAlgoGetParamInputList  inputList;   ///< read by SnapshotExposure alone
    AECAlgoGetParamOutputList outputList;  ///< where the answer goes
};

/// The range of the user's EV, as tuned.
struct AECAlgoEVCapabilities
{
    signed char minEV;       ///< stops
    signed char maxEV;       ///< stops
    signed char stepsPerEV;  ///< steps of AECAlgoSetParamExposureCompensation in a stop
};
TUNING_RECORD(AECAlgoEVCapabilities)
    MEMBER(minEV)
    MEMBER(maxEV)
    MEMBER(stepsPerEV)
TUNING_RECORD_END
static_assert(sizeof(AECAlgoEVCapabilities) == 3, "hosts reserve three bytes");

/// What the host is about to take.
struct AECAlgoSnapshotConfig
{
    KIROCoreSnapshotType snapshotType;  ///< not read: the answer is the same for all
};

/// What a frame control announces. The core answers None.
enum AECAlgoSnapshotType : INT32
{
    AECAlgoSnapshotNone  = 0,  ///< no picture
    AECAlgoSnapshotPlain = 1,  ///< one exposure without flash
    AECAlgoSnapshotFlash = 2,  ///< with flash
    AECAlgoSnapshotHDR3  = 3   ///< three exposures
};

/// Mode of a hybrid HDR sensor. The core answers None; see bIsSeamlessBinning of KIROExtensionOutput.
enum AECAlgoSeamlessMode : INT32
{
    AECAlgoSeamlessNone    = 0,  ///< no statement
    AECAlgoSeamlessBinning = 1,  ///< binned
    AECAlgoSeamlessFull    = 2   ///< full
};

/// A change of the aperture. The core answers zeros.
struct AECAlgoApertureData
{
    FLOAT fNumber;  ///< focal length over aperture
    BOOL  bSwitch;  ///< 1 to change to it
};
TUNING_RECORD(AECAlgoApertureData)
    MEMBER(fNumber)
    MEMBER(bSwitch)
TUNING_RECORD_END

/// How a picture is to be taken, in an answer to SnapshotExposure. Each member holds what its comment begins with;
/// without an input SnapshotType all are zero.
struct AECAlgoFrameControl
{
    AECAlgoFlashStateType      flashState;                    ///< AECAlgoFlashStateOff
    FLOAT                      LEDInfluenceRatio;             ///< 0; ratio
    FLOAT                      LEDRGRatio;                    ///< 0; as RGRatio of KIROAlgoFlashOutput
    FLOAT                      LEDBGRatio;                    ///< 0; as BGRatio of KIROAlgoFlashOutput
    FLOAT                      luxIndex;                      ///< 0; steps of 3 percent, higher is darker
    UINT32                     ISOValue;                      ///< 100
    AECYHistStretchData        stretchControl;                ///< as the last runExtension left it
    FLOAT                      LEDFirstEntryRatio;            ///< 0; as firstEntryRatio of KIROAlgoFlashOutput
    FLOAT                      LEDLastEntryRatio;             ///< 0; as lastEntryRatio of KIROAlgoFlashOutput
    FLOAT                      predictiveGain;                ///< 1; as in KIROConvergenceOutput
    FLOAT                      digitalGainForSimulation;      ///< 1; linear gain
    FLOAT                      compenADRCGain;                ///< 0; safe over short
    BOOL                       isInSensorHDR3ExpSnapshot;     ///< 0; as bIs3HDRSnapshot of KIROExtensionOutput
    AECAlgoApertureData        apertureSwitchInfo;            ///< no change
    InSensorHDR3ExpTriggerInfo inSensorHDR3ExpTriggerOutput;  ///< zeros; as IHDRTriggers of KIROExtensionOutput
    AECAlgoSnapshotType        snapshotIndicator;             ///< AECAlgoSnapshotNone
    UINT64                     snapshotFlashDuration;         ///< 0; ns
    FLOAT                      compensationDarkBoostGain;     ///< 0; long over safe
    AECAlgoSeamlessMode        seamlessMode;                  ///< AECAlgoSeamlessNone
    UINT64                     meterTargetExp[3];             ///< 0; gain times ns, by AECAlgoExposureType
    FLOAT                      shortBlendRatio;               ///< 0; as convergedShortBlend, 0 to 1
    INT32                      IRModeActivated;               ///< 0; 1 for on
    FLOAT                      IRLedIntensity;                ///< 0
};
TUNING_RECORD(AECAlgoFrameControl)
    NUMBER(flashState)
    MEMBER(LEDInfluenceRatio)
    MEMBER(LEDRGRatio)
    MEMBER(LEDBGRatio)
    MEMBER(luxIndex)
    MEMBER(ISOValue)
    MEMBER(stretchControl)
    MEMBER(LEDFirstEntryRatio)
    MEMBER(LEDLastEntryRatio)
    MEMBER(predictiveGain)
    MEMBER(digitalGainForSimulation)
    MEMBER(compenADRCGain)
    MEMBER(isInSensorHDR3ExpSnapshot)
    MEMBER(apertureSwitchInfo)
    MEMBER(inSensorHDR3ExpTriggerOutput)
    NUMBER(snapshotIndicator)
    MEMBER(snapshotFlashDuration)
    MEMBER(compensationDarkBoostGain)
    NUMBER(seamlessMode)
    PER_EXPOSURE(meterTargetExp)
    MEMBER(shortBlendRatio)
    MEMBER(IRModeActivated)
    MEMBER(IRLedIntensity)
TUNING_RECORD_END

/// An exposure of a picture. The core answers zeros.
struct AECAlgoExposureData
{
    UINT64 exposureTime;          ///< ns, of the preview
    UINT64 snapshotExposureTime;  ///< ns, of the picture
    FLOAT  linearGain;            ///< of the preview, 1.0 is unity
    FLOAT  snapShotLinearGain;    ///< of the picture, 1.0 is unity
    FLOAT  sensitivity;           ///< of the preview, gain times ns
    FLOAT  snapshotSensitivity;   ///< of the picture, gain times ns
    FLOAT  deltaEVFromTarget;     ///< stops above the target
    FLOAT  compenADRCGain;        ///< safe over short
    FLOAT  fnumber;               ///< focal length over aperture
};
TUNING_RECORD(AECAlgoExposureData)
    MEMBER(exposureTime)
    MEMBER(snapshotExposureTime)
    MEMBER(linearGain)
    MEMBER(snapShotLinearGain)
    MEMBER(sensitivity)
    MEMBER(snapshotSensitivity)
    MEMBER(deltaEVFromTarget)
    MEMBER(compenADRCGain)
    MEMBER(fnumber)
TUNING_RECORD_END

/// One of the exposures of a picture. The core answers zeros, for each alike.
struct AECAlgoExposureInfo
{
    AECAlgoExposureType exposureType;  ///< AECAlgoExposureShort (0) in each
    AECAlgoExposureData exposureData;  ///< zeros
};
TUNING_RECORD(AECAlgoExposureInfo)
    NUMBER(exposureType)
    MEMBER(exposureData)
TUNING_RECORD_END

/// The exposures of a picture: where the host wants them.
struct AECAlgoExposureSet
{
    AECAlgoExposureInfo* pExposureInfo;            ///< room for exposureInfoCount records, all of which are cleared
    UINT32               exposureInfoCount;        ///< by the host: at least 3
    UINT32               exposureInfoSize;         ///< by the host: bytes, at least the size of AECAlgoExposureData
    UINT32               exposureInfoOutputCount;  ///< not written
    UINT32               exposureInfoOutputSize;   ///< not written
};
TUNING_RECORD(AECAlgoExposureSet)
    ADDRESS(pExposureInfo)
    MEMBER(exposureInfoCount)
    MEMBER(exposureInfoSize)
    MEMBER(exposureInfoOutputCount)
    MEMBER(exposureInfoOutputSize)
TUNING_RECORD_END

/// Currents of the two LEDs; see getFlashCurrent for those of a picture.
struct AECAlgoLEDCurrents
{
    UINT32 LED1Current;  ///< mA; cleared
    UINT32 LED2Current;  ///< mA; not written
};
TUNING_RECORD(AECAlgoLEDCurrents)
    MEMBER(LED1Current)
    MEMBER(LED2Current)
TUNING_RECORD_END
static_assert(sizeof(AECAlgoLEDCurrents) == 8, "hosts reserve eight bytes");

/// APEX values of one picture, as picture files carry them (Exif): logarithms to the base 2. The core answers zeros.
struct AECAlgoAPEXData
{
    FLOAT brightnessValue;  ///< Bv
    FLOAT apertureValue;    ///< Av
    FLOAT speedValue;       ///< Sv
    FLOAT timeValue;        ///< Tv
    FLOAT exposureValue;    ///< Ev
};
TUNING_RECORD(AECAlgoAPEXData)
    MEMBER(brightnessValue)
    MEMBER(apertureValue)
    MEMBER(speedValue)
    MEMBER(timeValue)
    MEMBER(exposureValue)
TUNING_RECORD_END

/// A register of the sensor to be set with a picture. The core answers zeros.
struct SensorRegisterControl
{
    UINT32 registerAddress;  ///< as the sensor counts
    UINT32 registerData;     ///< what to write there
};
TUNING_RECORD(SensorRegisterControl)
    MEMBER(registerAddress)
    MEMBER(registerData)
TUNING_RECORD_END

/// What else a picture needs. The core answers zeros.
struct AECAlgoAdditionalInfo
{
    SensorRegisterControl sensorControl;  ///< no register
};
TUNING_RECORD(AECAlgoAdditionalInfo)
    MEMBER(sensorControl)
TUNING_RECORD_END

/// The outputs found in a query of a snapshot's exposure, each with the place of its written size, in the memory of the
/// query. CKIROCtrlCoreCommon::UtilGetParamExposureOutput fills it: both addresses are null where no output fits, and
/// that of an exposure set alone where it has too little room.
struct KIROAlgoParsedGetExposureOutput
{
    AECAlgoFrameControl*   pFrameControl;              ///< output FrameControl
    UINT32*                pFrameControlWrittenData;   ///< bytes
    AECAlgoExposureSet*    pExposureSet;               ///< output ExposureSets
    UINT32*                pExposureSetWrittenData;    ///< bytes
    AECAlgoLEDCurrents*    pLEDs;                      ///< output LEDCurrents
    UINT32*                pLEDsWrittenData;           ///< bytes
    AECAlgoAPEXData*       pAPEX;                      ///< output EXIFApex
    UINT32*                pAPEXWrittenData;           ///< bytes
    AECAlgoAdditionalInfo* pAdditonalInfo;             ///< output AdditionalInfo; the name is spelled so
    UINT32*                pAdditonalInfoWrittenData;  ///< bytes
};
