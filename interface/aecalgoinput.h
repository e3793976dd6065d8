/// @file
/// Settings and sensor data that a host gives to the core, and the record in which the core keeps them.
#pragma once

#include "interface/kiroexposure.h"
#include "platform/tavotypes.h"
#include "schema/kiroenums.h"

enum AECAlgoOperationModeType : INT32
{
    AECAlgoOperationModeInit             = 0,
    AECAlgoOperationModeStreaming        = 1,
    AECAlgoOperationModePreflash         = 2,
    AECAlgoOperationModeFastAEC          = 3,
    AECAlgoOperationModeAggressiveAEC    = 4,
    AECAlgoOperationModeFlashMeasurement = 5,
    AECAlgoOperationModeCount            = 6
};

enum AECAlgoMeteringModeType : INT32
{
    AECAlgoMeteringModeFrameAverage   = 0,
    AECAlgoMeteringModeCenterWeighted = 1,
    AECAlgoMeteringModeSpot           = 2,
    AECAlgoMeteringModeCustom         = 3
};

/// Manual exposure control.
enum AECAlgoModeType : INT32
{
    AECAlgoModeAuto           = 0,
    AECAlgoModeManualISO      = 1,
    AECAlgoModeManualGain     = 2,
    AECAlgoModeManualExpTime  = 3,
    AECAlgoModeManualFull     = 4,
    AECAlgoModeManualAperture = 5
};

enum AECAlgoLockType : INT32
{
    AECAlgoLockOFF = 0,
    AECAlgoLockOn  = 1
};

enum AECAlgoLEDModeType : INT32
{
    AECAlgoLEDModeOff  = 0,
    AECAlgoLEDModeAuto = 1,
    AECAlgoLEDModeOn   = 2
};

enum StatisticsAntibanding : INT32
{
    StatisticsAntibandingInvalid   = -1,
    StatisticsAntibandingOff       = 0,
    StatisticsAntibanding50Hz      = 1,
    StatisticsAntibanding60Hz      = 2,
    StatisticsAntibandingAuto      = 3,
    StatisticsAntibandingAuto_50HZ = 4,
    StatisticsAntibandingAuto_60HZ = 5
};

enum AECAlgoHDRType : INT32
{
    HDRDisabled   = 0,
    ISPHDR        = 1,
    SensorHDR     = 2,
    StaggeredHDR  = 3,
    MultiframeHDR = 4
};

enum AECAlgoFlashMeasKindType : INT32
{
    AECAlgoFlashMeasKindOff    = 0,
    AECAlgoFlashMeasKindCalib  = 1,
    AECAlgoFlashMeasKindTuning = 2
};

/// What kind of snapshot the host is about to take.
enum class KIROCoreSnapshotType : INT32
{
    None             = 0,
    Normal           = 1,
    LLS              = 2,
    Flash            = 3,
    HDR3             = 4,
    PrecisionFlash   = 5,
    ZLL              = 6,
    AdvancedSnapshot = 7,
    SnapshotMax      = 65535
};

enum StatsAlgoRole : INT32
{
    StatsAlgoRoleDefault = 0,
    StatsAlgoRoleMaster  = 1,
    StatsAlgoRoleSlave   = 2,
    StatsAlgoRoleMax     = 3
};

enum AECAlgoStartupMode : INT32
{
    AECAlgoStartupModeDefault = 0,
    AECAlgoStartupModeIndices = 1
};

/// Exposure value setting.
struct EVContext
{
    INT32 evUIVal;   ///< EV steps, as the user set them
    FLOAT evFactor;  ///< exposure factor of that value
};

struct AECAlgoManualSetting
{
    AECAlgoModeType manualMode;
    UINT32          ISOValue;
    UINT64          exposureTime;  ///< ns
    FLOAT           gain;
    FLOAT           FNumber;
};

struct AECAlgoFPSRange
{
    FLOAT maximumFPS;
    FLOAT minimumFPS;
};

/// A rectangle in fractions of the frame, from 0 to 1, with its weight.
struct AECAlgoROI
{
    FLOAT x;
    FLOAT y;
    FLOAT dx;
    FLOAT dy;
    FLOAT weight;
};

/// Touch regions. The list stays the host's and must outlive its use.
struct AECAlgoROIList
{
    AECAlgoROI* ROIs;
    UINT32      ROICount;
};

struct StatsRectangle
{
    UINT32 left;
    UINT32 top;
    UINT32 width;
    UINT32 height;
};

/// Detected or tracked regions, in sensor coordinates, before stabilisation.
constexpr UINT32 UnstabilizedROICountMax = 10;

struct UnstabilizedROI
{
    UINT32         id;
    UINT32         confidence;  ///< percent
    StatsRectangle rect;
};

struct UnstabilizedROIInformation
{
    UINT64          requestId;
    UINT32          roiCount;
    UnstabilizedROI unstabilizedROI[UnstabilizedROICountMax];
};

struct AWBFaceSAAdjustedROI
{
    BOOL  bIsValid;
    FLOAT RGRatio;
    FLOAT BGRatio;
};

struct AECAlgoWhiteBalanceState
{
    BOOL                 isAuto;
    FLOAT                redGain;
    FLOAT                greenGain;
    FLOAT                blueGain;
    UINT32               CCT;  ///< kelvin
    AWBFaceSAAdjustedROI faceSAAdjustedROI;
};

constexpr UINT32 StatsGyroSampleCountMax = 512;

/// Angular speeds of a frame, radians per second.
struct StatsGyroInfo
{
    UINT32 sampleCount;
    UINT64 frameRequest;
    FLOAT  angularVelocityX[StatsGyroSampleCountMax];
    FLOAT  angularVelocityY[StatsGyroSampleCountMax];
    FLOAT  angularVelocityZ[StatsGyroSampleCountMax];
};

