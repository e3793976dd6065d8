/// @file
/// Settings and sensor data that a host gives to the core through setInput, and the record in which the core keeps
/// them.
///
/// setInput copies a payload; what the payload points to stays where its record says. What holds before the host has
/// said anything stands at the members of SetInputData.
#pragma once

#include "interface/kiroexposure.h"
#include "platform/tavotypes.h"
#include "schema/kiroenums.h"

/// The phase of the camera's work. It sets the event bit of its name, by which tuning is selected.
///
/// A mode is a history of frames. Setting one, even the same again, forgets the frames and the start configuration of
/// the mode before: until a start frame (runEndOfFrame with bStartup) no frame is metered. Only leaving FastAEC or
/// AggressiveAEC for another mode than Init keeps both. The last frame of these two and of Streaming stays known as
/// that of the previous mode, for GetStartUpExposure.
enum AECAlgoOperationModeType : INT32
{
    AECAlgoOperationModeInit             = 0,  ///< forgets the running history; the previous mode stays as it was
    AECAlgoOperationModeStreaming        = 1,  ///< preview; the only mode that takes an AEC lock
    AECAlgoOperationModePreflash         = 2,  ///< under the low LED; the newest frame becomes the one without LED
    AECAlgoOperationModeFastAEC          = 3,  ///< first frames of a session
    AECAlgoOperationModeAggressiveAEC    = 4,  ///< as FastAEC, tuned by an event of its own
    AECAlgoOperationModeFlashMeasurement = 5,  ///< its event is that of AECAlgoFlashMeasKindType
    AECAlgoOperationModeCount            = 6   ///< no mode: this and any other value is logged and leaves the mode
};

/// The user's metering mode. Which weights meter a frame is up to the tuning; the mode is read where the weights of a
/// flash snapshot are made: CenterWeighted multiplies them by the tuned base table, any other mode leaves the base out.
enum AECAlgoMeteringModeType : INT32
{
    AECAlgoMeteringModeFrameAverage   = 0,  ///< the whole frame evenly
    AECAlgoMeteringModeCenterWeighted = 1,  ///< the centre more than the edges
    AECAlgoMeteringModeSpot           = 2,  ///< a small part of the frame
    AECAlgoMeteringModeCustom         = 3   ///< weights of the host's own
};

/// Manual exposure control. The mode sets context events; the values take effect where the host puts them into the
/// ranges of its arbitration. In any mode but Auto no low-light snapshot is asked for.
enum AECAlgoModeType : INT32
{
    AECAlgoModeAuto           = 0,  ///< no manual value
    AECAlgoModeManualISO      = 1,  ///< event AECManualISO
    AECAlgoModeManualGain     = 2,  ///< event AECManualISO
    AECAlgoModeManualExpTime  = 3,  ///< event AECManualTime
    AECAlgoModeManualFull     = 4,  ///< event AECManualFull: targets are taken over at once; no start exposures of it
    AECAlgoModeManualAperture = 5   ///< no event
};

/// Whether the exposure is held. Taken in operation mode Streaming only, elsewhere logged and ignored. A lock raises
/// the event AECManualISO and its end clears AECLock: the two are no pair, and no setting raises AECLock.
enum AECAlgoLockType : INT32
{
    AECAlgoLockOFF = 0,  ///< exposures follow the scene
    AECAlgoLockOn  = 1   ///< the exposures of the frame before the lock stand, with the present EV applied to them
};

/// The user's flash mode, read by the flags for capture decisions.
enum AECAlgoLEDModeType : INT32
{
    AECAlgoLEDModeOff  = 0,  ///< no flash, no LED for autofocus
    AECAlgoLEDModeAuto = 1,  ///< by the lux index
    AECAlgoLEDModeOn   = 2   ///< always
};

/// Which mains frequency must not show as bands. In the two definite modes metering may pull the short exposure to one
/// without bands; the grid of exposure times is applied by flicker controls of the arbitration, which the host runs.
enum StatisticsAntibanding : INT32
{
    StatisticsAntibandingInvalid   = -1,  ///< stored as it is, acts as Off
    StatisticsAntibandingOff       = 0,   ///< no pull of the short exposure
    StatisticsAntibanding50Hz      = 1,   ///< light that flickers at 100 Hz
    StatisticsAntibanding60Hz      = 2,   ///< light that flickers at 120 Hz
    StatisticsAntibandingAuto      = 3,   ///< ignored by setInput: the last definite mode stays
    StatisticsAntibandingAuto_50HZ = 4,   ///< found by a detector; acts as Off on the short exposure
    StatisticsAntibandingAuto_60HZ = 5    ///< found by a detector; acts as Off on the short exposure
};

