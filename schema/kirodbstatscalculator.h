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

/// The module's record.
struct KIRODBStatsCalculatorType
{
    UINT32                  SymbolTableID;
    module_versionStruct    module_version;
    parameter_versionStruct parameter_version;
    TunaraBankDataType      dataBank;  ///< bankID is BankIDStatsCalculator
    UINT32                  dataCount;
    UINT32                  dataID;
    DBFloatPayload*         data;
};
TUNING_RECORD(KIRODBStatsCalculatorType)
    MODULE_HEADER
    MEMBER(dataBank)
    VARIABLE(data)
TUNING_RECORD_END

} // namespace kirodbstatscalculator

using kirodbstatscalculator::DBFloatPayload;
