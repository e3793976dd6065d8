/// @file
/// The argument of setInput.
#pragma once

#include "interface/aecalgoinput.h"

/// What pAECSetParam points to, and what it does. The payload is read during the call and copied; what the core goes on
/// to read in the host's memory is said. A payload smaller than its type is logged and yields ResultFailed, with
/// nothing stored; a null one yields 0 with nothing stored, and so does a type that is ignored. "Kept" settings are
/// stored and read by no stage: they stand in the host's own calls, or come another way, as said.
///
/// A setting moves its events (KIROTunaraEventType) at each call, by the value that then stands, also where the payload
/// was refused or has changed nothing. bResetFrameSkip becomes 1 with a change of MeteringMode, ExposureCompensation,
/// FlickerCompensation, ManualSetting, AECLock, FPSRange, MultiExpSensorMode, ControlPostRawSensitivityBoost or
/// DisableADRC, of the role in CameraInfo, and of the count in TouchROI, UnstabilizedFaceROI and TrackerROI.
///
/// Before the host has given any: mode Init, center-weighted, EV 0, antibanding for 60 Hz, 1 to 30 FPS, white balance
/// gains of 1 at 5000 K, flash current 1000 mA, pipeline delay 4, post-raw gain 100, HDR disabled, all else off or
/// zero; but no event is set for mode and HDR type until they are given.
///
/// - OperationMode ends the history of the mode before and begins that of the next, also for the same mode again; a
///   start-up frame (runEndOfFrame with bStartup) must follow. Only from FastAEC or AggressiveAEC to any mode but Init
///   the frames go on to count, and none is needed. The last frame of a streaming or fast mode stays for
///   KIROStartExpPrevMode. Preflash keeps the newest frame as the one without LED. An unknown mode is logged and
///   changes nothing, with a result of 0. Events AECOpInit to AECOpFlashCalibration.
/// - TunaraData rebuilds the data banks: entries of the host in tuned banks are gone and must be set again, value banks
///   keep their values. All stages take the new records at their next use. Of a mode that cannot be read any more the
///   path before stays, with a log. The result is 0. Event AECHybridHDR, by the tuning. docs/integration.md says when.
/// - MeteringMode is read by a flash snapshot alone, which weights its bias table by the tuned base table if it is
///   center-weighted, and otherwise leaves it unweighted, with a log.
/// - ExposureCompensation multiplies the targets in convergence, which takes them in one frame. A value beyond the
///   tuned range is logged; it is kept, but acts as the end of the range. Event AECEV, while it is not 0.
/// - FlickerCompensation lets metering raise short towards the antibanding exposure, with 50Hz and 60Hz alone; the grid
///   of times is the host's choice among the controls of arbitration.
/// - ManualSetting is taken as a whole if mode, ISO, gain or time have changed: FNumber alone does not count. Gain and
///   time themselves come to arbitration as the ranges of the manual controls, which the host sets. ManualFull takes
///   the targets in one frame. Events AECManualISO (ISO and gain), AECManualTime and AECManualFull.
/// - AECLock holds the exposures of the frame before, less the EV of that frame, so that an EV still acts. Outside
///   streaming mode it is logged and ignored, with a result of 0. The event of a lock is AECManualISO, which the next
///   ManualSetting clears; an unlock clears AECLock, which no setting sets.
/// - FPSRange limits times as the range of ArbCtrlFPS, which the host sets.
/// - TouchROI: the list stays the host's, and valid until the next one. Where to meter comes as an entry of
///   BankIDROITable. Event AECTouch, while there is a region.
/// - AWBState is taken as a whole if isAuto, a gain or CCT have changed. Gains say what is neutral to measures of
///   colour and to inline calibration; CCT goes to other cameras.
/// - GyroInfo: more than 512 samples yield ResultFailed. Samples come as an entry of BankIDMetering1D, and
///   run1DVectorProcess.
/// - OverrideSetting is taken as a whole if one of the first four flags or profile3A has changed. Of it
///   disableSpeckleDetection alone is read, which does not count as a change: a host that changes it changes profile3A
///   with it.
/// - FlashMeasurement: events AECOpFlashTuning and AECOpFlashCalibration, in any mode; the mode FlashMeasurement sets
///   that of the kind given last.
/// - FlashCalibrationData: more than 96 entries or a null array yield ResultFailed. For GetFlashCalibInfo alone: the
///   host hands it on with each getFlashCurrent.
/// - SensorInfo: limits of the sensor come with each runArbitration and with the limits of RunConvProcess.
/// - CameraInfo chooses how the camera meters and exposes by the tuning of its role; a role without the module kirosync
///   keeps the former way. Event AECSlaveRole.
/// - PipelineDelay: frames from a decision to the statistics that show it. Above 10 no frame is found, and none
///   metered.
/// - PeerInfo: the address of the chosen peer's record stays and is read in each frame, until another one is chosen; a
///   master chooses by the tuned map or takes the first active peer, a slave takes the first active master. Without one
///   the peer before stays. CameraInfo comes first. The result is 0. docs/integration.md says how a camera leaves.
/// - DualcamCalibrationInfo: the first sound record counts until the instance ends. The result is 0.
/// - MultiExpSensorMode: SensorHDR turns on what three exposures in one frame need (HandleExposureConstraints, the
///   switch of runExtension), StaggeredHDR and MultiframeHDR long ADRC. Events AECHDRTypeDisabled to AECHDRTypeSHDR2
///   and AECHDRTypeMFHDR; the last one stays set until the host clears it.
/// - UnstabilizedFaceROI and TrackerROI: more than 10 regions yield ResultFailed.
/// - ControlPostRawSensitivityBoost: for a pipeline delay the exposures make up for the change, so that the picture
///   stays as bright as it was.
/// - DisableADRC makes the short and the long target that of safe. The size is not tested.
/// - FlashInlineCalibrationData: a blob of GetFICData, behind FlashInlineCalibrationMode. It is read as far as its own
///   counts say, whatever the size; one that does not fit the tuning or the mode is logged, with a result of 0.
/// - IsFlashInfluencedStats tells, until it is 0 again, that the statistics show the main flash, for inline
///   calibration.
/// - FlashInlineCalibrationMode lets runExtension learn and getFlashCurrent apply what it has learned. Each call takes
///   the number of knees from the tuned table.
/// - SaliencyMapData: event AECSaliency, while neither side of the map is 0. The map is not read here.
/// - LightInfo is read by KIROStartExpExtLightData.
enum AECAlgoSetParamType : INT32
{
    AECAlgoSetParamExpTableRange                  = 0,   ///< ignored
    AECAlgoSetParamOperationMode                  = 1,   ///< AECAlgoOperationModeType
    AECAlgoSetParamTunaraData                     = 2,   ///< StatsTuningData
    AECAlgoSetParamMeteringMode                   = 3,   ///< AECAlgoMeteringModeType
    AECAlgoSetParamExposureCompensation           = 4,   ///< INT32, EV in steps of the tuned stepsPerEV
    AECAlgoSetParamFlickerCompensation            = 5,   ///< StatisticsAntibanding; Auto is ignored
    AECAlgoSetParamManualSetting                  = 6,   ///< AECAlgoManualSetting
    AECAlgoSetParamAECLock                        = 7,   ///< AECAlgoLockType
    AECAlgoSetParamFPSRange                       = 8,   ///< AECAlgoFPSRange; kept
    AECAlgoSetParamLEDMode                        = 9,   ///< AECAlgoLEDModeType; for the flags of runExtension
    AECAlgoSetParamTouchROI                       = 10,  ///< AECAlgoROIList, of which the count is read
    AECAlgoSetParamFaceROI                        = 11,  ///< ignored; see UnstabilizedFaceROI
    AECAlgoSetParamAWBState                       = 12,  ///< AECAlgoWhiteBalanceState
    AECAlgoSetParamGyroInfo                       = 13,  ///< StatsGyroInfo; kept
    AECAlgoSetParamOverrideSetting                = 14,  ///< AECAlgoOverrideSettingParam
    AECAlgoSetParamFlashMeasurement               = 15,  ///< AECAlgoFlashMeasKindType
    AECAlgoSetParamFlashCalibrationData           = 16,  ///< AECAlgoFlashCalibrationData, with its arrays
    AECAlgoSetParamDebugDataEnable                = 17,  ///< BOOL; kept: IKIRODebugData decides
    AECAlgoSetParamSensorInfo                     = 18,  ///< StatsSensorInfo; kept
    AECAlgoSetParamCameraInfo                     = 19,  ///< StatsCameraInfo
    AECAlgoSetParamFlashMaximumCurrent            = 20,  ///< INT32, mA; for GetFlashMaxCurrent
    AECAlgoSetParamSetDiagTestConfig              = 21,  ///< 28 bytes, not read
    AECAlgoSetParamStartUpExpSensitivity          = 22,  ///< AECAlgoStartupIndices; kept
    AECAlgoSetParamStatsCapability                = 23,  ///< ignored
    AECAlgoSetParamCropWindow                     = 24,  ///< StatsRectangle; kept
    AECAlgoSetParamPipelineDelay                  = 25,  ///< UINT8, frames, 0 to 10
    AECAlgoSetParamPeerInfo                       = 26,  ///< StatsPeerInfoCombo
    AECAlgoSetParamDualcamCalibrationInfo         = 27,  ///< AECAlgoDCCalibrationInfo
    AECAlgoSetParamMultiExpSensorMode             = 28,  ///< AECAlgoHDRType
    AECAlgoSetParamIsDualCamera                   = 29,  ///< ignored; see CameraInfo
    AECAlgoSetParamUnstabilizedFaceROI            = 30,  ///< UnstabilizedROIInformation; kept
    AECAlgoSetParamControlPostRawSensitivityBoost = 31,  ///< INT32; ratios count, 100 for none
    AECAlgoSetParamCustomExposureTable            = 32,  ///< ignored
    AECAlgoSetParamCustomMeteringTable            = 33,  ///< ignored
    AECAlgoSetParamDisableADRC                    = 34,  ///< BOOL
    AECAlgoSetParamConvergenceSpeed               = 35,  ///< ignored
    AECAlgoSetParamFlashInlineCalibrationData     = 36,  ///< a blob of GetFICData
    AECAlgoSetParamIsFlashInfluencedStats         = 37,  ///< BOOL
    AECAlgoSetParamFlashInlineCalibrationMode     = 38,  ///< BOOL
    AECAlgoSetParamTrackerROI                     = 39,  ///< UnstabilizedROIInformation; kept
    AECAlgoSetParamframeID                        = 40,  ///< ignored; see runStartOfFrame
    AECAlgoSetParamApertureCalibrationInfo        = 41,  ///< ignored
    AECAlgoSetParamAmbientRaw                     = 42,  ///< ignored
    AECAlgoSetParamSaliencyMapData                = 43,  ///< AECAlgoSaliencyInfo
    AECAlgoSetParamZLLData                        = 44,  ///< ignored
    AECAlgoSetParamMagnetometerInfo               = 45,  ///< ignored
    AECAlgoSetParamLightInfo                      = 46,  ///< StatsLightInfo
    AECAlgoSetParamAFDFrameInfo                   = 47,  ///< ignored
    AECAlgoSetParamBPSCamera                      = 48,  ///< ignored
    AECAlgoSetParamDCGMode                        = 49,  ///< ignored
    AECAlgoSetParamCount                          = 50,  ///< how many there are; ignored
    AECAlgoSetParamMax                            = 51   ///< ignored
};

