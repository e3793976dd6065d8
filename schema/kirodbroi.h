/// @file
/// Tuning module kirodbroi.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirodbroi
{

/// One region: of the frame, or a box of the R/G-B/G plane where a calculator counts colours.
struct DBROIPayload
{
    INT32 dataID;
    CHAR* description;
    float coords[4];
    float weight;
};
TUNING_RECORD(DBROIPayload)
    MEMBER(dataID,
        .meaning = "Number by which calculators name the region; of two regions with one number the later applies. "
                   "The host may replace a region, as that of touch.",
        .unit = Unit::ID, .range = AtLeast(1), .odd = AtLeast(0), .start = "1", .acts = Acts::NewTuning,
        .refers = {DefinesBank(BankIDROITable)})
    MEMBER(description,
        .meaning = "Text for the tuner; read by no stage.",
        .acts = Acts::Never)
    MEMBER(coords,
        .meaning = "x, y, dx, dy: upper left corner and size as shares of the frame, inside it and with a size above "
                   "0; doubled dx and dy measure a part four times as large. For API07 and API08 lowest R/G and B/G "
                   "and widths of a box of colours, in the ratios of the channels (API07) or of the white-balanced "
                   "picture (API08).",
        .unit = Unit::Varies, .range = AtLeast(0), .odd = Any, .start = "[0.0, 0.0, 1.0, 1.0]")
    MEMBER(weight,
        .meaning = "Number that an analyzer or tree gets that reads the region as a bank entry; measuring does not "
                   "use it.",
        .range = Any, .start = "1.0")
TUNING_RECORD_END

BANK_MODULE(KIRODBROIType, DBROIPayload,
    "Bank of regions of interest.",
    .meaning = "Regions; those beyond 1000 are left out.",
    .entries = {0, 1000})

} // namespace kirodbroi

using kirodbroi::DBROIPayload;
