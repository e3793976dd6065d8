/// @file
/// What the host knows: data of sensor, flash, frame and other cameras, given to the core through setInput.
#pragma once

#include <cstddef>

#include "interface/aecalgosettings.h"
#include "platform/tavotypes.h"
#include "schema/tuningrecord.h"

/// A rectangle in pixels.
struct StatsRectangle
{
    UINT32 left;    ///< first column
    UINT32 top;     ///< first row
    UINT32 width;   ///< columns
    UINT32 height;  ///< rows
};
TUNING_RECORD(StatsRectangle)
    MEMBER(left)
    MEMBER(top)
    MEMBER(width)
    MEMBER(height)
TUNING_RECORD_END

/// Entries of UnstabilizedROIInformation; a record that counts more is refused with ResultFailed.
constexpr UINT32 UnstabilizedROICountMax = 10;

/// A detected or tracked region, in sensor coordinates, before stabilisation.
struct UnstabilizedROI
{
    UINT32         id;          ///< of the detected object, the host's
    UINT32         confidence;  ///< percent
    StatsRectangle rect;        ///< sensor pixels
};
TUNING_RECORD(UnstabilizedROI)
    MEMBER(id)
    MEMBER(confidence)
    MEMBER(rect)
TUNING_RECORD_END

/// Payload of AECAlgoSetParamUnstabilizedFaceROI (faces) and AECAlgoSetParamTrackerROI. Stored; no stage of the core
/// reads the regions, and the event AECFace is the host's to set.
struct UnstabilizedROIInformation
{
    UINT64          requestId;                                 ///< frame in which the regions were found
    UINT32          roiCount;                                  ///< entries of unstabilizedROI in use
    UnstabilizedROI unstabilizedROI[UnstabilizedROICountMax];  ///< the first roiCount
};
TUNING_RECORD(UnstabilizedROIInformation)
    MEMBER(requestId)
    MEMBER(roiCount)
    MEMBER(unstabilizedROI)
TUNING_RECORD_END

/// Colour of a face as the white balance sees it. Stored with AECAlgoWhiteBalanceState; no stage of the core reads it.
struct AWBFaceSAAdjustedROI
{
    BOOL  bIsValid;  ///< whether the ratios were measured
    FLOAT RGRatio;   ///< red over green
    FLOAT BGRatio;   ///< blue over green
};
TUNING_RECORD(AWBFaceSAAdjustedROI)
    MEMBER(bIsValid)
    MEMBER(RGRatio)
    MEMBER(BGRatio)
TUNING_RECORD_END

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
TUNING_RECORD(AECAlgoWhiteBalanceState)
    MEMBER(isAuto)
    MEMBER(redGain)
    MEMBER(greenGain)
    MEMBER(blueGain)
    MEMBER(CCT)
    MEMBER(faceSAAdjustedROI)
TUNING_RECORD_END

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
TUNING_RECORD(StatsGyroInfo)
    MEMBER(sampleCount)
    MEMBER(frameRequest)
    MEMBER(angularVelocityX)
    MEMBER(angularVelocityY)
    MEMBER(angularVelocityZ)
TUNING_RECORD_END

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
TUNING_RECORD(StatsSensorInfo)
    MEMBER(pixelClockPerLine)
    MEMBER(pixelClock)
    MEMBER(currentMaxLineCount)
    MEMBER(minGain)
    MEMBER(maxGain)
    MEMBER(fNumber)
    MEMBER(sensorResWidth)
    MEMBER(sensorResHeight)
    MEMBER(rollingShutterSkew)
TUNING_RECORD_END

/// Payload of AECAlgoSetParamCameraInfo: which camera of a group this is.
struct StatsCameraInfo
{
    StatsAlgoRole algoRole;  ///< a new one selects sync anew; without sync tuning the former way stays
    UINT32        cameraId;  ///< the host's, other than 0: a tuned priority of slaves passes over 0
};
TUNING_RECORD(StatsCameraInfo)
    NUMBER(algoRole)
    MEMBER(cameraId)
TUNING_RECORD_END

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
/// The longer of the two layouts covers the other: both are numbers of four bytes or pairs of two.
TUNING_RECORD(AECAlgoDCCalibrationInfo)
    MEMBER(version)
    tuning::Row{tuning::DescribeMember<UINT32[6]>("values", offsetof(Record, u))},
TUNING_RECORD_END

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
TUNING_RECORD(AECAlgoSaliencyInfo)
    MEMBER(requestID)
    MEMBER(mapWidth)
    MEMBER(mapHeight)
TUNING_RECORD_END

/// Payload of AECAlgoSetParamLightInfo: reading of an ambient light sensor, for start exposures.
struct StatsLightInfo
{
    BOOL  enabled;  ///< 0: there is no reading, and the source is refused
    FLOAT lux;      ///< lux
};
TUNING_RECORD(StatsLightInfo)
    MEMBER(enabled)
    MEMBER(lux)
TUNING_RECORD_END

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
TUNING_RECORD(StatsPeerInfoCombo)
    MEMBER(needSync)
    MEMBER(isActive)
    MEMBER(cameraId)
    NUMBER(algoRole)
    ADDRESS(peerInfo)
TUNING_RECORD_END
