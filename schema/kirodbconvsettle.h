/// @file
/// Tuning module kirodbconvsettle.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirodbconvsettle
{

/// How the advanced rules join the base rule.
enum SettleAggType : INT32
{
    SettleAggAND = 0,
    SettleAggOR  = 1
};
TUNING_ENUM(SettleAggType)
    ENUMERATOR(SettleAggAND,
        "An exposure is settled when it lies within settleExpTh and all values of advnSettle lie within their ranges.")
    ENUMERATOR(SettleAggOR,
        "An exposure is settled when it lies within settleExpTh or any value of advnSettle lies within its range, "
        "then all three at once.")
TUNING_ENUM_END

/// The base rule of a zone.
struct BaseSettleType
{
    UINT32 settleCountTh;
    float  settleExpTh;
};
TUNING_RECORD(BaseSettleType)
    MEMBER(settleCountTh,
        .meaning = "Frames in a row in which Safe must pass the rules (settleExpTh and advnSettle) before one more "
                   "settles; twice the count takes twice as long to settle. Between zones it is interpolated and "
                   "rounded up.",
        .unit = Unit::Frames, .range = AtLeast(0), .start = "2")
    MEMBER(settleExpTh,
        .meaning = "Largest distance of an exposure from that of the measured frame at which it counts as settled, "
                   "the value itself included; twice the distance settles sooner and further from the target. An "
                   "exposure that is not settled goes on moving by unitStepSize, so that less than about twice that "
                   "may never settle.",
        .unit = Unit::LogStep, .range = Above(0), .odd = AtLeast(0), .start = "1.0")
TUNING_RECORD_END

/// Zone of the second trigger.
LEAF_ZONE(SettleTwoLevelTriggerSystemLevel2Type, BaseSettleType, triggerData,
    .meaning = "Rule of the zone.")

/// Zone of the first trigger.
INNER_ZONE(SettleTwoLevelTriggerSystemLevel1Type, SettleTwoLevelTriggerSystemLevel2Type, trigger2Data,
    .meaning = "Zones of the second trigger, in ascending order; a single one makes the rule independent of that "
               "trigger.",
    .entries = AtLeast(1))

/// The base rule over two triggers.
struct SettleTwoLevelTriggerSystemType
{
    DataBankType                           trigger1DataBank;
    DataBankType                           trigger2DataBank;
    UINT32                                 trigger1DataCount;
    UINT32                                 trigger1DataID;
    SettleTwoLevelTriggerSystemLevel1Type* trigger1Data;
};
TUNING_RECORD(SettleTwoLevelTriggerSystemType)
    MEMBER(trigger1DataBank,
        .meaning = "Bank value that drives the first level of the tree; in the scene analyzer bank the lower end of "
                   "the range counts, and an entry that cannot be read counts as 0.",
        .refers = {ReadsBank(BankIDTriggers, BankIDStatsCalculator, BankIDSceneAnalyzer).Unless(0)})
    MEMBER(trigger2DataBank,
        .meaning = "Bank value that drives the second level of the tree; in the scene analyzer bank the lower end of "
                   "the range counts, and an entry that cannot be read counts as 0.",
        .refers = {ReadsBank(BankIDTriggers, BankIDStatsCalculator, BankIDSceneAnalyzer).Unless(0)})
    VARIABLE(trigger1Data,
        .meaning = "Zones of the first trigger, in ascending order; the tree below them holds the rule.",
        .entries = AtLeast(1))
TUNING_RECORD_END

/// A further rule: a bank value lies within a range.
struct AdvnSettleType
{
    DataBankType data;
    INT32        settleCountTh;
    StartEndType settleDataRange;
};
TUNING_RECORD(AdvnSettleType)
    MEMBER(data,
        .meaning = "Bank value that must lie within settleDataRange; in the scene analyzer bank the lower end of the "
                   "range counts, and an entry that cannot be read counts as 0.",
        .refers = {ReadsBank(BankIDTriggers, BankIDStatsCalculator, BankIDSceneAnalyzer)})
    MEMBER(settleCountTh,
        .meaning = "Frames for which the value would have to lie within its range; read by no stage.",
        .unit = Unit::Frames, .range = Any, .acts = Acts::Never)
    MEMBER(settleDataRange,
        .meaning = "Range of the value that counts as settled, both ends included and in its units; a wider range "
                   "settles sooner.",
        .unit = Unit::Varies, .range = Any)
TUNING_RECORD_END

/// When convergence counts as done.
struct DBConvSettleCoreData
{
    SettleTwoLevelTriggerSystemType baseSettleTrigger;
    UINT32                          advnSettleCount;
    UINT32                          advnSettleID;
    AdvnSettleType*                 advnSettle;
    SettleAggType                   settleAgg;
};
TUNING_RECORD(DBConvSettleCoreData)
    MEMBER(baseSettleTrigger,
        .meaning = "How near the measured frame's exposure must lie to the new one, and for how many frames, over two "
                   "triggers.")
    VARIABLE(advnSettle,
        .meaning = "Further bank values that must lie within ranges, applied to all three exposures one after the "
                   "other; none leaves the base rule alone.",
        .entries = AtLeast(0))
    MEMBER(settleAgg,
        .meaning = "Selects whether the values of advnSettle are required besides the base rule or suffice instead of "
                   "it.",
        .start = "SettleAggAND")
TUNING_RECORD_END

/// One set of rules of the bank.
struct DBConvSettlePayload
{
    INT32                dataID;
    CHAR*                description;
    DBConvSettleCoreData value;
};
TUNING_RECORD(DBConvSettlePayload)
    MEMBER(dataID,
        .meaning = "Number by which priorities and hosts select this rule, from 1; an entry numbered 0 can only be "
                   "the fallback as the last of the bank.",
        .unit = Unit::ID, .range = AtLeast(1), .odd = Any, .start = "1", .acts = Acts::NewTuning,
        .refers = {DefinesBank(BankIDConvSettle)})
    MEMBER(description,
        .meaning = "Name of this rule for the reader of the tuning; read by no stage.",
        .acts = Acts::Never)
    MEMBER(value,
        .meaning = "When convergence counts as done. Safe within its tolerance for long enough is settled in "
                   "brightness, and settled when Short and Long are within theirs too.")
TUNING_RECORD_END

BANK_MODULE(KIRODBConvSettleType, DBConvSettlePayload,
    "The bank of rules for when convergence counts as done.",
    .meaning = "Settle rules, at most 1000; the last one is the fallback. Without any, convergence computes nothing "
               "and never settles.",
    .entries = {1, 1000})

} // namespace kirodbconvsettle