/// How a picture of high dynamic range comes about, with the event that is set.
enum AECAlgoHDRType : INT32
{
    HDRDisabled   = 0,  ///< one exposure; AECHDRTypeDisabled
    ISPHDR        = 1,  ///< by the image signal processor; AECHDRTypeISPHDR
    SensorHDR     = 2,  ///< three exposures within one frame of the sensor; AECHDRTypeSensorHDR
    StaggeredHDR  = 3,  ///< exposures that follow one another line by line; AECHDRTypeSHDR2
    MultiframeHDR = 4   ///< exposures of several frames; AECHDRTypeMFHDR, which stays set once it was
};

/// What a flash measurement is for. Each but Off sets the event of its name.
enum AECAlgoFlashMeasKindType : INT32
{
    AECAlgoFlashMeasKindOff    = 0,  ///< none; in operation mode FlashMeasurement it counts as Tuning
    AECAlgoFlashMeasKindCalib  = 1,  ///< factory calibration: targets are taken over at once
    AECAlgoFlashMeasKindTuning = 2   ///< measurement of LED mixes for a tuning
};

/// What kind of snapshot the host is about to take, by setInput with source KIROCoreSnapshot. A kind sets its event and
/// clears those of the others; the frame in progress counts as a snapshot. While the event is set, runEndOfFrame keeps
/// frames apart from the preview's. Any other value than these clears all events and is logged.
enum class KIROCoreSnapshotType : INT32
{
    None             = 0,     ///< no snapshot: back to preview
    Normal           = 1,     ///< a picture without more; also the frames of a bracket
    LLS              = 2,     ///< low-light snapshot
    Flash            = 3,     ///< metering goes by the flash frames of the preflash instead of the history
    HDR3             = 4,     ///< three exposures: targets are taken over at once
    PrecisionFlash   = 5,     ///< one exposure, lit by the LED for a part of it
    ZLL              = 6,     ///< ZLL snapshot
    AdvancedSnapshot = 7,     ///< free for tuning
    SnapshotMax      = 65535  ///< no kind
};

/// Part of a camera in a group of cameras. It selects how the camera mixes or follows exposures, from the tuning.
enum StatsAlgoRole : INT32
{
    StatsAlgoRoleDefault = 0,  ///< alone: takes no peer, mixes and follows nothing
    StatsAlgoRoleMaster  = 1,  ///< leads; may mix its targets with a slave's
    StatsAlgoRoleSlave   = 2,  ///< takes a master for its peer; event AECSlaveRole
    StatsAlgoRoleMax     = 3   ///< number of roles, no role
};

/// How a session starts. Stored; no stage of the core reads it.
enum AECAlgoStartupMode : INT32
{
    AECAlgoStartupModeDefault = 0,  ///< by the core's sources
    AECAlgoStartupModeIndices = 1   ///< by the indices of the record
};

/// The user's exposure compensation, kept by AECAlgoSetParamExposureCompensation.
struct EVContext
{
    INT32 evUIVal;   ///< EV steps as the user set them, 0 for none; also beyond the tuned range
    FLOAT evFactor;  ///< linear exposure factor of that value, cut to the tuned range
};

/// Payload of AECAlgoSetParamManualSetting. The core reads manualMode; the others it compares, to notice a change.
struct AECAlgoManualSetting
{
    AECAlgoModeType manualMode;    ///< which of the values count
    UINT32          ISOValue;      ///< ISO; the reference host takes 100 for unity gain
    UINT64          exposureTime;  ///< ns
    FLOAT           gain;          ///< linear
    FLOAT           FNumber;       ///< f-number; a change of it alone is not noticed
};

/// Payload of AECAlgoSetParamFPSRange. No stage of the core reads it: the host bounds exposure times by it in its
/// arbitration.
struct AECAlgoFPSRange
{
    FLOAT maximumFPS;  ///< frames per second
    FLOAT minimumFPS;  ///< frames per second
};

/// A rectangle in fractions of the frame, from 0 to 1.
struct AECAlgoROI
{
    FLOAT x;       ///< left edge
    FLOAT y;       ///< upper edge
    FLOAT dx;      ///< width
    FLOAT dy;      ///< height
    FLOAT weight;  ///< read by no stage
};

/// Payload of AECAlgoSetParamTouchROI. A count above 0 sets the event AECTouch, 0 clears it. The address of the list is
/// kept and not followed: a touched part is metered by being put into the bank of regions under the ID that the tuning
/// meters there.
struct AECAlgoROIList
{
    AECAlgoROI* ROIs;      ///< the host's
    UINT32      ROICount;  ///< entries of ROIs
};

