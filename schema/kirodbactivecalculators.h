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

/// The module's record.
struct KIRODBActiveCalculatorsType
{
    UINT32                      SymbolTableID;
    module_versionStruct        module_version;
    parameter_versionStruct     parameter_version;
    TunaraBankDataType          dataBank;  ///< bankID is BankIDActiveCalculators
    UINT32                      dataCount;
    UINT32                      dataID;
    DBActiveCalculatorsPayload* data;  ///< at most 1000; the last one applies where no priority does
};
TUNING_RECORD(KIRODBActiveCalculatorsType)
    MODULE_HEADER
    MEMBER(dataBank)
    VARIABLE(data)
TUNING_RECORD_END

} // namespace kirodbactivecalculators

using kirodbactivecalculators::DBActiveCalculatorsPayload;
