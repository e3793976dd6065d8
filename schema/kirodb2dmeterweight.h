/// @file
/// Tuning module kirodb2dmeterweight.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirodb2dmeterweight
{

/// One weight table over the frame.
struct DBMeter2DWeightPayload
{
    INT32 dataID;
    CHAR* description;
    float weights[256];
};
TUNING_RECORD(DBMeter2DWeightPayload)
    MEMBER(dataID,
        .meaning = "Number by which calculators, table generators and map processors name the table; of two tables "
                   "with one number the later applies, and what generators or the host store under it replaces it. 0 "
                   "can only be the fallback at the end of data.",
        .unit = Unit::ID, .range = AtLeast(1), .odd = AtLeast(0), .start = "1", .acts = Acts::NewTuning,
        .refers = {DefinesBank(BankIDMetering2D)})
    MEMBER(description,
        .meaning = "Text for the tuner; read by no stage.",
        .acts = Acts::Never)
    MEMBER(weights,
        .meaning = "Weights of 16 rows of 16 from the upper left, row by row, stretched over the region measured: "
                   "doubled in some cells the mean luma moves towards theirs, doubled in all nothing changes, and "
                   "exactly -1 leaves a cell out. A map from outside stands here as well, as the values that its "
                   "processor or generator expects.",
        .unit = Unit::Factor, .range = AtLeast(0), .odd = Any, .start = "{fill: 1.0}")
TUNING_RECORD_END

BANK_MODULE(KIRODB2DMeterWeightType, DBMeter2DWeightPayload,
    "Bank of two-dimensional metering weights.",
    .meaning = "Weight tables over the frame, and places for tables that the core or the host fills; those beyond "
               "1000 are left out. Without any, a mean over a grid (API01) is not measured.",
    .entries = {0, 1000})

} // namespace kirodb2dmeterweight

using kirodb2dmeterweight::DBMeter2DWeightPayload;
