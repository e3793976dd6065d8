/// @file
/// Records of the flash: what getFlashCurrent is asked and answers, and what runExtension is told of a flash sequence.
/// Currents are mA. Colours are red over green (RG) and blue over green (BG).
#pragma once

#include "interface/aecalgoinput.h"
#include "schema/kiroflash.h"
#include "schema/tuningrecord.h"

/// Which flash is asked for. The tuned table has rows of mixes, each row with one current for both LEDs together, in
/// rising order.
enum class KIROExtFlashCurrentType : INT32
{
    Low  = 0,  ///< preflash: the first row; its colour is what High matches, so it is asked for first
    High = 1,  ///< main flash: as much as maxFlashCurrent allows
    Full = 2,  ///< the last row, whatever maxFlashCurrent says
    Off  = 3   ///< no light
};

/// What the LEDs of an answer are for.
enum AECAlgoFlashStateType : INT32
{
    AECAlgoFlashStateOff  = 0,  ///< answer to Off
    AECAlgoFlashStatePre  = 1,  ///< answer to Low, and to Full
    AECAlgoFlashStateMain = 2   ///< answer to High
};

/// Question of getFlashCurrent, by the host; read during the call only. High matches the colour of the last answer to
/// Low instead of the wanted one, if rows have several mixes.
struct KIROAlgoFlashInput
{
    KIROExtFlashCurrentType flashCurrentType;  ///< any other value is answered with zeros, result 0
    /// Factory calibration, as from GetFlashCalibInfo. Null, a count of 0, and with a log another count than the tuning
    /// has calibrated mixes: the tuned colours stand.
    const AECAlgoFlashCalibrationData* pFlashCalib;
    AECAlgoWhiteBalanceState           wbFlashOff;       ///< not read
    INT32                              maxFlashCurrent;  ///< mA, both LEDs; less than the first row scales it down
    FLOAT                              AWBRG;            ///< wanted RG: greenGain / redGain of the white balance
    FLOAT                              AWBBG;            ///< wanted BG: greenGain / blueGain
    /// 1 with High: the newest frame becomes the one under the low LED, and TriggerFlashExpIncrease the exposure
    /// without LED over its exposure, at least 1.0.
    BOOL bBackupState;
};
TUNING_RECORD(KIROAlgoFlashInput)
    NUMBER(flashCurrentType)
    ADDRESS(pFlashCalib)
    MEMBER(wbFlashOff)
    MEMBER(maxFlashCurrent)
    MEMBER(AWBRG)
    MEMBER(AWBBG)
    MEMBER(bBackupState)
TUNING_RECORD_END

/// Most mixes of one row of the tuned table.
constexpr UINT32 KIROFlashMixCountMax = 16;

/// Answer of getFlashCurrent. With ResultFailed, for a null argument or a tuned table of wrong size or order, it stays
/// as it was; with result 0 it holds zeros beside state if there is nothing to answer, as without a table.
struct KIROAlgoFlashOutput
{
    INT32 LED1Setting;  ///< mA
    INT32 LED2Setting;  ///< mA
    FLOAT RGRatio;      ///< colour that the two give; -1 for Off
    FLOAT BGRatio;      ///< -1 for Off
    /// How much of the first mix of the row is in the answer, 1 for all. -1 for a row of one mix; that of Full has its
    /// flux here. 1 for Off.
    FLOAT                 firstEntryRatio;
    FLOAT                 lastEntryRatio;  ///< 1 - firstEntryRatio; -1 for a row of one mix, 0 for that of Full
    AECAlgoFlashStateType state;           ///< by the question
    FLOAT                 flux;            ///< light, in the tuned unit; 0 for Off and for Full with one mix
    /// The row of mixes that Low or High chose from, scaled and with its colours corrected; zeros behind it, and for
    /// Full. Off leaves it.
    kiroflash::LEDMixType refTable[KIROFlashMixCountMax];
};
TUNING_RECORD(KIROAlgoFlashOutput)
    MEMBER(LED1Setting)
    MEMBER(LED2Setting)
    MEMBER(RGRatio)
    MEMBER(BGRatio)
    MEMBER(firstEntryRatio)
    MEMBER(lastEntryRatio)
    NUMBER(state)
    MEMBER(flux)
    MEMBER(refTable)
TUNING_RECORD_END

/// What the host knows of the running flash sequence, for runExtension; zeros outside of one. Inline calibration alone
/// reads it, while its mode is on.
struct KIROExtFlashInfo
{
    BOOL                prepareBeforePreflash;  ///< 1: the statistics are the last ones without LED
    BOOL                flashLowStatsSaved;     ///< 1 in preflash mode: they are the ones kept under the low LED
    KIROAlgoFlashOutput flashLowEst;            ///< answer to Low, with flashLowStatsSaved
    KIROAlgoFlashOutput flashHighEst;           ///< answer to High, while AECAlgoSetParamIsFlashInfluencedStats is 1
};
TUNING_RECORD(KIROExtFlashInfo)
    MEMBER(prepareBeforePreflash)
    MEMBER(flashLowStatsSaved)
    MEMBER(flashLowEst)
    MEMBER(flashHighEst)
TUNING_RECORD_END
