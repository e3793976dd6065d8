/// @file
/// Enumerations that host, tuning data and core share.
#pragma once

#include "platform/tavotypes.h"

/// Index of every array of three exposures.
/// Tuning records select by KIROExposureSelection, whose order differs: the two are mapped, not cast; only
/// CAnalyzerManager::UpdateDecision casts, and says why.
enum AECAlgoExposureType : INT32
{
    AECAlgoExposureShort = 0,
    AECAlgoExposureLong  = 1,
    AECAlgoExposureSafe  = 2,
    AECAlgoExposureCount = 3
};

/// How tuning records name an exposure.
enum KIROExposureSelection : INT32
{
    ExposureShort = 0,
    ExposureSafe  = 1,
    ExposureLong  = 2,
    ExposureNone  = 3
};

/// The data banks.
enum KIROBankIDType : INT32
{
    BankIDROITable          = 0,
    BankIDMetering2D        = 1,
    BankIDMetering1D        = 2,
    BankIDSceneAnalyzer     = 3,
    BankIDStatsCalculator   = 4,
    BankIDArbitrationTable  = 5,
    BankIDArbitrationOrder  = 6,
    BankIDArbitrationLUT    = 7,
    BankIDArbitrationRange  = 8,
    BankIDTriggers          = 9,
    BankIDActiveAnalyzers   = 10,
    BankIDConvBase          = 11,
    BankIDConvStretch       = 12,
    BankIDConvSettle        = 13,
    BankIDConvActiveSCD     = 14,
    BankIDActiveCalculators = 15,
    BankIDSnapshot          = 16,
    BankIDMax               = 17,
    BankIDInvalid           = 18
};

/// Bits of the context status.
enum KIROTunaraEventType : INT32
{
    AECDefault                    = 0,
    AECOpInit                     = 1,
    AECOpStreaming                = 2,
    AECOpPreflash                 = 3,
    AECOpFastAEC                  = 4,
    AECOpAggressiveAEC            = 5,
    AECOpFlashTuning              = 6,
    AECOpFlashCalibration         = 7,
    AECHDRTypeDisabled            = 8,
    AECHDRTypeISPHDR              = 9,
    AECHDRTypeSensorHDR           = 10,
    AECHDRTypeSHDR2               = 11,
    AECHDRTypeSHDR3               = 12,
    AECHDRTypeMFHDR               = 13,
    AECManualISO                  = 14,
    AECManualTime                 = 15,
    AECManualFull                 = 16,
    AECLock                       = 17,
    AECTouch                      = 18,
    AECFace                       = 19,
    AECT2T                        = 20,
    AECSaliency                   = 21,
    AECDepth                      = 22,
    AECEV                         = 23,
    AECEVChange                   = 24,
    AECFirstConvergingAfterEvent  = 25,
    AECCoreSnapshotNormal         = 26,
    AECCoreSnapshotLLS            = 27,
    AECCoreSnapshotFlash          = 28,
    AECCoreSnapshotHDR3           = 29,
    AECCoreSnapshotPrecisionFlash = 30,
    AECCoreSnapshotZLL            = 31,
    AECCoreSnapshotAdvanced       = 32,
    AECTorch                      = 33,
    AECTorchChange                = 34,
    AECSettled                    = 35,
    AECSlaveRole                  = 36,
    AECEVBracketing               = 37,
    AECHybridHDR                  = 38,
    AECCustomContext1             = 39,
    AECCustomContext2             = 40,
    AECCustomContext3             = 41,
    AECCustomContext4             = 42,
    AECCustomContext5             = 43,
    AECCustomContext6             = 44,
    AECCustomContext7             = 45,
    AECCustomContext8             = 46,
    AECCustomContext9             = 47,
    AECCustomContext10            = 48
};

/// Data IDs of the trigger bank. Slots from TriggerCtrlMax to 999 are free for tuning.
enum KIROTriggerType : INT32
{
    TriggerCtrlNone = 0,
    TriggerCtrlPrev = 1,
    TriggerCtrlTarget = 2,
    TriggerCtrlTgtMatchDelta = 3,
    TriggerCtrlTgtPrevDelta = 4,
    TriggerCtrlDarkRatio = 5,
    TriggerCtrlSatRatio = 6,
    TriggerCtrlDirection = 7,
    TriggerCtrlLux = 8,
    TriggerCtrlFPS = 9,
    TriggerCtrlExpTime = 10,
    TriggerCtrlGain = 11,
    TriggerCtrlSensitivity = 12,
    TriggerCtrlLuma = 13,
    TriggerCtrlGyro = 14,
    TriggerCtrlDistance = 15,
    TriggerFlashFlux = 16,
    TriggerFlashExpIncrease = 17,
    TriggerFlashInfluence = 18,
    TriggerSCDExternal1 = 19,
    TriggerSCDExternal2 = 20,
    TriggerCtrlAWBRedGain = 21,
    TriggerCtrlAWBGreenGain = 22,
    TriggerCtrlAWBBlueGain = 23,
    TriggerCtrlHDRDRCGain = 24,
    TriggerCtrlHDRADRCGain = 25,
    TriggerCtrlHDRDarkBoostGain = 26,
    TriggerCtrlAmbientRaw = 27,
    TriggerCtrlShortExp = 28,
    TriggerCtrlLongExp = 29,
    TriggerCtrlSafeExp = 30,
    TriggerCtrlShortTgt = 31,
    TriggerCtrlLongTgt = 32,
    TriggerCtrlSafeTgt = 33,
    TriggerCtrlFlashBackGrdPct = 34,
    TriggerCtrlSaliencyValue = 35,
    TriggerCtrlShortExpFLow = 36,
    TriggerCtrlLongExpFLow = 37,
    TriggerCtrlSafeExpFLow = 38,
    TriggerCtrlFlashForeGrdPct = 39,
    TriggerCtrlPrecisionFlashDelay = 40,
    TriggerCtrlPrecisionFlashMinTime = 41,
    TriggerCtrlPrecisionFlashMaxExpTimeMs = 42,
    TriggerCtrlPrecisionFlashE1 = 43,
    TriggerCtrlPrecisionFlashE2 = 44,
    TriggerCtrlPrecisionFlashOk = 45,
    TriggerCtrlBracketEV = 46,
    TriggerCtrlEVNegativeOverride = 47,
    TriggerCtrlEVPositiveOverride = 48,
    TriggerCtrlZLLExposure = 49,
    TriggerCtrlZLLADRC = 50,
    TriggerCtrlZLLIsEnforced = 51,
    TriggerCtrlExposureRatioReflected = 52,
    TriggerCtrlExposureRatioTarget = 53,
    TriggerCtrlADRCCap = 54,
    TriggerCtrl3HDRBinning = 55,
    TriggerFlashSatStatsRatio = 56,
    TriggerCtrlMagnetInfoX = 57,
    TriggerCtrlMagnetInfoY = 58,
    TriggerCtrlMagnetInfoZ = 59,
    TriggerCtrlPrecisionFlashInfluence = 60,
    TriggerCtrlPrecisionFlashHistoryL = 61,
    TriggerCtrlPrecisionFlashHistoryH = 62,
    TriggerCtrlAWBInfoFaceROI = 63,
    TriggerCtrlIsFlickerDetected = 64,
    TriggerCtrlPreflashLuxIndex = 65,
    TriggerCtrlFullflashLuxIndex = 66,
    TriggerCtrlMax = 67
};
