/// @file
/// Tuning module kirodbarbitrationlut: the bank of controls that look gain or time up; the anti-flicker grid is one.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirodbarbitrationlut
{

/// Where a key of a LUT comes from.
enum KeySource : INT32
{
    SourceArbitration = 0,  ///< the exposure under arbitration
    SourceBank        = 1   ///< a bank entry
};
TUNING_ENUM(KeySource)
    ENUMERATOR(SourceArbitration)
    ENUMERATOR(SourceBank)
TUNING_ENUM_END

/// Which quantity of the exposure under arbitration is the key.
enum KeyArbitrationType : INT32
{
    LUTKeyGain     = 0,
    LUTKeyTime     = 1,
    LUTKeyExposure = 2,
    LUTKeyIndex    = 3
};
TUNING_ENUM(KeyArbitrationType)
    ENUMERATOR(LUTKeyGain)
    ENUMERATOR(LUTKeyTime)
    ENUMERATOR(LUTKeyExposure)
    ENUMERATOR(LUTKeyIndex)
TUNING_ENUM_END

/// What the LUT yields. The other quantity follows, so that the exposure is kept.
enum LUTOutType : INT32
{
    ArbLutOutTime = 0,  ///< ns
    ArbLutOutGain = 1   ///< linear, 1.0 is unity
};
TUNING_ENUM(LUTOutType)
    ENUMERATOR(ArbLutOutTime)
    ENUMERATOR(ArbLutOutGain)
TUNING_ENUM_END

/// When the looked-up quantity is taken.
enum ApplyConditionType : INT32
{
    ApplyIfValid              = 0,
    ApplyIfSmallerThanCurrent = 1,  ///< also if equal
    ApplyIfLargerThanCurrent  = 2
};
TUNING_ENUM(ApplyConditionType)
    ENUMERATOR(ApplyIfValid)
    ENUMERATOR(ApplyIfSmallerThanCurrent)
    ENUMERATOR(ApplyIfLargerThanCurrent)
TUNING_ENUM_END

/// One key of a LUT.
struct LUTKeyType
{
    KeySource          source;
    KeyArbitrationType arbKey;  ///< read with SourceArbitration
    KIROBankIDType     bankID;  ///< read with SourceBank
    INT32              dataID;  ///< read with SourceBank
};
TUNING_RECORD(LUTKeyType)
    MEMBER(source)
    MEMBER(arbKey)
    MEMBER(bankID)
    MEMBER(dataID)
TUNING_RECORD_END

/// What happens to a looked-up quantity that leaves its range.
struct LUTRangeResolution
{
    BOOL bCheckAgainstCurrRange;  ///< test against the range so far; the sensor's limits are always tested
    BOOL modifyBeforeDiscard;     ///< clamp and keep the exposure; otherwise the LUT does not apply
};
TUNING_RECORD(LUTRangeResolution)
    BOOLEAN(bCheckAgainstCurrRange)
    BOOLEAN(modifyBeforeDiscard)
TUNING_RECORD_END

/// When a LUT applies, and what gives way.
struct LUTConflictHandling
{
    LUTRangeResolution enforceTime;
    LUTRangeResolution enforceGain;
    ApplyConditionType applyCondition;
};
TUNING_RECORD(LUTConflictHandling)
    MEMBER(enforceTime)
    MEMBER(enforceGain)
    MEMBER(applyCondition)
TUNING_RECORD_END

/// A control that looks one quantity up by two keys.
struct LUTType
{
    LUTKeyType                       keyType1;
    LUTKeyType                       keyType2;
    LUTOutType                       outType;
    LUTConflictHandling              conflictHandling;
    UINT32                           triggerDataCount;  ///< at least 1
    UINT32                           triggerDataID;
    TwoLevelTriggerSystemLevel1Type* triggerData;       ///< gain or ns over keys 1 and 2
};
TUNING_RECORD(LUTType)
    MEMBER(keyType1)
    MEMBER(keyType2)
    MEMBER(outType)
    MEMBER(conflictHandling)
    VARIABLE(triggerData)
TUNING_RECORD_END

/// One LUT of the bank.
struct DBArbitrationLUTPayload
{
    INT32   dataID;       ///< from 1; 0 stands for the entry that the context selects
    CHAR*   description;  ///< name in logs
    LUTType value;
};
TUNING_RECORD(DBArbitrationLUTPayload)
    MEMBER(dataID)
    MEMBER(description)
    MEMBER(value)
TUNING_RECORD_END

BANK_MODULE(KIRODBArbitrationLUTType, DBArbitrationLUTPayload)

} // namespace kirodbarbitrationlut