struct AECAlgoOverrideSettingParam
{
    BOOL   disableFPS;
    BOOL   disableFlicker;
    BOOL   disableFace;
    BOOL   disableTouch;
    UINT32 profile3A;
    FLOAT  overrideLuma;
    BOOL   disableSpeckleDetection;
};

/// Sensor limits, exposure times in nanoseconds.
struct AECAlgoSensorInfo
{
    FLOAT  fNumber;
    FLOAT  statsWindowAspectRatio;
    FLOAT  minimumStreamGain;
    FLOAT  maximumStreamGain;
    FLOAT  minimumStillGain;
    FLOAT  maximumStillGain;
    UINT64 minimumStreamExpTime;
    UINT64 maximumStreamExpTime;
    UINT64 minimumStillExpTime;
    UINT64 maximumStillExpTime;
    UINT32 sensorResWidth;
    UINT32 sensorResHeight;
    UINT64 rollingShutterSkew;
    UINT64 flashDelay;
    UINT64 minSEFExpTime;
    UINT64 maxSEFExpTime;
    UINT64 minMEFExpTime;
    UINT64 maxMEFExpTime;
    UINT64 minLEFExpTime;
    UINT64 maxLEFExpTime;
};

/// What the sensor driver reports of the running mode.
struct StatsSensorInfo
{
    UINT32 pixelClockPerLine;    ///< pixel clocks per line, blanking included
    DOUBLE pixelClock;           ///< Hz
    UINT32 currentMaxLineCount;  ///< longest exposure of the mode, lines
    FLOAT  minGain;
    FLOAT  maxGain;
    FLOAT  fNumber;
    UINT32 sensorResWidth;
    UINT32 sensorResHeight;
    UINT64 rollingShutterSkew;  ///< ns
};

struct StatsCameraInfo
{
    StatsAlgoRole algoRole;
    UINT32        cameraId;
};

struct AECAlgoStartupIndices
{
    FLOAT              startUpIndices[3];
    AECAlgoStartupMode startMode;
    FLOAT              startUpLuxIndex;
};

/// Factory calibration of one camera module against another. version selects the layout.
struct AECAlgoDCCalibrationInfo
{
    UINT32 version;  ///< 0 relative, otherwise absolute
    union
    {
        struct
        {
            FLOAT  gain;
            UINT16 averageLuma;
            UINT16 exposureTime;
            UINT32 CCT;
        } absolute;
        struct
        {
            FLOAT  brightnessRatio;
            FLOAT  slaveGain;
            FLOAT  slaveExposureTime;
            FLOAT  masterGain;
            FLOAT  masterExposureTime;
            UINT32 CCT;
        } relative;
    } u;
};

/// Colour ratios of the flash table's entries. As input the arrays are the host's; at most
/// AECAlgoFlashCalibrationCountMax entries.
struct AECAlgoFlashCalibrationData
{
    UINT32 count;
    FLOAT* pRGRatios;
    FLOAT* pBGRatios;
};

constexpr UINT32 AECAlgoFlashCalibrationCountMax = 96;

struct AECAlgoSaliencyInfo
{
    UINT64 requestID;
    UINT8  mapWidth;
    UINT8  mapHeight;
};

/// Reading of an ambient light sensor.
struct StatsLightInfo
{
    BOOL  enabled;
    FLOAT lux;
};

/// The peers of a multi-camera group. peerInfo is read by pointer, unsynchronised.
constexpr UINT32 StatsPeerCountMax = 4;

struct StatsPeerInfoCombo
{
    BOOL          needSync;
    BOOL          isActive[StatsPeerCountMax];
    UINT32        cameraId[StatsPeerCountMax];
    StatsAlgoRole algoRole[StatsPeerCountMax];
    VOID*         peerInfo[StatsPeerCountMax];
};

/// All host settings, as the modules of the core read them.
struct SetInputData
{
    AECAlgoOperationModeType    opMode;
    AECAlgoMeteringModeType     mtrMode;
    EVContext                   evContext;
    StatisticsAntibanding       flickerComp;
    AECAlgoManualSetting        manualSetting;
    AECAlgoLockType             lockType;
    AECAlgoFPSRange             FPSRange;
    AECAlgoLEDModeType          LEDMode;
    AECAlgoROIList              touchROI;
    UnstabilizedROIInformation  faceROI;
    UnstabilizedROIInformation  trackerROI;
    BOOL                        bIsSaliencyInfoValid;
    AECAlgoWhiteBalanceState    AWBState;
    StatsGyroInfo               gyro;
    AECAlgoOverrideSettingParam overrideSetting;
    AECAlgoSensorInfo           sensorInfo;
    StatsCameraInfo             cameraInfo;
    INT32                       maxLEDCurrent;
    AECAlgoStartupIndices       startUpExpInfo;
    StatsRectangle              cropWindow;
    UINT8                       systemLatency;  ///< frames from a decision to its statistics
    VOID*                       pPeerInfo;      ///< the peer's, not owned
    AECAlgoDCCalibrationInfo    DCCalibrationInfo;
    BOOL                        b3HDRMode;
    AECAlgoHDRType              HDRType;
    INT32                       postRawGain;
    UINT8                       postRawCounter;
    BOOL                        bIsDebugDataEnabled;
    BOOL                        bIsFullFlash;
    BOOL                        bIsFICMode;
    AECAlgoFlashMeasKindType    flashMeasurementType;
    AECAlgoFlashCalibrationData flashCalibData;
    KIROCoreSnapshotType        snapshotMode;
    BOOL                        bDisableADRC;
    BOOL                        bLockMetering;
    StatsLightInfo              lightInfo;
};
