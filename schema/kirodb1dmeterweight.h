/// @file
/// Tuning module kirodb1dmeterweight.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirodb1dmeterweight
{

/// One weight table for histograms.
struct DBMeter1DWeightPayload
{
    INT32 dataID;
    CHAR* description;
    float weights[1025];
};
TUNING_RECORD(DBMeter1DWeightPayload)
    MEMBER(dataID,
        .meaning = "Number by which calculators and vector processors name the table; of two tables with one number "
                   "the later applies. 0 can only be the fallback at the end of data.",
        .unit = Unit::ID, .range = AtLeast(1), .odd = AtLeast(0), .start = "1", .acts = Acts::NewTuning,
        .refers = {DefinesBank(BankIDMetering1D)})
    MEMBER(description,
        .meaning = "Text that logs show when the table is used.",
        .acts = Acts::Never)
    MEMBER(weights,
        .meaning = "Weight of each histogram bin from the darkest on, up to 1024: doubled in some bins the mean luma "
                   "moves towards theirs, doubled in all nothing changes. A table may instead carry samples for a "
                   "vector processor, newest first, of which up to 300 are read.",
        .unit = Unit::Factor, .range = AtLeast(0), .odd = Any, .start = "{fill: 1.0}")
TUNING_RECORD_END

BANK_MODULE(KIRODB1DMeterWeightType, DBMeter1DWeightPayload,
    "Bank of one-dimensional metering weights, one weight per histogram bin.",
    .meaning = "Weight tables for histograms; those beyond 1000 are left out.",
    .entries = {0, 1000})

} // namespace kirodb1dmeterweight

using kirodb1dmeterweight::DBMeter1DWeightPayload;
