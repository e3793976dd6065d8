/// @file
/// Bank of run lists of stats calculators.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirodbactivecalculators
{

/// One run list.
struct DBActiveCalculatorsPayload
{
    UINT32  dataID;  ///< from 1
    CHAR*   description;
    UINT32  calculatorIDCount;
    UINT32  calculatorIDID;
    UINT32* calculatorID;  ///< in run order; an ID listed twice runs twice
};
TUNING_RECORD(DBActiveCalculatorsPayload)
    MEMBER(dataID)
    MEMBER(description)
    VARIABLE(calculatorID)
TUNING_RECORD_END

BANK_MODULE(KIRODBActiveCalculatorsType, DBActiveCalculatorsPayload)

} // namespace kirodbactivecalculators

using kirodbactivecalculators::DBActiveCalculatorsPayload;
