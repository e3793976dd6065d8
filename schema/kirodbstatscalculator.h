/// @file
/// Bank of stats calculator results. The core fills the bank itself; the data here only name its entries.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirodbstatscalculator
{

/// Entry of the banks that hold one number: triggers and results of stats calculators.
struct DBFloatPayload
{
    INT32 dataID;  ///< 0 to 999
    float value;
    CHAR* description;
};
TUNING_RECORD(DBFloatPayload)
    MEMBER(dataID)
    MEMBER(value)
    MEMBER(description)
TUNING_RECORD_END

BANK_MODULE(KIRODBStatsCalculatorType, DBFloatPayload)

} // namespace kirodbstatscalculator

using kirodbstatscalculator::DBFloatPayload;
