/// @file
/// The argument of setInput.
#pragma once

#include "interface/aecalgoinput.h"
#include "interface/kirofic.h"
#include "interface/statstuningdata.h"
#include "schema/tuningrecord.h"

/// What pAECSetParam points to. The payload is read during the call and copied. One that is smaller than its type is
/// logged and yields ResultFailed, with nothing stored; a null one yields 0 with nothing stored, and so does a type
/// that is ignored. The payload's record or enumeration (interface/aecalgosettings.h, interface/aecalgosensordata.h)
/// says what the setting does, which memory behind it is read later, and which contents are refused; what holds before
/// a setting is given stands at SetInputData. "Kept" settings are stored, and no stage reads them.
///
/// A setting moves its events (KIROTunaraEventType) at each call, by the value that then stands, also where the payload
/// was refused or has changed nothing. bResetFrameSkip becomes 1 with a change of MeteringMode, ExposureCompensation,
/// FlickerCompensation, ManualSetting, AECLock, FPSRange, MultiExpSensorMode, ControlPostRawSensitivityBoost or
/// DisableADRC, of the role in CameraInfo, and of the count in TouchROI, UnstabilizedFaceROI and TrackerROI.
///
/// Of those whose payload is a number, or whose effect no record tells:
///
/// - TunaraData rebuilds the data banks: entries of the host in tuned banks are gone and must be set again, value banks
///   keep their values. Stages take the new records at their next use; but inline calibration keeps those of the
///   creation, and the role of CameraInfo its way to meter and to expose until it changes. Of a mode that cannot be
///   read any more the path before stays, with a log. The result is 0. Event AECHybridHDR, by the tuning.
///   docs/integration.md says when.
/// - ExposureCompensation multiplies the targets in convergence, which takes them in one frame. A value beyond the
///   tuned range is logged; it is kept, but acts as the end of the range. Event AECEV, while it is not 0.
/// - FlashMaximumCurrent stands until the next getFlashCurrent, which puts the largest tuned current in its place.
/// - PipelineDelay: frames from a decision to the statistics that show it. Above 10 no frame is found, and none
///   metered.
/// - PeerInfo goes by the role, so CameraInfo comes first.
/// - ControlPostRawSensitivityBoost: for a pipeline delay the exposures make up for the change, so that the picture
///   stays as bright as it was, except in full manual mode.
/// - DisableADRC makes the short and the long target that of safe. The size is not tested.
/// - FlashInlineCalibrationData: interface/kirofic.h has the layout. It is read as far as its own counts say, whatever
///   the size.
/// - IsFlashInfluencedStats tells, until it is 0 again, that the statistics show the main flash, for inline
///   calibration.
/// - FlashInlineCalibrationMode lets runExtension learn and getFlashCurrent apply what it has learned. Each call takes
///   the number of knees from the tuned table.
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
    AECAlgoSetParamTouchROI                       = 10,  ///< AECAlgoROIList
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
    AECAlgoSetParamPipelineDelay                  = 25,  ///< UINT8, frames, 1 to 10
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
    AECAlgoSetParamCount                          = 50,  ///< how many there are: new types go before it; ignored
    AECAlgoSetParamMax                            = 51   ///< above all types; ignored
};

/// The settings that the core takes, by their names without AECAlgoSetParam, each with its payload: SETTING(type,
/// payload) is refused if sizeOfAECSetParam is
/// below the payload's size, UNSIZED(type, payload) goes by its content alone, and of UNREAD(type, bytes) only that
/// size is checked. Types that are not listed are ignored. docs/architecture.md of the sources has the places of
/// a new setting.
#define AEC_SET_PARAMS(SETTING, UNSIZED, UNREAD)                                                                       \
    SETTING(OperationMode, AECAlgoOperationModeType)                                                                   \
    SETTING(TunaraData, StatsTuningData)                                                                               \
    SETTING(MeteringMode, AECAlgoMeteringModeType)                                                                     \
    SETTING(ExposureCompensation, INT32)                                                                               \
    SETTING(FlickerCompensation, StatisticsAntibanding)                                                                \
    SETTING(ManualSetting, AECAlgoManualSetting)                                                                       \
    SETTING(AECLock, AECAlgoLockType)                                                                                  \
    SETTING(FPSRange, AECAlgoFPSRange)                                                                                 \
    SETTING(LEDMode, AECAlgoLEDModeType)                                                                               \
    SETTING(TouchROI, AECAlgoROIList)                                                                                  \
    SETTING(AWBState, AECAlgoWhiteBalanceState)                                                                        \
    SETTING(GyroInfo, StatsGyroInfo)                                                                                   \
    SETTING(OverrideSetting, AECAlgoOverrideSettingParam)                                                              \
    SETTING(FlashMeasurement, AECAlgoFlashMeasKindType)                                                                \
    SETTING(FlashCalibrationData, AECAlgoFlashCalibrationData)                                                         \
    SETTING(DebugDataEnable, BOOL)                                                                                     \
    SETTING(SensorInfo, StatsSensorInfo)                                                                               \
    SETTING(CameraInfo, StatsCameraInfo)                                                                               \
    SETTING(FlashMaximumCurrent, INT32)                                                                                \
    UNREAD(SetDiagTestConfig, 28)                                                                                      \
    SETTING(StartUpExpSensitivity, AECAlgoStartupIndices)                                                              \
    SETTING(CropWindow, StatsRectangle)                                                                                \
    SETTING(PipelineDelay, UINT8)                                                                                      \
    SETTING(PeerInfo, StatsPeerInfoCombo)                                                                              \
    SETTING(DualcamCalibrationInfo, AECAlgoDCCalibrationInfo)                                                          \
    SETTING(MultiExpSensorMode, AECAlgoHDRType)                                                                        \
    SETTING(UnstabilizedFaceROI, UnstabilizedROIInformation)                                                           \
    SETTING(ControlPostRawSensitivityBoost, INT32)                                                                     \
    UNSIZED(DisableADRC, BOOL)                                                                                         \
    UNSIZED(FlashInlineCalibrationData, KIROFICBlobHead)                                                               \
    SETTING(IsFlashInfluencedStats, BOOL)                                                                              \
    SETTING(FlashInlineCalibrationMode, BOOL)                                                                          \
    SETTING(TrackerROI, UnstabilizedROIInformation)                                                                    \
    SETTING(SaliencyMapData, AECAlgoSaliencyInfo)                                                                      \
    SETTING(LightInfo, StatsLightInfo)

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
TUNING_RECORD(KIROPrecisionFlashHistory)
    MEMBER(sceneDetected)
    MEMBER(previousReqID)
    MEMBER(curReqID)
    MEMBER(frameFPS)
    MEMBER(hysteresis)
TUNING_RECORD_END

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
