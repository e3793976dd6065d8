/// @file
/// The debug data of one frame: a byte-packed record that the host keeps for offline tools, so that its layout is part
/// of the format. Truth values are 0 and 1 in one byte; reserved bytes are zero. Fields are the last ones written: a
/// part whose stage did not run holds an older frame.
///
/// Members are not aligned: read and write them by value, never through a pointer or reference to the member's type.
#pragma once

#include <cstddef>

#include "platform/tavotypes.h"

#pragma pack(push, 1)

constexpr UINT32 AECDebugNameLength       = 64;  // bytes, terminated unless a name fills them
constexpr UINT32 AECDebugPastFrameCount   = 20;
constexpr UINT32 AECDebugCalculatorCount  = 40;
constexpr UINT32 AECDebugAnalyzerCount    = 20;
constexpr UINT32 AECDebugOperationCount   = 20;  // of one analyzer
constexpr UINT32 AECDebugChannelCount     = 20;
constexpr UINT32 AECDebugGridSizeMax      = 3072;
constexpr UINT32 AECDebugHistogramSizeMax = 1024;
constexpr UINT32 AECDebugWeightTableSize  = 256;  // 16 x 16, row-major
constexpr UINT32 AECDebugFlashRowCountMax = 6;

struct FrameExposureInfoType
{
    FLOAT  gain;
    UINT64 time;  ///< ns
    FLOAT  indx;
    FLOAT  corr;
    UINT64 exposure;
    UINT32 ISO;
};

struct FrameHistoryInfoType
{
    UINT32                frameID;
    UINT8                 isStartConfig;
    FrameExposureInfoType exposureSets[3];
    UINT64                exposureTargets[3];
    FLOAT                 averageLuma;
    FLOAT                 luxIndex;
    UINT8                 bIsAECSettled;
    UINT8                 bIsBrightnessSettled;
    FLOAT                 previewEVFactor;
    INT32                 previewEVSetting;
    FLOAT                 predictiveGain;
    FLOAT                 shortStretchOffset;
    FLOAT                 FPS;
    INT32                 postRawSensitivityBoost;
    UINT8                 bIsSnapshot;
};

/// The host's own record of the settings; the core leaves it alone.
struct AECInputConfigData
{
    UINT8 bytes[478];
};

struct AECDebugExpRangeType
{
    FrameExposureInfoType start;
    FrameExposureInfoType end;
};

/// Not written by the core.
struct AECDebugDataContextType
{
    AECInputConfigData   configInfo;
    UINT64               currentContext;
    AECDebugExpRangeType arbExpRange[2];
};

struct AECDebugDataFrameHistoryType
{
    FrameHistoryInfoType currentFrame;
    FrameHistoryInfoType pastFrames[AECDebugPastFrameCount];  ///< newest first
};

struct AECDebugRange
{
    FLOAT start;
    FLOAT end;
};

/// A bank entry; -1 or 255 for none.
struct AECDebugBank
{
    UINT8 bankID;
    INT16 dataID;
};

struct AECDebugCalculatorType
{
    CHAR  description[AECDebugNameLength];
    INT32 calculatorID;
    UINT8 APISelection;
    INT16 outputStart;  ///< slots of the calculator bank
    INT16 outputEnd;
    FLOAT results[2];
};

/// Where a result of a scene analyzer came from and went to.
struct AECDebugComponentType
{
    UINT8        method;  ///< of the aggregation
    AECDebugBank output;
    CHAR         description[AECDebugNameLength];
};

/// One arithmetic operation of a scene analyzer.
struct AECDebugOperationType
{
    UINT8         priorityAndDataType;  ///< priority in the low four bits, data type in the high ones
    UINT8         method;
    FLOAT         operands[4];
    AECDebugRange result;
    AECDebugBank  output;
    CHAR          description[AECDebugNameLength];
};