/// One setting, the host's; needed for the call alone.
struct AECAlgoSetParam
{
    VOID*               pAECSetParam;       ///< payload of the type; null does nothing but move events
    UINT32              sizeOfAECSetParam;  ///< bytes, at least the payload's
    AECAlgoSetParamType setParamType;       ///< type of the payload; a value that is none is ignored
};

/// What the host remembers of precision flash from picture to picture. The record stays the host's; the core keeps the
/// address until it is given another one or null, and reads and writes it while a flash snapshot is metered. Without a
/// record there is no hysteresis.
struct KIROPrecisionFlashHistory
{
    BOOL   sceneDetected;  ///< by the host: 1 if the last picture's scene was one for precision flash
    UINT32 previousReqID;  ///< by the host: request, counted in frames, of the last picture for which it was
    UINT32 curReqID;       ///< by the host: request of this picture; below previousReqID counts as very long after it
    FLOAT  frameFPS;       ///< by the host: frames per second, for the time between the two; 0 and below count as 30
    FLOAT  hysteresis;     ///< by the core: tuned share by which thresholds are relieved, 0 without sceneDetected
};

/// What pSetParam points to.
enum KIROCoreSetParamType : INT32
{
    KIROCorePrecisionFlashHistory = 0,  ///< KIROPrecisionFlashHistory, referred to; null for none
    KIROCoreParamMax              = 1   ///< this and above are logged and ignored, with a result of 0
};

