/// @file
/// Tuning module kirodbactivecalculators.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirodbactivecalculators
{

/// One run list.
struct DBActiveCalculatorsPayload
{
    UINT32  dataID;
    CHAR*   description;
    UINT32  calculatorIDCount;
    UINT32  calculatorIDID;
    UINT32* calculatorID;
};
TUNING_RECORD(DBActiveCalculatorsPayload)
    MEMBER(dataID,
        .meaning = "Number by which the priority map selects this run list; of two lists with one number the later "
                   "applies. 0 can only be the fallback at the end of data.",
        .unit = Unit::ID, .range = {1, 2147483647}, .odd = {0, 2147483647}, .start = "1", .acts = Acts::NewTuning,
        .refers = {DefinesBank(BankIDActiveCalculators)})
    MEMBER(description,
        .meaning = "Text for the tuner; read by no stage.",
        .acts = Acts::Never)
    VARIABLE(calculatorID,
        .meaning = "Calculators to run besides the four fixed ones, in this order; an ID listed twice runs twice, one "
                   "without calculator is passed over silently. Entries of calculators that are not listed keep their "
                   "last values.",
        .unit = Unit::ID, .range = AtLeast(0), .entries = AtLeast(0), .start = "[5, 7, 8, 9]",
        .refers = {Reads(Thing::Calculator)})
TUNING_RECORD_END

BANK_MODULE(KIRODBActiveCalculatorsType, DBActiveCalculatorsPayload,
    "Bank of run lists of stats calculators.",
    .meaning = "Run lists; the last one applies where no priority does, and those beyond 1000 are left out. Without "
               "any the fixed calculators run alone.",
    .entries = {0, 1000})

} // namespace kirodbactivecalculators

using kirodbactivecalculators::DBActiveCalculatorsPayload;
