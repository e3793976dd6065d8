/// @file
/// Records of the flash queries.
#pragma once

#include "interface/aecalgoinput.h"
#include "schema/kiroflash.h"

/// Names the flash frames and flash powers.
enum class KIROExtFlashCurrentType : INT32
{
    Low  = 0,
    High = 1,
    Full = 2,
    Off  = 3
};

enum AECAlgoFlashStateType : INT32
{
    AECAlgoFlashStateOff  = 0,
    AECAlgoFlashStatePre  = 1,
    AECAlgoFlashStateMain = 2
};

struct KIROAlgoFlashInput
{
    KIROExtFlashCurrentType            flashCurrentType;
    const AECAlgoFlashCalibrationData* pFlashCalib;
    AECAlgoWhiteBalanceState           wbFlashOff;
    INT32                              maxFlashCurrent;  ///< mA
    FLOAT                              AWBRG;
    FLOAT                              AWBBG;
    BOOL                               bBackupState;
};

constexpr UINT32 KIROFlashMixCountMax = 16;

struct KIROAlgoFlashOutput
{
    INT32                 LED1Setting;  ///< mA
    INT32                 LED2Setting;  ///< mA
    FLOAT                 RGRatio;
    FLOAT                 BGRatio;
    FLOAT                 firstEntryRatio;
    FLOAT                 lastEntryRatio;
    AECAlgoFlashStateType state;
    FLOAT                 flux;
    kiroflash::LEDMixType refTable[KIROFlashMixCountMax];
};

/// What the host knows of the running flash sequence.
struct KIROExtFlashInfo
{
    BOOL                prepareBeforePreflash;
    BOOL                flashLowStatsSaved;
    KIROAlgoFlashOutput flashLowEst;
    KIROAlgoFlashOutput flashHighEst;
};
