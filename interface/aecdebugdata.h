/// @file
/// The debug data of one frame: a byte-packed record that the host keeps for offline tools, so that its layout is part
/// of the format. The host owns it and hands it out by IKIRODebugData; each stage writes its part while
/// IsDebugDataEnabled, and the host takes a copy after runEndOfFrame.
///
/// Fields are the last ones written: a part whose stage did not run holds an older frame. Truth values are 0 and 1 in
/// one byte; reserved bytes stay zero in a record that was zero at first. Arrays of three are indexed by
/// AECAlgoExposureType. Exposures are ns times linear gain, gains linear, indices and log values steps of 3 percent.
/// Names are cut or filled with zeros to AECDebugNameLength.
///
/// Members are not aligned: read and write them by value, never through a pointer or reference to the member's type.
#pragma once

#include <cstddef>

#include "interface/aecdebugmetering.h"
#include "platform/tavotypes.h"

#pragma pack(push, 1)

constexpr UINT32 AECDebugPastFrameCount   = 20;   ///< frames of a history
constexpr UINT32 AECDebugWeightTableSize  = 256;  ///< 16 x 16 weights, row-major
constexpr UINT32 AECDebugFlashRowCountMax = 6;    ///< one more than the rows that are recorded

/// An exposure, see KIROExposureSetType.
struct FrameExposureInfoType
{
    FLOAT  gain;      ///< linear
    UINT64 time;      ///< ns
    FLOAT  indx;      ///< index
    FLOAT  corr;      ///< factor of the exposure table
    UINT64 exposure;  ///< gain * time * corr
    UINT32 ISO;       ///< the host's
};

/// A frame as the history keeps it.
struct FrameHistoryInfoType
{
    UINT32                frameID;                  ///< low 32 bits
    UINT8                 isStartConfig;            ///< the start configuration of a mode
    FrameExposureInfoType exposureSets[3];          ///< as arbitrated
    UINT64                exposureTargets[3];       ///< targets of metering, mixed
    FLOAT                 averageLuma;              ///< trigger TriggerCtrlLuma
    FLOAT                 luxIndex;                 ///< trigger TriggerCtrlLux
    UINT8                 bIsAECSettled;            ///< all three have settled
    UINT8                 bIsBrightnessSettled;     ///< safe has settled
    FLOAT                 previewEVFactor;          ///< of the user's EV, of a snapshot that of the bracket
    INT32                 previewEVSetting;         ///< EV steps, likewise
    FLOAT                 predictiveGain;           ///< linear
    FLOAT                 shortStretchOffset;       ///< stretch of short, steps
    FLOAT                 FPS;                      ///< frames per second
    INT32                 postRawSensitivityBoost;  ///< 100 is unity
    UINT8                 bIsSnapshot;              ///< a snapshot frame
};

/// The host's own record of the settings; the core leaves it alone.
struct AECInputConfigData
{
    UINT8 bytes[478];  ///< in a layout of the host
};

/// A range of exposures.
struct AECDebugExpRangeType
{
    FrameExposureInfoType start;  ///< lower limits
    FrameExposureInfoType end;    ///< upper limits
};

/// Not written by the core.
struct AECDebugDataContextType
{
    AECInputConfigData   configInfo;      ///< settings
    UINT64               currentContext;  ///< context status
    AECDebugExpRangeType arbExpRange[2];  ///< ranges of the arbitration
};

/// By runEndOfFrame. A settled frame behind a settled frame is not pushed: a long settled stretch keeps one entry.
struct AECDebugDataFrameHistoryType
{
    FrameHistoryInfoType currentFrame;                        ///< the frame that ended
    FrameHistoryInfoType pastFrames[AECDebugPastFrameCount];  ///< newest first, that frame included
};

/// Limits of one exposure.
struct AECDebugConvergenceRange
{
    FLOAT startLog103;  ///< log of the least exposure
    FLOAT endLog103;    ///< log of the largest
    FLOAT startGain;    ///< linear
    FLOAT endGain;      ///< linear
};

/// What convergence made of one frame.
struct AECDebugConvergenceFrame
{
    UINT32 frameID;          ///< low 32 bits
    FLOAT  targetLog103[3];  ///< targets, with EV, lock and smoothing
    FLOAT  outputLog103[3];  ///< exposures before they were cut to the limits
};

