/// @file
/// Tuning module kirodbstatscalculator.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirodbstatscalculator
{

/// Entry of the banks that hold one number: triggers and results of stats calculators.
struct DBFloatPayload
{
    INT32 dataID;
    float value;
    CHAR* description;
};
TUNING_RECORD(DBFloatPayload)
    MEMBER(dataID,
        .meaning = "Entry of the bank of calculator results that the row names; in tuning data read by no stage.",
        .unit = Unit::ID, .range = {0, 999}, .acts = Acts::Never, .refers = {DefinesBank(BankIDStatsCalculator)})
    MEMBER(value,
        .meaning = "Number that a calculator or the host puts there; in tuning data read by no stage.",
        .range = Any, .acts = Acts::Never)
    MEMBER(description,
        .meaning = "What the entry holds, for the tuner; in tuning data read by no stage.",
        .acts = Acts::Never)
TUNING_RECORD_END

BANK_MODULE(KIRODBStatsCalculatorType, DBFloatPayload,
    "Bank of stats calculator results. The core fills the bank itself; the data here only name its entries.",
    .meaning = "Names for entries of the bank of calculator results, which the core fills itself; read by no stage.",
    .entries = {0, 1000}, .acts = Acts::Never)

} // namespace kirodbstatscalculator

using kirodbstatscalculator::DBFloatPayload;
