/// @file
/// Records that pass through the stages of one frame. Arrays of three are indexed by AECAlgoExposureType.
#pragma once

#include "interface/kiroexposure.h"
#include "interface/kiroflash.h"
#include "interface/kirostats.h"
#include "schema/kirodbarbitrationorder.h"
#include "schema/kirodbarbitrationtable.h"

/// A pair of bounds.
typedef StartEndType StartEnd;

struct KIROMeteringInput
{
    BOOL   bStatsValid;
    UINT64 minAntibandingExposure;
};

struct KIROMeteringOutput
{
    UINT64 mtrExposures[3];  ///< targets as metered
    UINT64 exposures[3];     ///< targets after mixing with a peer
    BOOL   bIsMeteringSkipped;
};

struct KIROAnalyzerOutput
{
    CHAR*                 pName;
    FLOAT                 luma;
    FLOAT                 confidence;
    StartEnd              target;
    UINT64                sensitivity;
    KIROExposureSelection type;
    KIROExposureSelection refType;
};

struct KIROPrecisionFlashInfo
{
    FLOAT  e1ToE1PlusE2;
    UINT64 minFlashTime;             ///< ns
    UINT64 maxExpoTime;              ///< ns
    UINT64 rollingShutterDelayTime;  ///< ns
};

/// One control of the order list, applied to one exposure.
struct KIROArbitrationInput
{
    kirodbarbitrationorder::ArbitrationControl controlID;
    KIROBankIDType                             controlBank;  ///< range, LUT or table bank
    INT32                                      controlDataID;
    AECAlgoExposureType                        expType;
    KIROExposureSetType                        exposures[3];
    KIROExposureRange                          range;
    KIROSensorRange                            sensorRange;
    kirodbarbitrationtable::ExposureTableType* pTable;  ///< last used table, kept along a list
    UINT64                                     indexZeroExposure;
    BOOL                                       bIsConvRange;  ///< compute limits only, no exposure to fit
    BOOL                                       bFPrecisionFlashFlag;
    KIROPrecisionFlashInfo                     precisionFlashInfo;
};

struct KIROArbitrationOutput
{
    AECAlgoExposureType expType;
    KIROExposureSetType exposureSet;
    KIROExposureRange   range;
    FLOAT               deltaEVFromTarget;
    FLOAT               FPS;
};

struct KIROConvergenceInput
{
    UINT64                frameID;
    KIROArbitratedLimits* pRange;
    UINT64                sensitivities[3];  ///< metered targets
    FLOAT                 luxIndex;
    BOOL                  bIsMeteringSkipped;
    FLOAT                 mfhdrLongADRC;  ///< filled by the core
};

struct KIROConvergenceOutput
{
    UINT64 exposures[3];
    UINT64 lockedEV0Exposures[3];
    FLOAT  predictiveGain;
    BOOL   bBrightnessSettle;
    BOOL   bSettle;
    FLOAT  evMultiplier;
    FLOAT  shortStretchOffset;
    BOOL   bIsConvTargetFixed;
    BOOL   bIfConvProcRun;  ///< the host hands it in as 0
    FLOAT  compensationDarkBoost;
    FLOAT  compensationADRC;
    FLOAT  mfhdrLongADRC;
    FLOAT  convergedShortBlend;
};

struct KIROExtensionInput
{
    KIROConvergenceOutput* pConvergenceOuts;
    KIROArbitrationOutput* pArbitrationOuts;  ///< three
    StatisticsStartUp      statisticsStartup;
    KIROExtFlashInfo       flashInfo;
};

struct KIROFrameInfo
{
    UINT64 frameID;
    BOOL   bStartup;  ///< the frame is the start configuration
};

struct KIROPostProcessingInput
{
    INT input;  ///< unused by the core
};

enum KIROSCDStateType : INT32
{
    KIROSCDStateMonitor      = 0,
    KIROSCDStateSceneChange  = 1,
    KIROSCDStateSCPostStable = 2,
    KIROSCDStateMax          = 3
};

enum KIROHoldTimeType : INT32
{
    KIROHoldTimeOff = 0,
    KIROHoldTimeOn  = 1,
    KIROHoldTimeEnd = 2,
    KIROHoldTimeMax = 3
};

struct KIROSCDOutput
{
    CHAR*            pName;
    KIROSCDStateType scState;
    KIROHoldTimeType htState;
};