/// By RunConvPostProcess, in a frame that has limits and a frame before it.
struct AECDebugDataConvergenceType
{
    AECDebugConvergenceRange ranges[3];           ///< the frame's limits
    FLOAT                    targetLog103[3];     ///< as in history[0]
    FLOAT                    outputLog103[3];     ///< as in history[0]
    FLOAT                    previousLog103[3];   ///< exposures of the frame before
    FLOAT                    baseSpeed;           ///< share of the way per frame; of the last frame that ran
    FLOAT                    drcSpeed;            ///< the same for short and long against safe
    UINT8                    cappingType;         ///< AECConvCappingType
    FLOAT                    predictiveGain;      ///< of KIROConvergenceOutput
    UINT8                    bBrightnessSettle;   ///< of KIROConvergenceOutput
    UINT8                    bSettle;             ///< of KIROConvergenceOutput
    FLOAT                    shortStretchOffset;  ///< of KIROConvergenceOutput
    UINT8                    bIfConvProcRun;      ///< of KIROConvergenceOutput
    AECDebugConvergenceFrame history[AECDebugPastFrameCount];  ///< newest first; settled behind settled is left out
};

/// What the last control of the order list made of one exposure.
struct AECDebugArbitratedExposure
{
    FrameExposureInfoType exposureSet;        ///< the split
    FLOAT                 minGain;            ///< limits behind the control, linear
    FLOAT                 maxGain;            ///< linear
    UINT64                minTime;            ///< ns
    UINT64                maxTime;            ///< ns
    FLOAT                 minIndex;           ///< index
    FLOAT                 maxIndex;           ///< index
    FLOAT                 deltaEVFromTarget;  ///< as the host preset it for the call
};

/// By each runArbitration that applies and is not for limits (bIsConvRange).
struct AECDebugDataArbitrationType
{
    AECDebugArbitratedExposure exposures[3];  ///< by AECAlgoExposureType
    FLOAT                      FPS;           ///< as the host preset it for the last call
    UINT8                      reserved[4];   ///< zeros
};

/// By runExtension but for the last member: KIROExtensionOutput and two settings.
struct AECDebugDataExtensionType
{
    FLOAT luxIndex;              ///< trigger TriggerCtrlLux
    UINT8 LEDMode;               ///< AECAlgoLEDModeType
    UINT8 opMode;                ///< AECAlgoOperationModeType
    UINT8 bFlashNeeded;          ///< of KIROExtFlagsMonitorOutput
    UINT8 bFDFlashDelayNeeded;   ///< of KIROExtFlagsMonitorOutput
    UINT8 bLEDAFNeeded;          ///< of KIROExtFlagsMonitorOutput
    UINT8 bLLSNeeded;            ///< of KIROExtFlagsMonitorOutput
    UINT8 bZLLEnabled;           ///< of KIROExtFlagsMonitorOutput
    UINT8 bZLLEnforced;          ///< of KIROExtFlagsMonitorOutput
    UINT8 bHistStretchEnabled;   ///< of AECYHistStretchData
    FLOAT histStretchClamp;      ///< of AECYHistStretchData
    FLOAT histStretchScaling;    ///< of AECYHistStretchData
    UINT8 bIs3HDRTriggerValid;   ///< of InSensorHDR3ExpTriggerInfo
    UINT8 trigger3HDRResult[3];  ///< of InSensorHDR3ExpTriggerInfo, by scene
    FLOAT resultCDF0;            ///< of InSensorHDR3ExpTriggerInfo
    FLOAT resultCDF5;            ///< of InSensorHDR3ExpTriggerInfo
    FLOAT realDRCGain;           ///< of InSensorHDR3ExpTriggerInfo
    FLOAT ambientRaw;            ///< of InSensorHDR3ExpTriggerInfo
    FLOAT faceLuma;              ///< of InSensorHDR3ExpTriggerInfo
    UINT8 bIs3HDRSnapshot;       ///< of KIROExt3HDRMonitorOutput
    UINT8 bIsSeamlessBinning;    ///< of KIROExtensionOutput
    UINT8 reserved[2];           ///< zeros
    /// Whether statsProcResult is filled; by setStats, also while debug data are off.
    UINT8 statsListVerboseDebugDataEnable;
};

