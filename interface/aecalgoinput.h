/// @file
/// Settings and sensor data that a host gives to the core through setInput, and the record in which the core keeps
/// them.
///
/// setInput copies a payload; what the payload points to stays where its record says. What holds before the host has
/// said anything stands at the members of SetInputData.
#pragma once

#include "interface/aecalgosensordata.h"
#include "interface/aecalgosettings.h"
#include "interface/kiroexposure.h"
#include "platform/tavotypes.h"
#include "schema/kiroenums.h"

/// The user's exposure compensation, kept by AECAlgoSetParamExposureCompensation.
struct EVContext
{
    INT32 evUIVal;   ///< EV steps as the user set them, 0 for none; also beyond the tuned range
    FLOAT evFactor;  ///< linear exposure factor of that value, cut to the tuned range
};

/// Limits of the sensor as the core keeps them, derived from StatsSensorInfo. No stage reads them: arbitration goes by
/// the KIROSensorRange of each call. Gains are linear, exposure times nanoseconds.
struct AECAlgoSensorInfo
{
    FLOAT  fNumber;                 ///< from the driver's record
    FLOAT  statsWindowAspectRatio;  ///< sensorResWidth over sensorResHeight
    FLOAT  minimumStreamGain;       ///< minGain
    FLOAT  maximumStreamGain;       ///< maxGain
    FLOAT  minimumStillGain;        ///< minGain
    FLOAT  maximumStillGain;        ///< maxGain
    UINT64 minimumStreamExpTime;    ///< one line
    UINT64 maximumStreamExpTime;    ///< currentMaxLineCount lines
    UINT64 minimumStillExpTime;     ///< one line
    UINT64 maximumStillExpTime;     ///< currentMaxLineCount lines
    UINT32 sensorResWidth;          ///< pixels
    UINT32 sensorResHeight;         ///< pixels
    UINT64 rollingShutterSkew;      ///< ns
    UINT64 flashDelay;              ///< ns; stays 0
    UINT64 minSEFExpTime;           ///< of the short exposure of a frame; stays 0
    UINT64 maxSEFExpTime;           ///< of the short exposure of a frame; stays 0
    UINT64 minMEFExpTime;           ///< of the middle exposure of a frame; stays 0
    UINT64 maxMEFExpTime;           ///< of the middle exposure of a frame; stays 0
    UINT64 minLEFExpTime;           ///< of the long exposure of a frame; stays 0
    UINT64 maxLEFExpTime;           ///< of the long exposure of a frame; stays 0
};

/// All settings, as the modules of the core read them. The core fills it from setInput; hosts do not see it. Behind
/// "at first" stands what holds before the host has said anything, zero where nothing is said.
struct SetInputData
{
    AECAlgoOperationModeType    opMode;                ///< at first Init, without its event
    AECAlgoMeteringModeType     mtrMode;               ///< at first CenterWeighted
    EVContext                   evContext;             ///< at first factor 1.0
    StatisticsAntibanding       flickerComp;           ///< at first 60Hz; never Auto
    AECAlgoManualSetting        manualSetting;         ///< at first Auto
    AECAlgoLockType             lockType;              ///< at first OFF
    AECAlgoFPSRange             FPSRange;              ///< at first 1 to 30
    AECAlgoLEDModeType          LEDMode;               ///< at first Off
    AECAlgoROIList              touchROI;              ///< at first none; the list is the host's
    UnstabilizedROIInformation  faceROI;               ///< faces
    UnstabilizedROIInformation  trackerROI;            ///< the tracked object
    BOOL                        bIsSaliencyInfoValid;  ///< the saliency map has cells
    AECAlgoWhiteBalanceState    AWBState;              ///< at first gains of 1.0 and 5000 K
    StatsGyroInfo               gyro;                  ///< of the last setting
    AECAlgoOverrideSettingParam overrideSetting;       ///< of the last setting
    AECAlgoSensorInfo           sensorInfo;            ///< at first gains 1 to 256, times 40 us to 33 ms (still 66 ms)
    StatsCameraInfo             cameraInfo;            ///< at first role Default, ID 0
    INT32                       maxLEDCurrent;         ///< mA; at first 1000, from getFlashCurrent the tuned one
    AECAlgoStartupIndices       startUpExpInfo;        ///< of the last setting
    StatsRectangle              cropWindow;            ///< read by no stage
    UINT8                       systemLatency;         ///< frames until a decision shows, 1 to 10; at first 4
    VOID*                       pPeerInfo;             ///< the peer's AECMultiCamInfo, not owned; at first null
    AECAlgoDCCalibrationInfo    DCCalibrationInfo;     ///< of the last setting, usable or not
    BOOL                        b3HDRMode;             ///< whether HDRType is SensorHDR
    AECAlgoHDRType              HDRType;               ///< at first HDRDisabled, without its event
    INT32                       postRawGain;           ///< boost behind the sensor; at first 100, which is unity
    UINT8                       postRawCounter;        ///< frames for which a new postRawGain fixes the exposure
    BOOL                        bIsDebugDataEnabled;   ///< read by no stage: IKIRODebugData decides
    BOOL                        bIsFullFlash;          ///< these statistics show the main flash
    BOOL                        bIsFICMode;            ///< flash inline calibration learns and corrects
    AECAlgoFlashMeasKindType    flashMeasurementType;  ///< at first Off
    AECAlgoFlashCalibrationData flashCalibData;        ///< arrays are the core's copies
    KIROCoreSnapshotType        snapshotMode;          ///< at first Normal, without its event
    BOOL                        bDisableADRC;          ///< short and long targets take the safe one
    BOOL                        bLockMetering;         ///< targets of the frame before stand, see SetMeteringLock
    StatsLightInfo              lightInfo;             ///< at first disabled
};
