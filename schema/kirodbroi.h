/// @file
/// Bank of regions of interest.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirodbroi
{

/// One region: of the frame, or a box of the R/G-B/G plane where a calculator counts colours.
struct DBROIPayload
{
    INT32 dataID;  ///< from 1
    CHAR* description;
    float coords[4];  ///< x, y, dx, dy; in the frame fractions of its size from the upper left, 0 to 1
    float weight;
};
TUNING_RECORD(DBROIPayload)
    MEMBER(dataID)
    MEMBER(description)
    MEMBER(coords)
    MEMBER(weight)
TUNING_RECORD_END

BANK_MODULE(KIRODBROIType, DBROIPayload)

} // namespace kirodbroi

using kirodbroi::DBROIPayload;