/// One setting in the host's own memory. This record is needed for the call alone.
struct KIROCoreSetParam
{
    KIROCoreSetParamType setParamType;  ///< type of the record
    UINT32               sizeOfParam;   ///< bytes; not read
    VOID*                pSetParam;     ///< stays the host's, and valid until another one takes its place
};

/// Selects the member of the union in KIROSetInput. Any other value does nothing, with a result of 0.
enum KIROSetInputSource : INT32
{
    AECPEKSetParam        = 0,  ///< pPEKInput
    KIROCoreSnapshot      = 1,  ///< snapshotMode
    KIROCoreInternalParam = 2   ///< pKirocoreParam
};

/// The argument of setInput.
///
/// A snapshot is announced behind runStartOfFrame: it marks the frame in progress as a picture; between frames it would
/// mark the preview frame before it. It sets the event of its kind, from AECCoreSnapshotNormal to
/// AECCoreSnapshotAdvanced, and clears the others; as long as one is set, frames are saved as pictures. None, given
/// behind the picture's last frame, ends it. A kind that is none is logged and marks the frame, but sets no event.
struct KIROSetInput
{
    KIROSetInputSource source;  ///< which member of u counts
    union
    {
        AECAlgoSetParam*     pPEKInput;       ///< a setting; null yields ResultFailed
        KIROCoreSnapshotType snapshotMode;    ///< the picture to take; None goes back to preview
        KIROCoreSetParam*    pKirocoreParam;  ///< a record of the host's to refer to; null yields ResultFailed
    } u;                                      ///< what is given
    BOOL bResetFrameSkip;  ///< output: 1 if a host that leaves frames out (kiroskipcontrol) must run the next ones
};
