/// @file
/// What the host wants: settings of the user and of the application, given to the core through setInput.
#pragma once

#include "platform/tavotypes.h"
#include "schema/tuningrecord.h"

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

/// Payload of AECAlgoSetParamManualSetting. The core reads manualMode; the others it compares, to notice a change.
struct AECAlgoManualSetting
{
    AECAlgoModeType manualMode;    ///< which of the values count
    UINT32          ISOValue;      ///< ISO; the reference host takes 100 for unity gain
    UINT64          exposureTime;  ///< ns
    FLOAT           gain;          ///< linear
    FLOAT           FNumber;       ///< f-number; a change of it alone is not noticed
};
TUNING_RECORD(AECAlgoManualSetting)
    NUMBER(manualMode)
    MEMBER(ISOValue)
    MEMBER(exposureTime)
    MEMBER(gain)
    MEMBER(FNumber)
TUNING_RECORD_END

/// Payload of AECAlgoSetParamFPSRange. No stage of the core reads it: the host bounds exposure times by it in its
/// arbitration.
struct AECAlgoFPSRange
{
    FLOAT maximumFPS;  ///< frames per second
    FLOAT minimumFPS;  ///< frames per second
};
TUNING_RECORD(AECAlgoFPSRange)
    MEMBER(maximumFPS)
    MEMBER(minimumFPS)
TUNING_RECORD_END

/// A rectangle in fractions of the frame, from 0 to 1.
struct AECAlgoROI
{
    FLOAT x;       ///< left edge
    FLOAT y;       ///< upper edge
    FLOAT dx;      ///< width
    FLOAT dy;      ///< height
    FLOAT weight;  ///< read by no stage
};
TUNING_RECORD(AECAlgoROI)
    MEMBER(x)
    MEMBER(y)
    MEMBER(dx)
    MEMBER(dy)
    MEMBER(weight)
TUNING_RECORD_END

/// Payload of AECAlgoSetParamTouchROI. A count above 0 sets the event AECTouch, 0 clears it. The address of the list is
/// kept and not followed: a touched part is metered by being put into the bank of regions under the ID that the tuning
/// meters there.
struct AECAlgoROIList
{
    AECAlgoROI* ROIs;      ///< the host's
    UINT32      ROICount;  ///< entries of ROIs
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
TUNING_RECORD(AECAlgoOverrideSettingParam)
    MEMBER(disableFPS)
    MEMBER(disableFlicker)
    MEMBER(disableFace)
    MEMBER(disableTouch)
    MEMBER(profile3A)
    MEMBER(overrideLuma)
    MEMBER(disableSpeckleDetection)
TUNING_RECORD_END

/// Payload of AECAlgoSetParamStartUpExpSensitivity. Stored; no stage of the core reads it: exposures to start with come
/// from GetStartUpExposure and the host.
struct AECAlgoStartupIndices
{
    FLOAT              startUpIndices[3];  ///< by AECAlgoExposureType
    AECAlgoStartupMode startMode;          ///< whether the indices count
    FLOAT              startUpLuxIndex;    ///< lux index to start with
};
TUNING_RECORD(AECAlgoStartupIndices)
    MEMBER(startUpIndices)
    NUMBER(startMode)
    MEMBER(startUpLuxIndex)
TUNING_RECORD_END