/// One answered flash current, see KIROAlgoFlashOutput. Rows and mixes are those of the tuned flash table.
struct AECDebugFlashCurrent
{
    UINT8  bIsValid;                                ///< 1 once there was an answer
    FLOAT  wantedRG;                                ///< red over green, by the question
    FLOAT  wantedBG;                                ///< blue over green, by the question
    INT32  maxFlashCurrent;                         ///< mA
    INT32  LED1Setting;                             ///< mA
    INT32  LED2Setting;                             ///< mA
    FLOAT  RGRatio;                                 ///< red over green of the answer
    FLOAT  BGRatio;                                 ///< blue over green of the answer
    FLOAT  firstEntryRatio;                         ///< of the answer
    FLOAT  lastEntryRatio;                          ///< of the answer
    FLOAT  flux;                                    ///< of the answer
    INT32  powIdx1;                                 ///< rows between which the answer lies, the same for one row
    INT32  powIdx2;                                 ///< second of them
    INT32  mixIdx1;                                 ///< mixes between which it lies, the same for one mix
    INT32  mixIdx2;                                 ///< second of them
    UINT8  bIsFactoryCalApplied;                    ///< the table has the factory's colours
    INT32  countPower;                              ///< rows
    INT32  countMix;                                ///< mixes of a row
    UINT32 rowPower[AECDebugFlashRowCountMax - 1];  ///< mA; of the first five rows
    UINT8  reserved[4];                             ///< zeros
};

/// By getFlashCurrent.
struct AECDebugDataLEDTableType
{
    AECDebugFlashCurrent low;   ///< of the low current
    AECDebugFlashCurrent high;  ///< also of the full current
};

/// What the precision flash solver read and found. Lumas are those that the tuned calculators measured.
struct AECDebugPrecisionFlashSolution
{
    UINT8 sceneDetected;    ///< the picture is better exposed in two parts
    FLOAT e1;               ///< exposure that sees the LED; 0 without a solution
    FLOAT e2;               ///< exposure that does not; 0 without a solution
    FLOAT maxExpoTime;      ///< ms
    FLOAT minFlashTime;     ///< ms
    FLOAT flashDelayTime;   ///< ms
    FLOAT hysteresis;       ///< share by which the target of the background must exceed its luma
    FLOAT bkGrdLumaOff;     ///< background without LED
    FLOAT bkGrdLumaOn;      ///< background under the low LED
    FLOAT frGrdLumaOff;     ///< foreground without LED
    FLOAT frGrdLumaOn;      ///< foreground under the low LED
    FLOAT bkGrdLumaTarget;  ///< background that was tried for; 0 without a solution
    FLOAT flux;             ///< light of high over low, by the host
};

/// By runMeteringPostprocess of a flash snapshot that has both flash frames, precisionFlash by runAnalyzer.
struct AECDebugDataFlashType
{
    FrameHistoryInfoType frameOff;                            ///< without LED
    FrameHistoryInfoType frameLow;                            ///< under the low LED
    FLOAT                flux;                                ///< light of high over low, by the host
    FLOAT                influence;                           ///< luma under the low LED over that without, at least 1
    FLOAT                luxIndex;                            ///< trigger TriggerCtrlLux
    FLOAT                targets[3];                          ///< triggers of the metered targets; of the frame before
    UINT64               exposures[3];                        ///< targets of this frame
    FLOAT                biasTable[AECDebugWeightTableSize];  ///< weights; as before where the tuning has no such table
    AECDebugPrecisionFlashSolution precisionFlash;            ///< of the last run of its algorithm
    UINT8                          reserved[24515];           ///< zeros
};

/// Whether a flash parts the scene; by runMeteringPreprocess of a flash snapshot that has its statistics.
struct AECDebugDataPrecisionFlashType
{
    UINT8 scenceEnabled;                             ///< it does
    FLOAT bkgrdpct;                                  ///< percent of the regions that are background
    FLOAT frgrdpct;                                  ///< percent of the regions that are foreground
    FLOAT backGroundTable[AECDebugWeightTableSize];  ///< weights; zeros where no scene was looked for
    FLOAT foreGroundTable[AECDebugWeightTableSize];  ///< weights; zeros where no scene was looked for
    UINT8 reserved[249];                             ///< zeros
};

