/// @file
/// Tuning module kirodbactiveanalyzers.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirodbactiveanalyzers
{

/// One run list.
struct DBActiveAnalyzersPayload
{
    UINT32  dataID;
    CHAR*   description;
    UINT32  analyzerIDCount;
    UINT32  analyzerIDID;
    UINT32* analyzerID;
};
TUNING_RECORD(DBActiveAnalyzersPayload)
    MEMBER(dataID,
        .meaning = "Number by which the priority map selects this run list; of two lists with one number the later "
                   "applies. 0 can only be the fallback at the end of data.",
        .unit = Unit::ID, .range = {1, 2147483647}, .odd = {0, 2147483647}, .start = "1", .acts = Acts::NewTuning,
        .refers = {DefinesBank(BankIDActiveAnalyzers)})
    MEMBER(description,
        .meaning = "Text for the tuner; read by no stage.",
        .acts = Acts::Never)
    VARIABLE(analyzerID,
        .meaning = "Analyzers to run, in this order: a later one reads what an earlier one has stored, and of two for "
                   "one exposure the later decides; one with an ID from 1000 on decides none. An ID without analyzer "
                   "is passed over with a log, and without a safe analyzer the safe exposure is 0.",
        .unit = Unit::ID, .range = {0, 999}, .odd = AtLeast(0), .entries = AtLeast(1), .start = "[0, 1, 2]",
        .refers = {Reads(Thing::Analyzer)})
TUNING_RECORD_END

BANK_MODULE(KIRODBActiveAnalyzersType, DBActiveAnalyzersPayload,
    "Bank of run lists of scene analyzers.",
    .meaning = "Run lists; the last one applies where no priority does, and those beyond 1000 are left out.",
    .entries = {1, 1000})

} // namespace kirodbactiveanalyzers

using kirodbactiveanalyzers::DBActiveAnalyzersPayload;
