/// @file
/// Tuning module kirodbsceneanalyzer.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirodbsceneanalyzer
{

/// Entry of the bank of scene analyzer results.
struct DBStartEndPayload
{
    INT32        dataID;
    StartEndType value;
    CHAR*        description;
};
TUNING_RECORD(DBStartEndPayload)
    MEMBER(dataID,
        .meaning = "Entry of the bank of analyzer results that the row names; in tuning data read by no stage.",
        .unit = Unit::ID, .range = {0, 999}, .acts = Acts::Never, .refers = {DefinesBank(BankIDSceneAnalyzer)})
    MEMBER(value,
        .meaning = "Pair that an analyzer or the host puts there; in tuning data read by no stage.",
        .range = Any, .acts = Acts::Never)
    MEMBER(description,
        .meaning = "What the entry holds, for the tuner; in tuning data read by no stage.",
        .acts = Acts::Never)
TUNING_RECORD_END

BANK_MODULE(KIRODBSceneAnalyzerType, DBStartEndPayload,
    "Bank of scene analyzer results. The core fills the bank itself; the data here only name its entries.",
    .meaning = "Names for entries of the bank of analyzer results, which the core fills itself; read by no stage.",
    .entries = {0, 1000}, .acts = Acts::Never)

} // namespace kirodbsceneanalyzer

using kirodbsceneanalyzer::DBStartEndPayload;
