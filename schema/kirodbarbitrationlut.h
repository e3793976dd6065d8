/// @file
/// Tuning module kirodbarbitrationlut.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirodbarbitrationlut
{

/// Where a key of a LUT comes from.
enum KeySource : INT32
{
    SourceArbitration = 0,
    SourceBank        = 1
};
TUNING_ENUM(KeySource)
    ENUMERATOR(SourceArbitration, "The key is a quantity of the exposure under arbitration, chosen by arbKey.")
    ENUMERATOR(SourceBank, "The key is the bank value of bankID and dataID.")
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
    ENUMERATOR(LUTKeyGain,
        "Gain so far, linear; before the first split of the exposure it is the sensor's lowest.",
        Unit::Gain)
    ENUMERATOR(LUTKeyTime,
        "Time so far, in ns; before the first split of the exposure it is the sensor's shortest.",
        Unit::Nanoseconds)
    ENUMERATOR(LUTKeyExposure,
        "Exposure under arbitration: gain times ns times the table's correction.",
        Unit::GainTimesNs)
    ENUMERATOR(LUTKeyIndex,
        "Exposure index, in log steps of 3 percent above the host's exposure of index 0; before the first split of "
        "the exposure it is 0.",
        Unit::LogStep)
TUNING_ENUM_END

/// What the LUT yields. The other quantity follows, so that the exposure is kept.
enum LUTOutType : INT32
{
    ArbLutOutTime = 0,
    ArbLutOutGain = 1
};
TUNING_ENUM(LUTOutType)
    ENUMERATOR(ArbLutOutTime, "The tree yields a time in ns, rounded; the gain follows so that the exposure is kept.")
    ENUMERATOR(ArbLutOutGain, "The tree yields a linear gain; the time follows so that the exposure is kept.")
TUNING_ENUM_END

/// When the looked-up quantity is taken.
enum ApplyConditionType : INT32
{
    ApplyIfValid              = 0,
    ApplyIfSmallerThanCurrent = 1,
    ApplyIfLargerThanCurrent  = 2
};
TUNING_ENUM(ApplyConditionType)
    ENUMERATOR(ApplyIfValid, "The looked-up quantity is taken if it fits the ranges.")
    ENUMERATOR(ApplyIfSmallerThanCurrent,
        "The looked-up quantity is taken if it fits the ranges and is not larger than before.")
    ENUMERATOR(ApplyIfLargerThanCurrent,
        "The looked-up quantity is taken if it fits the ranges and is larger than before.")
TUNING_ENUM_END

/// One key of a LUT.
struct LUTKeyType
{
    KeySource          source;
    KeyArbitrationType arbKey;
    KIROBankIDType     bankID;
    INT32              dataID;
};
TUNING_RECORD(LUTKeyType)
    MEMBER(source,
        .meaning = "Selects whether the key is a quantity of the exposure under arbitration or a bank value.",
        .start = "SourceArbitration")
    MEMBER(arbKey,
        .meaning = "Quantity of the exposure under arbitration that is the key; read with SourceArbitration.",
        .start = "LUTKeyTime", .when = "source=SourceArbitration")
    MEMBER(bankID,
        .meaning = "Bank of the key: of triggers, calculators, scene analyzers (lower end of the range) or regions "
                   "(weight); any other one keeps the LUT from applying. Read with SourceBank.",
        .start = "BankIDTriggers",
        .refers = {ReadsBank(BankIDTriggers, BankIDStatsCalculator, BankIDSceneAnalyzer, BankIDROITable)},
        .when = "source=SourceBank")
    MEMBER(dataID,
        .meaning = "Entry of that bank that is the key; above 999 only regions are found, and a missing region counts "
                   "as 0. Read with SourceBank.",
        .unit = Unit::ID, .range = {0, 999}, .odd = AtLeast(0), .start = "8",
        .refers = {Reads(Thing::SiblingBank).Unless(0)}, .when = "source=SourceBank")
TUNING_RECORD_END

/// What happens to a looked-up quantity that leaves its range.
struct LUTRangeResolution
{
    BOOL bCheckAgainstCurrRange;
    BOOL modifyBeforeDiscard;
};
TUNING_RECORD(LUTRangeResolution)
    BOOLEAN(bCheckAgainstCurrRange,
        .meaning = "Switched on, the quantity is tested against the range that the controls so far have left, besides "
                   "the sensor's limits; off, against the sensor's limits alone, of which the highest gain does not "
                   "count.")
    BOOLEAN(modifyBeforeDiscard,
        .meaning = "Switched on, a quantity outside is moved to the bound and the other one makes up for it; off, the "
                   "LUT does not apply then.")
TUNING_RECORD_END

/// When a LUT applies, and what gives way.
struct LUTConflictHandling
{
    LUTRangeResolution enforceTime;
    LUTRangeResolution enforceGain;
    ApplyConditionType applyCondition;
};
TUNING_RECORD(LUTConflictHandling)
    MEMBER(enforceTime,
        .meaning = "What happens to a time outside its range. It is looked at after gain, so a gain that makes up for "
                   "time is tested only against the sensor's lowest.")
    MEMBER(enforceGain,
        .meaning = "What happens to a gain outside its range.")
    MEMBER(applyCondition,
        .meaning = "Selects whether the looked-up quantity is taken always, only when it is not larger, or only when "
                   "it is larger than before.",
        .start = "ApplyIfSmallerThanCurrent")
TUNING_RECORD_END

/// A control that looks one quantity up by two keys.
struct LUTType
{
    LUTKeyType                       keyType1;
    LUTKeyType                       keyType2;
    LUTOutType                       outType;
    LUTConflictHandling              conflictHandling;
    UINT32                           triggerDataCount;
    UINT32                           triggerDataID;
    TwoLevelTriggerSystemLevel1Type* triggerData;
};
TUNING_RECORD(LUTType)
    MEMBER(keyType1,
        .meaning = "Key of the tree's first level.")
    MEMBER(keyType2,
        .meaning = "Key of the tree's second level; it must be readable even if a single zone ignores it.")
    MEMBER(outType,
        .meaning = "Selects whether the tree yields a time or a gain; the other quantity follows, so that the "
                   "exposure is kept.",
        .start = "ArbLutOutTime")
    MEMBER(conflictHandling,
        .meaning = "When the looked-up quantity is taken, and what gives way where it does not fit.")
    VARIABLE(triggerData,
        .meaning = "Tree over both keys whose zones, in ascending order, hold the time in ns or the gain; between "
                   "zones they are interpolated, beyond the outer zones these hold. A flicker grid has one zone for "
                   "each whole number of periods, without gaps.",
        .entries = AtLeast(1))
TUNING_RECORD_END

/// One LUT of the bank.
struct DBArbitrationLUTPayload
{
    INT32   dataID;
    CHAR*   description;
    LUTType value;
};
TUNING_RECORD(DBArbitrationLUTPayload)
    MEMBER(dataID,
        .meaning = "Number by which a control of the order names this LUT, from 1; of equal ones the last applies.",
        .unit = Unit::ID, .range = AtLeast(1), .odd = Any, .start = "1", .acts = Acts::NewTuning,
        .refers = {DefinesBank(BankIDArbitrationLUT)})
    MEMBER(description,
        .meaning = "Name of the LUT in logs.",
        .acts = Acts::Never)
    MEMBER(value,
        .meaning = "Keys, tree and conditions of the LUT.")
TUNING_RECORD_END

BANK_MODULE(KIRODBArbitrationLUTType, DBArbitrationLUTPayload,
    "The bank of controls that look gain or time up; the anti-flicker grid is one.",
    .meaning = "LUTs that controls of the order can name, at most 1000.",
    .entries = {0, 1000})

} // namespace kirodbarbitrationlut