/// A rectangle in pixels.
struct StatsRectangle
{
    UINT32 left;    ///< first column
    UINT32 top;     ///< first row
    UINT32 width;   ///< columns
    UINT32 height;  ///< rows
};

/// Entries of UnstabilizedROIInformation; a record that counts more is refused with ResultFailed.
constexpr UINT32 UnstabilizedROICountMax = 10;

/// A detected or tracked region, in sensor coordinates, before stabilisation.
struct UnstabilizedROI
{
    UINT32         id;          ///< of the detected object, the host's
    UINT32         confidence;  ///< percent
    StatsRectangle rect;        ///< sensor pixels
};

/// Payload of AECAlgoSetParamUnstabilizedFaceROI (faces) and AECAlgoSetParamTrackerROI. Stored; no stage of the core
/// reads the regions, and the event AECFace is the host's to set.
struct UnstabilizedROIInformation
{
    UINT64          requestId;                                 ///< frame in which the regions were found
    UINT32          roiCount;                                  ///< entries of unstabilizedROI in use
    UnstabilizedROI unstabilizedROI[UnstabilizedROICountMax];  ///< the first roiCount
};

/// Colour of a face as the white balance sees it. Stored with AECAlgoWhiteBalanceState; no stage of the core reads it.
struct AWBFaceSAAdjustedROI
{
    BOOL  bIsValid;  ///< whether the ratios were measured
    FLOAT RGRatio;   ///< red over green
    FLOAT BGRatio;   ///< blue over green
};

/// Payload of AECAlgoSetParamAWBState: what the white balance has found. The record is taken when isAuto, a gain or CCT
/// has changed. Extreme colours and inline calibration read the gains: neutral is greenGain / redGain in R/G and
/// greenGain / blueGain in B/G. Exposures of a group read CCT.
struct AECAlgoWhiteBalanceState
{
    BOOL                 isAuto;             ///< 0 for a white balance that the user has set; compared only
    FLOAT                redGain;            ///< linear, above 0
    FLOAT                greenGain;          ///< linear, above 0
    FLOAT                blueGain;           ///< linear, above 0
    UINT32               CCT;                ///< kelvin
    AWBFaceSAAdjustedROI faceSAAdjustedROI;  ///< a change of it alone is not noticed
};

/// Samples of a StatsGyroInfo; a record that counts more is refused with ResultFailed.
constexpr UINT32 StatsGyroSampleCountMax = 512;

/// Payload of AECAlgoSetParamGyroInfo: angular speeds during a frame. Stored; no stage of the core reads it. What a
/// tuning does with motion comes from the trigger TriggerCtrlGyro and from run1DVectorProcess.
struct StatsGyroInfo
{
    UINT32 sampleCount;                                ///< entries of each array in use
    UINT64 frameRequest;                               ///< frame of the samples
    FLOAT  angularVelocityX[StatsGyroSampleCountMax];  ///< radians per second
    FLOAT  angularVelocityY[StatsGyroSampleCountMax];  ///< radians per second
    FLOAT  angularVelocityZ[StatsGyroSampleCountMax];  ///< radians per second
};