struct AECDebugAnalyzerType
{
    CHAR                  name[AECDebugNameLength];
    UINT16                analyzerID;
    UINT8                 refType;  ///< KIROExposureSelection
    UINT8                 type;     ///< KIROExposureSelection
    FLOAT                 luma;
    AECDebugRange         target;
    FLOAT                 confidence;
    AECDebugComponentType lumaOrigin;
    AECDebugComponentType targetOrigin;
    AECDebugComponentType confidenceOrigin;
    FLOAT                 adjustmentRatio;  ///< as read from its bank, -1 without an operator
    UINT8                 operationCount;   ///< goes on past the array, up to 255
    AECDebugOperationType operations[AECDebugOperationCount];
};

struct AECDebugDataMeteringType
{
    UINT64                 mtrExposures[3];
    UINT64                 exposures[3];
    UINT8                  bIsMeteringSkipped;
    FLOAT                  luma;
    FLOAT                  luxIndex;
    FLOAT                  darkRatio;
    FLOAT                  brightRatio;
    UINT16                 calculatorCount;  ///< goes on past the array
    AECDebugCalculatorType calculators[AECDebugCalculatorCount];
    UINT16                 analyzerCount;  ///< goes on past the array
    AECDebugAnalyzerType   analyzers[AECDebugAnalyzerCount];
    UINT8                  reserved[2];
};

/// Limits of one exposure.
struct AECDebugConvergenceRange
{
    FLOAT startLog103;
    FLOAT endLog103;
    FLOAT startGain;
    FLOAT endGain;
};

struct AECDebugConvergenceFrame
{
    UINT32 frameID;
    FLOAT  targetLog103[3];
    FLOAT  outputLog103[3];
};

struct AECDebugDataConvergenceType
{
    AECDebugConvergenceRange ranges[3];
    FLOAT                    targetLog103[3];
    FLOAT                    outputLog103[3];
    FLOAT                    previousLog103[3];
    FLOAT                    baseSpeed;
    FLOAT                    drcSpeed;
    UINT8                    cappingType;
    FLOAT                    predictiveGain;
    UINT8                    bBrightnessSettle;
    UINT8                    bSettle;
    FLOAT                    shortStretchOffset;
    UINT8                    bIfConvProcRun;
    AECDebugConvergenceFrame history[AECDebugPastFrameCount];  ///< newest first
};

/// What the last control of the order list made of one exposure.
struct AECDebugArbitratedExposure
{
    FrameExposureInfoType exposureSet;
    FLOAT                 minGain;
    FLOAT                 maxGain;
    UINT64                minTime;  ///< ns
    UINT64                maxTime;  ///< ns
    FLOAT                 minIndex;
    FLOAT                 maxIndex;
    FLOAT                 deltaEVFromTarget;
};

struct AECDebugDataArbitrationType
{
    AECDebugArbitratedExposure exposures[3];  ///< by AECAlgoExposureType
    FLOAT                      FPS;
    UINT8                      reserved[4];
};

struct AECDebugDataExtensionType
{
    FLOAT luxIndex;
    UINT8 LEDMode;
    UINT8 opMode;
    UINT8 bFlashNeeded;
    UINT8 bFDFlashDelayNeeded;
    UINT8 bLEDAFNeeded;
    UINT8 bLLSNeeded;
    UINT8 bZLLEnabled;
    UINT8 bZLLEnforced;
    UINT8 bHistStretchEnabled;
    FLOAT histStretchClamp;
    FLOAT histStretchScaling;
    UINT8 bIs3HDRTriggerValid;
    UINT8 trigger3HDRResult[3];
    FLOAT resultCDF0;
    FLOAT resultCDF5;
    FLOAT realDRCGain;
    FLOAT ambientRaw;
    FLOAT faceLuma;
    UINT8 bIs3HDRSnapshot;
    UINT8 bIsSeamlessBinning;
    UINT8 reserved[2];
    UINT8 statsListVerboseDebugDataEnable;
};

