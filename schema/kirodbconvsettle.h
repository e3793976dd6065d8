/// @file
/// Tuning module kirodbconvsettle: the bank of rules for when convergence counts as done.
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
    ENUMERATOR(SettleAggAND)
    ENUMERATOR(SettleAggOR)
TUNING_ENUM_END

/// The base rule of a zone.
struct BaseSettleType
{
    UINT32 settleCountTh;  ///< frames within tolerance; one more settles
    float  settleExpTh;    ///< tolerance against the measured frame, steps of 3 percent
};
TUNING_RECORD(BaseSettleType)
    MEMBER(settleCountTh)
    MEMBER(settleExpTh)
TUNING_RECORD_END

/// Zone of the second trigger.
LEAF_ZONE(SettleTwoLevelTriggerSystemLevel2Type, BaseSettleType, triggerData)

/// Zone of the first trigger.
INNER_ZONE(SettleTwoLevelTriggerSystemLevel1Type, SettleTwoLevelTriggerSystemLevel2Type, trigger2Data)

/// The base rule over two triggers.
struct SettleTwoLevelTriggerSystemType
{
    DataBankType                           trigger1DataBank;
    DataBankType                           trigger2DataBank;
    UINT32                                 trigger1DataCount;  ///< at least 1
    UINT32                                 trigger1DataID;
    SettleTwoLevelTriggerSystemLevel1Type* trigger1Data;       ///< in ascending trigger
};
TUNING_RECORD(SettleTwoLevelTriggerSystemType)
    MEMBER(trigger1DataBank)
    MEMBER(trigger2DataBank)
    VARIABLE(trigger1Data)
TUNING_RECORD_END

/// A further rule: a bank value lies within a range.
struct AdvnSettleType
{
    DataBankType data;
    INT32        settleCountTh;    ///< frames; not in use
    StartEndType settleDataRange;  ///< both ends included
};
TUNING_RECORD(AdvnSettleType)
    MEMBER(data)
    MEMBER(settleCountTh)
    MEMBER(settleDataRange)
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
    MEMBER(baseSettleTrigger)
    VARIABLE(advnSettle)
    MEMBER(settleAgg)
TUNING_RECORD_END

/// One set of rules of the bank.
struct DBConvSettlePayload
{
    INT32                dataID;       ///< from 1; 0 stands for the entry that the context selects
    CHAR*                description;  ///< name in logs
    DBConvSettleCoreData value;
};
TUNING_RECORD(DBConvSettlePayload)
    MEMBER(dataID)
    MEMBER(description)
    MEMBER(value)
TUNING_RECORD_END

BANK_MODULE(KIRODBConvSettleType, DBConvSettlePayload)

} // namespace kirodbconvsettle