/// The whole record.
struct AECDebugData
{
    AECDebugDataContextType        contextInfo;           ///< not written by the core
    AECDebugDataFrameHistoryType   frameHistoryInfo;      ///< by runEndOfFrame
    AECDebugDataMeteringType       meteringInfo;          ///< by the metering calls
    AECDebugDataConvergenceType    convergenceInfo;       ///< by RunConvPostProcess
    AECDebugDataArbitrationType    arbitrationInfo;       ///< by runArbitration
    AECDebugDataExtensionType      extensionInfo;         ///< by runExtension, the last member by setStats
    AECDebugDataLEDTableType       ledTableInfo;          ///< by getFlashCurrent
    AECDebugDataFlashType          flashInfo;             ///< by the metering calls of a flash snapshot
    AECDebugDataStatsProcResult    statsProcResult;       ///< by setStats
    CHAR                           kiroAlgoVersion[128];  ///< not written by the core
    AECDebugDataPrecisionFlashType precisionFlashInfo;    ///< by runMeteringPreprocess of a flash snapshot
};

#pragma pack(pop)

static_assert(sizeof(FrameExposureInfoType) == 32 && offsetof(FrameExposureInfoType, ISO) == 28);
static_assert(sizeof(FrameHistoryInfoType) == 160 && offsetof(FrameHistoryInfoType, exposureSets) == 5 &&
              offsetof(FrameHistoryInfoType, exposureTargets) == 101 &&
              offsetof(FrameHistoryInfoType, averageLuma) == 125 && offsetof(FrameHistoryInfoType, luxIndex) == 129 &&
              offsetof(FrameHistoryInfoType, bIsAECSettled) == 133 &&
              offsetof(FrameHistoryInfoType, previewEVFactor) == 135 &&
              offsetof(FrameHistoryInfoType, predictiveGain) == 143 && offsetof(FrameHistoryInfoType, FPS) == 151 &&
              offsetof(FrameHistoryInfoType, postRawSensitivityBoost) == 155 &&
              offsetof(FrameHistoryInfoType, bIsSnapshot) == 159);
static_assert(sizeof(AECDebugDataContextType) == 614);
static_assert(sizeof(AECDebugDataFrameHistoryType) == 3360);
static_assert(sizeof(AECDebugDataMeteringType) == 46371);
static_assert(sizeof(AECDebugDataConvergenceType) == 664);
static_assert(sizeof(AECDebugDataArbitrationType) == 212);
static_assert(sizeof(AECDebugDataExtensionType) == 50);
static_assert(sizeof(AECDebugDataLEDTableType) == 180);
static_assert(sizeof(AECDebugDataFlashType) == 25956);
static_assert(sizeof(AECDebugStatsChList) == 16474 && offsetof(AECDebugStatsChList, bChannelEnabled) == 72 &&
              offsetof(AECDebugStatsChList, resolution) == 74 && offsetof(AECDebugStatsChList, channelData) == 90);
static_assert(sizeof(AECDebugDataStatsProcResult) == 329499 && offsetof(AECDebugDataStatsProcResult, channels) == 19);
static_assert(sizeof(AECDebugDataPrecisionFlashType) == 2306);
static_assert(offsetof(AECDebugData, frameHistoryInfo) == 614 && offsetof(AECDebugData, meteringInfo) == 3974 &&
              offsetof(AECDebugData, convergenceInfo) == 50345 && offsetof(AECDebugData, arbitrationInfo) == 51009 &&
              offsetof(AECDebugData, extensionInfo) == 51221 && offsetof(AECDebugData, ledTableInfo) == 51271 &&
              offsetof(AECDebugData, flashInfo) == 51451 && offsetof(AECDebugData, statsProcResult) == 77407 &&
              offsetof(AECDebugData, kiroAlgoVersion) == 406906 &&
              offsetof(AECDebugData, precisionFlashInfo) == 407034);
static_assert(sizeof(AECDebugData) == 409340);
