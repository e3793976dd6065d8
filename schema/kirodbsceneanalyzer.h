/// @file
/// Bank of scene analyzer results. The core fills the bank itself; the data here only name its entries.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirodbsceneanalyzer
{

/// Entry of the bank of scene analyzer results.
struct DBStartEndPayload
{
    INT32        dataID;  ///< 0 to 999
    StartEndType value;
    CHAR*        description;
};
TUNING_RECORD(DBStartEndPayload)
    MEMBER(dataID)
    MEMBER(value)
    MEMBER(description)
TUNING_RECORD_END

/// The module's record.
struct KIRODBSceneAnalyzerType
{
    UINT32                  SymbolTableID;
    module_versionStruct    module_version;
    parameter_versionStruct parameter_version;
    TunaraBankDataType      dataBank;  ///< bankID is BankIDSceneAnalyzer
    UINT32                  dataCount;
    UINT32                  dataID;
    DBStartEndPayload*      data;
};
TUNING_RECORD(KIRODBSceneAnalyzerType)
    MODULE_HEADER
    MEMBER(dataBank)
    VARIABLE(data)
TUNING_RECORD_END

} // namespace kirodbsceneanalyzer

using kirodbsceneanalyzer::DBStartEndPayload;