/// One answered flash current.
struct AECDebugFlashCurrent
{
    UINT8  bIsValid;
    FLOAT  wantedRG;
    FLOAT  wantedBG;
    INT32  maxFlashCurrent;  ///< mA
    INT32  LED1Setting;      ///< mA
    INT32  LED2Setting;      ///< mA
    FLOAT  RGRatio;
    FLOAT  BGRatio;
    FLOAT  firstEntryRatio;
    FLOAT  lastEntryRatio;
    FLOAT  flux;
    INT32  powIdx1;
    INT32  powIdx2;
    INT32  mixIdx1;
    INT32  mixIdx2;
    UINT8  bIsFactoryCalApplied;
    INT32  countPower;
    INT32  countMix;
    UINT32 rowPower[AECDebugFlashRowCountMax - 1];  ///< mA; of the first five rows
    UINT8  reserved[4];
};

struct AECDebugDataLEDTableType
{
    AECDebugFlashCurrent low;
    AECDebugFlashCurrent high;  ///< also of the full current
};

/// What the precision flash solver read and found.
struct AECDebugPrecisionFlashSolution
{
    UINT8 sceneDetected;
    FLOAT e1;
    FLOAT e2;
    FLOAT maxExpoTime;     ///< ms
    FLOAT minFlashTime;    ///< ms
    FLOAT flashDelayTime;  ///< ms
    FLOAT hysteresis;
    FLOAT bkGrdLumaOff;
    FLOAT bkGrdLumaOn;
    FLOAT frGrdLumaOff;
    FLOAT frGrdLumaOn;
    FLOAT bkGrdLumaTarget;
    FLOAT flux;
};

struct AECDebugDataFlashType
{
    FrameHistoryInfoType           frameOff;
    FrameHistoryInfoType           frameLow;
    FLOAT                          flux;
    FLOAT                          influence;
    FLOAT                          luxIndex;
    FLOAT                          targets[3];  ///< triggers of the metered targets, by AECAlgoExposureType
    UINT64                         exposures[3];
    FLOAT                          biasTable[AECDebugWeightTableSize];
    AECDebugPrecisionFlashSolution precisionFlash;
    UINT8                          reserved[24515];
};

struct AECDebugStatsROIType
{
    UINT32 left;
    UINT32 top;
    UINT32 width;
    UINT32 height;
};

struct AECDebugStatsResolutionType
{
    UINT32 width;
    UINT32 height;
    UINT32 binCount;
    INT32  bitDepth;
};

struct AECDebugStatsChInfo
{
    FLOAT  valGrid[AECDebugGridSizeMax];
    UINT32 valHist[AECDebugHistogramSizeMax];
};

struct AECDebugStatsChList
{
    UINT64                      frameID;
    CHAR                        channelName[AECDebugNameLength];
    UINT8                       bChannelEnabled;
    UINT8                       statsType;
    AECDebugStatsResolutionType resolution;
    AECDebugStatsChInfo         channelData;
};

struct AECDebugDataStatsProcResult
{
    UINT8                numOfChannels;
    UINT8                bPrepareBeforePreflash;
    UINT8                bIsTouchAEC;  ///< holds the torch flag, not that of touch
    AECDebugStatsROIType bayerGridROI;
    AECDebugStatsChList  channels[AECDebugChannelCount];
};

struct AECDebugDataPrecisionFlashType
{
    UINT8 scenceEnabled;
    FLOAT bkgrdpct;
    FLOAT frgrdpct;
    FLOAT backGroundTable[AECDebugWeightTableSize];
    FLOAT foreGroundTable[AECDebugWeightTableSize];
    UINT8 reserved[249];
};

struct AECDebugData
{
    AECDebugDataContextType        contextInfo;
    AECDebugDataFrameHistoryType   frameHistoryInfo;
    AECDebugDataMeteringType       meteringInfo;
    AECDebugDataConvergenceType    convergenceInfo;
    AECDebugDataArbitrationType    arbitrationInfo;
    AECDebugDataExtensionType      extensionInfo;
    AECDebugDataLEDTableType       ledTableInfo;
    AECDebugDataFlashType          flashInfo;
    AECDebugDataStatsProcResult    statsProcResult;
    CHAR                           kiroAlgoVersion[128];  ///< not written by the core
    AECDebugDataPrecisionFlashType precisionFlashInfo;
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
