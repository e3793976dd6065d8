/// @file
/// Bank of two-dimensional metering weights.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirodb2dmeterweight
{

/// One weight table over the frame.
struct DBMeter2DWeightPayload
{
    INT32 dataID;  ///< from 1
    CHAR* description;
    float weights[256];  ///< 16 rows of 16 from the upper left, row by row; from 0
};
TUNING_RECORD(DBMeter2DWeightPayload)
    MEMBER(dataID)
    MEMBER(description)
    MEMBER(weights)
TUNING_RECORD_END

BANK_MODULE(KIRODB2DMeterWeightType, DBMeter2DWeightPayload)

} // namespace kirodb2dmeterweight

using kirodb2dmeterweight::DBMeter2DWeightPayload;
