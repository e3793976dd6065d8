/// @file
/// Bank of one-dimensional metering weights, one weight per histogram bin.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirodb1dmeterweight
{

/// One weight table for histograms.
struct DBMeter1DWeightPayload
{
    INT32 dataID;  ///< from 1
    CHAR* description;
    float weights[1025];  ///< by bin, from 0; also carries samples for a vector processor, newest first
};
TUNING_RECORD(DBMeter1DWeightPayload)
    MEMBER(dataID)
    MEMBER(description)
    MEMBER(weights)
TUNING_RECORD_END

BANK_MODULE(KIRODB1DMeterWeightType, DBMeter1DWeightPayload)

} // namespace kirodb1dmeterweight

using kirodb1dmeterweight::DBMeter1DWeightPayload;