/// Payload of AECAlgoSetParamOverrideSetting. The record is taken when one of the first four flags or profile3A has
/// changed: another member alone goes unnoticed. The core reads disableSpeckleDetection.
struct AECAlgoOverrideSettingParam
{
    BOOL   disableFPS;               ///< compared only
    BOOL   disableFlicker;           ///< compared only
    BOOL   disableFace;              ///< compared only
    BOOL   disableTouch;             ///< compared only
    UINT32 profile3A;                ///< compared only
    FLOAT  overrideLuma;             ///< read by no stage
    BOOL   disableSpeckleDetection;  ///< other than 0: flash snapshots do not screen out mirrored LEDs
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

/// Payload of AECAlgoSetParamSensorInfo: what the sensor driver reports of the running mode. A line lasts
/// pixelClockPerLine / pixelClock seconds.
struct StatsSensorInfo
{
    UINT32 pixelClockPerLine;    ///< pixel clocks per line, blanking included
    DOUBLE pixelClock;           ///< Hz
    UINT32 currentMaxLineCount;  ///< longest exposure of the mode, lines
    FLOAT  minGain;              ///< linear
    FLOAT  maxGain;              ///< linear
    FLOAT  fNumber;              ///< f-number of the lens
    UINT32 sensorResWidth;       ///< pixels
    UINT32 sensorResHeight;      ///< pixels
    UINT64 rollingShutterSkew;   ///< from the first to the last line, ns
};

/// Payload of AECAlgoSetParamCameraInfo: which camera of a group this is.
struct StatsCameraInfo
{
    StatsAlgoRole algoRole;  ///< a new one selects sync anew; without sync tuning the former way stays
    UINT32        cameraId;  ///< the host's, other than 0: a tuned priority of slaves passes over 0
};

/// Payload of AECAlgoSetParamStartUpExpSensitivity. Stored; no stage of the core reads it: exposures to start with come
/// from GetStartUpExposure and the host.
struct AECAlgoStartupIndices
{
    FLOAT              startUpIndices[3];  ///< by AECAlgoExposureType
    AECAlgoStartupMode startMode;          ///< whether the indices count
    FLOAT              startUpLuxIndex;    ///< lux index to start with
};

/// Payload of AECAlgoSetParamDualcamCalibrationInfo: factory calibration of one camera module against another. The
/// first usable one counts for the life of the instance; one with a value of 0 or below is logged and leaves it open.
/// Times may be in any unit, as long as it is the same for both modules.
struct AECAlgoDCCalibrationInfo
{
    UINT32 version;  ///< 0: relative; any other: absolute
    /// The layout that version selects.
    union
    {
        /// One module by itself. Its exposure factor is gain * exposureTime / averageLuma.
        struct
        {
            FLOAT  gain;          ///< linear
            UINT16 averageLuma;   ///< that gain and time gave
            UINT16 exposureTime;  ///< of the measurement
            UINT32 CCT;           ///< kelvin; logged only
        } absolute;               ///< for a version other than 0
        /// Two modules before one scene. The factor is the slave's gain and time over the master's, divided by
        /// brightnessRatio.
        struct
        {
            FLOAT  brightnessRatio;     ///< of slave over master at these exposures
            FLOAT  slaveGain;           ///< linear
            FLOAT  slaveExposureTime;   ///< of the measurement
            FLOAT  masterGain;          ///< linear
            FLOAT  masterExposureTime;  ///< of the measurement
            UINT32 CCT;                 ///< kelvin; logged only
        } relative;                     ///< for version 0
    } u;                                ///< read as version says
};

/// Payload of AECAlgoSetParamFlashCalibrationData, and answer of GetFlashCalibInfo: colours that the factory measured
/// of LED mixes, one entry per calibrated mix of the tuned flash table, in its order. setInput copies the values. What
/// GetFlashCalibInfo answers points to the core's copy, valid until the next such setting or the end of the instance.
struct AECAlgoFlashCalibrationData
{
    UINT32 count;      ///< 0 for no calibration; above AECAlgoFlashCalibrationCountMax refused with ResultFailed
    FLOAT* pRGRatios;  ///< red over green, count values; null only for a count of 0
    FLOAT* pBGRatios;  ///< blue over green, count values; null only for a count of 0
};

/// Entries of AECAlgoFlashCalibrationData.
constexpr UINT32 AECAlgoFlashCalibrationCountMax = 96;

/// Payload of AECAlgoSetParamSaliencyMapData. The event AECSaliency is set while both sides of the map are above 0. The
/// map itself goes into the bank of two-dimensional weights, by setBankData.
struct AECAlgoSaliencyInfo
{
    UINT64 requestID;  ///< frame of the map; read by no stage
    UINT8  mapWidth;   ///< cells
    UINT8  mapHeight;  ///< cells
};

/// Payload of AECAlgoSetParamLightInfo: reading of an ambient light sensor, for start exposures.
struct StatsLightInfo
{
    BOOL  enabled;  ///< 0: there is no reading, and the source is refused
    FLOAT lux;      ///< lux
};

/// Entries of StatsPeerInfoCombo.
constexpr UINT32 StatsPeerCountMax = 4;

/// Payload of AECAlgoSetParamPeerInfo: the cameras of a group, among which may be the camera itself. Index = camera. A
/// slave takes the first active master for its peer; a master goes by its tuned priority, or without one takes the
/// first other active camera. If none fits, the peer of before stays, and its address with it: see docs/integration.md
/// for how cameras end.
struct StatsPeerInfoCombo
{
    BOOL          needSync;                     ///< other than 1: nothing changes
    BOOL          isActive[StatsPeerCountMax];  ///< 1 for an entry in use
    UINT32        cameraId[StatsPeerCountMax];  ///< as the cameras were told, see StatsCameraInfo
    StatsAlgoRole algoRole[StatsPeerCountMax];  ///< present roles
    /// Addresses of the cameras' AECMultiCamInfo, from their queries AECAlgoGetParamPeerInfo. Read in each frame,
    /// without synchronisation.
    VOID* peerInfo[StatsPeerCountMax];
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
